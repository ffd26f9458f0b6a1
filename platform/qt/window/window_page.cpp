#include "platform/qt/window/window_page.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QPainter>
#include <QTimer>

#include "platform/qt/drawing/appearance.h"
#include "platform/qt/texts.h"
#include "platform/qt/window/step_marker.h"

namespace zelvo::platform::qt {

namespace {

constexpr int kStripHeight = 72;
constexpr int kStripMargin = 28;
constexpr int kIconSize = 32;
constexpr int kWidthForName = 720;

class Strip final : public QWidget {
 public:
  /// `name` gives its room to the steps where the window is narrow; the title bar has it, too.
  explicit Strip(QLabel* name) : name_(name) { setFixedHeight(kStripHeight); }

 protected:
  void resizeEvent(QResizeEvent*) override { name_->setVisible(width() >= kWidthForName); }
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.fillRect(rect(), strip(palette()));
    painter.fillRect(QRect(0, height() - 1, width(), 1), line(palette()));
  }

 private:
  QLabel* name_;
};

/// A page that is higher or wider than its room scrolls, and what gets the keyboard comes into view.
class PageArea final : public QScrollArea {
 public:
  PageArea() {
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setFocusPolicy(Qt::NoFocus);
    setAccessibleName(QString());
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
      // Under a button of the mouse nothing may move: the release would miss what was pressed.
      if (QGuiApplication::mouseButtons() != Qt::NoButton) return;
      if (now != nullptr && widget() != nullptr && widget()->isAncestorOf(now)) ensureWidgetVisible(now);
    });
  }
};

QLabel* stripName(const QString& text) {
  auto* const label = new QLabel(text);
  label->setTextFormat(Qt::PlainText);
  label->setFont(textFont(kTextPixels, QFont::DemiBold));
  return label;
}

}  // namespace

QtButton* PageParts::button(const QString& title, QtButton::Look look) const {
  return new QtButton(queue, pictures, title, look);
}

QtButton* PageParts::pictureButton(const QString& title, std::string_view picture) const {
  auto* const made = new QtButton(queue, pictures, title, QtButton::Look::picture);
  made->setImage(picture);
  return made;
}

WindowPage::WindowPage(const PageParts& parts, int step) : WindowPage(parts, new StepMarker(step)) {}

WindowPage::WindowPage(const PageParts& parts, const QString& name) : WindowPage(parts, stripName(name)) {
  update->hide();
}

WindowPage::WindowPage(const PageParts& parts, QWidget* middle)
    : mark(parts.pictureButton(texts::about(), "zelvo-avi-repair")),
      home(parts.pictureButton(texts::home(), "home-1")),
      help(parts.pictureButton(texts::help(), "help-1")),
      update(parts.pictureButton(texts::update(), "update-1")) {
  auto* const all = new QVBoxLayout(this);
  all->setContentsMargins(0, 0, 0, 0);
  all->setSpacing(0);

  auto* const name = new QLabel(texts::productName());
  name->setFont(textFont(kTextPixels, QFont::DemiBold));
  auto* const top = new Strip(name);
  auto* const row = new QHBoxLayout(top);
  row->setContentsMargins(kStripMargin, 0, kStripMargin, 0);
  auto* const left = new QWidget;
  auto* const leftRow = new QHBoxLayout(left);
  leftRow->setContentsMargins(0, 0, 0, 0);
  leftRow->setSpacing(10);
  mark->setPictureSize({kIconSize, kIconSize});
  leftRow->addWidget(mark);
  leftRow->addWidget(name);
  leftRow->addStretch(1);
  auto* const right = new QWidget;
  auto* const rightRow = new QHBoxLayout(right);
  rightRow->setContentsMargins(0, 0, 0, 0);
  rightRow->setSpacing(12);
  rightRow->addStretch(1);
  for (QtButton* button : {home, help, update}) rightRow->addWidget(button);
  row->addWidget(left, 1);
  row->addWidget(middle, 0);
  row->addWidget(right, 1);
  all->addWidget(top);

  auto* const content = new QWidget;
  body_ = new QVBoxLayout(content);
  body_->setContentsMargins(kPageMargin, kPageMargin * 3 / 4, kPageMargin, kPageMargin * 3 / 4);
  body_->setSpacing(kPageGap);
  area_ = new PageArea;
  area_->setWidget(content);
  area_->viewport()->setAutoFillBackground(false);  // the ground shows through
  content->setAutoFillBackground(false);
  all->addWidget(area_, 1);
}

void WindowPage::bringIntoView(QWidget& part) {
  QTimer::singleShot(0, &part, [this, &part] {
    QEvent request(QEvent::LayoutRequest);
    QCoreApplication::sendEvent(area_->widget(), &request);  // so that the part has its place
    area_->ensureWidgetVisible(&part);
  });
}

QLabel* headline(const QString& text) {
  auto* const label = new QLabel(text);
  label->setFont(textFont(kHeadlinePixels, QFont::DemiBold));
  label->setWordWrap(true);
  return label;
}

QLabel* explanation(const QString& text) {
  auto* const label = new QLabel(text);
  label->setForegroundRole(QPalette::PlaceholderText);
  label->setWordWrap(true);
  return label;
}

void WindowPage::showInTheMiddle(QLayout* column) {
  constexpr int kColumnWidth = 640;
  constexpr int kMostOfTheRow = 20;
  auto* const middle = new QWidget;
  middle->setLayout(column);
  middle->setMaximumWidth(kColumnWidth);
  auto* const row = new QHBoxLayout;
  row->addStretch(1);
  row->addWidget(middle, kMostOfTheRow);
  row->addStretch(1);
  body_->addStretch(2);
  body_->addLayout(row);
  body_->addStretch(3);
}

}  // namespace zelvo::platform::qt
