// Choosing what exists: what is typed or selected is looked at when the user wants to end with it, and only then.
#include <QFile>

#include "platform/paths.h"
#include "platform/qt/chooser/file_panels.h"
#include "platform/qt/chooser/folder_listing.h"
#include "platform/qt/drawing/text.h"
#include "platform/qt/texts.h"

namespace zelvo::platform::qt {

void QtOpenPanel::beginSheetModalForWindow(Window&, std::function<void(int answer)> completion) {
  filename_.reset();
  const QString prompt = shown(prompt_);
  FileChooser& chooser = shown_.begin(
      shared_from_this(),
      {.title = canChooseFiles_ ? texts::chooseFileHeading() : texts::chooseFolderHeading(),
       .nameLabel = canChooseFiles_ ? texts::fileName() : texts::folderName(),
       .prompt = prompt.isEmpty() ? texts::open() : prompt,
       .filter = {.files = canChooseFiles_, .extensions = extensions_},
       .canCreateDirectories = canCreateDirectories_},
      [this] { accept(); }, std::move(completion));
  FolderBrowser& browser = chooser.browser();
  browser.setSelectionChanged([this] {
    FileChooser& changed = shown_.chooser();
    changed.say({});
    const FolderEntry* const selected = changed.browser().selected();
    if (selected == nullptr) return;
    const bool canBeChosen = selected->isFolder ? canChooseDirectories_ : canChooseFiles_;
    changed.nameField().setText(canBeChosen ? FolderModel::nameOf(*selected) : QString());
  });
  browser.setFolderChanged([this] { shown_.chooser().nameField().clear(); });
  const std::string last = shown_.memory().lastFolder.value_or("");
  const bool canBeEntered = !last.empty() && shown_.memory().answers(last) && isFolder(last);
  browser.enter(canBeEntered ? last : videosOrHome());
  shown_.show();
}

void QtOpenPanel::accept() {
  FileChooser& chooser = shown_.chooser();
  const std::string path = chooser.typedPath();
  if (path.empty()) return acceptNothingTyped();
  if (!shown_.memory().answers(path)) return takeUnseen(path);
  if (isFolder(path)) return canChooseDirectories_ ? take(path) : enterInstead(path);
  if (const QString why = objection(path); !why.isEmpty()) return chooser.say(why);
  take(path);
}

void QtOpenPanel::acceptNothingTyped() {
  FileChooser& chooser = shown_.chooser();
  FolderBrowser& browser = chooser.browser();
  if (canChooseDirectories_) return take(browser.folder());
  const FolderEntry* const selected = browser.selected();
  if (selected != nullptr && selected->isFolder) return browser.enter(pathIn(browser.folder(), selected->name));
  chooser.say(texts::nothingChosen());
}

void QtOpenPanel::enterInstead(const std::string& folder) {
  FileChooser& chooser = shown_.chooser();
  chooser.browser().enter(folder);
  chooser.say(texts::isFolder());
}

QString QtOpenPanel::objection(const std::string& path) const {
  const PathKind kind = files().kindOf(path);
  const QString name = shownPath(nameOf(path));
  if (kind == PathKind::noPermission) return texts::unreadableFile();
  if (kind == PathKind::nothing) return texts::noSuchFile(name);
  if (!canChooseFiles_) return texts::isNoFolder(name);
  if (!hasAllowedFileType(path, extensions_)) {
    QStringList all;
    for (const std::string& one : extensions_) all.push_back(shown(one));
    return texts::wrongExtension(all);
  }
  if (kind != PathKind::ordinaryFile) return texts::noOrdinaryFile();
  return files().mayRead(path) ? QString() : texts::unreadableFile();
}

void QtOpenPanel::takeUnseen(const std::string& path) {
  if (!canChooseFiles_ || !hasAllowedFileType(path, extensions_)) return shown_.chooser().say(texts::doesNotAnswer());
  takeIn(path, folderOf(path));
}

void QtOpenPanel::take(const std::string& path) { takeIn(path, isFolder(path) ? path : folderOf(path)); }

void QtOpenPanel::takeIn(const std::string& path, const std::string& folder) {
  FilePanelMemory& memory = shown_.memory();
  filename_ = path;
  memory.lastFolder = folder;
  if (canChooseFiles_) memory.inputFolder = memory.lastFolder;
  shown_.finish(kPanelOk);
}

}  // namespace zelvo::platform::qt
