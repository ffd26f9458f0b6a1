#include "platform/qt/qt_elements.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

#include "platform/qt/appearance.h"
#include "platform/qt/text.h"

namespace zelvo::platform::qt {

namespace {

constexpr int kBarHeight = 10;
constexpr int kPercentWidth = 56;
constexpr int kBarHintHeight = 22;
constexpr int kBarHintWidth = 240;
/// Steps of a progress bar: hundredths of a per cent.
constexpr int kSteps = 10000;

}  // namespace

ElidedLabel::ElidedLabel(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void ElidedLabel::setWholeText(const QString& text) {
  setText(text);
  setToolTip(text.toHtmlEscaped());
}

QSize ElidedLabel::sizeHint() const {
  constexpr int kLeastWidth = 80;
  return {kLeastWidth, fontMetrics().height() + contentsMargins().top() + contentsMargins().bottom()};
}

QSize ElidedLabel::minimumSizeHint() const { return sizeHint(); }

void ElidedLabel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const bool isEmpty = text().isEmpty();
  QString line = isEmpty ? placeholder_ : text();
  line.replace(QLatin1Char('\n'), QChar(0x240a));  // a name may hold a line end; the line stays one
  painter.setFont(font());
  painter.setPen(isEmpty ? secondaryText(palette()) : palette().color(foregroundRole()));
  const QRect place = contentsRect();
  painter.drawText(place, static_cast<int>(alignment() | Qt::TextSingleLine),
                   fontMetrics().elidedText(line, Qt::ElideMiddle, place.width()));
}

void QtTextField::setStringValue(std::string_view text) {
  queue_.perform([this, text = shown(text)] { show(text); });
}

void QtTextField::setIntegerValue(std::int64_t number) {
  queue_.perform([this, number] { show(QString::number(number)); });
}

void QtTextField::show(const QString& text) {
  text_ = text;
  const QString shaped = shape_ ? shape_(text) : text;
  if (auto* const elided = dynamic_cast<ElidedLabel*>(&label_)) {
    elided->setWholeText(shaped);
  } else {
    label_.setText(shaped);
  }
  if (observer_) observer_(text);
}

FlatProgressBar::FlatProgressBar(QWidget* parent) : QProgressBar(parent) {
  setRange(0, kSteps);
  setValue(0);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QSize FlatProgressBar::sizeHint() const { return {kBarHintWidth, kBarHintHeight}; }

QSize FlatProgressBar::minimumSizeHint() const { return {kBarHintWidth / 2, kBarHintHeight}; }

void FlatProgressBar::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QRect bar(0, (height() - kBarHeight) / 2, std::max(0, width() - kPercentWidth), kBarHeight);
  painter.fillRect(bar, line(palette()));
  const double part = static_cast<double>(value()) / kSteps;
  painter.fillRect(QRectF(bar.x(), bar.y(), bar.width() * part, bar.height()), accent(palette()));
  painter.setFont(textFont(kSmallPixels));
  painter.setPen(palette().color(QPalette::WindowText));
  painter.drawText(QRect(width() - kPercentWidth, 0, kPercentWidth, height()), Qt::AlignRight | Qt::AlignVCenter,
                   QStringLiteral("%1 %").arg(static_cast<int>(std::floor(part * 100))));
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
    if (page >= 0 && page < pages_.count()) pages_.setCurrentIndex(page);
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
