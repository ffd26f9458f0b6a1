#include "platform/qt/deep/result_page.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <utility>

#include "platform/qt/deep/verdict_looks.h"
#include "platform/qt/deep_texts.h"
#include "platform/qt/drawing/appearance.h"
#include "platform/qt/drawing/text.h"

namespace zelvo::platform::qt {

namespace {

constexpr int kVerdictSize = 40;
constexpr int kSentencePixels = 18;
constexpr int kFilmWidth = 300;
constexpr int kMovieHeight = 172;
constexpr int kStackedMovieHeight = 280;
constexpr int kStackedWidth = 540;
/// Narrower, the film stands below the damage.
constexpr int kWidthForTwo = 800;
constexpr int kHalfGap = kPageGap / 2;

QLabel* smallTitle(const QString& text) {
  auto* const label = new QLabel(text);
  label->setTextFormat(Qt::PlainText);
  label->setFont(textFont(kTextPixels, QFont::DemiBold));
  return label;
}

QLabel* lineLabel(const QString& text) {
  auto* const label = new QLabel(text);
  label->setTextFormat(Qt::PlainText);
  label->setFont(textFont(kSmallPixels));
  label->setWordWrap(true);
  label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  return label;
}

QVBoxLayout* columnIn(QWidget& widget) {
  auto* const column = new QVBoxLayout(&widget);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(kHalfGap);
  return column;
}

}  // namespace

DeepResultPage::DeepResultPage(const PageParts& parts, MoviePane* movie)
    : WindowPage(parts, texts::deepRepair()),
      savebutton(parts.button(texts::saveFilm(), QtButton::Look::push)),
      copyreportbutton(parts.button(texts::copyReport(), QtButton::Look::push)),
      comparebutton(parts.button(texts::compare(), QtButton::Look::push)),
      donorbutton(parts.button(texts::useDonor(), QtButton::Look::link)),
      queue_(parts.queue),
      movie_(movie),
      verdict_(new PictureWidget(parts.pictures, {}, QSize(kVerdictSize, kVerdictSize))),
      film_(new ElidedLabel),
      sentence_(new QLabel),
      comparison_(new ComparisonTable),
      sides_(new QBoxLayout(QBoxLayout::LeftToRight)),
      damage_(new DamageView),
      lossesTitle_(smallTitle(texts::losses())),
      losses_(new LossList),
      leftOut_(lineLabel({})),
      lines_(new QGridLayout) {
  body()->addLayout(head());
  comparison_->hide();
  body()->addWidget(comparison_);
  sides_->setSpacing(kPageMargin - kHalfGap);
  sides_->addWidget(damageSide(), 1);
  filmSide_ = filmSide();
  sides_->addWidget(filmSide_);
  body()->addLayout(sides_);
  body()->addStretch(1);
  joinLosses();
  setFirstFocus(savebutton);
}

QLayout* DeepResultPage::head() {
  auto* const row = new QHBoxLayout;
  row->setSpacing(kPageGap);
  row->addWidget(verdict_, 0, Qt::AlignVCenter);
  auto* const words = new QVBoxLayout;
  words->setSpacing(2);
  film_->setFont(textFont(kSmallPixels));
  film_->setForegroundRole(QPalette::PlaceholderText);
  sentence_->setTextFormat(Qt::PlainText);
  sentence_->setFont(textFont(kSentencePixels, QFont::DemiBold));
  sentence_->setWordWrap(true);
  words->addWidget(film_);
  words->addWidget(sentence_);
  row->addLayout(words, 1);
  row->addWidget(savebutton, 0, Qt::AlignVCenter);
  setFilled(*savebutton);
  setSaving(*savebutton);
  return row;
}

QWidget* DeepResultPage::damageSide() {
  auto* const side = new QWidget;
  auto* const column = columnIn(*side);
  column->addWidget(damage_);
  column->addSpacing(kHalfGap);
  column->addWidget(lossesTitle_);
  column->addWidget(losses_);
  leftOut_->setForegroundRole(QPalette::PlaceholderText);
  column->addWidget(leftOut_);
  column->addStretch(1);
  return side;
}

QWidget* DeepResultPage::filmSide() {
  auto* const side = new QWidget;
  auto* const column = columnIn(*side);
  column->addWidget(movie_);
  auto* const buttons = new QHBoxLayout;
  buttons->setSpacing(kHalfGap);
  for (QtButton* const button : {copyreportbutton, comparebutton}) {
    button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    buttons->addWidget(button);
  }
  comparebutton->setToolTip(texts::compareTip());
  comparebutton->setAccessibleDescription(texts::compareTip());
  column->addLayout(buttons);
  donorbutton->hide();
  column->addWidget(donorbutton, 0, Qt::AlignLeft);
  column->addSpacing(kHalfGap);
  lines_->setHorizontalSpacing(kPageGap);
  lines_->setVerticalSpacing(kHalfGap);
  lines_->setColumnStretch(1, 1);
  column->addLayout(lines_);
  column->addStretch(1);
  return side;
}

void DeepResultPage::joinLosses() {
  damage_->setSelectionObserver([this](std::size_t loss) { losses_->mark(loss); });
  losses_->setMarkObserver([this](std::size_t loss) { damage_->select(loss); });
  damage_->setTimeReceiver([this](double seconds) {
    if (timeReceiver_) timeReceiver_(seconds);
  });
  losses_->setOpener([this](std::size_t loss) {
    if (timeReceiver_ && loss < damage_->picture().losses.size())
      timeReceiver_(damage_->picture().losses[loss].seconds);
  });
}

void DeepResultPage::setTimeReceiver(std::function<void(double seconds)> receiver) {
  timeReceiver_ = std::move(receiver);
}

void DeepResultPage::show(DeepResult result) {
  queue_.perform([this, result = std::move(result)] { display(result); });
}

void DeepResultPage::showComparison(const DeepComparison& comparison) {
  queue_.perform([this, comparison] { displayComparison(comparison); });
}

void DeepResultPage::display(DeepResult result) {
  const bool isHopeless = result.verdict == DeepVerdict::hopeless;
  verdict_->setName(pictureOf(result.verdict));
  film_->setWholeText(shown(result.film));
  sentence_->setText(shown(result.sentence));
  comparison_->hide();
  showLines(result.lines);
  movie_->setVisible(!isHopeless);
  losses_->showLosses(result.picture);
  const bool hasLosses = !result.picture.losses.empty();
  lossesTitle_->setVisible(hasLosses);
  losses_->setVisible(hasLosses);
  leftOut_->setText(texts::lossesLeftOut(result.picture.lossesLeftOut));
  leftOut_->setVisible(result.picture.lossesLeftOut > 0);
  damage_->setVisible(!result.picture.bars.empty());
  damage_->show(std::move(result.picture));
  setFirstFocus(isHopeless ? home : savebutton);
  arrange();
}

void DeepResultPage::showLines(const std::vector<DeepLine>& lines) {
  while (QLayoutItem* const old = lines_->takeAt(0)) {
    delete old->widget();
    delete old;
  }
  int row = 0;
  for (const DeepLine& line : lines) {
    QLabel* const about = lineLabel(shown(line.about));
    about->setForegroundRole(QPalette::PlaceholderText);
    about->setWordWrap(false);
    QLabel* const words = lineLabel(shown(line.words));
    words->setAccessibleDescription(shown(line.about));
    lines_->addWidget(about, row, 0);
    lines_->addWidget(words, row++, 1);
  }
}

void DeepResultPage::displayComparison(const DeepComparison& comparison) {
  comparison_->showComparison(comparison);
  comparison_->show();
  QAccessibleEvent said(comparison_, QAccessible::Alert);
  QAccessible::updateAccessibility(&said);
  bringIntoView(*comparison_);
}

void DeepResultPage::resizeEvent(QResizeEvent*) { arrange(); }

void DeepResultPage::arrange() {
  const bool areBeside = width() >= kWidthForTwo && !damage_->isHidden();
  sides_->setDirection(areBeside ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
  sides_->setAlignment(filmSide_, areBeside ? Qt::Alignment() : Qt::AlignLeft);
  const int picture = areBeside ? kMovieHeight : kStackedMovieHeight;
  const int width = areBeside ? kFilmWidth : kStackedWidth;
  movie_->setFixedHeight(picture + movie_->bar().heightForWidth(width));
  filmSide_->setFixedWidth(width);
}

}  // namespace zelvo::platform::qt
