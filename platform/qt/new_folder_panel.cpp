#include "platform/qt/new_folder_panel.h"

#include <sys/stat.h>

#include <QAccessible>
#include <QFile>
#include <cerrno>
#include <system_error>
#include <utility>

#include "platform/qt/folder_listing.h"
#include "platform/qt/panel_texts.h"
#include "platform/qt/text.h"

namespace zelvo::platform::qt {

NewFolderPanel::NewFolderPanel(PanelStack& stack, std::string folder,
                               std::function<void(const std::optional<std::string>& made)> ended)
    : stack_(stack), folder_(std::move(folder)), name_(new QLineEdit), sentence_(new QLabel), ended_(std::move(ended)) {
  const QString where = texts::newFolderIn(QFile::decodeName(folder_.c_str()));
  auto& frame = *new PanelFrame(stack, {QString(), texts::newFolderTitle(), where});
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
  constexpr mode_t kAsTheUserAllows = 0777;
  const std::string name = QFile::encodeName(name_->text()).toStdString();
  if (name.empty() || name == "." || name == "..") return say(texts::nameMissing());
  if (name.find('/') != std::string::npos) return say(texts::nameWithSlash());
  const std::string path = pathIn(folder_, name);
  if (::mkdir(path.c_str(), kAsTheUserAllows) == 0) return end(path);
  const int why = errno;
  if (why == EEXIST) return say(texts::nameIsTaken());
  say(texts::folderNotMade(shown(std::generic_category().message(why))));
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
