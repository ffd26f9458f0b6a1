#include "platform/qt/chooser/new_file_panel.h"

#include <utility>

#include "platform/paths.h"
#include "platform/qt/chooser/film_panel.h"
#include "platform/qt/chooser/folder_listing.h"
#include "platform/qt/deep_texts.h"
#include "platform/qt/drawing/text.h"
#include "platform/qt/texts.h"

namespace zelvo::platform::qt {

namespace {

constexpr std::size_t kLongestFileName = 255;  // bytes; what the usual file systems take

/// Selects the name without its ending, which most people keep.
void selectStem(QLineEdit& field) {
  const qsizetype dot = field.text().lastIndexOf(QLatin1Char('.'));
  if (dot > 0) {
    field.setSelection(0, static_cast<int>(dot));
  } else {
    field.selectAll();
  }
}

}  // namespace

void NewFilePanel::begin(const NewFileRequest& request, std::function<void(std::optional<NewFileAnswer>)> answer) {
  chosen_.reset();
  refusal_ = request.refusal;
  FileChooser& chooser = shown_.begin(
      shared_from_this(),
      {.title = shown(request.chooser.title),
       .nameLabel = texts::fileName(),
       .prompt = shown(request.chooser.prompt),
       .filter = {.files = true, .extensions = {"avi"}},
       .canCreateDirectories = true},
      [this] { accept(); }, [this, answer = std::move(answer)](int) { answer(std::move(chosen_)); });
  if (!request.tickBox.empty()) chooser.addTickBox(shown(request.tickBox), request.isTicked);
  FolderBrowser& browser = chooser.browser();
  browser.setSelectionChanged([this] {
    FileChooser& changed = shown_.chooser();
    changed.say({});
    const FolderEntry* const selected = changed.browser().selected();
    if (selected != nullptr && !selected->isFolder) changed.nameField().setText(FolderModel::nameOf(*selected));
  });
  browser.setFolderChanged([this] {
    shown_.chooser().say({});
    showWhere();
  });
  QObject::connect(&chooser.nameField(), &QLineEdit::textChanged, &chooser, [this] { showWhere(); });
  browser.enter(openingFolder(request.chooser, shown_.memory()));
  chooser.nameField().setText(shown(request.name));
  selectStem(chooser.nameField());
  shown_.show();
}

void NewFilePanel::showWhere() {
  const std::string path = shown_.chooser().typedPath();
  shown_.chooser().setNote(path.empty() ? QString() : texts::savesTo(shownPath(path)));
}

QString NewFilePanel::objection(const std::string& path) const {
  const std::string name = nameOf(path);
  if (name.empty() || name == "." || name == "..") return texts::nameMissing();
  if (name.size() > kLongestFileName) return texts::nameTooLong();
  const std::string folder = folderOf(path);
  ChooserFiles& files = *shown_.memory().files;
  const PathKind above = files.kindOf(folder);
  if (above == PathKind::nothing) return texts::noSuchFolder(shownPath(folder));
  if (above != PathKind::folder && above != PathKind::noPermission) return texts::isNoFolder(shownPath(folder));
  if (!files.mayMakeEntriesIn(folder)) return texts::mayNotSave(shownPath(folder));
  if (files.kindOf(path) == PathKind::other) return texts::noOrdinaryFile();
  return refusal_ ? shown(refusal_(path)) : QString();
}

bool NewFilePanel::mayReplace(const std::string& path) {
  const AlertPanel question{.title = plain(texts::replaceTitle()),
                            .message = plain(texts::replaceFile(shownPath(nameOf(path)))),
                            .defaultButton = plain(texts::cancel()),
                            .alternateButton = plain(texts::replace()),
                            .otherButton = std::nullopt};
  return shown_.memory().alerts.runAlertPanel(question) == kAlertAlternate && shown_.isShown();
}

void NewFilePanel::accept() {
  const std::shared_ptr<NewFilePanel> self = shared_from_this();  // a question may outlast the panel
  FileChooser& chooser = shown_.chooser();
  const std::string path = chooser.typedPath();
  if (path.empty()) return chooser.say(texts::nameMissing());
  if (!shown_.memory().answers(path)) return chooser.say(texts::doesNotAnswer());
  ChooserFiles& files = *shown_.memory().files;
  if (files.kindOf(path) == PathKind::folder) {
    chooser.browser().enter(path);
    return chooser.say(texts::nameForFile());
  }
  if (const QString why = objection(path); !why.isEmpty()) return chooser.say(why);
  if (files.kindOf(path) == PathKind::ordinaryFile && !mayReplace(path)) return;
  take(path);
}

void NewFilePanel::take(const std::string& path) {
  const QCheckBox* const box = shown_.chooser().tickBox();
  chosen_ = NewFileAnswer{.path = path, .isTicked = box != nullptr && box->isChecked()};
  shown_.memory().lastFolder = folderOf(path);
  shown_.finish(kPanelOk);
}

}  // namespace zelvo::platform::qt
