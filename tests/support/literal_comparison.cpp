#include "tests/support/literal_comparison.h"

#include <algorithm>
#include <sstream>
#include <string_view>
#include <utility>

#include "engine/globals.h"

namespace zelvo::tests {

using platform::Bytes;

namespace {

constexpr auto kInput = "/in.avi";
constexpr auto kOutput = "/out.avi";
constexpr auto kLiteralOutput = "/literal.avi";

template <class Left, class Right>
void expectSame(std::ostringstream& out, std::string_view what, const Left& engineSays, const Right& literalSays) {
  if (engineSays != literalSays && out.str().empty()) {
    out << what << ": engine " << engineSays << ", literally " << literalSays;
  }
}

std::string firstDifference(const Bytes& engineWrote, const Bytes& literalWrote) {
  const auto [left, right] =
      std::mismatch(engineWrote.begin(), engineWrote.end(), literalWrote.begin(), literalWrote.end());
  if (left == engineWrote.end() && right == literalWrote.end()) return {};
  std::ostringstream out;
  out << "output: " << engineWrote.size() << " bytes from the engine, " << literalWrote.size()
      << " literally, first difference at " << left - engineWrote.begin();
  return out.str();
}

void compareTable(std::ostringstream& out, std::string_view kind, std::uint64_t count,
                  const engine::SampleTable& offsets, const engine::SampleTable& sizes, const literal::Table& table) {
  expectSame(out, std::string(kind) + " chunks", count, table.count);
  for (std::uint64_t k = 0; k <= table.count && out.str().empty(); ++k) {
    if (offsets[k] == table.offsets[k] && sizes[k] == table.sizes[k]) continue;
    out << kind << " chunk " << k << ": engine (" << offsets[k] << ", " << sizes[k] << "), literally ("
        << table.offsets[k] << ", " << table.sizes[k] << ")";
  }
}

}  // namespace

/// The input, telling of every read.
class LiteralComparison::WatchedFile final : public platform::ReadableFile {
 public:
  WatchedFile(std::unique_ptr<platform::ReadableFile> file, std::shared_ptr<std::function<void()>> onRead)
      : file_(std::move(file)), onRead_(std::move(onRead)) {}
  platform::IoResult readAt(std::uint64_t offset, std::span<std::byte> into) override {
    if (*onRead_) (*onRead_)();
    return file_->readAt(offset, into);
  }
  std::uint64_t size() override { return file_->size(); }

