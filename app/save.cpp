// Saving the rebuilt file:
// 1. `save`: the panel. Its answer is a folder, which is made before the space is checked.
// 2. With space enough the progress worker starts and the copy is made here, on the main thread; otherwise an alert.
// 3. The buttons of the sheets.
#include <algorithm>

#include "app/controller.h"
#include "app/globals.h"
#include "app/texts.h"
#include "app/write_out.h"
#include "engine/globals.h"
#include "platform/same_file.h"

namespace zelvo::app {

using platform::logLine;

void Orlin_Repair_AVIAppDelegate::save(platform::Button*) {
  if (!waitForRebuiltFile()) return;
  logLine(services_.log, "Save");
  outlets.savebutton.setEnabled(false);
  savepanel = services_.panels.savePanel();
  if (!savepanel) {
    outlets.savebutton.setEnabled(true);
    return;
  }
  savepanel->setPrompt(texts::kSavePrompt);
  savepanel->setCanCreateDirectories(true);
  savepanel->setSavedFile(texts::kSavedFile);
  savepanel->setNameJudge([this](const std::string& path) { return judgeSaveName(path); });
  savepanel->beginSheet(std::nullopt, texts::kProposedName, outlets.mainWindow,
                        [this, shown = savepanel.get()](int answer) { savePanelDidEnd(*shown, answer, nullptr); });
}

platform::NameVerdict Orlin_Repair_AVIAppDelegate::judgeSaveName(const std::string& path) {
  using Kind = platform::NameVerdict::Kind;
  const std::string file = path + std::string(texts::kSavedFile);
  if (!placeAnswers(path)) return {};  // told when the panel has ended
  if (inputAnswers_ && platform::areOneFile(services_.fileManager, file, engine::path.get())) {
    return {Kind::refused, translated(texts::kWouldReplaceInput)};
  }
  const auto there = services_.fileManager.attributesFollowingLinks(path);
  if (there && there->kind != platform::FileAttributes::Kind::folder) {
    return {Kind::refused, translated(texts::kNameIsAFile)};
  }
  if (services_.fileManager.exists(file)) {
    return {Kind::ask, translated(texts::kReplaceSaved)};
  }
  return {};
}

bool Orlin_Repair_AVIAppDelegate::placeAnswers(const std::string& folder) {
  const auto answers = services_.pathProbe.ask(
      {folder, folder + std::string(texts::kSavedFile), engine::path.get().value_or(std::string("/"))});
  // A file on a disk that does not answer cannot be the file on one that does.
  inputAnswers_ = answers[2].answered;
  return answers[0].answered && answers[1].answered;
}

void Orlin_Repair_AVIAppDelegate::savePanelDidEnd(platform::SavePanel& panelThatEnded, int returnCode, void*) {
  const std::optional<std::string> chosen = panelThatEnded.filename();
  if (returnCode != platform::kPanelOk || !chosen) {
    outlets.savebutton.setEnabled(true);
    return;
  }
  panelThatEnded.endSheet();
  panelThatEnded.orderOut();
  if (!placeAnswers(*chosen)) {  // Decision: inventory, A child asks paths that may hang
    reportNotAnswering(translated(texts::kCannotSaveThereTitle));
    outlets.savebutton.setEnabled(true);
    return;
  }
  savepath = *chosen;
  outputFileManager = &services_.fileManager;
  // Deliberate: before the space is checked, and it stays. Where it cannot be made, no space is found.
  static_cast<void>(outputFileManager->createFolder(savepath));
  const std::uint64_t freeSize = outputFileManager->freeSpace(savepath).value_or(0);
  logLine(services_.log, "SIZE=%llu", freeSize);
  logLine(services_.log, "Save path=%@", savepath);
  const std::uint64_t size = sizeOf(unipath().value_or(""));
  if (freeSize < size) {
    services_.alertPanels.runAlertPanel({.title = texts::kNoSpaceTitle,
                                         .message = texts::kNoSpaceMessage,
                                         .defaultButton = texts::kOk,
                                         .alternateButton = std::nullopt,
                                         .otherButton = std::nullopt});
    return;  // Deliberate: the save button stays off.
  }
  oSize = size >> 20U;
  logLine(services_.log, "SIZE=%llu", freeSize);
  logLine(services_.log, "Save path=%@", savepath);
  if (saveCancel_) saveCancel_->cancel();
  saveCancel_ = std::make_shared<platform::CancelMark>();
  if (!services_.workers.start(saveCancel_, [this, cancel = saveCancel_] { savemethod(cancel); })) {
    // Without it the save would never be told complete.
    services_.alertPanels.runAlertPanel({.title = translated(texts::kWriteFailedTitle),
                                         .message = translated(texts::kSaveNotBegun, {translated(texts::kNoThread)}),
                                         .defaultButton = texts::kOk,
                                         .alternateButton = std::nullopt,
                                         .otherButton = std::nullopt});
    outlets.savebutton.setEnabled(true);
    return;
  }
  services_.mainQueue.performAndWait([this] { saveFile(); });
  outlets.durationfield.setIntegerValue(static_cast<std::int64_t>(oSize));
  outlets.main3.setEnabled(true);
  outlets.help3.setEnabled(true);
  outlets.previewbutton.setEnabled(true);
}

void Orlin_Repair_AVIAppDelegate::saveFile() {
  outlets.saveprogressbar.setDoubleValue(0.0);
  const std::uint64_t size = sizeOf(unipath().value_or(""));
  services_.sheets.beginSheet(outlets.saveprogresspanel, outlets.mainWindow);
  savingNameFromUser = savepath + std::string(texts::kSavedFile);
  logLine(services_.log, "Repaired file size=%llu", size);
  services_.application.closeInput();
  reportSaved(copyRebuiltFile(size));
  services_.application.openInput();  // before the sheets that the progress asked for open
}

// Decision: runs, An incomplete save says so
void Orlin_Repair_AVIAppDelegate::reportSaved(const std::optional<std::string>& incomplete) {
  outlets.own.savecompletedhead.setTitle(translated(incomplete ? texts::kSaveIncompleteTitle : texts::kSavedTitle));
  outlets.own.savecompletedhead.setSign(incomplete ? platform::SheetSign::warning : platform::SheetSign::done);
  outlets.own.savedsizelabel.setStringValue(translated(incomplete ? texts::kLastNotSaved : texts::kLastSaved));
  if (!incomplete) {
    outlets.savecompletedtext.setStringValue(translated(texts::kSaveComplete, {savingNameFromUser}));
    return;
  }
  const std::string text = translated(texts::kSaveIncomplete, {*incomplete});
  // On the sheet of the progress too, which stays alone when the progress has no step.
  outlets.own.savedbytestext.setStringValue(text);
  outlets.savecompletedtext.setStringValue(text);
}

std::optional<std::string> Orlin_Repair_AVIAppDelegate::copyRebuiltFile(std::uint64_t size) {
  const auto elsewhere = [this](const std::string& why) { return translated(texts::kSaveElsewhere, {why}); };
  const std::string rebuilt = unipath().value_or("");
  // The save panel refuses such a name; the file can still have come to stand there since.
  const bool isInput =
      inputAnswers_ && platform::areOneFile(services_.fileManager, savingNameFromUser, engine::path.get());
  if (isInput || platform::areOneFile(services_.fileManager, savingNameFromUser, rebuilt)) {
    return elsewhere(translated(texts::kWouldReplaceInput));
  }
  if (const auto error = services_.fileManager.createFile(savingNameFromUser)) return elsewhere(error.message() + ".");
  const auto from = services_.files.openForReading(rebuilt);
  const auto to = services_.files.openForWriting(savingNameFromUser);
  if (!to.file) return elsewhere(to.error.message() + ".");
  bool ended = false;
  const auto showCopied = [&](std::uint64_t bytes) {
    outlets.own.savedbytestext.setStringValue(translated(texts::kCopied, {sizeWords(bytes), sizeWords(size)}));
  };
  WriteOut out(*to.file, services_.workers);
  showCopied(0);
  const engine::PaddedCopyEnd copy = engine::paddedCopy(from.file.get(), *to.file, size, [&](std::uint64_t bytes) {
    out.wroteUpTo(bytes);
    showCopied(bytes);
    do {
      services_.application.deliverRedraws();
      ended = services_.application.terminationRequested();
    } while (!ended && !out.mayGoOn());
    return !ended;
  });
  if (!ended) outlets.own.savedbytestext.setStringValue(translated(texts::kTakingTheLastBytes));
  for (out.finish(); !out.isFlushed();) services_.application.deliverRedraws();
  const auto closed = to.file->close();
  if (copy.writeFailure) return elsewhere(copy.writeFailure->cause.message() + ".");
  if (out.error()) return elsewhere(out.error().message() + ".");
  if (closed) return elsewhere(closed.message() + ".");
  if (ended) return elsewhere(translated(texts::kProgramEnds));
  showCopied(size);
  return missingInCopy(size, from.error, copy);
}

std::optional<std::string> Orlin_Repair_AVIAppDelegate::missingInCopy(std::uint64_t size,
                                                                      const std::error_code& opening,
                                                                      const engine::PaddedCopyEnd& end) const {
  const auto again = [this](const std::string& why) { return translated(texts::kRepairAgain, {why}); };
  if (opening == std::errc::no_such_file_or_directory) return again(translated(texts::kRebuiltFileGone));
  const std::error_code cause = opening ? opening : end.readFailures.firstCause;
  const std::uint64_t cutOff = rebuiltSize_ > size ? rebuiltSize_ - size : 0;
  if (cause) {
    const std::string unread = sizeWords(std::max(end.missing, cutOff));
    return again(translated(texts::kRebuiltFileUnreadable, {unread, cause.message()}));
  }
  const std::uint64_t gone = end.missing + cutOff;
  if (gone > 0) return again(translated(texts::kRebuiltFileShort, {sizeWords(gone)}));
  return std::nullopt;
}

std::uint64_t Orlin_Repair_AVIAppDelegate::sizeOf(const std::string& file) {
  const auto attributes = services_.fileManager.attributes(file);
  return attributes ? attributes->size : 0;
}

void Orlin_Repair_AVIAppDelegate::stopSaving(platform::Button*) {
  logLine(services_.log, "Stoppped saving");  // Deliberate: three p's.
  services_.sheets.beginSheet(outlets.stopsavingwindow, outlets.mainWindow);
  outlets.stopsavingwindow.makeKeyAndOrderFront();
}

void Orlin_Repair_AVIAppDelegate::stopSavingOk(platform::Button*) {
  stopvalue = 1;
  if (saveCancel_) saveCancel_->cancel();
  endAndHide(outlets.saveprogresspanel);
  endAndHide(outlets.stopsavingwindow);
  // Deliberate: another name than the saved file's, and only logged; nothing is deleted.
  logLine(services_.log, "mutstr=%@", savepath + std::string(texts::kOtherSavedFile));
  outlets.savebutton.setEnabled(true);
}

void Orlin_Repair_AVIAppDelegate::continueSaving(platform::Button*) { endAndHide(outlets.stopsavingwindow); }

void Orlin_Repair_AVIAppDelegate::saveCompletedOk(platform::Button*) {
  endAndHide(outlets.savecompletedwindow);
  outlets.savebutton.setEnabled(true);
}

}  // namespace zelvo::app
