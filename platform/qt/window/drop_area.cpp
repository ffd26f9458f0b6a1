#include "platform/qt/window/drop_area.h"

#include <QFile>
#include <QMouseEvent>
#include <QPainter>
#include <QVBoxLayout>
#include <utility>

#include "platform/qt/drawing/appearance.h"
#include "platform/qt/texts.h"
#include "platform/qt/window/film_texts.h"

namespace zelvo::platform::qt {

namespace {

constexpr int kPictureWidth = 112;
constexpr int kPictureHeight = 84;
constexpr int kMargin = 24;
constexpr double kCorner = 6;
constexpr int kLeastHeight = 160;
constexpr int kHeightWithPicture = 270;  // lower than this, the text and the button need the room

QString nameOf(const std::string& path) {
  const QString whole = QFile::decodeName(QByteArray::fromStdString(path));
  return whole.mid(whole.lastIndexOf(QLatin1Char('/')) + 1);
}

}  // namespace

DropArea::DropArea(MainQueue& queue, Pictures& pictures, QtButton& chooser, QWidget* parent)
    : QWidget(parent),
      chooser_(chooser),
      picture_(new PictureWidget(pictures, "film-drop", QSize(kPictureWidth, kPictureHeight))),
      title_(new ElidedLabel),
      facts_(new QLabel),
      buttons_(new QHBoxLayout),
      lengthReader_(queue) {
  setCursor(Qt::PointingHandCursor);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  setMinimumHeight(kLeastHeight);
  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  column->setSpacing(kMargin / 2);
  column->addStretch(1);
  column->addWidget(picture_, 0, Qt::AlignHCenter);
  title_->setFont(textFont(kTitlePixels, QFont::DemiBold));
  title_->setAlignment(Qt::AlignCenter);
  column->addWidget(title_);
  facts_->setForegroundRole(QPalette::PlaceholderText);
  column->addWidget(facts_, 0, Qt::AlignHCenter);
  buttons_->setSpacing(kMargin);
  buttons_->addStretch(1);
  buttons_->addWidget(&chooser);
  buttons_->addStretch(1);
  column->addLayout(buttons_);
  column->addStretch(1);
  becomeCard(false);
}

void DropArea::show(ChosenFilm film) {
  title_->setWholeText(nameOf(film.path));
  facts_->setText(texts::chosenFacts(film.size, std::nullopt));
  becomeCard(true);
  if (!film.readLength) {
    lengthReader_.abandon();
    return;
  }
  lengthReader_.ask(std::move(film.readLength), [this, size = film.size](std::optional<double> seconds) {
    facts_->setText(texts::chosenFacts(size, seconds));
  });
}

void DropArea::clear() {
  lengthReader_.abandon();
  becomeCard(false);
}

void DropArea::becomeCard(bool isCard) {
  isCard_ = isCard;
  picture_->setName(isCard ? "film" : "film-drop");
  if (!isCard) title_->setWholeText(texts::dropHere());
  title_->setToolTip(isCard ? title_->toolTip() : QString());
  facts_->setVisible(isCard);
  // One button is filled at a time: with a film chosen, that is Repair.
  chooser_.setTitle(isCard ? texts::chooseAnother() : texts::chooseFile());
  chooser_.setOutlined(isCard);
  update();
  if (cardObserver_) cardObserver_(isCard);
}

void DropArea::resizeEvent(QResizeEvent*) { picture_->setVisible(height() >= kHeightWithPicture); }

void DropArea::addBeside(QWidget* widget) { buttons_->insertWidget(buttons_->count() - 1, widget); }

void DropArea::addLine(QWidget* widget) { layout()->addWidget(widget); }

void DropArea::setInviting(bool inviting) {
  isInviting_ = inviting;
  update();
}

void DropArea::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setBrush(strip(palette()));
  const QColor edge = isInviting_ ? accent(palette()) : line(palette());
  painter.setPen(QPen(edge, 2, isInviting_ || isCard_ ? Qt::SolidLine : Qt::DashLine));
  painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), kCorner, kCorner);
}

void DropArea::mousePressEvent(QMouseEvent* event) { event->accept(); }

void DropArea::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint())) chooser_.click();
}

}  // namespace zelvo::platform::qt
