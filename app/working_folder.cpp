// The folder that rebuilt files lie in until they are saved:
// 1. Where it is, how much room it has and about how much a run needs stand on the first page while a film is chosen.
// 2. Without one that can be used nothing is started: an alert says so and offers to choose another.
// 3. Another one is chosen in a chooser of folders, and remembered.
// Decision: runs, The working folder can be chosen
#include "app/controller.h"
#include "app/texts.h"
#include "engine/globals.h"

namespace zelvo::app {

std::string Orlin_Repair_AVIAppDelegate::roomIn(const std::string& folder) {
  // About: the rebuilt file leaves out what is damaged, and has an index of its own.
  const std::string need = sizeWords(engine::inputfilesize);
  const auto space = services_.fileManager.freeSpace(folder);
  return space ? translated(texts::kRoom, {sizeWords(*space), need}) : translated(texts::kUnknownRoom, {need});
}

void Orlin_Repair_AVIAppDelegate::showWorkingFolder() {
  const auto& pair = scratchPath_.pair();
  outlets.own.workingfolderbutton.setHidden(pair && pair->isShared);
  if (!engine::path.get()) {
    outlets.own.workingfoldertext.setStringValue("");
    return;
  }
  if (!pair) {
    outlets.own.workingfoldertext.setStringValue(translated(texts::kNoWorkingFolder));
    return;
  }
  outlets.own.workingfoldertext.setStringValue(translated(texts::kWorkingFolder, {pair->folder, roomIn(pair->folder)}));
}

void Orlin_Repair_AVIAppDelegate::reportNoWorkingFolder() {
  showWorkingFolder();
  const platform::ScratchObstacle obstacle = services_.scratchPaths.obstacle();
  const int answer = services_.alertPanels.runAlertPanel(
      {.title = translated(texts::kNoWorkingFolderTitle),
       .message = translated(texts::kNoWorkingFolderMessage,
                             {obstacle.folder, obstacle.cause.message(), roomIn(obstacle.folder)}),
       .defaultButton = translated(texts::kChooseAnotherFolder),
       .alternateButton = translated(texts::kCancel),
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
  folders->setPrompt(translated(texts::kUseFolder));
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
      {.title = translated(texts::kFolderRefusedTitle),
       .message = translated(texts::kFolderRefusedMessage, {folder, services_.scratchPaths.obstacle().cause.message()}),
       .defaultButton = texts::kOk,
       .alternateButton = std::nullopt,
       .otherButton = std::nullopt});
}

}  // namespace zelvo::app
