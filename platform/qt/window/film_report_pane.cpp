#include "platform/qt/window/film_report_pane.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>

#include "platform/qt/drawing/appearance.h"
#include "platform/qt/drawing/text.h"
#include "platform/qt/texts.h"
#include "platform/qt/window/film_texts.h"
#include "platform/qt/window/window_page.h"

namespace zelvo::platform::qt {

namespace {

constexpr int kTitlePictureSize = 24;
constexpr int kSideTitlePixels = 20;
constexpr int kRowGap = 8;
constexpr int kNameGap = 6;
constexpr int kBoxMargin = 12;
constexpr int kBoxEdge = 4;

/// A box with an edge of warning colour.
class WarningBox final : public QWidget {
 public:
  WarningBox() = default;

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.fillRect(rect(), strip(palette()));
    painter.fillRect(QRect(0, 0, kBoxEdge, height()), warning(palette()));
  }
};

QLabel* figureLabel() {
  auto* const label = new QLabel(texts::nothing());
  label->setTextFormat(Qt::PlainText);
  label->setFont(textFont(kSmallPixels, QFont::DemiBold));
  return label;
}

/// The common name, and after it, more quietly, the file's own.
QWidget* codecRow(QLabel& name, QLabel& field) {
  auto* const both = new QWidget;
  auto* const row = new QHBoxLayout(both);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(kNameGap);
  name.hide();
  row->addWidget(&name);
  row->addWidget(&field, 1);
  return both;
}

}  // namespace

FilmReportPane::FilmReportPane(MainQueue& queue, Pictures& pictures, QLabel& videoField, QLabel& audioField)
    : queue_(queue),
      picture_(new PictureWidget(pictures, {}, QSize(kTitlePictureSize, kTitlePictureSize))),
      title_(headline(texts::resultTitle(FilmVerdict::good))),
      message_(explanation(texts::resultMessage({.verdict = FilmVerdict::good}))),
      figures_(new QGridLayout),
      videoName_(figureLabel()),
      audioName_(figureLabel()),
      unreadableBox_(new WarningBox),
      unreadable_(new QLabel) {
  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(kPageGap * 3 / 4);
  auto* const head = new QHBoxLayout;
  head->setSpacing(kRowGap + 2);
  picture_->hide();
  head->addWidget(picture_, 0, Qt::AlignVCenter);
  title_->setFont(textFont(kSideTitlePixels, QFont::DemiBold));
  head->addWidget(title_, 1);
  column->addLayout(head);
  column->addWidget(message_);

  figures_->setHorizontalSpacing(kPageGap);
  figures_->setVerticalSpacing(kRowGap);
  figures_->setColumnStretch(1, 1);
  column->addLayout(figures_);
  addFigure(texts::video(), *codecRow(*videoName_, videoField));
  addFigure(texts::audio(), *codecRow(*audioName_, audioField));
  pictures_ = addFigure(texts::pictures());
  sound_ = addFigure(texts::sound());
  share_ = addFigure(texts::kept());

  auto* const inBox = new QVBoxLayout(unreadableBox_);
  inBox->setContentsMargins(kBoxMargin + kBoxEdge, kBoxMargin, kBoxMargin, kBoxMargin);
  unreadable_->setWordWrap(true);
  unreadable_->setTextFormat(Qt::PlainText);
  unreadable_->setFont(textFont(kSmallPixels));
  inBox->addWidget(unreadable_);
  unreadableBox_->hide();
  column->addWidget(unreadableBox_);
  column->addStretch(1);
}

void FilmReportPane::addFigure(QLabel& name, QWidget& value) {
  const int row = figures_->rowCount();
  name.setForegroundRole(QPalette::PlaceholderText);
  name.setFont(textFont(kSmallPixels));
  value.setAccessibleDescription(name.text());
  figures_->addWidget(&name, row, 0);
  figures_->addWidget(&value, row, 1);
}

QLabel* FilmReportPane::addFigure(const QString& name) {
  QLabel* const value = figureLabel();
  value->setWordWrap(true);  // in some languages it is longer than a line
  addFigure(name, *value);
  return value;
}

QString FilmReportPane::figure(int row) const {
  return row == 0 ? pictures_->text() : row == 1 ? sound_->text() : share_->text();
}

QString FilmReportPane::pictureName() const { return shown(picture_->name()); }

void FilmReportPane::show(const FilmReport& report) {
  queue_.perform([this, report] { display(report); });
}

void FilmReportPane::clear() {
  queue_.perform([this] { display(std::nullopt); });
}

void FilmReportPane::display(const std::optional<FilmReport>& report) {
  const FilmReport told = report.value_or(FilmReport{.verdict = FilmVerdict::good});
  const bool isGood = told.verdict == FilmVerdict::good;
  picture_->setName(isGood ? std::string() : plain(texts::completedPicture(told.verdict)));
  picture_->setVisible(!isGood);
  title_->setText(texts::resultTitle(told.verdict));
  message_->setText(texts::resultMessage(told));
  videoName_->setText(shown(told.videoCodec));
  videoName_->setVisible(!told.videoCodec.empty());
  audioName_->setText(shown(told.audioCodec));
  audioName_->setVisible(!told.audioCodec.empty());
  pictures_->setText(report ? texts::keptPictures(told) : texts::nothing());
  sound_->setText(report ? texts::keptSound(told) : texts::nothing());
  share_->setText(report ? texts::keptShare(told) : texts::nothing());
  unreadable_->setText(texts::unreadable(told));
  unreadableBox_->setVisible(!unreadable_->text().isEmpty());
  if (sheet_ == nullptr) return;
  sheet_->message().setText(texts::completedMessage(told.verdict));
  sheet_->setHead(texts::completedPicture(told.verdict), texts::completedTitle(told.verdict));
}

}  // namespace zelvo::platform::qt
