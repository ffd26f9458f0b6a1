#include "platform/qt/chooser/shown_file_panel.h"

#include <utility>

#include "platform/qt/texts.h"

namespace zelvo::platform::qt {

namespace {

constexpr QSize kRoom(840, 540);

}  // namespace

ShownFilePanel::~ShownFilePanel() { leave(); }

FileChooser& ShownFilePanel::begin(const std::shared_ptr<void>& self, const Look& look, std::function<void()> accept,
                                   std::function<void(int answer)> completion) {
  leave();
  PanelStack& stack = memory_->stack;
  completion_ = std::move(completion);
  self_ = self;
  memory_->shownPanels.insert(self);
  auto& frame = *new PanelFrame(stack, {QString(), look.title, QString()});
  frame_ = &frame;
  chooser_ = new FileChooser(stack, memory_->files, look.filter, look.nameLabel);
  frame.addContent(chooser_);
  const auto cancels = whileShown([this] { finish(kPanelCancelled); });
  const auto accepts = whileShown(std::move(accept));
  frame.addButton(texts::cancel(), PanelFrame::Role::cancels).setAction([cancels](Button&) { cancels(); });
  frame.addButton(look.prompt, PanelFrame::Role::byDefault).setAction([accepts](Button&) { accepts(); });
  frame.setRoom(kRoom, *chooser_);
  frame.setFirstFocus(chooser_->nameField());
  chooser_->browser().setFileOpened(accepts);
  if (look.canCreateDirectories) chooser_->browser().setNewFolderAction(whileShown([this] { askForNewFolder(); }));
  if (QWidget& window = *stack.content().window(); !window.isVisible()) window.show();
  return *chooser_;
}

std::function<void()> ShownFilePanel::whileShown(std::function<void()> action) {
  return [this, self = self_, of = frame_, action = std::move(action)] {
    const std::shared_ptr<void> kept = self.lock();
    if (kept && frame_ == of) action();
  };
}

void ShownFilePanel::show() { memory_->stack.begin(*frame_); }

void ShownFilePanel::askForNewFolder() {
  const auto ended = [this](const std::optional<std::string>& made) {
    newFolder_.reset();
    if (!made) return;
    chooser_->browser().enter(*made);
    chooser_->nameField().setFocus();
  };
  newFolder_ = std::make_unique<NewFolderPanel>(memory_->stack, *memory_->files, chooser_->browser().folder(), ended);
}

void ShownFilePanel::leave() {
  newFolder_.reset();
  PanelFrame* const frame = frame_;
  if (frame == nullptr) return;
  chooser_->fallSilent();
  chooser_ = nullptr;
  memory_->stack.orderOut(*frame);
  frame->deleteLater();  // a button of it may be what ended it
  frame_ = nullptr;
}

void ShownFilePanel::finish(int answer) {
  if (!isShown()) return;
  const std::shared_ptr<void> self = self_.lock();  // lives until this is over, whoever lets go of it
  const auto completion = std::exchange(completion_, {});
  leave();
  memory_->shownPanels.erase(self);
  if (completion) completion(answer);
}

}  // namespace zelvo::platform::qt
