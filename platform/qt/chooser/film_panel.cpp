#include "platform/qt/chooser/film_panel.h"

#include <utility>

#include "platform/paths.h"
#include "platform/qt/chooser/folder_listing.h"
#include "platform/qt/deep_texts.h"
#include "platform/qt/drawing/text.h"
#include "platform/qt/texts.h"

namespace zelvo::platform::qt {

std::string openingFolder(const ChooserRequest& request, const FilePanelMemory& memory) {
  for (const std::optional<std::string>& wanted : {request.folder, memory.lastFolder}) {
    const bool isTold = wanted && !wanted->empty();
    if (isTold && memory.answers(*wanted) && memory.files->kindOf(*wanted) == PathKind::folder) return *wanted;
  }
  return videosOrHome();
}

void FilmPanel::begin(const ChooserRequest& request, std::function<void(std::vector<std::string>)> answer) {
  chosen_.clear();
  const bool isFolderWanted = kind_ == Kind::folder;
  FileChooser& chooser = shown_.begin(
      shared_from_this(),
      {.title = shown(request.title),
       .nameLabel = isFolderWanted ? texts::folderName() : texts::fileName(),
       .prompt = shown(request.prompt),
       .filter = {.files = !isFolderWanted, .extensions = {}},
       .canCreateDirectories = isFolderWanted},
      [this] { accept(); }, [this, answer = std::move(answer)](int) { answer(std::move(chosen_)); });
  FolderBrowser& browser = chooser.browser();
  if (kind_ == Kind::films) {
    browser.selectSeveral();
    chooser.setNote(texts::selectSeveral());
  }
  browser.setSelectionChanged([this] { showSelection(); });
  browser.setFolderChanged([this] {
    shown_.chooser().nameField().clear();
    shown_.chooser().nameField().setPlaceholderText({});
  });
  browser.enter(openingFolder(request, shown_.memory()));
  shown_.show();
}

void FilmPanel::showSelection() {
  FileChooser& chooser = shown_.chooser();
  chooser.say({});
  const std::vector<const FolderEntry*> all = chooser.browser().allSelected();
  chooser.nameField().setPlaceholderText(all.size() > 1 ? texts::filmsChosen(all.size()) : QString());
  if (all.empty()) return;
  const bool isOneOfTheKind = all.size() == 1 && all.front()->isFolder == (kind_ == Kind::folder);
  chooser.nameField().setText(isOneOfTheKind ? FolderModel::nameOf(*all.front()) : QString());
}

void FilmPanel::accept() {
  FileChooser& chooser = shown_.chooser();
  const std::string path = chooser.typedPath();
  if (path.empty()) return acceptNothingTyped();
  const bool isAnswered = shown_.memory().answers(path);
  if (!isAnswered) return kind_ == Kind::folder ? chooser.say(texts::doesNotAnswer()) : take({path}, folderOf(path));
  if (isFolder(path)) {
    if (kind_ == Kind::folder) return take({path}, path);
    chooser.browser().enter(path);
    return chooser.say(texts::isFolder());
  }
  if (const QString why = objection(path); !why.isEmpty()) return chooser.say(why);
  take({path}, folderOf(path));
}

void FilmPanel::acceptNothingTyped() {
  FileChooser& chooser = shown_.chooser();
  FolderBrowser& browser = chooser.browser();
  if (kind_ == Kind::folder) return take({browser.folder()}, browser.folder());
  const std::vector<const FolderEntry*> all = browser.allSelected();
  if (all.size() == 1 && all.front()->isFolder) return browser.enter(pathIn(browser.folder(), all.front()->name));
  std::vector<std::string> paths;
  for (const FolderEntry* const one : all) {
    if (one->isFolder) continue;
    paths.push_back(pathIn(browser.folder(), one->name));
    if (const QString why = objection(paths.back()); !why.isEmpty()) return chooser.say(why);
  }
  if (paths.empty()) return chooser.say(texts::nothingChosen());
  take(std::move(paths), browser.folder());
}

QString FilmPanel::objection(const std::string& path) const {
  const PathKind kind = files().kindOf(path);
  const QString name = shownPath(nameOf(path));
  if (kind == PathKind::noPermission) return texts::unreadableFile();
  if (kind == PathKind::nothing) return kind_ == Kind::folder ? texts::noSuchFolder(name) : texts::noSuchFile(name);
  if (kind_ == Kind::folder) return texts::isNoFolder(name);
  if (kind != PathKind::ordinaryFile) return texts::noOrdinaryFile();
  return files().mayRead(path) ? QString() : texts::unreadableFile();
}

void FilmPanel::take(std::vector<std::string> paths, const std::string& folder) {
  chosen_ = std::move(paths);
  shown_.memory().lastFolder = folder;
  shown_.finish(kPanelOk);
}

}  // namespace zelvo::platform::qt
