// Each pixel column of a bar shows the gravest of the marks that meet it, so a loss of one picture in a film of hours
// is seen, and however many marks there are, a bar is painted in as many strokes as it has stretches of one look.
#include "platform/qt/damage/damage_view.h"

#include <QAccessible>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QToolTip>
#include <algorithm>
#include <array>
#include <cmath>

#include "platform/qt/damage/damage_paints.h"
#include "platform/qt/drawing/appearance.h"
#include "platform/qt/drawing/text.h"
#include "platform/qt/texts.h"

namespace zelvo::platform::qt {

namespace {

constexpr int kMargin = 2;  // room for the frame of the focus
constexpr int kNameHeight = 20;
constexpr int kBarHeight = 24;
constexpr int kTickHeight = 18;
constexpr int kRow = kNameHeight + kBarHeight + kTickHeight + 6;
constexpr int kWordsHeight = 42;  // two lines
constexpr int kWordsGap = 4;
constexpr int kKey = 14;
constexpr int kKeyGap = 6;
constexpr int kKeyBetween = 18;
constexpr int kLegendRow = 22;
constexpr int kPreferredWidth = 640;
constexpr int kLeastWidth = 240;
/// Narrower marks could not be seen, or met with a pointer.
constexpr double kThinnest = 3;
constexpr double kTickRoom = 72;

/// A round number of seconds between ticks, so that `count` of them fit at the most.
double tickStep(double seconds, double count) {
  constexpr std::array kSteps = {1.0, 2.0, 5.0, 10.0, 15.0, 30.0, 60.0, 120.0, 300.0, 600.0, 900.0, 1800.0, 3600.0};
  for (const double step : kSteps) {
    if (seconds / step <= count) return step;
  }
  return kSteps.back() * std::ceil(seconds / count / kSteps.back());
}

}  // namespace

DamageView::DamageView(QWidget* parent) : QWidget(parent) {
  setMouseTracking(true);
  setFocusPolicy(Qt::StrongFocus);
  setFont(textFont(kSmallPixels));
  setAccessibleName(texts::damagePicture());
  QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  policy.setHeightForWidth(true);
  setSizePolicy(policy);
}

void DamageView::show(DamagePicture picture) {
  picture_ = std::move(picture);
  selected_.reset();
  pointed_.reset();
  setAccessibleDescription(words());
  updateGeometry();
  update();
}

void DamageView::select(std::optional<std::size_t> loss) {
  if (loss && *loss >= picture_.losses.size()) loss.reset();
  if (loss == selected_) return;
  selected_ = loss;
  pointed_.reset();
  setAccessibleDescription(words());
  QAccessibleEvent changed(this, QAccessible::DescriptionChanged);
  QAccessible::updateAccessibility(&changed);
  update();
  if (loss && onSelect_) onSelect_(*loss);
}

QString DamageView::words() const {
  if (pointed_ && !pointed_->losses.empty()) {
    const QString first = shown(picture_.losses[pointed_->losses.front()].words);
    return pointed_->losses.size() == 1 ? first : texts::andMoreHere(first, pointed_->losses.size() - 1);
  }
  if (pointed_ && picture_.bars[pointed_->bar].isTime) return texts::asItWasAt(clockTime(pointed_->place));
  if (selected_) return shown(picture_.losses[*selected_].words);
  return picture_.losses.empty() ? texts::noDamage() : texts::pointAtDamage(picture_.losses.size());
}

QSize DamageView::sizeHint() const { return {kPreferredWidth, heightForWidth(kPreferredWidth)}; }

QSize DamageView::minimumSizeHint() const { return {kLeastWidth, heightForWidth(kLeastWidth)}; }

int DamageView::heightForWidth(int width) const {
  return static_cast<int>(picture_.bars.size()) * kRow + kWordsHeight + legendHeight(width) + 2 * kMargin;
}

QRectF DamageView::barArea(std::size_t bar) const {
  return QRectF(kMargin, kMargin + static_cast<int>(bar) * kRow + kNameHeight, std::max(1, width() - 2 * kMargin),
                kBarHeight);
}

QRectF DamageView::markArea(std::size_t bar, const DamageMark& mark) const {
  const QRectF area = barArea(bar);
  const double extent = picture_.bars[bar].extent;
  if (!(extent > 0)) return {area.topLeft(), QSizeF(0, area.height())};
  const double from = std::clamp(mark.begin / extent, 0.0, 1.0);
  const double to = std::clamp(mark.end / extent, from, 1.0);
  const double wide = std::min(area.width(), std::max(kThinnest, (to - from) * area.width()));
  const double left = std::min(area.left() + from * area.width(), area.right() - wide);
  return {left, area.top(), wide, area.height()};
}

std::optional<std::size_t> DamageView::barAt(const QPointF& point) const {
  for (std::size_t bar = 0; bar < picture_.bars.size(); ++bar) {
    if (barArea(bar).contains(point)) return bar;
  }
  return std::nullopt;
}

std::vector<std::size_t> DamageView::lossesAt(const QPointF& point) const {
  std::vector<std::size_t> losses;
  const auto bar = barAt(point);
  if (!bar) return losses;
  for (const DamageMark& mark : picture_.bars[*bar].marks) {
    if (mark.loss < picture_.losses.size() && markArea(*bar, mark).contains(point)) losses.push_back(mark.loss);
  }
  std::ranges::sort(losses);
  return losses;
}

bool DamageView::event(QEvent* event) {
  if (event->type() == QEvent::ToolTip) {
    const auto* const help = static_cast<QHelpEvent*>(event);
    QStringList lines;
    constexpr std::size_t kLines = 12;
    const std::vector<std::size_t> losses = lossesAt(help->pos());
    for (std::size_t i = 0; i < std::min(losses.size(), kLines); ++i) lines += shown(picture_.losses[losses[i]].words);
    if (losses.size() > kLines) lines += texts::moreHere(losses.size() - kLines);
    if (lines.isEmpty()) {
      QToolTip::hideText();
    } else {
      QToolTip::showText(help->globalPos(), lines.join(QLatin1Char('\n')), this);
    }
    return true;
  }
  return QWidget::event(event);
}

void DamageView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  for (std::size_t bar = 0; bar < picture_.bars.size(); ++bar) paintBar(painter, bar);
  paintSelection(painter);
  const int top = kMargin + static_cast<int>(picture_.bars.size()) * kRow;
  painter.setPen(palette().color(QPalette::WindowText));
  painter.setFont(textFont(kSmallPixels, QFont::DemiBold));
  const QRect lines(kMargin, top + kWordsGap, width() - 2 * kMargin, kWordsHeight - kWordsGap);
  // What a break between words leaves empty of the first line is no room for more.
  const int room = lines.width() * 9 / 5;
  painter.drawText(lines, Qt::AlignTop | Qt::AlignLeft | Qt::TextWordWrap,
                   painter.fontMetrics().elidedText(words(), Qt::ElideRight, room));
  painter.setFont(font());
  paintLegend(painter);
  if (hasFocus()) {
    painter.setPen(QPen(focusColour(palette()), 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5));
  }
}

