// Saving the rebuilt file:
// 1. `save`: the panel. Its answer is a folder, which is made before the space is checked.
// 2. With space enough the progress worker starts and the copy is made here, on the main thread; otherwise an alert.
// 3. The buttons of the sheets.
#include "app/controller.h"
#include "app/globals.h"
#include "app/texts.h"
#include "engine/globals.h"
#include "engine/padded_copy.h"

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
  if (areOneFile(file, engine::path.get())) return {Kind::refused, texts::kWouldReplaceInput};
  const auto there = services_.fileManager.attributesFollowingLinks(path);
  if (there && there->kind != platform::FileAttributes::Kind::folder) {
    return {Kind::refused, "A file of that name is there already. Please choose another name."};
  }
  if (services_.fileManager.exists(file)) {
    return {Kind::ask, "That folder already holds a file repaired.avi. Replace it?"};
  }
  return {};
}

void Orlin_Repair_AVIAppDelegate::savePanelDidEnd(platform::SavePanel& panelThatEnded, int returnCode, void*) {
  const std::optional<std::string> chosen = panelThatEnded.filename();
  if (returnCode != platform::kPanelOk || !chosen) {
    outlets.savebutton.setEnabled(true);
    return;
  }
  panelThatEnded.endSheet();
  panelThatEnded.orderOut();
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
  services_.workers.start(saveCancel_, [this, cancel = saveCancel_] { savemethod(cancel); });
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
  const std::optional<std::string> incomplete = copyRebuiltFile(size);
  if (!incomplete) {
    outlets.savecompletedtext.setStringValue(std::string(texts::kSaveComplete) + savingNameFromUser + ".");
    return;
  }
  outlets.savecompletedtext.setStringValue(std::string(texts::kSaveIncomplete) + *incomplete +
                                           std::string(texts::kSaveElsewhere));
}

std::optional<std::string> Orlin_Repair_AVIAppDelegate::copyRebuiltFile(std::uint64_t size) {
  const std::string rebuilt = unipath().value_or("");
  // The save panel refuses such a name; the file can still have come to stand there since.
  if (areOneFile(savingNameFromUser, engine::path.get()) || areOneFile(savingNameFromUser, rebuilt)) {
    return texts::kWouldReplaceInput;
  }
  if (const auto error = services_.fileManager.createFile(savingNameFromUser)) return error.message() + ".";
  const auto from = services_.files.openForReading(rebuilt);
  const auto to = services_.files.openForWriting(savingNameFromUser);
  if (!to.file) return to.error.message() + ".";
  bool ended = false;
  const auto failure = engine::paddedCopy(from.file.get(), *to.file, size, [&](std::uint64_t) {
    services_.application.deliverRedraws();
    ended = services_.application.terminationRequested();
    return !ended;
  });
  const auto flushed = to.file->flush();
  const auto closed = to.file->close();
  if (failure) return failure->cause.message() + ".";
  if (flushed) return flushed.message() + ".";
  if (closed) return closed.message() + ".";
  if (ended) return "the program was asked to end.";
  return std::nullopt;
}

bool Orlin_Repair_AVIAppDelegate::areOneFile(const std::string& one, const std::optional<std::string>& other) {
  const auto first = services_.fileManager.attributesFollowingLinks(one);
  const auto second = services_.fileManager.attributesFollowingLinks(other.value_or(""));
  return first && second && first->device == second->device && first->identity == second->identity;
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
