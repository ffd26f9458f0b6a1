// Start-up and quit:
// 1. The interface is loaded: the controller gets its outlets and makes the repair job.
// 2. `init`, then `awakeFromNib`; the window is shown; `applicationDidFinishLaunching`.
// 3. Closing the window asks, then ends the program; a termination request ends it without asking.
#include <chrono>
#include <utility>

#include "app/controller.h"
#include "app/globals.h"
#include "app/texts.h"
#include "engine/globals.h"

namespace zelvo::app {

Orlin_Repair_AVIAppDelegate::Orlin_Repair_AVIAppDelegate(const AppServices& services,
                                                         const platform::ControllerOutlets& controllerOutlets,
                                                         const platform::JobOutlets& jobOutlets)
    : outlets(controllerOutlets),
      services_(services),
      window_(&outlets.mainWindow),
      countedFiles_(services_.files),
      runGuard_(*this, services_.sheets),
      sheetsOfRuns_(runGuard_, jobOutlets.invalidfilewindow,
                    [this] {
                      if (runAtWork_ != nullptr) explainInvalidInput(*runAtWork_);
                    }),
      scratchPath_(services_.scratchPaths),
      // A stop leaves the button on, whatever was asked for before it.
      repairButtonOff_(services_.mainQueue,
                       [this] {
                         if (!engine::stopflag) outlets.repairbutton.setState(platform::Button::State::off);
                       }),
      updateSaveProgressBar2_(services_.mainQueue, [this] { updateSaveProgressBar2(); }),
      saveProgressBar_(services_.mainQueue, [this] { outlets.saveprogressbar.setDoubleValue(saveProgress_); }) {
  repair1 = std::make_unique<engine::RepairFile>(
      engine::RepairServices{countedFiles_, services_.fileManager, services_.movies, services_.workers,
                             services_.mainQueue, sheetsOfRuns_, services_.log},
      jobOutlets);
  repair1->controll = &runGuard_;
}

Orlin_Repair_AVIAppDelegate::~Orlin_Repair_AVIAppDelegate() { applicationWillTerminate(); }

void Orlin_Repair_AVIAppDelegate::init() {
  // Deliberate: a thread before any that works, so that threads are ready by then.
  services_.workers.start(std::make_shared<platform::CancelMark>(), [this] { emptyThread(); });
  responseFindMedia.clear();
  finalArrayForVolumes.clear();
  scanInfoOrSavingNotProcessing = true;
}

void Orlin_Repair_AVIAppDelegate::emptyThread() {}

void Orlin_Repair_AVIAppDelegate::awakeFromNib() {
  negvalue = 0;
  makeMainWindowFrontThread();
  services_.application.setDelegate(outlets.mainWindow, this);
  // Deliberate: once before and once after the delegate is set.
  makeMainWindowFrontThread();
}

void Orlin_Repair_AVIAppDelegate::makeMainWindowFrontThread() {
  services_.clock.sleepFor(std::chrono::milliseconds(0));
  services_.mainQueue.performAndWait([this] { makeMainWindowFront(); });
}

void Orlin_Repair_AVIAppDelegate::makeMainWindowFront() {
  for (const platform::LaunchedApplication& one : services_.workspace.launchedApplications()) {
    if (one.bundleIdentifier != texts::kBundleIdentifier) continue;
    if (const auto process = services_.workspace.processForIdentifier(one.processIdentifier.value_or(0))) {
      services_.workspace.setFrontProcess(*process);
    }
    return;
  }
}

void Orlin_Repair_AVIAppDelegate::applicationDidFinishLaunching() {
  checkForUpdateClicked(nullptr);
  outlets.savebutton.setEnabled(true);
  negvalue = 1;
  outlets.progressbar.setUsesThreadedAnimation(true);
  outlets.saveprogressbar.setUsesThreadedAnimation(true);
  installTrackingAreas();
}

bool Orlin_Repair_AVIAppDelegate::windowShouldClose() {
  if (!services_.films.mayClose()) return false;
  result = services_.alertPanels.runAlertPanel({.title = texts::kQuitTitle,
                                                .message = texts::kQuitMessage,
                                                .defaultButton = texts::kQuitCancel,
                                                .alternateButton = texts::kQuitYes,
                                                .otherButton = std::nullopt});
  return result != platform::kAlertDefault;
}

void Orlin_Repair_AVIAppDelegate::windowWillClose() { services_.application.terminate(); }

void Orlin_Repair_AVIAppDelegate::terminateApplication(platform::Button*) { terminateApp(); }

void Orlin_Repair_AVIAppDelegate::terminateApp() { services_.application.terminate(); }

void Orlin_Repair_AVIAppDelegate::applicationWillTerminate() {
  if (std::exchange(terminated_, true)) return;
  services_.application.setDelegate(outlets.mainWindow, nullptr);
  services_.notifications.removeObserver(this);
  services_.films.programEnds();
  outlets.own.runprogress.follow({});
  runGuard_.close();
  for (const auto& one : runs_) {
    if (const auto run = one.lock()) run->cancel->abandon();
  }
  if (saveCancel_) saveCancel_->cancel();
  services_.clock.endSleeps();
  services_.mainQueue.endWaits();
  services_.workers.joinAll();
  for (const std::string& scratch : scratchFiles_.get()) removeScratch(scratch);
}

}  // namespace zelvo::app
