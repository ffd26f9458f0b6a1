// Progress and completion: the animation that runs beside the writer, two routines that no flow calls, the job's own
// preview setter, and the buttons of the three sheets.
#include <algorithm>
#include <array>
#include <span>

#include "engine/globals.h"
#include "engine/repair_file.h"

namespace zelvo::engine {

using platform::logLine;

namespace {

/// Steps of the animation whose values are computed together.
constexpr std::size_t kStepsAtOnce = 8;
constexpr std::array<double, kStepsAtOnce> kOffsets{0, 1, 2, 3, 4, 5, 6, 7};

}  // namespace

void RepairFile::progressupdation(const Run& run) {
  outlets.textfield.setStringValue("Repairing the file..");
  // Deliberate: stored without a redraw request.
  controll->setProgressBarValue(0.0);
  const std::uint32_t blocks = numberofsectors;
  // Both products are unsigned 32-bit.
  const std::uint32_t steps = blocks * 10;
  const auto divisor = static_cast<double>(blocks * 2 * 5);
  const platform::CancelMark& mark = *run.cancel;
  ProgressRelay& relay = *controll;
  // One step, up to the stop button; false when a stop silences it.
  const auto take = [&](double percent) {
    if (stopflag || mark.cancelled()) [[unlikely]]
      return false;
    relay.setProgressBarValue(percent);
    updateProgressBar_.request();
    return true;
  };
  std::array<double, kStepsAtOnce> percents{};
  for (std::uint64_t first = 1; first <= steps; first += kStepsAtOnce) {
    // It stays stopped, so the rest of the count would do nothing.
    if (mark.cancelled()) return;
    // The divisions are the dearest part of a step, and a handful together cost little more than one.
    const auto firstAsDouble = static_cast<double>(first);  // counting on in doubles is exact below 2^53
    for (std::size_t k = 0; k < kStepsAtOnce; ++k) percents[k] = (firstAsDouble + kOffsets[k]) * 100.0 / divisor;
    const auto values = std::span(percents).first(std::min<std::uint64_t>(kStepsAtOnce, steps - first + 1));
    if (values.back() <= 80.0) {
      for (const double percent : values) take(percent);
      continue;
    }
    for (const double percent : values) {
      if (!take(percent)) continue;
      if (percent > 80.0) outlets.stopbutton.setEnabled(false);
      if (percent > 90.0) outlets.stopbutton.setEnabled(false);
    }
  }
  if (stopRequested(run)) return;
  endAndHide(outlets.stoprepairwindow);
  // Asked again when the sheet opens: a run that was stopped in between is not completed.
  // Decision: runs, The completed sheet is dropped after a stop
  services_.sheets.beginSheet(outlets.repaircompletedwindow, outlets.window,
                              [mark = run.cancel] { return !stopflag && !mark->cancelled(); });
}

void RepairFile::saveprogress() {
  for (std::uint32_t i = 0; i <= 1023; ++i) {
    controll->setProgressBarValue(i * 100.0 / 1024.0);
    updateSaveProgressBar_.request();
  }
}

void RepairFile::progressBar() {
  for (sector = 1; sector <= numberofsectors; sector = sector + 1) {
    controll->setProgressBarValue(sector * 100.0 / numberofsectors);
    updateProgressBar_.request();
  }
}

void RepairFile::setMovieView(const std::string&) {
  outlets.movieview1.setMovie(video1);
  logLine(services_.log, "ETTING PREVIEW");
}

void RepairFile::endAndHide(platform::Window& sheet) {
  services_.sheets.endSheet(sheet);
  sheet.orderOut();
}

void RepairFile::forgetPath() {
  path.set("");
  outlets.pathfield.setStringValue("");
  path.set(std::nullopt);
}

void RepairFile::repairCompletedOk(platform::Button*) {
  endAndHide(outlets.repaircompletedwindow);
  controll->setProgressBarValue(0.0);
  outlets.tabview2.selectNextTabViewItem();
  outlets.textfield.setStringValue("");
  logLine(services_.log, "Next tab view is set");
}

void RepairFile::fileNotSupportedokOk(platform::Button*) {
  endAndHide(outlets.filenotsupportedwindow);
  outlets.tabview2.selectPreviousTabViewItem();
  stopflag = true;
  forgetPath();
}

void RepairFile::invalidFileOk(platform::Button*) {
  endAndHide(outlets.invalidfilewindow);
  outlets.tabview2.selectPreviousTabViewItem();
  // Deliberate: unlike the not-supported sheet, this one leaves `stopflag` as it is.
  forgetPath();
}

}  // namespace zelvo::engine
