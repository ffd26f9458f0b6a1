#include "cli/job_progress.h"

#include <algorithm>
#include <utility>

#include "cli/shown_text.h"
#include "platform/paths.h"

namespace zelvo::cli {

namespace {

constexpr std::size_t kLongestShownName = 28;

std::string_view stageName(Stage stage) {
  switch (stage) {
    case Stage::analysing:
      return "reading headers";
    case Stage::scanning:
      return "searching";
    case Stage::weighing:
      return "weighing what was found";
    case Stage::writing:
      return "writing";
    case Stage::copying:
      return "copying";
    case Stage::flushing:
      return "waiting for the disk";
    case Stage::inspecting:
      return "reading";
    case Stage::playing:
      return "decoding";
    case Stage::none:
      break;
  }
  return "opening";
}

std::string megabytes(std::uint64_t bytes) { return fixedPoint(static_cast<double>(bytes) / 1e6, 1); }

}  // namespace

void RunProgress::stage(engine::RepairStage stage) {
  switch (stage) {
    case engine::RepairStage::recognising:
      stage_ = Stage::none;
      break;
    case engine::RepairStage::readingHeaders:
      stage_ = Stage::analysing;
      break;
    case engine::RepairStage::searching:
      stage_ = Stage::scanning;
      break;
    case engine::RepairStage::writing:
      stage_ = Stage::writing;
      break;
  }
}

double RunProgress::share() const {
  const std::uint64_t all = all_;
  if (all == 0) return 0;
  return std::min(1.0, static_cast<double>(done_) / static_cast<double>(all));
}

std::string ProgressLine::text(Clock::time_point now, Stage stage, std::uint64_t done, std::uint64_t all) {
  last_ = now;
  if (stage != stage_) {
    stage_ = stage;
    stageBegan_ = now;
  }
  std::string name = printable(name_);
  // Of a long path the end tells more.
  if (name.size() > kLongestShownName) name = printable(platform::nameOf(name_));
  std::string line = shortened(std::move(name), kLongestShownName) + ": " + std::string(stageName(stage));
  step_ = {std::string(stageName(stage)), 0, 0};
  if (all == 0 || stage == Stage::flushing) return line;
  done = std::min(done, all);
  step_.done = done;
  step_.all = all;
  const double seconds = std::chrono::duration<double>(now - stageBegan_).count();
  line += ", " + fixedPoint(100.0 * static_cast<double>(done) / static_cast<double>(all), 0) + " %, " +
          megabytes(done) + " of " + megabytes(all) + " MB";
  if (seconds > 0.2) line += ", " + fixedPoint(static_cast<double>(done) / 1e6 / seconds, 0) + " MB/s";
  return line;
}

}  // namespace zelvo::cli
