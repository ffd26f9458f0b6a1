#include "platform/qt/window/offer_line.h"

#include <QAccessible>
#include <QBoxLayout>
#include <QPainter>

#include "platform/qt/drawing/appearance.h"
#include "platform/qt/drawing/text.h"

namespace zelvo::platform::qt {

namespace {

constexpr int kOfferGap = 16;
constexpr int kOfferEdge = 4;
constexpr int kOfferMargin = 8;

}  // namespace

OfferLine::OfferLine(MainQueue& queue, QtButton& button, Qt::Orientation orientation)
    : queue_(queue), sentence_(new QLabel) {
  sentence_->setTextFormat(Qt::PlainText);
  sentence_->setWordWrap(true);
  const bool isRow = orientation == Qt::Horizontal;
  const int indent = isRow ? kOfferGap : kOfferGap - kOfferEdge;
  auto* const parts = new QBoxLayout(isRow ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom, this);
  parts->setContentsMargins(indent + kOfferEdge, kOfferMargin, kOfferMargin, kOfferMargin);
  parts->setSpacing(isRow ? kOfferGap : kOfferEdge);
  parts->addWidget(sentence_, 1);
  parts->addWidget(&button, 0, isRow ? Qt::Alignment() : Qt::AlignLeft);
  if (!isRow) sentence_->setFont(textFont(kSmallPixels));
  setVisible(false);
}

void OfferLine::show(std::string_view sentence) {
  queue_.perform([this, text = shown(sentence)] {
    sentence_->setText(text);
    showNow(true);
    QAccessibleEvent said(sentence_, QAccessible::Alert);
    QAccessible::updateAccessibility(&said);
  });
}

void OfferLine::hide() {
  queue_.perform([this] { showNow(false); });
}

void OfferLine::showNow(bool isShown) {
  setVisible(isShown);
  if (other_ != nullptr) other_->setVisible(!isShown);
}

void OfferLine::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), strip(palette()));
  painter.fillRect(QRect(0, 0, kOfferEdge, height()), accent(palette()));
}

}  // namespace zelvo::platform::qt