 private:
  std::unique_ptr<platform::ReadableFile> file_;
  std::shared_ptr<std::function<void()>> onRead_;
};

LiteralComparison::LiteralComparison() {
  engine::resetGlobals();
  engine::path.set(kInput);
  engine::internalpath.set(kOutput);
  queue.holdRequests(false);
  job = std::make_unique<engine::RepairFile>(engine::RepairServices{files, files, movies, workers, queue, sheets, log},
                                             screen.job);
  job->controll = &relay;
}

LiteralComparison::~LiteralComparison() { engine::resetGlobals(); }

void LiteralComparison::place(const DamagedInput& input) {
  MemoryFile& file = files.put(kInput, input.bytes);
  file.size = std::max<std::uint64_t>(input.size, input.bytes.size());
  file.badReadStart = input.badReadStart;
  file.badReadEnd = input.badReadEnd;
  file.beforeBadRead = input.beforeBadRead;
  file.readError = std::make_error_code(std::errc::io_error);
}

void LiteralComparison::giveHeaders() {
  const auto some = [](std::size_t size, unsigned first) {
    Bytes bytes;
    for (std::size_t k = 0; k < size; ++k) bytes.push_back(static_cast<std::byte>(first + k));
    return bytes;
  };
  headers = {};
  headers.avihdata1 = job->avihdata1 = some(20, 1);
  headers.avihdata2 = job->avihdata2 = some(36, 21);
  headers.videocodec = job->videocodec = some(4, 0x41);
  headers.videoscaleratedata = job->videoscaleratedata = some(8, 60);
  headers.videoscaledata = job->videoscaledata = some(4, 70);
  headers.videostrfdata = some(40, 80);
  headers.videostrfsize = job->videostrfsize = 40;
  job->videostrfdata = {.held = headers.videostrfdata};
  headers.audiocodec = job->audiocodec = some(4, 0x61);
  headers.audioscaleratedata = job->audioscaleratedata = some(8, 120);
  headers.audioscaledata = job->audioscaledata = some(4, 130);
  headers.audiostrfdata = some(18, 140);
  headers.audiostrfsize = job->audiostrfsize = 18;
  job->audiostrfdata = {.held = headers.audiostrfdata};
  job->db = headers.db = false;
}

literal::Tables LiteralComparison::scanLiterally(literal::Input& input, std::uint64_t claimedSize,
                                                 const TwinStops& stops) const {
  literal::ScanOptions options;
  options.inputfilesize = claimedSize;
  if (stops.duringBlock != 0) options.stopped = [&](std::uint64_t sector) { return sector > stops.duringBlock; };
  options.knownZero = knownZero;
  return literal::scanSamples(input, options);
}

std::string LiteralComparison::tablesDiffer() const {
  std::ostringstream out;
  compareTable(out, "video", job->videosamplecount, job->videosampleoffsetarray, job->videosamplesizearray,
               tables.video);
  compareTable(out, "audio", job->audiosamplecount, job->audiosampleoffsetarray, job->audiosamplesizearray,
               tables.audio);
  expectSame(out, "videosamplesize", job->videosamplesize, tables.videosamplesize);
  return out.str();
}

std::string LiteralComparison::layoutDiffers(const literal::Layout& layout) const {
  std::ostringstream out;
  const engine::RebuiltLayout& ours = job->layout;
  expectSame(out, "ix00size", ours.ix00size, layout.ix00size);
  expectSame(out, "ix01size", ours.ix01size, layout.ix01size);
  expectSame(out, "audiodatasize", ours.audiodatasize, layout.audiodatasize);
  expectSame(out, "videodatasize", ours.videodatasize, layout.videodatasize);
  expectSame(out, "audioindxsize", ours.audioindxsize, layout.audioindxsize);
  expectSame(out, "videoindxsize", ours.videoindxsize, layout.videoindxsize);
  expectSame(out, "ix00location", ours.ix00location, layout.ix00location);
  expectSame(out, "ix01location", ours.ix01location, layout.ix01location);
  expectSame(out, "audiostrlListsize", ours.audiostrlListsize, layout.audiostrlListsize);
  expectSame(out, "videostrlListsize", ours.videostrlListsize, layout.videostrlListsize);
  expectSame(out, "AVILISTsize", ours.AVILISTsize, layout.AVILISTsize);
  expectSame(out, "baseoffsetforvideo", ours.baseoffsetforvideo, layout.baseoffsetforvideo);
  expectSame(out, "movisize", ours.movisize, layout.movisize);
  expectSame(out, "RIFFLISTsize", ours.RIFFLISTsize, layout.RIFFLISTsize);
  expectSame(out, "baseoffsetforaudio", ours.baseoffsetforaudio, layout.baseoffsetforaudio);
  return out.str();
}

std::string LiteralComparison::outputsDiffer() {
  ++outputsCompared;
  std::string difference = firstDifference(files.at(kOutput).bytes, files.at(kLiteralOutput).bytes);
  if (difference.empty() && job->writeFailure.get()) difference = "the engine reports a failed write";
  return difference;
}

std::string LiteralComparison::headersDiffer() const {
  std::ostringstream out;
  const auto payload = [&](std::string_view what, const Bytes& left, const Bytes& right) {
    if (left != right && out.str().empty()) out << what << " differs";
  };
  expectSame(out, "db", job->db, headers.db);
  expectSame(out, "avihscaleratedatafound", job->avihscaleratedatafound, headers.avihscaleratedatafound);
  expectSame(out, "videocodecfound", job->videocodecfound, headers.videocodecfound);
  expectSame(out, "videostrfcodecfound", job->videostrfcodecfound, headers.videostrfcodecfound);
  expectSame(out, "audiocodecfound", job->audiocodecfound, headers.audiocodecfound);
  expectSame(out, "audiostrfcodecfound", job->audiostrfcodecfound, headers.audiostrfcodecfound);
  expectSame(out, "videostrfsize", job->videostrfsize, headers.videostrfsize);
  expectSame(out, "audiostrfsize", job->audiostrfsize, headers.audiostrfsize);
  payload("avihdata1", job->avihdata1, headers.avihdata1);
  payload("avihdata2", job->avihdata2, headers.avihdata2);
  // A large format is held as a range of its run's input; what is read of it shows in the output.
  if (job->videostrfdata.rangeSize == 0) payload("videostrfdata", job->videostrfdata.held, headers.videostrfdata);
  if (job->audiostrfdata.rangeSize == 0) payload("audiostrfdata", job->audiostrfdata.held, headers.audiostrfdata);
  payload("videocodec", job->videocodec, headers.videocodec);
  payload("videoscaleratedata", job->videoscaleratedata, headers.videoscaleratedata);
  payload("videoscaledata", job->videoscaledata, headers.videoscaledata);
  payload("audiocodec", job->audiocodec, headers.audiocodec);
  payload("audioscaleratedata", job->audioscaleratedata, headers.audioscaleratedata);
  payload("audioscaledata", job->audioscaledata, headers.audioscaledata);
  return out.str();
}

void LiteralComparison::beginStages(const DamagedInput& input) {
  place(input);
  engine::inputfilesize = input.claimedSize;
  run_ = engine::RepairFile::newRun();
  job->beginRun(run_);
  giveHeaders();
  onRead_ = std::make_shared<std::function<void()>>();
  job->inputfilehandle = std::make_unique<avi::InputFile>(
      std::make_unique<WatchedFile>(std::move(files.openForReading(kInput).file), onRead_));
  job->mod = static_cast<std::uint32_t>(input.claimedSize % 1024);
  const std::uint64_t blocks = input.claimedSize / 1024 + (job->mod != 0 ? 1 : 0);
  job->numberofsectors = input.claimedSize <= 1024 ? 1 : static_cast<std::uint32_t>(blocks);
  job->videosamplesize = job->videosamplecount = job->audiosamplecount = 0;
}

void LiteralComparison::stop(const TwinStops& stops) {
  if (stops.byCancelMark) {
    run_->cancel->cancel();
  } else {
    engine::stopflag = true;
  }
}

std::string LiteralComparison::writeBoth(literal::Input& input, const TwinStops& stops, bool alreadyStopped) {
  if (stops.beforeVideo) stop(stops);
  if (stops.duringVideo) *onRead_ = [this, &stops] { stop(stops); };
  // Every other output can be given room ahead.
  MemoryFile& place = files.put(kOutput, {});
  if (outputsCompared % 2 == 0) place.reserveError = {};
  job->constructRIFFList();
  files.put(kLiteralOutput, {});
  const auto opened = files.openForWriting(kLiteralOutput);
  literal::Output out(*opened.file);
  const bool stopped = stops.beforeVideo || alreadyStopped;
  const bool stoppedInVideo = stops.duringVideo && tables.video.count > 0;
  const std::string difference = layoutDiffers(literal::constructRIFFList(
      input, headers, tables, out,
      {.beforeVideo = [=] { return stopped; }, .beforeAudio = [=] { return stopped || stoppedInVideo; }}));
  return difference.empty() ? outputsDiffer() : difference;
}

std::string LiteralComparison::failuresDiffer(const literal::Input& input) const {
  std::ostringstream out;
  const avi::ReadFailures failures = job->inputfilehandle->failures();
  expectSame(out, "failed reads", failures.count, input.failures());
  expectSame(out, "first failed read", failures.firstOffset, input.firstFailure());
  return out.str();
}

std::string LiteralComparison::scanAndWrite(const DamagedInput& input, const TwinStops& stops) {
  beginStages(input);
  std::uint64_t block = 0;
  relay.onStep = [&] {
    if (++block == stops.duringBlock) stop(stops);
  };
  job->scanSamples();
  relay.onStep = nullptr;

  const auto file = std::move(files.openForReading(kInput).file);
  literal::Input literalInput(file.get());
  tables = scanLiterally(literalInput, input.claimedSize, stops);
  chunksCompared += tables.video.count + tables.audio.count;
  std::string difference = tablesDiffer();
  if (difference.empty() && tables.video.wholeSize() + tables.audio.wholeSize() <= largestOutput) {
    difference = writeBoth(literalInput, stops, stops.duringBlock != 0 && stops.duringBlock <= block);
  }
  if (difference.empty()) difference = failuresDiffer(literalInput);
  engine::stopflag = false;
  job->inputfilehandle.reset();
  return difference.empty() ? difference : input.name + ": " + difference;
}

std::string LiteralComparison::wholeRun(const DamagedInput& input) {
  place(input);
  const std::string difference = wholeRunOf(input.claimedSize);
  return difference.empty() ? difference : input.name + ": " + difference;
}

std::string LiteralComparison::wholeRunOf(std::uint64_t claimedSize) {
  engine::inputfilesize = claimedSize;
  const auto file = std::move(files.openForReading(kInput).file);
  literal::Input input(file.get());
  std::ostringstream out;
  auto expected = engine::RunEnd::invalid;
  if (literal::fileValidityCheck(input, claimedSize, headers)) {
    expected =
        literal::harvestHeaders(input, claimedSize, headers) ? engine::RunEnd::rebuilt : engine::RunEnd::notSupported;
  }
  tables = {};
  if (expected == engine::RunEnd::rebuilt) tables = scanLiterally(input, claimedSize, {});
  const bool writes = tables.video.wholeSize() + tables.audio.wholeSize() <= largestOutput;

  const std::shared_ptr<engine::Run> run = engine::RepairFile::newRun();
  run->mayWrite = [&](std::uint64_t) { return writes; };
  job->retrieveAudioVideoSamples(run);
  workers.joinAll();
  if (expected == engine::RunEnd::rebuilt && !writes) expected = engine::RunEnd::refused;
  const engine::RunEnd end = job->runEnd;
  expectSame(out, "end of the run", static_cast<int>(end), static_cast<int>(expected));
  std::string difference = out.str();
  if (difference.empty() && expected != engine::RunEnd::invalid) difference = headersDiffer();
  if (!difference.empty() || expected == engine::RunEnd::invalid || expected == engine::RunEnd::notSupported) {
    return difference;
  }
  difference = tablesDiffer();
  chunksCompared += tables.video.count + tables.audio.count;
  if (!difference.empty() || !writes) return difference;
  files.put(kLiteralOutput, {});
  const auto opened = files.openForWriting(kLiteralOutput);
  literal::Output output(*opened.file);
  difference = layoutDiffers(literal::constructRIFFList(input, headers, tables, output));
  return difference.empty() ? outputsDiffer() : difference;
}

}  // namespace zelvo::tests
