#include "platform/qt/chooser/new_folder_panel.h"

#include <QAccessible>
#include <QFile>
#include <system_error>
#include <utility>

#include "platform/paths.h"
#include "platform/qt/drawing/text.h"
#include "platform/qt/texts.h"

namespace zelvo::platform::qt {

NewFolderPanel::NewFolderPanel(PanelStack& stack, ChooserFiles& files, std::string folder,
                               std::function<void(const std::optional<std::string>& made)> ended)
    : stack_(stack),
      files_(files),
      folder_(std::move(folder)),
      name_(new QLineEdit),
      sentence_(new QLabel),
      ended_(std::move(ended)) {
  const QString where = texts::newFolderIn(QFile::decodeName(folder_.c_str()));
  auto& frame = *new PanelFrame(stack, {QString(), texts::newFolderHeading(), where});
  frame_ = &frame;
  constexpr int kFieldHeight = 32;
  name_->setMinimumHeight(kFieldHeight);
  name_->setAccessibleName(texts::newFolderName());
  name_->setPlaceholderText(texts::newFolderName());
  sentence_->setTextFormat(Qt::PlainText);
  sentence_->setWordWrap(true);
  sentence_->hide();
  frame.addContent(name_);
  frame.addContent(sentence_);
  frame.addButton(texts::cancel(), PanelFrame::Role::cancels).setAction([this](Button&) { end(std::nullopt); });
  frame.addButton(texts::createFolder(), PanelFrame::Role::byDefault).setAction([this](Button&) { create(); });
  frame.setFirstFocus(*name_);
  QObject::connect(name_, &QLineEdit::textChanged, &frame, [this] { say({}); });
  stack_.begin(frame);
}

NewFolderPanel::~NewFolderPanel() {
  PanelFrame* const frame = frame_;
  if (frame == nullptr) return;
  stack_.orderOut(*frame);
  frame->deleteLater();  // a button of it may be what ended it
}

void NewFolderPanel::create() {
  const std::string name = QFile::encodeName(name_->text()).toStdString();
  if (name.empty() || name == "." || name == "..") return say(texts::nameMissing());
  if (name.find('/') != std::string::npos) return say(texts::nameWithSlash());
  const std::string path = pathIn(folder_, name);
  const std::error_code why = files_.makeFolder(path);
  if (!why) return end(path);
  if (why == std::errc::file_exists) return say(texts::nameIsTaken());
  say(texts::folderNotMade(shown(why.message())));
}

void NewFolderPanel::say(const QString& sentence) {
  showBreakable(*sentence_, sentence);
  sentence_->setVisible(!sentence.isEmpty());
  if (PanelFrame* const frame = frame_) stack_.placeAgain(*frame);
  if (sentence.isEmpty()) return;
  QAccessibleEvent said(sentence_, QAccessible::Alert);
  QAccessible::updateAccessibility(&said);
}

void NewFolderPanel::end(const std::optional<std::string>& made) {
  const auto ended = std::exchange(ended_, {});
  if (ended) ended(made);
}

}  // namespace zelvo::platform::qt
