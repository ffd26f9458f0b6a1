#include "platform/qt/panels/panel_stack.h"

#include <QAccessible>
#include <QEvent>
#include <QPainter>
#include <algorithm>
#include <iterator>
#include <utility>

#include "platform/qt/drawing/appearance.h"

namespace zelvo::platform::qt {

namespace {

/// The part of the free height that lies above a panel.
constexpr double kAbove = 0.4;

Rect asRect(const QRect& rect) {
  return {static_cast<double>(rect.x()), static_cast<double>(rect.y()), static_cast<double>(rect.width()),
          static_cast<double>(rect.height())};
}

/// Takes what an overlay does not: the wheel, drops and gestures end here.
bool endsHere(QEvent::Type kind) {
  return kind == QEvent::Wheel || kind == QEvent::DragEnter || kind == QEvent::DragMove || kind == QEvent::Drop ||
         kind == QEvent::ContextMenu || kind == QEvent::TouchBegin || kind == QEvent::TouchUpdate ||
         kind == QEvent::TouchEnd;
}

/// The view below a panel.
class OverlayWidget final : public HostedWidget {
 public:
  explicit OverlayWidget(QWidget* parent) : HostedWidget(parent) {
    setAcceptDrops(true);
    setAttribute(Qt::WA_AcceptTouchEvents);
  }

 protected:
  bool event(QEvent* event) override {
    if (!endsHere(event->type())) return HostedWidget::event(event);
    // A drop is refused; everything else is taken and forgotten.
    const bool isDrag = event->type() == QEvent::DragEnter || event->type() == QEvent::DragMove;
    event->setAccepted(!isDrag && event->type() != QEvent::Drop);
    return true;
  }
};

}  // namespace

class PanelStack::Backdrop final : public QWidget {
 public:
  Backdrop(QWidget* parent, bool isLowest) : QWidget(parent), isLowest_(isLowest) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.fillRect(rect(), QColor(8, 20, 32, isLowest_ ? 120 : 60));
  }

 private:
  bool isLowest_;
};

PanelStack::PanelStack(QWidget& content, MainQueue& queue, Pictures& pictures)
    : content_(content), queue_(queue), pictures_(pictures) {
  content.installEventFilter(this);
}

PanelStack::~PanelStack() = default;

void PanelStack::setControls(PanelControls* controls) {
  controls_ = controls;
  if (controls_ == nullptr) return;
  for (const HostedButton& button : buttons_) controls_->buttonMade(button);
}

void PanelStack::buttonMade(const HostedButton& button) {
  buttons_.push_back(button);
  if (controls_ != nullptr) controls_->buttonMade(button);
}

void PanelStack::buttonDestroyed(const HostedButton& button) {
  std::erase_if(buttons_, [&](const HostedButton& one) { return &one.host == &button.host; });
  if (controls_ != nullptr) controls_->buttonDestroyed(button);
}

void PanelStack::panelDestroyed(PanelFrame& panel) { end(panel); }

bool PanelStack::isShown(const PanelFrame& panel) const {
  return std::any_of(entries_.begin(), entries_.end(), [&](const Entry& one) { return one.panel == &panel; });
}

PanelFrame* PanelStack::top() const { return entries_.empty() ? nullptr : entries_.back().panel; }

void PanelStack::place(PanelFrame& panel) {
  QSize size = panel.wantedSize(content_.size());
  // What lies below would stick out from behind a panel of the same kind that is lower.
  for (const Entry& below : entries_) {
    if (below.panel == &panel) break;
    const QSize covered = below.panel->wantedSize(content_.size());
    if (covered.width() == size.width()) size = size.expandedTo(covered);
  }
  const int x = (content_.width() - size.width()) / 2;
  const int y = static_cast<int>((content_.height() - size.height()) * kAbove);
  panel.setGeometry(QRect(QPoint(x, y), size));
}

