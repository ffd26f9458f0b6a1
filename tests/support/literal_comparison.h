/// Runs the engine and the literal transcription on the same input and tells the first difference. Sizes and offsets
/// are in bytes; blocks are numbered from 1.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "engine/progress_relay.h"
#include "engine/repair_file.h"
#include "platform/headless/main_queue.h"
#include "platform/headless/screen.h"
#include "platform/headless/workers.h"
#include "tests/support/damage.h"
#include "tests/support/literal_headers.h"
#include "tests/support/literal_scan.h"
#include "tests/support/literal_writer.h"
#include "tests/support/memory_files.h"

namespace zelvo::tests {

/// Where both are stopped.
struct TwinStops {
  std::uint64_t duringBlock = 0;  ///< while this block of the scan is looked at; 0 for never
  bool beforeVideo = false;       ///< after the scan
  bool duringVideo = false;       ///< with the first byte that is read for the copy
  bool byCancelMark = false;      ///< through the run's own mark, not the global flag
};

/// Takes progress without keeping it.
class QuietRelay final : public engine::ProgressRelay {
 public:
  void setProgressBarValue(double) override {
    if (onStep) onStep();
  }
  void updateProgressBar() override {}
  void updateSaveProgressBar() override {}
  void updateSaveProgressBar2() override {}
  void setMovieView(const std::string&) override {}
  std::function<void()> onStep;
};

/// One job that serves every comparison, so that what one input leaves behind would show in the next. The globals are
/// reset when it is made and when it goes.
/// Thread: one.
class LiteralComparison {
 public:
  LiteralComparison();
  ~LiteralComparison();
  LiteralComparison(const LiteralComparison&) = delete;
  LiteralComparison& operator=(const LiteralComparison&) = delete;

  /// The scan, then the writer after made-up headers. Answers nothing when all agrees: counts, tables, the last size
  /// field, failed reads, layout and every byte of the output.
  [[nodiscard]] std::string scanAndWrite(const DamagedInput& input, const TwinStops& stops = {});

  /// The whole run: validity check, harvest, scan, writer.
  [[nodiscard]] std::string wholeRun(const DamagedInput& input);

  /// The whole run on a file that lies at "/in.avi" already.
  [[nodiscard]] std::string wholeRunOf(std::uint64_t claimedSize);

  /// Outputs larger than this are not written; chunks may overlap, so a small input can ask for gigabytes.
  std::uint64_t largestOutput = std::uint64_t{16} << 20U;
  /// See literal::ScanOptions.
  std::function<bool(std::uint32_t)> knownZero = [](std::uint32_t) { return false; };

  std::uint64_t outputsCompared = 0;
  std::uint64_t chunksCompared = 0;

  MemoryFiles files;
  platform::headless::Screen screen;
  platform::headless::HeadlessMainQueue queue;
  platform::headless::HeadlessWorkers workers;
  platform::headless::HeadlessSheets sheets{queue, nullptr};
  platform::headless::HeadlessMovieLoader movies;
  platform::headless::HeadlessLog log{nullptr};
  QuietRelay relay;
  std::unique_ptr<engine::RepairFile> job;
  literal::Tables tables;    ///< what the transcription found last
  literal::Headers headers;  ///< the same of the headers; kept from run to run, as the job's are

 private:
  class WatchedFile;

  void place(const DamagedInput& input);
  void giveHeaders();
  void beginStages(const DamagedInput& input);
  void stop(const TwinStops& stops);
  [[nodiscard]] literal::Tables scanLiterally(literal::Input& input, std::uint64_t claimedSize,
                                              const TwinStops& stops) const;
  [[nodiscard]] std::string tablesDiffer() const;
  [[nodiscard]] std::string layoutDiffers(const literal::Layout& layout) const;
  [[nodiscard]] std::string outputsDiffer();
  [[nodiscard]] std::string headersDiffer() const;
  [[nodiscard]] std::string failuresDiffer(const literal::Input& input) const;
  [[nodiscard]] std::string writeBoth(literal::Input& input, const TwinStops& stops, bool alreadyStopped);

  std::shared_ptr<engine::Run> run_;
  std::shared_ptr<std::function<void()>> onRead_;  ///< told of every read of the engine
};

}  // namespace zelvo::tests
