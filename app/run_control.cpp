// Starting, following and stopping a run:
// 1. `repair`: choose the scratch path (without any, nothing starts), prepare the preview hint, and with a file chosen
// go to page 2 and start.
// 2. The engine's progress is stored by its workers and shown by the main thread.
// 3. `stopRepairOk`: back to page 1; the run ends by itself, and the next one uses the other scratch path.
#include <chrono>

#include "app/controller.h"
#include "app/globals.h"
#include "app/texts.h"
#include "engine/globals.h"

namespace zelvo::app {

using platform::logLine;
using State = platform::Button::State;

void Orlin_Repair_AVIAppDelegate::repair(platform::Button* sender) {
  const std::optional<std::string> input = engine::path.get();
  const std::string scratch = scratchPath_.choose(negvalue, input);
  if (input && scratch.empty()) {
    reportNoWorkingFolder();
    return;
  }
  showWorkingFolder();  // another may have taken over
  mplayerpathinDownloadsfolder = services_.homeDirectory + std::string(texts::kPlayerInDownloads);
  logLine(services_.log, "MHD=%@", mplayerpathinDownloadsfolder);
  logLine(services_.log, "Homedirectory=%@", services_.homeDirectory);

  engine::internalpath.set(scratch);
  logLine(services_.log, "internalpath=%@", engine::internalpath.get());

  buildTipsLink();
  lookForPlayer();
  outlets.stopbutton.setEnabled(true);
  outlets.repairbutton.setImage(texts::kRepairNormal);

  if (input) {
    outlets.pathlabel.setStringValue(*input);
    sendermain = sender;
    outlets.progressbar.setDoubleValue(0.0);
    outlets.tabview.selectNextTabViewItem();
    startRun();
    outlets.repairbutton.setImage(texts::kRepairNormal);
  } else {
    services_.sheets.beginSheet(outlets.filenotselectedwindow, outlets.mainWindow);
  }

  outlets.previewbutton.setState(State::off);
  outlets.repairbutton.setState(State::on);
  if (input) {
    outlets.pathfield.setStringValue(*input);
    // Deliberate: the size of the file saved last, whatever is repaired now.
    outlets.durationfield.setIntegerValue(static_cast<std::int64_t>(oSize));
    if (!mythread) runDidNotStart();
  }
}

void Orlin_Repair_AVIAppDelegate::buildTipsLink() {
  string = platform::AttributedText{};
  string.append(hyperlinkFromString(texts::kClickHere, texts::kTipsLink));
}

void Orlin_Repair_AVIAppDelegate::lookForPlayer() {
  mplayerpathinApplicationsfolder = texts::kPlayerInApplications;
  existsinApplicationsfolder = services_.fileManager.exists(services_.paths.mapped(texts::kPlayerInApplications));
  existsinDownloadsfolder = services_.fileManager.exists(mplayerpathinDownloadsfolder);
  // Deliberate: a player in the Downloads folder counts as absent.
  if (existsinApplicationsfolder) {
    logLine(services_.log, "File exists");
    outlets.downloadmplayertext.setStringValue("");
  } else {
    logLine(services_.log, "File does not exist");
  }
  showHintFor(existsinApplicationsfolder);
  mplayerinstalled = existsinApplicationsfolder;
}

void Orlin_Repair_AVIAppDelegate::stopProgress(platform::Button*) {
  services_.sheets.beginSheet(outlets.stoprepairwindow, outlets.mainWindow);
}

void Orlin_Repair_AVIAppDelegate::stopit() {
  // Where there is no thread for it, this one asks: a stop must always be possible.
  if (!services_.workers.start(std::make_shared<platform::CancelMark>(), [this] { stopProgress(nullptr); })) {
    stopProgress(nullptr);
  }
}

void Orlin_Repair_AVIAppDelegate::stopRepairOk(platform::Button*) {
  runGuard_.hideProgress();
  shownRun_.reset();

  negvalue = negvalue == 0 ? 1 : 0;
  setProgressBarValue(0.0);
  outlets.textfield.setStringValue("");
  outlets.repairbutton.setState(State::on);
  endAndHide(outlets.stoprepairwindow);
  outlets.progressbar.setDoubleValue(0.0);
  outlets.tabview.selectFirstTabViewItem();
  engine::stopflag = true;
  forgetPath();
  outlets.repairbutton.setState(State::on);
  if (mythread) mythread->cancel();
  mythread.reset();
  logLine(services_.log, "Repair aborted");
}

void Orlin_Repair_AVIAppDelegate::stopRepairCancel(platform::Button*) { endAndHide(outlets.stoprepairwindow); }

void Orlin_Repair_AVIAppDelegate::fileNotSelectedOk(platform::Button*) { endAndHide(outlets.filenotselectedwindow); }

void Orlin_Repair_AVIAppDelegate::setProgressBarValue(double percent) {
  progressbarValue = percent;
  if (services_.mainQueue.isMainThread()) {
    outlets.repairbutton.setState(State::off);
    return;
  }
  // A worker says this ten times per KiB of input, so the main thread is asked once for many.
  // Decision: runs, A saving window still paints
  repairButtonOff_.request();
}

void Orlin_Repair_AVIAppDelegate::updateProgressBar() {
  outlets.progressbar.setDoubleValue(progressbarValue);
  outlets.repairbutton.setState(State::off);
}

void Orlin_Repair_AVIAppDelegate::updateSaveProgressBar() { outlets.progressbar.setDoubleValue(progressbarValue); }

void Orlin_Repair_AVIAppDelegate::updateSaveProgressBar2() { outlets.saveprogressbar.setDoubleValue(progressbarValue); }

void Orlin_Repair_AVIAppDelegate::updateProgressBarRetrieve(platform::Button*) {
  const std::uint64_t n = engine::inputfilesize / avi::InputFile::kBlockSize;
  for (std::uint64_t i = engine::globalsectorforsample; i <= n; ++i) {
    // An input below one KiB has no step to divide by. // Decision: runs, Retrieval below one KiB stays at 0
    setProgressBarValue(n == 0 ? 0.0 : static_cast<double>(i) * 100.0 / static_cast<double>(n));
    outlets.progressbar.setDoubleValue(progressbarValue);
  }
}

void Orlin_Repair_AVIAppDelegate::nexttab() {
  services_.clock.sleepFor(std::chrono::seconds(1));
  services_.mainQueue.performAndWait([this] { updateProgressBar(); });
}

void Orlin_Repair_AVIAppDelegate::copyfile() {
  services_.mainQueue.performAndWait([this] { tabset(); });
}

void Orlin_Repair_AVIAppDelegate::tabset() {}

void Orlin_Repair_AVIAppDelegate::methodForFileNotSupported() {
  outlets.progressbar.setDoubleValue(0.0);
  outlets.tabview.selectFirstTabViewItem();
  engine::stopflag = true;
  forgetPath();
}

void Orlin_Repair_AVIAppDelegate::forgetPath() {
  // Deliberate: the field is cleared first, then the path is forgotten.
  engine::path.set("");
  outlets.pathfield.setStringValue("");
  engine::path.set(std::nullopt);
  services_.films.choiceCleared();
}

void Orlin_Repair_AVIAppDelegate::endAndHide(platform::Window& sheet) {
  services_.sheets.endSheet(sheet);
  sheet.orderOut();
}

}  // namespace zelvo::app
