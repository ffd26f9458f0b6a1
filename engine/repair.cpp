// The run, whoever watches it:
// 1. Validity check.
// 2. Header harvest.
// 3. Sample scan, and what of the film it has kept.
// 4. The rebuilt file.
#include "engine/repair.h"

#include <algorithm>
#include <array>
#include <optional>

#include "avi/byte_order.h"
#include "avi/codec_text.h"
#include "avi/input_file.h"
#include "engine/repair_stages.h"
#include "engine/repeated_entries.h"
#include "platform/ran_out.h"

namespace zelvo::engine {

using platform::logLine;

namespace {

/// Only beyond this size can an offset come twice.
constexpr std::uint64_t kOffsetsWrap = std::uint64_t{1} << 32U;

/// wFormatTag. It is read where it lies when the payload is too large to be held.
std::optional<std::uint32_t> formatTagOf(const FormatPayload& format, avi::InputFile& input) {
  std::array<std::byte, 2> tag{};
  if (format.held.size() >= tag.size()) {
    std::copy_n(format.held.begin(), tag.size(), tag.begin());
  } else if (format.rangeSize < tag.size() || input.tryRead(format.rangeOffset, tag).count < tag.size()) {
    return std::nullopt;
  }
  return avi::loadLittleEndian16(tag);
}

class Work {
 public:
  explicit Work(const RepairRun& run)
      : input_(run.input), run_{input_, run.inputSize, run.observer, run.cancel, run.workers} {}

  /// False when the run ends with it.
  [[nodiscard]] bool recognise() {
    if (checkValidity(state_, run_)) return true;
    report_.end = RunEnd::invalid;
    return false;
  }

  /// False when the run ends with it.
  [[nodiscard]] bool search() {
    if (!harvestHeaders(state_, run_)) {
      report_.end = RunEnd::notSupported;
      report_.rejection = rejectionOf(state_, run_);
      return false;
    }
    scanSamples(state_, run_);
    if (!run_.stopRequested()) {
      findFilmRange(state_, run_);
      report_.film = filmReportOf(state_, run_);
    }
    describeStreams();
    return true;
  }

  void construct(OutputMaker& output) {
    report_.end = constructRebuiltFile(state_, run_, output);
    report_.bytes = state_.outputsize;
    // What the copy could not read is known only now.
    if (report_.end == RunEnd::rebuilt && !run_.stopRequested()) report_.film = filmReportOf(state_, run_);
  }

  void weigh() {
    report_.end = RunEnd::searched;
    report_.bytes = bytesToWrite(state_, run_);
  }

  [[nodiscard]] platform::Log& log() const { return run_.observer.log(); }
  void ranOut(std::error_code shortage) { keepFailure(state_, log(), run_.cancel, {0, shortage}); }

  [[nodiscard]] RepairReport report() {
    report_.headers = {.main = state_.avihscaleratedatafound,
                       .videoHeader = state_.videocodecfound,
                       .videoFormat = state_.videostrfcodecfound,
                       .audioHeader = state_.audiocodecfound,
                       .audioFormat = state_.audiostrfcodecfound};
    report_.readFailures = input_.failures();
    report_.writeFailure = state_.writeFailure.get();
    return std::move(report_);
  }

 private:
  void describeStreams() {
    const auto payloads = [](const SampleTable& sizes, std::uint64_t count) {
      std::uint64_t sum = 0;
      for (std::uint64_t chunk = 1; chunk <= count; ++chunk) sum += sizes[chunk];
      return sum;
    };
    report_.streams.push_back({.kind = StreamKind::video,
                               .codec = state_.videocodecstring.get().value_or(""),
                               .formatTag = std::nullopt,
                               .chunks = state_.videosamplecount,
                               .bytes = payloads(state_.videosamplesizearray, state_.videosamplecount)});
    report_.streams.push_back({.kind = StreamKind::audio,
                               .codec = audioCodecText(state_.audiocodec),
                               .formatTag = formatTagOf(state_.audiostrfdata, input_),
                               .chunks = state_.audiosamplecount,
                               .bytes = payloads(state_.audiosamplesizearray, state_.audiosamplecount)});
    report_.samplesLeftOut = state_.samplesleftout;
    if (run_.inputfilesize < kOffsetsWrap) return;
    report_.repeatedChunks = repeatedEntries(state_.videosampleoffsetarray, state_.videosamplecount) +
                             repeatedEntries(state_.audiosampleoffsetarray, state_.audiosamplecount);
  }

  avi::InputFile input_;
  RepairState state_;
  RepairContext run_;
  RepairReport report_;
};

}  // namespace

void logReadFailures(platform::Log& log, const avi::ReadFailures& failures) {
  if (failures.count == 0) return;
  logLine(log, "Reads failed=%llu, the first at %llu: %@", failures.count, failures.firstOffset,
          failures.firstCause.message());
}

RepairReport repair(const RepairRun& run, OutputMaker& output) {
  Work work(run);
  const std::error_code shortage = platform::ranOut([&] {
    if (!work.recognise()) {
      logLine(work.log(), "Val==No");
    } else if (work.search()) {
      work.construct(output);
    }
  });
  if (shortage) work.ranOut(shortage);
  RepairReport report = work.report();
  logReadFailures(work.log(), report.readFailures);
  return report;
}

RepairReport check(const RepairRun& run) {
  Work work(run);
  const std::error_code shortage = platform::ranOut([&] {
    if (work.recognise() && work.search()) work.weigh();
  });
  if (shortage) work.ranOut(shortage);
  return work.report();
}

}  // namespace zelvo::engine
