// The run:
// 1. Wait for the run before this one.
// 2. Validity check; on no the invalid-file sheet.
// 3. Header harvest; on no the not-supported sheet.
// 4. Sample scan.
// 5. Progress animation on a worker of its own, and beside it the rebuilt file.
#include "engine/repair_file.h"

#include <utility>

#include "avi/byte_order.h"
#include "engine/globals.h"
#include "engine/low32.h"
#include "platform/ran_out.h"

namespace zelvo::engine {

using platform::logLine;

/// The window's elements, as the stages tell them what happens.
class RepairFile::Elements final : public RepairObserver {
 public:
  explicit Elements(RepairFile& job) : job_(job) {}

  [[nodiscard]] platform::Log& log() override { return job_.services_.log; }
  void stage(RepairStage stage) override {
    if (stage == RepairStage::readingHeaders) job_.outlets.textfield.setStringValue("Analyzing the file..");
    if (stage == RepairStage::searching) {
      job_.outlets.textfield.setStringValue("Retrieving audio/ video data forks..");
    }
  }
  void progress(std::uint64_t done, std::uint64_t all) override {
    job_.controll->setProgressBarValue(static_cast<double>(done) * 100.0 / static_cast<double>(all));
    job_.updateProgressBar_.request();
  }
  void recognised() override {
    validitycheck1 = true;
    job_.controll->setProgressBarValue(100.0);
  }
  void videoCodec(const std::string& text) override { job_.outlets.videocodecfield.setStringValue(text); }
  void headersFound() override { job_.controll->setProgressBarValue(100.0); }
  void audioCodec(const std::string& text) override { job_.outlets.audiocodecfield.setStringValue(text); }
  void written() override {
    job_.outputfile.reset();
    job_.runEnd = RunEnd::rebuilt;
    job_.controll->setMovieView(job_.run_->internalpath);
  }
  [[nodiscard]] bool stopIsAsked() const override { return stopflag; }

 private:
  RepairFile& job_;
};

class RepairFile::Output final : public OutputMaker {
 public:
  explicit Output(RepairFile& job) : job_(job) {}

  [[nodiscard]] Made make(std::uint64_t size) override {
    const Run& run = *job_.run_;
    if (run.mayWrite && !run.mayWrite(size)) return {.file = nullptr, .error = {}, .refused = true};
    job_.outputfilemanager = &job_.services_.fileManager;
    if (const std::error_code error = job_.outputfilemanager->createFile(run.internalpath))
      return {.file = nullptr, .error = error};
    auto opened = job_.services_.files.openForWriting(run.internalpath);
    job_.outputfile = std::move(opened.file);
    return {.file = job_.outputfile.get(), .error = opened.error};
  }
  [[nodiscard]] std::error_code close() override { return job_.outputfile->close(); }

 private:
  RepairFile& job_;
};

RepairFile::RepairFile(const RepairServices& services, const platform::JobOutlets& jobOutlets)
    : outlets(jobOutlets),
      services_(services),
      elements_(std::make_unique<Elements>(*this)),
      updateProgressBar_(services.mainQueue, [this] { controll->updateProgressBar(); }),
      updateSaveProgressBar_(services.mainQueue, [this] { controll->updateSaveProgressBar(); }) {}

RepairFile::~RepairFile() = default;

std::uint64_t RepairFile::fourByteRead(std::span<const std::byte, 4> bytes) { return avi::loadLittleEndian32(bytes); }

platform::Bytes RepairFile::convertIntToData(std::uint64_t value) {
  platform::Bytes bytes(4);
  avi::storeLittleEndian32(std::span(bytes).first<4>(), low32(value));
  return bytes;
}

platform::Bytes RepairFile::convertIntTo8byteData(std::uint64_t value) {
  platform::Bytes bytes = convertIntToData(value);
  bytes.resize(8);
  return bytes;
}

std::shared_ptr<Run> RepairFile::newRun() {
  auto run = std::make_shared<Run>();
  run->path = path.get();
  run->inputfilesize = engine::inputfilesize;
  run->internalpath = internalpath.get();
  return run;
}

void RepairFile::beginRun(std::shared_ptr<Run> run) {
  run_ = std::move(run);
  runEnd = RunEnd::none;
  readFailures.set({});
  writeFailure.set(std::nullopt);
  filmReport.set({});
  tally = {};
  filmRange = {};
}

RepairContext RepairFile::context() {
  return {*inputfilehandle, run_->inputfilesize, *elements_, *run_->cancel, services_.workers};
}

bool RepairFile::fileValidityCheck() {
  validitycheck1 = false;
  video1 = services_.movies.movieWithFile(run_->path.value_or("")).movie;
  inputfilehandle = std::make_unique<avi::InputFile>(services_.files.openForReading(run_->path.value_or("")).file);
  return checkValidity(*this, context(), !flag);
}

bool RepairFile::harvestHeaders() {
  buffersize = avi::InputFile::kBlockSize;
  nextHeader = false;
  return engine::harvestHeaders(*this, context());
}

void RepairFile::scanSamples() { engine::scanSamples(*this, context()); }

std::uint64_t RepairFile::bytesToWrite() { return engine::bytesToWrite(*this, context()); }

void RepairFile::constructRIFFList() {
  Output output(*this);
  runEnd = constructRebuiltFile(*this, context(), output);
  outputfile.reset();
}

void RepairFile::retrieveAudioVideoSamples(std::shared_ptr<Run> run) {
  const std::lock_guard turn(turn_);  // Decision: runs, A run waits for the one before
  if (run->cancel->cancelled()) return;
  beginRun(std::move(run));
  if (const std::error_code shortage = platform::ranOut([this] { runStages(); })) failRun({0, shortage});
  if (inputfilehandle) {
    const avi::ReadFailures failures = inputfilehandle->failures();
    readFailures.set(failures);
    logReadFailures(services_.log, failures);
    inputfilehandle.reset();
  }
}

void RepairFile::failRun(const avi::WriteFailure& failure) {
  keepFailure(*this, services_.log, *run_->cancel, failure);
}

void RepairFile::runStages() {
  if (!fileValidityCheck()) {
    logLine(services_.log, "Val==No");
    runEnd = RunEnd::invalid;
    services_.sheets.beginSheet(outlets.invalidfilewindow, outlets.window);
    return;
  }
  if (!harvestHeaders()) {
    runEnd = RunEnd::notSupported;
    if (run_->rejected) run_->rejected(rejectionOf(*this, context()));
    services_.sheets.beginSheet(outlets.filenotsupportedwindow, outlets.window);
    return;
  }
  scanSamples();
  judgeFilm();
  const auto animation = services_.workers.start(run_->cancel, [this, run = run_] { progressupdation(*run); });
  // Without it no sheet would ever tell the run's end.
  if (!animation) failRun({0, platform::noThread()});
  const std::error_code shortage = platform::ranOut([this] { constructRIFFList(); });
  if (shortage) failRun({0, shortage});
  // What the copy could not read is known only now.
  if (runEnd == RunEnd::rebuilt && !stopRequested(*run_)) reportFound();
  // The next run resets what the animation counts by, so this one ends only after it.
  if (!animation) return;
  animation->join();
  if (const std::error_code cutShort = animation->failure()) failRun({0, cutShort});
}

void RepairFile::judgeFilm() {
  if (stopRequested(*run_)) return;
  findFilmRange(*this, context());
  reportFound();
}

void RepairFile::reportFound() {
  const platform::FilmReport report = filmReportOf(*this, context());
  filmReport.set(report);
  if (run_->found) run_->found(report);
}

}  // namespace zelvo::engine