void DamageView::paintBar(QPainter& painter, std::size_t bar) const {
  const DamageBar& told = picture_.bars[bar];
  const QRectF area = barArea(bar);
  const QRectF name(area.left(), area.top() - kNameHeight, area.width(), kNameHeight - 3);
  painter.setFont(textFont(kSmallPixels, QFont::DemiBold));
  painter.setPen(palette().color(QPalette::WindowText));
  const QString length = shown(told.length);
  const int room = static_cast<int>(area.width()) - painter.fontMetrics().horizontalAdvance(length) - kKeyBetween;
  painter.drawText(name, Qt::AlignLeft | Qt::AlignBottom,
                   painter.fontMetrics().elidedText(shown(told.name), Qt::ElideRight, room));
  painter.setFont(font());
  painter.setPen(secondaryText(palette()));
  painter.drawText(name, Qt::AlignRight | Qt::AlignBottom, length);
  painter.fillRect(area, colourOf(DamagePaint::kept, palette()));
  paintMarks(painter, bar);
  if (told.isTime) paintTicks(painter, bar);
}

void DamageView::paintMarks(QPainter& painter, std::size_t bar) const {
  const QRectF area = barArea(bar);
  const double scale = devicePixelRatioF();
  std::vector<DamagePaint> columns(static_cast<std::size_t>(std::ceil(area.width() * scale)), DamagePaint::kept);
  for (const DamageMark& mark : picture_.bars[bar].marks) {
    const QRectF place = markArea(bar, mark);
    const auto first = static_cast<std::size_t>(std::max(0.0, std::floor((place.left() - area.left()) * scale)));
    const auto last = static_cast<std::size_t>(std::max(0.0, std::ceil((place.right() - area.left()) * scale)));
    for (std::size_t i = first; i < std::min(last, columns.size()); ++i) {
      if (weightOf(mark.paint) > weightOf(columns[i])) columns[i] = mark.paint;
    }
  }
  constexpr double kPatternFrom = 5;
  for (std::size_t begin = 0; begin < columns.size();) {
    std::size_t end = begin;
    while (end < columns.size() && columns[end] == columns[begin]) ++end;
    if (columns[begin] != DamagePaint::kept) {
      const QRectF stretch(area.left() + static_cast<double>(begin) / scale, area.top(),
                           static_cast<double>(end - begin) / scale, area.height());
      painter.fillRect(stretch, colourOf(columns[begin], palette()));
      QColor over = surface(palette());
      constexpr int kPatternAlpha = 110;
      over.setAlpha(kPatternAlpha);
      if (stretch.width() >= kPatternFrom) painter.fillRect(stretch, QBrush(over, patternOf(columns[begin])));
    }
    begin = end;
  }
}

