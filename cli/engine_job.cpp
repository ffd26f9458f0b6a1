#include "cli/engine_job.h"

#include <utility>
#include <vector>

#include "avi/input_file.h"
#include "cli/shown_text.h"
#include "cli/worker_run.h"
#include "engine/low32.h"
#include "engine/sample_tables.h"
#include "platform/ran_out.h"

namespace zelvo::cli {

namespace {

constexpr std::uint64_t kSmallestAvi = avi::InputFile::kBlockSize;
constexpr std::uint64_t kOffsetsWrap = std::uint64_t{1} << 32U;

std::string listed(const std::vector<std::string>& parts) {
  std::string text;
  for (std::size_t i = 0; i < parts.size(); ++i) {
    if (i > 0) text += i + 1 == parts.size() ? " and " : ", ";
    text += parts[i];
  }
  return text;
}

/// The sentence about an input that was found to be no AVI file, or not to be repairable.
std::string whyRejected(const ChosenInput& input, const engine::RepairReport& report) {
  const bool invalid = report.end == engine::RunEnd::invalid;
  const std::string name = printable(input.path);
  const std::uint64_t size = input.attributes.size;
  if (size == 0) return name + " is empty.";
  if (invalid && size < kSmallestAvi) return name + " is only " + counted(size, "byte") + " long; that is no AVI file.";
  if (invalid) return name + " is not an AVI file: its first 10 KiB hold none of the marks of one.";

  const engine::HeadersFound& found = report.headers;
  std::string text;
  std::vector<std::string> missing;
  if (!found.main) missing.emplace_back("the main header");
  if (!found.videoHeader) missing.emplace_back("the video stream's header with its codec");
  if (!found.videoFormat) missing.emplace_back("the video stream's format");
  if (!found.audioHeader) missing.emplace_back("the audio stream's header");
  if (!found.audioFormat) missing.emplace_back("the audio stream's format");
  if (!missing.empty()) {
    text = "its first 50 KiB lack " + listed(missing);
    if (!found.audioHeader) text += " (a file without an audio stream cannot be repaired)";
  }
  if (size <= engine::kLargestUnsupported) {
    if (!text.empty()) text += ", and ";
    text += "it is " + shownSize(size) + " small, where only files larger than 512 KiB are repaired";
  }
  return name + " cannot be repaired: " + text + ".";
}

}  // namespace

EngineJob::Done EngineJob::perform(const ChosenInput& input, Outcome& outcome,
                                   const std::shared_ptr<platform::CancelMark>& cancel, const Body& body) {
  if (input.attributes.size >= kOffsetsWrap) {
    warn(outcome, printable(input.path) + " is " + shownSize(input.attributes.size) +
                      " long; positions beyond 4 GiB wrap, so what lies there is not found.");
  }
  beginWriting(Stage::none, 0);
  const engine::RepairRun run{*input.file, input.attributes.size, progress_, *cancel, environment_.workers};
  ProgressLine line(input.path);
  Done done;
  done.shortage = runOnWorker(
      environment_, cancel, [&] { done.report = body(run); },
      [&] {
        if (environment_.console.showsProgress()) showProgress(line, input.attributes.size);
      });
  const auto& failure = done.report.writeFailure;
  if (!done.shortage && failure && platform::isShortage(failure->cause)) done.shortage = failure->cause;
  return done;
}

void EngineJob::showProgress(ProgressLine& line, std::uint64_t inputSize) {
  const auto now = ProgressLine::Clock::now();
  if (!line.isDue(now)) return;
  const Stage stage = progress_.stage();
  std::uint64_t done = written_;
  std::uint64_t all = bytesExpected_;
  if (stage == Stage::analysing || stage == Stage::none) {
    all = 0;  // over in a moment
  } else if (stage == Stage::scanning) {
    all = inputSize;
    done = static_cast<std::uint64_t>(static_cast<double>(inputSize) * progress_.share());
  }
  environment_.console.progress(line.text(now, stage, done, all), line.step());
}

void EngineJob::beginWriting(Stage stage, std::uint64_t all) {
  written_ = 0;
  bytesExpected_ = all;
  progress_.setStage(stage);
}

void EngineJob::warn(Outcome& outcome, const std::string& sentence) {
  environment_.console.warning(sentence);
  outcome.warnings.push_back(sentence);
}

void EngineJob::reportFindings(Outcome& outcome, const engine::RepairReport& report) {
  outcome.streams = report.streams;
  outcome.outputSize = report.bytes;  // Decision: command-line, Check tells what a repair would write

  const std::string input = printable(outcome.inputPath);
  const platform::FilmReport& kept = report.film;
  if (kept.pictures == 0 || kept.soundChunks == 0) {
    const bool neither = kept.pictures == kept.soundChunks;
    const std::string kind = neither ? "video and no audio" : kept.pictures == 0 ? "video" : "audio";
    warn(outcome, "no " + kind + " data was found in " + input + "; the repaired file has none to play.");
  }
  if (report.samplesLeftOut > 0) {
    warn(outcome, input + " holds more chunks of one kind than can be kept, " +
                      shownNumber(engine::kLargestSampleCount) + "; " + shownNumber(report.samplesLeftOut) +
                      " after them are left out.");
  }
  if (const std::uint64_t repeated = report.repeatedChunks; repeated > 0) {
    warn(outcome, "after 4 GiB the search met the beginning of " + input + " again: " + counted(repeated, "chunk") +
                      (repeated == 1 ? " was" : " were") + " found before, and the repaired file holds " +
                      (repeated == 1 ? "it" : "them") + " twice.");
  }
  if (report.bytes > engine::low32(report.bytes)) {
    warn(outcome, "the repaired file would be " + shownSize(report.bytes) +
                      ", and players find nothing beyond its first 4 GiB.");
  }
}

bool judgeInput(Outcome& outcome, const ChosenInput& input, const engine::RepairReport& report,
                const platform::CancelMark& cancel) {
  const std::string name = printable(input.path);
  outcome.readFailures = report.readFailures;
  if (cancel.abandoned()) {
    outcome.verdict = Verdict::stopped;
    outcome.reason = "stopped before " + name + " was done; nothing was written, and it is unchanged.";
    return true;
  }
  if (auto sentence = becameShorter(input)) {
    outcome.verdict = Verdict::failed;
    outcome.reason = std::move(*sentence);
    return true;
  }
  const engine::RunEnd end = report.end;
  if (end != engine::RunEnd::invalid && end != engine::RunEnd::notSupported) return false;
  if (outcome.readFailures.count > 0) {
    outcome.verdict = Verdict::failed;
    outcome.reason = name + " cannot be read at byte " + shownNumber(outcome.readFailures.firstOffset) + ": " +
                     outcome.readFailures.firstCause.message() + ".";
    return true;
  }
  outcome.verdict = end == engine::RunEnd::invalid ? Verdict::invalid : Verdict::notSupported;
  outcome.reason = whyRejected(input, report) + " It is unchanged.";
  return true;
}

}  // namespace zelvo::cli
