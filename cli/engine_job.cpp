#include "cli/engine_job.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "avi/byte_order.h"
#include "avi/codec_text.h"
#include "cli/repeated_entries.h"
#include "cli/shown_text.h"
#include "engine/globals.h"
#include "engine/low32.h"
#include "platform/ran_out.h"

namespace zelvo::cli {

namespace {

constexpr std::uint64_t kSmallestAvi = avi::InputFile::kBlockSize;
constexpr std::uint64_t kOffsetsWrap = std::uint64_t{1} << 32U;

/// The window's elements, but for the two that are told something once per block or more.
platform::JobOutlets outletsWith(const platform::JobOutlets& rest, platform::TextField& status,
                                 platform::Button& stopButton) {
  return {.textfield = status,
          .videocodecfield = rest.videocodecfield,
          .audiocodecfield = rest.audiocodecfield,
          .pathfield = rest.pathfield,
          .window = rest.window,
          .filenotsupportedwindow = rest.filenotsupportedwindow,
          .invalidfilewindow = rest.invalidfilewindow,
          .repaircompletedwindow = rest.repaircompletedwindow,
          .stoprepairwindow = rest.stoprepairwindow,
          .stopbutton = stopButton,
          .tabview2 = rest.tabview2,
          .movieview1 = rest.movieview1,
          .filenotsupportedokbutton = rest.filenotsupportedokbutton,
          .invalidfileokbutton = rest.invalidfileokbutton,
          .repaircompletedokbutton = rest.repaircompletedokbutton,
          .previewbutton = rest.previewbutton,
          .minutestextfield = rest.minutestextfield,
          .secondstextfield = rest.secondstextfield,
          .hourstextfield = rest.hourstextfield};
}

std::string listed(const std::vector<std::string>& parts) {
  std::string text;
  for (std::size_t i = 0; i < parts.size(); ++i) {
    if (i > 0) text += i + 1 == parts.size() ? " and " : ", ";
    text += parts[i];
  }
  return text;
}

/// wFormatTag. It is read where it lies when the payload is too large to be held; `input` may then be null.
std::optional<std::uint32_t> formatTagOf(const engine::FormatPayload& format, platform::ReadableFile* input) {
  std::array<std::byte, 2> tag{};
  if (format.held.size() >= tag.size()) {
    std::copy_n(format.held.begin(), tag.size(), tag.begin());
  } else if (input == nullptr || format.rangeSize < tag.size() ||
             input->readAt(format.rangeOffset, tag).count < tag.size()) {
    return std::nullopt;
  }
  return avi::loadLittleEndian16(tag);
}

std::string audioCodec(const platform::Bytes& handler) {
  const bool allZero = std::all_of(handler.begin(), handler.end(), [](std::byte byte) { return byte == std::byte{0}; });
  return allZero ? "Unknown" : avi::codecText(handler);
}

}  // namespace

EngineJob::EngineJob(Surroundings& around, int verbosity)
    : around_(around),
      log_(around.console, verbosity),
      files_(around.files),
      engine_(std::make_unique<engine::RepairFile>(
          engine::RepairServices{files_, around.fileManager, around.movies, around.workers, around.mainQueue,
                                 around.sheets, log_},
          outletsWith(around.outlets, stage_, stopButton_))) {
  engine_->controll = &percent_;
}

std::shared_ptr<engine::Run> EngineJob::begin(const ChosenInput& input, Outcome& outcome) {
  if (input.attributes.size >= kOffsetsWrap) {
    warn(outcome, shownText(input.path) + " is " + shownSize(input.attributes.size) +
                      " long; positions beyond 4 GiB wrap, so what lies there is not found.");
  }
  files_.handOver(input.path, input.file);
  files_.resetWritten();
  bytesExpected_ = 0;
  stage_.setStage(Stage::none);
  engine::stopflag = false;
  engine::path.set(input.path);
  engine::inputfilesize = input.attributes.size;
  return engine::RepairFile::newRun();
}

std::error_code EngineJob::perform(const std::shared_ptr<engine::Run>& run, const std::string& inputPath,
                                   std::function<void()> body) {
  engine_->writeFailure.set(std::nullopt);
  const auto ended = std::make_shared<bool>(false);
  const auto worker = around_.workers.start(run->cancel, [this, ended, work = std::move(body)] {
    work();
    around_.mainQueue.perform([ended] { *ended = true; });  // wakes the main thread
  });
  if (!worker) return platform::noThread();
  const std::error_code followed = platform::ranOut([&] {
    ProgressLine line(inputPath);
    around_.runUntil([&] {
      if (around_.stopRequested) run->cancel->abandon();
      if (around_.console.showsProgress()) showProgress(line, run->inputfilesize);
      return *ended || worker->finished();  // a body that was cut short wakes nobody
    });
  });
  if (followed) run->cancel->abandon();
  worker->join();  // whatever happens here: it works on what the caller holds
  around_.console.progress("");
  if (followed) return followed;
  if (const std::error_code cutShort = worker->failure()) return cutShort;
  const auto failure = engine_->writeFailure.get();
  return failure && platform::isShortage(failure->cause) ? failure->cause : std::error_code{};
}

void EngineJob::showProgress(ProgressLine& line, std::uint64_t inputSize) {
  const auto now = ProgressLine::Clock::now();
  if (!line.isDue(now)) return;
  const Stage stage = stage_.stage();
  std::uint64_t done = files_.written();
  std::uint64_t all = bytesExpected_;
  if (stage == Stage::analysing || stage == Stage::none) {
    all = 0;  // over in a moment
  } else if (stage == Stage::scanning) {
    all = inputSize;
    done =
        static_cast<std::uint64_t>(static_cast<double>(inputSize) * std::clamp(percent_.percent(), 0.0, 100.0) / 100);
  }
  around_.console.progress(line.text(now, stage, done, all));
}

void EngineJob::beginWriting(Stage stage, std::uint64_t all) {
  files_.resetWritten();
  bytesExpected_ = all;
  stage_.setStage(stage);
}

void EngineJob::warn(Outcome& outcome, const std::string& sentence) {
  around_.console.warning(sentence);
  outcome.warnings.push_back(sentence);
}

void EngineJob::reportFindings(Outcome& outcome, std::uint64_t bytes) {
  const engine::RepairFile& job = *engine_;
  const auto layout = engine::RebuiltLayout::of({.videosamplecount = job.videosamplecount,
                                                 .audiosamplecount = job.audiosamplecount,
                                                 .videostrfsize = job.videostrfsize,
                                                 .audiostrfsize = job.audiostrfsize,
                                                 .videosamplesizearray = job.videosamplesizearray,
                                                 .audiosamplesizearray = job.audiosamplesizearray});
  outcome.video =
      StreamFound{job.videocodecstring.get().value_or(""), std::nullopt, job.videosamplecount, layout.videodatasize};
  const auto tag = formatTagOf(job.audiostrfdata, files_.openForReading(outcome.inputPath).file.get());
  outcome.audio = StreamFound{audioCodec(job.audiocodec), tag, job.audiosamplecount, layout.audiodatasize};
  outcome.outputSize = bytes;

  const std::string input = shownText(outcome.inputPath);
  const platform::FilmReport kept = job.filmReport.get();
  if (kept.pictures == 0 || kept.soundChunks == 0) {
    const bool neither = kept.pictures == kept.soundChunks;
    const std::string kind = neither ? "video and no audio" : kept.pictures == 0 ? "video" : "audio";
    warn(outcome, "no " + kind + " data was found in " + input + "; the repaired file has none to play.");
  }
  if (job.samplesleftout > 0) {
    warn(outcome, input + " holds more chunks of one kind than can be kept, " +
                      shownNumber(engine::kLargestSampleCount) + "; " + shownNumber(job.samplesleftout) +
                      " behind them are left out.");
  }
  if (outcome.inputSize.value_or(0) >= kOffsetsWrap) {
    const std::uint64_t repeated = repeatedEntries(job.videosampleoffsetarray, job.videosamplecount) +
                                   repeatedEntries(job.audiosampleoffsetarray, job.audiosamplecount);
    if (repeated > 0) {
      warn(outcome, "behind 4 GiB the search met the beginning of " + input + " again: " + counted(repeated, "chunk") +
                        (repeated == 1 ? " was" : " were") + " found before, and the repaired file holds " +
                        (repeated == 1 ? "it" : "them") + " twice.");
    }
  }
  if (bytes > engine::low32(bytes)) {
    warn(outcome,
         "the repaired file would be " + shownSize(bytes) + ", and players find nothing beyond its first 4 GiB.");
  }
}

std::string EngineJob::whyRejected(const ChosenInput& input, bool invalid) const {
  const std::string name = shownText(input.path);
  const std::uint64_t size = input.attributes.size;
  if (size == 0) return name + " is empty.";
  if (invalid && size < kSmallestAvi) return name + " is only " + counted(size, "byte") + " long; that is no AVI file.";
  if (invalid) return name + " is not an AVI file: its first 10 KiB hold none of the marks of one.";

  std::string text;
  std::vector<std::string> missing;
  if (!engine_->avihscaleratedatafound) missing.emplace_back("the main header");
  if (!engine_->videocodecfound) missing.emplace_back("the video stream's header with its codec");
  if (!engine_->videostrfcodecfound) missing.emplace_back("the video stream's format");
  if (!engine_->audiocodecfound) missing.emplace_back("the audio stream's header");
  if (!engine_->audiostrfcodecfound) missing.emplace_back("the audio stream's format");
  if (!missing.empty()) {
    text = "its first 50 KiB lack " + listed(missing);
    if (!engine_->audiocodecfound) text += " (a file without an audio stream cannot be repaired)";
  }
  if (size <= engine::RepairFile::kLargestUnsupported) {
    if (!text.empty()) text += ", and ";
    text += "it is " + shownSize(size) + " small, where only files larger than 512 KiB are repaired";
  }
  return name + " cannot be repaired: " + text + ".";
}

bool judgeInput(Outcome& outcome, const ChosenInput& input, EngineJob& job, const engine::Run& run) {
  const std::string name = shownText(input.path);
  outcome.readFailures = job.engine().readFailures.get();
  if (run.cancel->abandoned()) {
    outcome.verdict = Verdict::stopped;
    outcome.reason = "stopped before " + name + " was done; nothing was written, and it is unchanged.";
    return true;
  }
  if (const std::uint64_t now = input.file->size(); now < input.attributes.size) {
    outcome.verdict = Verdict::failed;
    outcome.reason = name + " became shorter while it was read, from " + counted(input.attributes.size, "byte") +
                     " to " + shownNumber(now) + "; nothing was written. Try again when nothing else uses it.";
    return true;
  }
  const engine::RunEnd end = job.engine().runEnd;
  if (end != engine::RunEnd::invalid && end != engine::RunEnd::notSupported) return false;
  if (outcome.readFailures.count > 0) {
    outcome.verdict = Verdict::failed;
    outcome.reason = name + " cannot be read at byte " + shownNumber(outcome.readFailures.firstOffset) + ": " +
                     outcome.readFailures.firstCause.message() + ".";
    return true;
  }
  outcome.verdict = end == engine::RunEnd::invalid ? Verdict::invalid : Verdict::notSupported;
  outcome.reason = job.whyRejected(input, end == engine::RunEnd::invalid) + " It is unchanged.";
  return true;
}

std::string shortageSentence(const std::string& inputPath, std::error_code shortage) {
  const std::string lacking = shortage == std::errc::not_enough_memory
                                  ? "there is not enough memory for "
                                  : "the system gives no thread (" + shortage.message() + ") for ";
  return lacking + shownText(inputPath) + "; nothing was written, and it is unchanged.";
}

Outcome outcomeOf(std::string command, const std::string& path) {
  Outcome outcome;
  outcome.command = std::move(command);
  outcome.inputPath = path;
  return outcome;
}

}  // namespace zelvo::cli
