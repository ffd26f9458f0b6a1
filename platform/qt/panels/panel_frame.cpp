#include "platform/qt/panels/panel_frame.h"

#include <QAccessibleWidget>
#include <QEvent>
#include <QKeyEvent>
#include <QPainter>
#include <algorithm>

#include "platform/qt/drawing/appearance.h"
#include "platform/qt/drawing/picture_widget.h"
#include "platform/qt/drawing/text.h"
#include "platform/qt/language.h"

namespace zelvo::platform::qt {

namespace {

constexpr int kPanelWidth = 460;
constexpr int kMargin = 28;
constexpr int kShadow = 14;
constexpr int kFrameGap = 12;
constexpr int kPictureSize = 44;

/// A modal dialog named after its title.
class AccessiblePanel final : public QAccessibleWidget {
 public:
  explicit AccessiblePanel(PanelFrame& panel) : QAccessibleWidget(&panel, QAccessible::Dialog), panel_(panel) {}
  QAccessible::State state() const override {
    QAccessible::State all = QAccessibleWidget::state();
    all.modal = 1;
    return all;
  }
  QString text(QAccessible::Text kind) const override {
    const QString message = withoutBreaks(panel_.message().text());
    if (kind == QAccessible::Name) return panel_.title().trimmed().isEmpty() ? message : panel_.title();
    if (kind == QAccessible::Description) return message;
    return QAccessibleWidget::text(kind);
  }

