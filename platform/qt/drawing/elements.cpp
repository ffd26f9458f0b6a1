#include "platform/qt/drawing/elements.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

#include "platform/qt/drawing/appearance.h"
#include "platform/qt/drawing/text.h"

namespace zelvo::platform::qt {

namespace {

constexpr int kBarHeight = 10;
constexpr int kPercentWidth = 56;
constexpr int kBarHintHeight = 22;
constexpr int kBarHintWidth = 240;
/// Steps of a progress bar: hundredths of a per cent.
constexpr int kSteps = 10000;

/// A name may hold line ends and other characters that move what stands around them: each is shown as its sign.
QString oneLine(QString text) {
  constexpr char16_t kSigns = 0x2400;
  constexpr char16_t kFirstVisible = 0x20;
  constexpr char16_t kDelete = 0x7f;
  for (QChar& one : text) {
    if (one.unicode() < kFirstVisible) {
      one = QChar(static_cast<char16_t>(kSigns + one.unicode()));
    } else if (one.unicode() == kDelete) {
      one = QChar(0x2421);
    } else if (one == QChar::LineSeparator || one == QChar::ParagraphSeparator) {
      one = QChar(0x2424);
    }
  }
  return text;
}

}  // namespace

ElidedLabel::ElidedLabel(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void ElidedLabel::setPlaceholder(const QString& text) {
  placeholder_ = text;
  reportScreenReader();
}

void ElidedLabel::reportScreenReader() { setAccessibleName(text().isEmpty() ? placeholder_ : QString()); }

void ElidedLabel::setWholeText(const QString& text) {
  setText(text);
  reportScreenReader();
  // A tooltip is plain text unless it looks like HTML. // Deliberate: escaped only then, or an "&" would show as
  // "&amp;".
  const QString tip = oneLine(text);
  setToolTip(Qt::mightBeRichText(tip) ? QStringLiteral("<span>") + tip.toHtmlEscaped() + QStringLiteral("</span>")
                                      : tip);
}

QSize ElidedLabel::sizeHint() const {
  constexpr int kLeastWidth = 80;
  return {kLeastWidth, fontMetrics().height() + contentsMargins().top() + contentsMargins().bottom()};
}

QSize ElidedLabel::minimumSizeHint() const { return sizeHint(); }

void ElidedLabel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const bool isEmpty = text().isEmpty();
  const QString line = isEmpty ? placeholder_ : oneLine(text());
  painter.setFont(font());
  painter.setPen(isEmpty ? secondaryText(palette()) : palette().color(foregroundRole()));
  const QRect place = contentsRect();
  painter.drawText(place, static_cast<int>(alignment() | Qt::TextSingleLine),
                   fontMetrics().elidedText(line, Qt::ElideMiddle, place.width()));
}

QtTextField::QtTextField(MainQueue& queue, QLabel& label)
    : label_(label), posted_(queue, {}, [this](const std::string& text) { show(shown(text)); }) {}

void QtTextField::setStringValue(std::string_view text) { posted_.set(std::string(text)); }

void QtTextField::setIntegerValue(std::int64_t number) { posted_.set(std::to_string(number)); }

void QtTextField::show(const QString& text) {
  text_ = text;
  const QString shaped = shape_ ? shape_(text) : text;
  if (auto* const elided = dynamic_cast<ElidedLabel*>(&label_)) {
    elided->setWholeText(shaped);
  } else {
    label_.setText(shaped);
    if (const QString told = withoutBreaks(shaped); told != shaped) label_.setAccessibleName(told);
  }
  if (observer_) observer_(text);
}

FlatProgressBar::FlatProgressBar(QWidget* parent) : QProgressBar(parent) {
  setRange(0, kSteps);
  setValue(0);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  constexpr int kMilliseconds = 40;
  constexpr double kPhaseStep = 0.02;
  busyTimer_.setInterval(kMilliseconds);
  connect(&busyTimer_, &QTimer::timeout, this, [this] {
    phase_ = phase_ + kPhaseStep < 1 ? phase_ + kPhaseStep : 0;
    update();
  });
}

void FlatProgressBar::setBusy(bool busy) {
  if (busy == isBusy_) return;
  isBusy_ = busy;
  // To a screen reader a bar without a range is one that is busy.
  setRange(0, busy ? 0 : kSteps);
  setValue(0);
  if (busy && isVisible()) {
    busyTimer_.start();
  } else if (!busy) {
    busyTimer_.stop();
  }
  update();
}

void FlatProgressBar::showEvent(QShowEvent* event) {
  QProgressBar::showEvent(event);
  if (isBusy_) busyTimer_.start();
}

void FlatProgressBar::hideEvent(QHideEvent* event) {
  QProgressBar::hideEvent(event);
  busyTimer_.stop();
}

QSize FlatProgressBar::sizeHint() const { return {kBarHintWidth, kBarHintHeight}; }

QSize FlatProgressBar::minimumSizeHint() const { return {kBarHintWidth / 2, kBarHintHeight}; }

int FlatProgressBar::percent() const { return value() * 100 / kSteps; }

void FlatProgressBar::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QRect bar(0, (height() - kBarHeight) / 2, std::max(0, width() - kPercentWidth), kBarHeight);
  painter.fillRect(bar, line(palette()));
  if (isBusy_) {
    constexpr double kPiece = 0.25;
    const double from = phase_ * (1 + kPiece) - kPiece;
    const double left = std::max(0.0, from);
    const double right = std::min(1.0, from + kPiece);
    painter.fillRect(QRectF(bar.x() + left * bar.width(), bar.y(), (right - left) * bar.width(), bar.height()),
                     accent(palette()));
    return;
  }
  const double part = static_cast<double>(value()) / kSteps;
  painter.fillRect(QRectF(bar.x(), bar.y(), bar.width() * part, bar.height()), accent(palette()));
  painter.setFont(textFont(kSmallPixels));
  painter.setPen(palette().color(QPalette::WindowText));
  painter.drawText(QRect(width() - kPercentWidth, 0, kPercentWidth, height()), Qt::AlignRight | Qt::AlignVCenter,
                   QStringLiteral("%1 %").arg(percent()));
}

QtProgressBar::QtProgressBar(MainQueue& queue, FlatProgressBar& bar) : queue_(queue), bar_(bar) {}

void QtProgressBar::setDoubleValue(double percent) {
  queue_.perform([this, percent] {
    const double inRange = std::isfinite(percent) ? std::clamp(percent, 0.0, 100.0) : 0.0;
    bar_.setValue(static_cast<int>(std::lround(inRange * kSteps / 100)));
  });
}

void QtTabView::moveTo(const std::function<int(int page)>& next) {
  queue_.perform([this, next] {
    const int page = next(pages_.currentIndex());
    if (page < 0 || page >= pages_.count() || page == pages_.currentIndex()) return;
    // A page that goes would hand the keyboard on, to the first button of the next, before the window says where to.
    QWidget* const focused = pages_.window()->focusWidget();
    if (focused != nullptr && pages_.currentWidget()->isAncestorOf(focused)) focused->clearFocus();
    pages_.setCurrentIndex(page);
  });
}

void QtTabView::selectFirstTabViewItem() {
  moveTo([](int) { return 0; });
}

void QtTabView::selectNextTabViewItem() {
  moveTo([](int page) { return page + 1; });
}

void QtTabView::selectPreviousTabViewItem() {
  moveTo([](int page) { return page - 1; });
}

}  // namespace zelvo::platform::qt