void DamageView::paintTicks(QPainter& painter, std::size_t bar) const {
  const QRectF area = barArea(bar);
  const double extent = picture_.bars[bar].extent;
  if (!(extent > 0)) return;
  const double step = tickStep(extent, std::max(1.0, area.width() / kTickRoom));
  painter.setPen(secondaryText(palette()));
  for (double at = 0; at <= extent; at += step) {
    const double x = area.left() + at / extent * area.width();
    painter.drawLine(QPointF(x, area.bottom() + 1), QPointF(x, area.bottom() + 4));
    const QString label = clockTime(at);
    const int wide = painter.fontMetrics().horizontalAdvance(label);
    const double left = std::clamp(x - wide / 2.0, area.left(), area.right() - wide);
    painter.drawText(QRectF(left, area.bottom() + 3, wide + 1, kTickHeight - 3), Qt::AlignLeft | Qt::AlignTop, label);
  }
}

void DamageView::paintSelection(QPainter& painter) const {
  if (!selected_) return;
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(palette().color(QPalette::WindowText), 2));
  for (std::size_t bar = 0; bar < picture_.bars.size(); ++bar) {
    for (const DamageMark& mark : picture_.bars[bar].marks) {
      if (mark.loss == *selected_) painter.drawRect(markArea(bar, mark).adjusted(-1, -1, 1, 1));
    }
  }
  painter.setRenderHint(QPainter::Antialiasing, false);
}

std::vector<DamagePaint> DamageView::legend() const {
  std::array<bool, kDamagePaints> isUsed{};
  isUsed[static_cast<std::size_t>(DamagePaint::kept)] = true;
  for (const DamageBar& bar : picture_.bars) {
    for (const DamageMark& mark : bar.marks) isUsed[static_cast<std::size_t>(mark.paint)] = true;
  }
  std::vector<DamagePaint> used;
  for (std::size_t i = 0; i < kDamagePaints; ++i) {
    if (isUsed[i]) used.push_back(static_cast<DamagePaint>(i));
  }
  return used;
}

