// Choosing the input:
// 1. The chooser slides down over the window; only AVI files can be picked.
// 2. Its answer sets the input's path and size, shows the path and clears the stop flag. Nothing is read.
#include "app/controller.h"
#include "app/texts.h"
#include "avi/film_length.h"
#include "avi/name_endings.h"
#include "engine/globals.h"

namespace zelvo::app {

using platform::logLine;

namespace {

/// Choosers within choosers, each asked for because the one before could not be made. Calls under way are counted, and
/// the call that would be one more returns at once: where no panel can ever be made, the stack would end otherwise.
constexpr int kMaxChoosers = 100;

std::vector<std::string> allowedFileTypes() { return {avi::kNameEndings.begin(), avi::kNameEndings.end()}; }

}  // namespace

void Orlin_Repair_AVIAppDelegate::openFinderWindow(platform::Button*) {
  if (choosersAsked_ == kMaxChoosers) return;
  ++choosersAsked_;
  std::vector<std::string> extensions = allowedFileTypes();
  // Deliberate: "nil" is logged when there is a name.
  if (const auto fresh = services_.panels.openPanel(); fresh && fresh->filename().value_or("") != "") {
    logLine(services_.log, "nil");
  }
  panel = services_.panels.openPanel();
  // Deliberate: one failure leads to one call more, after which this one goes on.
  if (!panel) openFinderWindow(nullptr);
  --choosersAsked_;

  const std::shared_ptr<platform::OpenPanel> chooser = services_.panels.openPanel();
  if (!chooser) return;
  chooser->setAllowedFileTypes(std::move(extensions));
  chooser->setTreatsFilePackagesAsDirectories(false);
  chooser->setExtensionHidden(false);
  chooser->setCanChooseDirectories(false);
  chooser->setCanChooseFiles(true);
  chooser->setAllowsMultipleSelection(false);
  chooser->beginSheetModalForWindow(
      *window(), [this, shown = chooser.get()](int answer) { openPanelEnded(*shown, answer, false); });
}

void Orlin_Repair_AVIAppDelegate::openPanelDidEnd(platform::OpenPanel& openPanel, int returnCode, void*) {
  openPanelEnded(openPanel, returnCode, true);
}

void Orlin_Repair_AVIAppDelegate::openPanelEnded(const platform::OpenPanel& openPanel, int returnCode, bool logsSize) {
  const std::optional<std::string> file = openPanel.filename();
  if (returnCode != platform::kPanelOk || !file) return;
  fileChosen(*file, logsSize);
}

bool Orlin_Repair_AVIAppDelegate::chooseFile(const std::string& file) {
  if (!platform::hasAllowedFileType(file, allowedFileTypes())) return false;
  if (shownRun_ && shownRun_->atWork) return false;
  fileChosen(file, false);
  return true;
}

void Orlin_Repair_AVIAppDelegate::offerFile(const std::string& file) {
  if (!services_.pathProbe.answers({file})) return reportNotAnswering(translated(texts::kCannotBeChosenTitle));
  const auto there = services_.fileManager.attributesFollowingLinks(file);
  const bool isFile = there && there->kind == platform::FileAttributes::Kind::regularFile;
  if (isFile && chooseFile(file)) return;
  services_.alertPanels.runAlertPanel(
      {.title = translated(texts::kCannotBeChosenTitle),
       .message = translated(isFile ? texts::kNotAFilmMessage : texts::kNoSuchFilmMessage),
       .defaultButton = texts::kOk,
       .alternateButton = std::nullopt,
       .otherButton = std::nullopt});
}

void Orlin_Repair_AVIAppDelegate::reportNotAnswering(std::string_view title) {
  services_.alertPanels.runAlertPanel({.title = std::string(title),
                                       .message = translated(texts::kNotAnsweringMessage),
                                       .defaultButton = texts::kOk,
                                       .alternateButton = std::nullopt,
                                       .otherButton = std::nullopt});
}

void Orlin_Repair_AVIAppDelegate::fileChosen(const std::string& file, bool logsSize) {
  engine::path.set(file);
  inputFileManager = &services_.fileManager;
  // Deliberate: a link's own size is taken, and 0 where nothing can be looked at, or only for ever.
  // Decision: inventory, A child asks paths that may hang
  const bool answers = services_.pathProbe.answers({file});
  const auto attributes = answers ? inputFileManager->attributes(file) : std::nullopt;
  engine::inputfilesize = attributes ? attributes->size : 0;
  if (logsSize) logLine(services_.log, "FileSize=%llu", std::uint64_t{engine::inputfilesize});
  outlets.textfield.setStringValue(file);
  outlets.pathfield.setStringValue(file);
  engine::stopflag = false;
  outlets.own.chosenfilm.show(
      {.path = file, .size = engine::inputfilesize, .readLength = [open = services_.openUnattended, file] {
         const auto opened = open(file);
         return opened.file ? avi::filmLength(*opened.file) : std::nullopt;
       }});
  runGuard_.choiceMade();
  showWorkingFolder();
  services_.films.filmChosen(file);
}

}  // namespace zelvo::app