 private:
  PanelFrame& panel_;
};

QAccessibleInterface* accessiblePanel(const QString&, QObject* object) {
  auto* const panel = dynamic_cast<PanelFrame*>(object);
  return panel == nullptr ? nullptr : new AccessiblePanel(*panel);  // Qt's cache of interfaces owns it
}

QLabel* textLabel(const QString& text, const QFont& font) {
  auto* const label = new QLabel(text);
  label->setTextFormat(Qt::PlainText);
  label->setFont(font);
  label->setWordWrap(true);
  // Never shown from here: without a parent, it would come up as a window of its own.
  if (text.trimmed().isEmpty()) label->hide();
  return label;
}

}  // namespace

void installPanelAccessibility() { QAccessible::installFactory(accessiblePanel); }

PanelFrame::PanelFrame(PanelOwner& owner, const PanelText& text)
    : QWidget(&owner.content()), owner_(owner), titleText_(text.title) {
  hide();
  column_ = new QVBoxLayout(this);
  column_->setContentsMargins(kMargin + kShadow, kMargin + kShadow, kMargin + kShadow, kMargin + kShadow);
  column_->setSpacing(2 * kFrameGap);

  auto* const head = new QHBoxLayout;
  head->setSpacing(kMargin - kFrameGap / 2);
  if (!text.picture.isEmpty()) {
    picture_ = new PictureWidget(owner.pictures(), plain(text.picture), QSize(kPictureSize, kPictureSize));
    head->addWidget(picture_, 0, Qt::AlignTop);
  }
  content_ = new QVBoxLayout;
  content_->setSpacing(kFrameGap);
  titleLabel_ = textLabel(text.title, textFont(kTitlePixels, QFont::DemiBold));
  content_->addWidget(titleLabel_);
  message_ = textLabel(text.message, textFont(kTextPixels));
  showBreakable(*message_, text.message);
  content_->addWidget(message_);
  content_->addStretch(1);
  head->addLayout(content_, 1);
  column_->addLayout(head, 1);

  buttonRow_ = new QHBoxLayout;
  buttonRow_->setSpacing(kFrameGap);
  buttonRow_->addStretch(1);
  column_->addLayout(buttonRow_);
}

PanelFrame::~PanelFrame() {
  for (QtButton* button : buttons_) owner_.buttonDestroyed(button->hosted());
  owner_.panelDestroyed(*this);
  for (QtButton* button : buttons_) button->host().carry(nullptr);  // before the overlay that they look at
}

void PanelFrame::orderOut() {
  owner_.queue().perform([this] { owner_.orderOut(*this); });
}

void PanelFrame::makeKeyAndOrderFront() {
  owner_.queue().perform([this] { owner_.bringToFront(*this); });
}

QtButton& PanelFrame::addButton(const QString& title, Role role) {
  auto* const button = new QtButton(owner_.queue(), owner_.pictures(), title, QtButton::Look::push, this);
  buttonRow_->addWidget(button);
  buttons_.push_back(button);
  const bool isDefault = role == Role::byDefault || role == Role::defaultAndCancels;
  if (isDefault) defaultButton_ = button;
  button->setOutlined(!isDefault);  // one filled button shows the way
  if (role == Role::cancels || role == Role::defaultAndCancels) cancelButton_ = button;
  owner_.buttonMade(button->hosted());
  return *button;
}

void PanelFrame::setHead(const QString& picture, const QString& title) {
  titleText_ = title;
  titleLabel_->setText(title);
  titleLabel_->setVisible(!title.trimmed().isEmpty());
  if (picture_ != nullptr) picture_->setName(plain(picture));
  column_->activate();  // what the labels say now counts at once
  owner_.placeAgain(*this);
}

QString PanelFrame::pictureName() const { return picture_ == nullptr ? QString() : shown(picture_->name()); }

QString PanelFrame::helpTopic() const {
  // A head that has changed tells of something else.
  if (!helpTopic_.isEmpty() && titleText_ == topicTitle_) return helpTopic_;
  const QString said = titleText_.trimmed().isEmpty() ? withoutBreaks(message_->text()) : titleText_;
  QString topic;
  for (const QChar one : inEnglish(said).toLower()) {
    if (one.isLetterOrNumber()) {
      topic += one;
    } else if (!topic.isEmpty() && !topic.endsWith(QLatin1Char('-'))) {
      topic += QLatin1Char('-');
    }
  }
  return topic.endsWith(QLatin1Char('-')) ? topic.chopped(1) : topic;
}

void PanelFrame::addContent(QWidget* widget) { content_->insertWidget(content_->count() - 1, widget); }

void PanelFrame::setRoom(const QSize& size, QWidget& content) {
  room_ = size;
  content_->setStretch(content_->count() - 1, 0);
  content_->setStretchFactor(&content, 1);
}

std::vector<ViewHost*> PanelFrame::buttonHosts() const {
  std::vector<ViewHost*> hosts;
  for (QtButton* button : buttons_) hosts.push_back(&button->host());
  return hosts;
}

QWidget& PanelFrame::firstFocus() {
  if (firstFocus_ != nullptr) return *firstFocus_;
  if (defaultButton_ != nullptr && defaultButton_->isEnabled()) return *defaultButton_;
  const auto usable = std::find_if(buttons_.begin(), buttons_.end(), [](QtButton* one) { return one->isEnabled(); });
  if (usable != buttons_.end()) return **usable;
  return *this;  // rather than what lies below
}

QSize PanelFrame::wantedSize(const QSize& available) {
  if (room_.isValid()) return room_.boundedTo(available);
  const int width = std::min(kPanelWidth + 2 * kShadow, available.width());
  const int height =
      layout()->hasHeightForWidth() ? layout()->totalHeightForWidth(width) : layout()->sizeHint().height();
  return {width, std::min(height, available.height())};
}

bool PanelFrame::cancel() {
  if (cancelButton_ == nullptr || !cancelButton_->isEnabled()) return false;
  cancelButton_->click();
  return true;
}

void PanelFrame::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  // A soft shadow in steps, so that no effect has to paint what lies below again.
  for (int step = 0; step < kShadow; ++step) {
    painter.fillRect(rect().adjusted(step, step, -step, -step), QColor(0, 0, 0, 3));
  }
  const QRect panel = rect().adjusted(kShadow, kShadow, -kShadow, -kShadow);
  painter.fillRect(panel, surface(palette()));
  painter.fillRect(QRect(panel.x(), panel.y(), panel.width(), 4), accent(palette()));
}

void PanelFrame::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) {
    static_cast<void>(cancel());
  } else if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && defaultButton_ != nullptr) {
    defaultButton_->click();
  }
  event->accept();  // nothing of a panel's keys is for what lies below
}

bool PanelFrame::focusNextPrevChild(bool next) {
  std::vector<QWidget*> stops;
  for (QWidget* one : findChildren<QWidget*>()) {
    if ((one->focusPolicy() & Qt::TabFocus) != 0 && one->isVisible() && one->isEnabled()) stops.push_back(one);
  }
  if (stops.empty()) return true;
  const auto here = std::find(stops.begin(), stops.end(), window()->focusWidget());
  std::size_t to = next ? 0 : stops.size() - 1;
  if (here != stops.end()) {
    const auto at = static_cast<std::size_t>(here - stops.begin());
    to = (at + (next ? 1 : stops.size() - 1)) % stops.size();
  }
  stops[to]->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
  return true;
}

}  // namespace zelvo::platform::qt