int DamageView::legendHeight(int width) const {
  int rows = 1;
  int x = kMargin;
  for (const DamagePaint paint : legend()) {
    const int wide = kKey + kKeyGap + fontMetrics().horizontalAdvance(nameOf(paint));
    if (x > kMargin && x + wide > width - kMargin) {
      ++rows;
      x = kMargin;
    }
    x += wide + kKeyBetween;
  }
  return rows * kLegendRow;
}

void DamageView::paintLegend(QPainter& painter) const {
  int x = kMargin;
  int y = kMargin + static_cast<int>(picture_.bars.size()) * kRow + kWordsHeight;
  for (const DamagePaint paint : legend()) {
    const int wide = kKey + kKeyGap + fontMetrics().horizontalAdvance(nameOf(paint));
    if (x > kMargin && x + wide > width() - kMargin) {
      y += kLegendRow;
      x = kMargin;
    }
    const QRect key(x, y + (kLegendRow - kKey) / 2, kKey, kKey);
    painter.fillRect(key, colourOf(paint, palette()));
    QColor over = surface(palette());
    constexpr int kPatternAlpha = 110;
    over.setAlpha(kPatternAlpha);
    painter.fillRect(key, QBrush(over, patternOf(paint)));
    painter.setPen(secondaryText(palette()));
    painter.drawText(QRect(x + kKey + kKeyGap, y, wide, kLegendRow), Qt::AlignVCenter | Qt::AlignLeft, nameOf(paint));
    x += wide + kKeyBetween;
  }
}

void DamageView::mouseMoveEvent(QMouseEvent* event) {
  const auto bar = barAt(event->position());
  if (bar) {
    const QRectF area = barArea(*bar);
    const double share = (event->position().x() - area.left()) / area.width();
    pointed_ = Pointed{*bar, share * picture_.bars[*bar].extent, lossesAt(event->position())};
  } else {
    pointed_.reset();
  }
  setCursor(pointed_ && !pointed_->losses.empty() ? Qt::PointingHandCursor : Qt::ArrowCursor);
  update();
}

void DamageView::leaveEvent(QEvent* event) {
  pointed_.reset();
  update();
  QWidget::leaveEvent(event);
}

void DamageView::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return QWidget::mousePressEvent(event);
  const auto bar = barAt(event->position());
  if (!bar) return;
  const std::vector<std::size_t> losses = lossesAt(event->position());
  if (!losses.empty()) select(losses.front());
  if (!onTime_) return;
  const DamageBar& told = picture_.bars[*bar];
  const QRectF area = barArea(*bar);
  if (told.isTime) {
    onTime_((event->position().x() - area.left()) / area.width() * told.extent);
  } else if (!losses.empty()) {
    onTime_(picture_.losses[losses.front()].seconds);
  }
}

void DamageView::walkTo(std::size_t loss) {
  select(loss);
  pointed_.reset();
}

void DamageView::keyPressEvent(QKeyEvent* event) {
  const std::size_t count = picture_.losses.size();
  if (count == 0) return QWidget::keyPressEvent(event);
  switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Up:
      return walkTo(selected_ && *selected_ > 0 ? *selected_ - 1 : 0);
    case Qt::Key_Right:
    case Qt::Key_Down:
      return walkTo(selected_ ? std::min(*selected_ + 1, count - 1) : 0);
    case Qt::Key_Home:
      return walkTo(0);
    case Qt::Key_End:
      return walkTo(count - 1);
    case Qt::Key_Return:
    case Qt::Key_Enter:
      if (selected_ && onTime_) onTime_(picture_.losses[*selected_].seconds);
      return;
    default:
      return QWidget::keyPressEvent(event);
  }
}

void DamageView::focusInEvent(QFocusEvent* event) {
  if (!selected_ && !picture_.losses.empty() && event->reason() != Qt::MouseFocusReason) walkTo(0);
  QWidget::focusInEvent(event);
}

}  // namespace zelvo::platform::qt