void PanelStack::begin(PanelFrame& panel, Place where) {
  if (isShown(panel)) {
    bringToFront(panel);
    return;
  }
  auto at = entries_.end();
  while (where == Place::belowQuestions && at != entries_.begin() && std::prev(at)->panel->staysOnTop()) --at;
  const bool isTopmost = at == entries_.end();
  Entry entry;
  entry.panel = &panel;
  // Who waits for an answer above gives the keyboard to this panel then.
  if (isTopmost) {
    entry.focusBefore = content_.window()->focusWidget();
  } else {
    std::swap(entry.focusBefore, at->focusBefore);
  }
  entry.backdrop = std::make_unique<Backdrop>(&content_, entries_.empty());
  entry.overlay = std::make_unique<OverlayWidget>(&content_);
  entry.backdrop->setGeometry(content_.rect());
  entry.overlay->setGeometry(content_.rect());
  if (controls_ != nullptr) {
    controls_->panelBegins(entry.overlay->host(), asRect(content_.rect()), panel.buttonHosts());
  }
  entry.overlay->setFocusPolicy(Qt::NoFocus);  // the keyboard stays with the panel
  for (auto one = entries_.insert(at, std::move(entry)); one != entries_.end(); ++one) {
    for (QWidget* part : {static_cast<QWidget*>(one->backdrop.get()), static_cast<QWidget*>(one->overlay.get()),
                          static_cast<QWidget*>(one->panel)}) {
      part->show();
      part->raise();
    }
  }
  place(panel);
  if (isTopmost) panel.firstFocus().setFocus(Qt::PopupFocusReason);
  reportTop();
  if (beginObserver_) beginObserver_(panel);
  if (observer_) observer_();
}

void PanelStack::reportTop() {
  if (entries_.empty() || std::exchange(entries_.back().isTold, true)) return;
  QAccessibleEvent opened(top(), QAccessible::DialogStart);
  QAccessible::updateAccessibility(&opened);
}

void PanelStack::end(PanelFrame& panel) {
  const auto found =
      std::find_if(entries_.begin(), entries_.end(), [&](const Entry& one) { return one.panel == &panel; });
  if (found == entries_.end()) return;
  const auto position = static_cast<std::size_t>(found - entries_.begin());
  Entry ended = std::move(*found);
  entries_.erase(found);
  if (controls_ != nullptr) controls_->panelEnds(ended.overlay->host());
  ended.backdrop->hide();
  ended.overlay->hide();
  giveFocusBack(ended, position);
  ended.overlay->setParent(nullptr);
  panel.keepOverlay(std::move(ended.overlay));
  QAccessibleEvent closed(&panel, QAccessible::DialogEnd);
  QAccessible::updateAccessibility(&closed);
  reportTop();
  if (observer_) observer_();
}

void PanelStack::giveFocusBack(const Entry& ended, std::size_t position) {
  if (position < entries_.size()) {
    // A panel above goes on; what it would give the focus back to goes with the panel that ended.
    Entry& above = entries_[position];
    if (above.focusBefore && (above.focusBefore == ended.panel || ended.panel->isAncestorOf(above.focusBefore))) {
      above.focusBefore = ended.focusBefore;
    }
    return;
  }
  QWidget* to = ended.focusBefore;
  if (to == nullptr || !to->isVisible() || !to->isEnabled()) to = entries_.empty() ? nullptr : &top()->firstFocus();
  if (to != nullptr) {
    to->setFocus(Qt::PopupFocusReason);
  } else if (QWidget* const focused = content_.window()->focusWidget()) {
    if (ended.panel->isAncestorOf(focused)) focused->clearFocus();
  }
}

void PanelStack::orderOut(PanelFrame& panel) {
  end(panel);
  panel.hide();
}

void PanelStack::bringToFront(PanelFrame& panel) {
  if (!isShown(panel) || top() != &panel) return;
  panel.raise();
  content_.window()->raise();
  content_.window()->activateWindow();
  if (!panel.isAncestorOf(content_.window()->focusWidget())) panel.firstFocus().setFocus(Qt::PopupFocusReason);
}

void PanelStack::placeAgain(PanelFrame& panel) {
  if (isShown(panel)) place(panel);
}

bool PanelStack::eventFilter(QObject* watched, QEvent* event) {
  if (watched == &content_ && event->type() == QEvent::Resize) {
    for (const Entry& entry : entries_) {
      entry.backdrop->setGeometry(content_.rect());
      entry.overlay->setGeometry(content_.rect());
      place(*entry.panel);
    }
  }
  return false;
}

}  // namespace zelvo::platform::qt
