// Choosing a name: it is taken as it was typed, also where a folder of that name exists.
#include <QFile>

#include "platform/paths.h"
#include "platform/qt/chooser/file_panels.h"
#include "platform/qt/chooser/folder_listing.h"
#include "platform/qt/drawing/text.h"
#include "platform/qt/texts.h"

namespace zelvo::platform::qt {

namespace {

constexpr std::size_t kLongestName = 255;  // bytes; what the usual file systems take

bool isThere(PathKind kind) { return kind != PathKind::nothing && kind != PathKind::noPermission; }

}  // namespace

void QtSavePanel::beginSheet(const std::optional<std::string>& directory, std::string_view name, Window&,
                             std::function<void(int answer)> completion) {
  filename_.reset();
  const QString prompt = shown(prompt_);
  FileChooser& chooser = shown_.begin(
      shared_from_this(),
      {.title = texts::saveHeading(),
       .nameLabel = texts::folderName(),
       .prompt = prompt.isEmpty() ? texts::saveHere() : prompt,
       .filter = {.files = false, .extensions = {}},
       .canCreateDirectories = canCreateDirectories_},
      [this] { accept(); }, std::move(completion));
  FolderBrowser& browser = chooser.browser();
  browser.setSelectionChanged([this] { shown_.chooser().say({}); });
  browser.setFolderChanged([this] {
    shown_.chooser().say({});
    showWhere();
  });
  QObject::connect(&chooser.nameField(), &QLineEdit::textChanged, &chooser, [this] { showWhere(); });
  const std::string wanted = directory ? *directory : shown_.memory().inputFolder.value_or("");
  const bool canBeEntered =
      shown_.memory().answers(wanted) && shown_.memory().files->kindOf(wanted) == PathKind::folder;
  browser.enter(canBeEntered ? wanted : videosOrHome());
  chooser.nameField().setText(shown(name));
  chooser.nameField().selectAll();
  shown_.show();
}

std::string QtSavePanel::wantedPath() const {
  std::string path = shown_.chooser().typedPath();
  while (path.ends_with('/')) path.pop_back();
  return path;
}

void QtSavePanel::showWhere() {
  const std::string path = wantedPath();
  shown_.chooser().setNote(path.empty() ? QString() : texts::savesTo(shownPath(path + savedFile_)));
}

QString QtSavePanel::objection(const std::string& path) const {
  const std::string name = nameOf(path);
  if (name.empty() || name == "." || name == "..") return texts::nameMissing();
  if (name.size() > kLongestName) return texts::nameTooLong();
  const std::string folder = folderOf(path);
  ChooserFiles& files = *shown_.memory().files;
  const PathKind kind = files.kindOf(folder);
  if (!isThere(kind)) return texts::noSuchFolder(shownPath(folder));
  if (kind != PathKind::folder) return texts::isNoFolder(shownPath(folder));
  const PathKind there = files.kindOf(path);
  const std::string& used = there == PathKind::folder ? path : folder;
  const bool isFile = isThere(there) && there != PathKind::folder;
  if (!isFile && !files.mayMakeEntriesIn(used)) return texts::mayNotSave(shownPath(used));
  return {};
}

void QtSavePanel::accept() {
  const std::shared_ptr<QtSavePanel> self = shared_from_this();  // a question may outlast whoever holds the panel
  const std::string path = wantedPath();
  if (!shown_.memory().answers(path)) {
    filename_ = path;
    return shown_.finish(kPanelOk);
  }
  if (const QString why = objection(path); !why.isEmpty()) return shown_.chooser().say(why);
  const NameVerdict verdict = judge_ ? judge_(path) : NameVerdict{};
  if (verdict.kind == NameVerdict::Kind::refused) return shown_.chooser().say(shown(verdict.why));
  if (verdict.kind == NameVerdict::Kind::ask) {
    const int answer = shown_.memory().alerts.runAlertPanel({.title = plain(texts::replaceTitle()),
                                                             .message = verdict.why,
                                                             .defaultButton = plain(texts::cancel()),
                                                             .alternateButton = plain(texts::replace()),
                                                             .otherButton = std::nullopt});
    if (answer != kAlertAlternate || !shown_.isShown()) return;
  }
  filename_ = path;
  shown_.finish(kPanelOk);
}

}  // namespace zelvo::platform::qt
