#include "platform/qt/window/offer_line.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QPainter>

#include "platform/qt/drawing/appearance.h"
#include "platform/qt/drawing/text.h"

namespace zelvo::platform::qt {

namespace {

constexpr int kOfferGap = 16;
constexpr int kOfferEdge = 4;
constexpr int kOfferMargin = 8;

}  // namespace

OfferLine::OfferLine(MainQueue& queue, QtButton& button) : queue_(queue), sentence_(new QLabel) {
  sentence_->setTextFormat(Qt::PlainText);
  sentence_->setWordWrap(true);
  auto* const row = new QHBoxLayout(this);
  row->setContentsMargins(kOfferGap + kOfferEdge, kOfferMargin, kOfferMargin, kOfferMargin);
  row->setSpacing(kOfferGap);
  row->addWidget(sentence_, 1);
  row->addWidget(&button);
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
