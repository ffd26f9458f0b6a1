// Choosing a name: it is taken as it was typed, also where a folder of that name exists.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>

#include "platform/qt/panel_texts.h"
#include "platform/qt/qt_file_panels.h"
#include "platform/qt/text.h"

namespace zelvo::platform::qt {

namespace {

constexpr std::size_t kLongestName = 255;  // bytes; what the usual file systems take

QString shownPath(const std::string& path) { return QFile::decodeName(QByteArray::fromStdString(path)); }

enum class Kind { nothing, folder, other };

Kind kindOf(const std::string& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) return Kind::nothing;
  return S_ISDIR(status.st_mode) ? Kind::folder : Kind::other;
}

bool canMakeEntriesIn(const std::string& folder) {
  return ::faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) == 0;
}

}  // namespace

void QtSavePanel::beginSheet(const std::optional<std::string>& directory, std::string_view name, Window&,
                             std::function<void(int answer)> completion) {
  filename_.reset();
  const QString prompt = shown(prompt_);
  FileChooser& chooser = shown_.begin(
      shared_from_this(),
      {.title = texts::saveTitle(),
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
  const bool canBeEntered = shown_.memory().answers(wanted) && kindOf(wanted) == Kind::folder;
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

QString QtSavePanel::objection(const std::string& path) {
  const std::string name = nameOf(path);
  if (name.empty() || name == "." || name == "..") return texts::nameMissing();
  if (name.size() > kLongestName) return texts::nameTooLong();
  const std::string folder = folderOf(path);
  if (kindOf(folder) == Kind::nothing) return texts::noSuchFolder(shownPath(folder));
  if (kindOf(folder) == Kind::other) return texts::isNoFolder(shownPath(folder));
  const Kind there = kindOf(path);
  const std::string& used = there == Kind::folder ? path : folder;
  if (there != Kind::other && !canMakeEntriesIn(used)) return texts::mayNotSave(shownPath(used));
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
