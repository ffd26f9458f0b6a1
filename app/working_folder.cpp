// The folder that rebuilt files lie in until they are saved:
// 1. Where it is, how much room it has and about how much a run needs stand on the first page while a film is chosen.
// 2. Without one that can be used nothing is started: an alert says so and offers to choose another.
// 3. Another one is chosen in a chooser of folders, and remembered.
// Decision: runs, The working folder can be chosen
#include "app/controller.h"
#include "app/shown_size.h"
#include "app/texts.h"
#include "engine/globals.h"

namespace zelvo::app {

std::string Orlin_Repair_AVIAppDelegate::roomIn(const std::string& folder) {
  // About: the rebuilt file leaves out what is damaged, and has an index of its own.
  const std::string need = "about " + shownSize(engine::inputfilesize) + " are needed";
  const auto space = services_.fileManager.freeSpace(folder);
  return space ? shownSize(*space) + " are free, " + need : need;
}

void Orlin_Repair_AVIAppDelegate::showWorkingFolder() {
  const auto& pair = scratchPath_.pair();
  outlets.own.workingfolderbutton.setHidden(pair && pair->isShared);
  if (!engine::path.get()) {
    outlets.own.workingfoldertext.setStringValue("");
    return;
  }
  if (!pair) {
    outlets.own.workingfoldertext.setStringValue(texts::kNoWorkingFolder);
    return;
  }
  outlets.own.workingfoldertext.setStringValue(std::string(texts::kWorkingFolder) + pair->folder + " (" +
                                               roomIn(pair->folder) + ")");
}

void Orlin_Repair_AVIAppDelegate::reportNoWorkingFolder() {
  showWorkingFolder();
  const platform::ScratchObstacle obstacle = services_.scratchPaths.obstacle();
  const int answer = services_.alertPanels.runAlertPanel(
      {.title = texts::kNoWorkingFolderTitle,
       .message = std::string(texts::kNoWorkingFolderMessage) + obstacle.folder + ". " + texts::kSystemSays +
                  obstacle.cause.message() + ". To repair this film, " + roomIn(obstacle.folder) + "." +
                  std::string(texts::kNothingStarted),
       .defaultButton = texts::kChooseAnotherFolder,
       .alternateButton = texts::kFinishingCancel,
       .otherButton = std::nullopt});
  if (answer == platform::kAlertDefault) chooseWorkingFolder(nullptr);
}

void Orlin_Repair_AVIAppDelegate::chooseWorkingFolder(platform::Button*) {
  const std::shared_ptr<platform::OpenPanel> folders = services_.panels.openPanel();
  if (!folders) return;
  folders->setCanCreateDirectories(true);
  folders->setCanChooseDirectories(true);
  folders->setCanChooseFiles(false);
  folders->setAllowsMultipleSelection(false);
  folders->setPrompt(texts::kUseFolder);
  folders->beginSheetModalForWindow(outlets.mainWindow, [this, shown = folders.get()](int answer) {
    const std::optional<std::string> folder = shown->filename();
    if (answer == platform::kPanelOk && folder) useWorkingFolder(*folder);
  });
}

void Orlin_Repair_AVIAppDelegate::useWorkingFolder(const std::string& folder) {
  const bool moved = scratchPath_.moveTo(folder);
  showWorkingFolder();
  if (moved) return;
  services_.alertPanels.runAlertPanel(
      {.title = texts::kFolderRefusedTitle,
       .message = folder + texts::kFolderRefusedMessage + services_.scratchPaths.obstacle().cause.message() + ".",
       .defaultButton = texts::kOk,
       .alternateButton = std::nullopt,
       .otherButton = std::nullopt});
}

}  // namespace zelvo::app
