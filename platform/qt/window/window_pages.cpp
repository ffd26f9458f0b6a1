#include "platform/qt/window/window_pages.h"

#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QPainter>
#include <QScrollArea>
#include <QTimer>

#include "platform/qt/deep_texts.h"
#include "platform/qt/drawing/appearance.h"
#include "platform/qt/drawing/wrapping_row.h"
#include "platform/qt/texts.h"
#include "platform/qt/window/film_texts.h"

namespace zelvo::platform::qt {

namespace {

constexpr int kPathHeight = 48;
constexpr int kSideWidth = 248;
constexpr int kResultMargin = 12;
constexpr int kWordSpacing = 4;

/// A framed box round a path.
class PathBox final : public QWidget {
 public:
  explicit PathBox(ElidedLabel& path) {
    setFixedHeight(kPathHeight);
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(kPageGap, 0, kPageGap, 0);
    row->addWidget(&path);
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.fillRect(rect(), line(palette()));
    painter.fillRect(rect().adjusted(1, 1, -1, -1), surface(palette()));
  }
};

ElidedLabel* quietPath() {
  auto* const label = new ElidedLabel;
  label->setForegroundRole(QPalette::PlaceholderText);
  label->setFont(textFont(kSmallPixels));
  label->setAlignment(Qt::AlignCenter);
  return label;
}

/// A piece of a sentence, which takes no room while it says nothing.
QLabel* piece() {
  auto* const label = new QLabel;
  label->setTextFormat(Qt::PlainText);
  label->setForegroundRole(QPalette::PlaceholderText);
  label->setFont(textFont(kSmallPixels));
  label->hide();
  return label;
}

void hideWhileEmpty(QtTextField& field) {
  field.setShape([](const QString& text) { return text.trimmed(); });
  field.setObserver([label = &field.label()](const QString& text) { label->setVisible(!text.trimmed().isEmpty()); });
}

/// A value among the figures.
QLabel* valueLabel(const QString& accessibleDescription) {
  auto* const label = new ElidedLabel;
  label->setFont(textFont(kSmallPixels));
  label->setText(texts::nothing());
  label->setMinimumWidth(1);  // it gives way to the common name beside it
  label->setAccessibleDescription(accessibleDescription);
  return label;
}

/// The number, and after it its unit while there is one.
QWidget* savedRow(QtTextField& field) {
  auto* const both = new QWidget;
  auto* const row = new QHBoxLayout(both);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(4);
  auto* const unit = new QLabel(texts::mebibytesUnit());
  unit->setForegroundRole(QPalette::PlaceholderText);
  unit->setFont(textFont(kSmallPixels));
  unit->setToolTip(texts::mebibytesTip());
  unit->setAccessibleDescription(texts::mebibytesTip());
  unit->hide();
  field.label().setFont(textFont(kSmallPixels, QFont::DemiBold));
  field.setShape(texts::mebibytes);
  field.setObserver([unit](const QString& text) { unit->setVisible(texts::mebibytes(text) != texts::nothing()); });
  row->addWidget(&field.label());
  row->addWidget(unit, 1);
  return both;
}

/// `content` with a bar at its side where the window is too low for it.
QScrollArea* scrolled(QWidget* content) {
  auto* const area = new QScrollArea;
  area->setFrameShape(QFrame::NoFrame);
  area->setWidgetResizable(true);
  area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  area->setFocusPolicy(Qt::NoFocus);
  area->setWidget(content);
  area->viewport()->setAutoFillBackground(false);
  content->setAutoFillBackground(false);
  return area;
}

}  // namespace

ChoosePage::ChoosePage(const PageParts& parts)
    : WindowPage(parts, 0),
      browsebutton(parts.button(texts::chooseFile(), QtButton::Look::push)),
      repairbutton(parts.pictureButton(texts::repair(), "repair_button_normal")),
      dropArea(new DropArea(parts.queue, parts.pictures, *browsebutton)),
      textfield(parts.queue, *quietPath()),
      pathfield(parts.queue, *new ElidedLabel),
      workingfoldertext(parts.queue, *quietPath()),
      workingfolderbutton(parts.button(texts::changeWorkingFolder(), QtButton::Look::link)),
      deeprepairbutton(parts.button(texts::deepRepair(), QtButton::Look::push)),
      addfilmsbutton(parts.button(texts::addFilms(), QtButton::Look::link)),
      refusedofferbutton(parts.button(texts::tryDeepRepair(), QtButton::Look::push)),
      refusedoffer(new OfferLine(parts.queue, *refusedofferbutton, Qt::Horizontal)) {
  body()->addWidget(headline(texts::chooseHeadline()));
  QLabel* const explained = explanation(texts::chooseExplanation());
  body()->addWidget(explained);
  body()->addWidget(refusedoffer);
  refusedoffer->standInFor(*explained);
  textfield.setShape(texts::lastChosen);
  textfield.setObserver([this](const QString&) { showChoice(); });
  pathfield.setObserver([this](const QString& path) {
    showChoice();
    if (path.isEmpty()) dropArea->clear();
  });
  textfield.label().hide();
  dropArea->addBeside(addfilmsbutton);
  addfilmsbutton->setToolTip(texts::addFilmsTip());
  addfilmsbutton->setAccessibleDescription(texts::addFilmsTip());
  dropArea->addLine(&textfield.label());
  body()->addWidget(dropArea, 1);

  auto& path = dynamic_cast<ElidedLabel&>(pathfield.label());
  path.setPlaceholder(texts::noFileYet());
  path.setAccessibleDescription(texts::stepName(0));
  repairbutton->showTitle();
  auto* const row = new QHBoxLayout;
  row->setSpacing(kPageGap);
  row->addWidget(new PathBox(path), 1);
  row->addWidget(deeprepairbutton);
  row->addWidget(repairbutton);
  deeprepairbutton->setFixedHeight(kPathHeight);
  deeprepairbutton->setToolTip(texts::deepRepairTip());
  deeprepairbutton->setAccessibleDescription(texts::deepRepairTip());
  deeprepairbutton->setEnabled(false);
  body()->addLayout(row);
  body()->addWidget(workingFolderLine());
  setFirstFocus(browsebutton);
  dropArea->setCardObserver([this](bool isCard) {
    setFirstFocus(isCard ? static_cast<QWidget*>(repairbutton) : browsebutton);
    // Once whatever was open over the page has given the focus back: the next step is at hand.
    if (isCard) QTimer::singleShot(0, this, [this] { focusRepair(); });
  });
}

void ChoosePage::focusRepair() {
  const QWidget* const focused = window()->focusWidget();
  const bool isOurs = focused == nullptr || isAncestorOf(focused);
  if (isOurs && dropArea->isCard() && isVisible()) repairbutton->setFocus(Qt::OtherFocusReason);
}

QWidget* ChoosePage::workingFolderLine() {
  auto* const area = new QWidget;
  auto* const row = new QHBoxLayout(area);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(kPageGap);
  workingfoldertext.label().setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  row->addWidget(&workingfoldertext.label(), 1);
  row->addWidget(workingfolderbutton);
  workingFolder_ = area;
  workingfoldertext.setObserver([this](const QString&) { showChoice(); });
  showChoice();
  return area;
}

void ChoosePage::showChoice() {
  if (workingFolder_ != nullptr) {
    workingFolder_->setVisible(!workingfoldertext.text().isEmpty() && !pathfield.text().isEmpty());
  }
  // The path stands below already while it is the chosen one.
  textfield.label().setVisible(!textfield.text().isEmpty() && textfield.text() != pathfield.text());
}

RepairPage::RepairPage(const PageParts& parts)
    : WindowPage(parts, 1),
      pathlabel(parts.queue, *new ElidedLabel),
      status(parts.queue, *new ElidedLabel),
      bar(new FlatProgressBar),
      progressbar(parts.queue, *bar),
      runprogress(new RunProgressLine),
      waitingtext(parts.queue, *explanation({})),
      stopbutton(parts.button(texts::stop(), QtButton::Look::push)) {
  auto* const column = new QVBoxLayout;
  column->setSpacing(kPageGap);
  column->addWidget(headline(texts::repairHeadline()));
  pathlabel.label().setForegroundRole(QPalette::PlaceholderText);
  column->addWidget(&pathlabel.label());
  column->addSpacing(kPageGap);
  status.label().setFont(textFont(kTextPixels, QFont::DemiBold));
  column->addWidget(&status.label());
  bar->setAccessibleName(texts::repairHeadline());
  column->addWidget(bar);
  column->addWidget(runprogress);
  hideWhileEmpty(waitingtext);
  waitingtext.label().hide();
  column->addWidget(&waitingtext.label());
  column->addWidget(explanation(texts::repairExplanation()));
  column->addSpacing(kPageGap);
  column->addWidget(stopbutton, 0, Qt::AlignLeft);
  showInTheMiddle(column);
  setFirstFocus(stopbutton);
}

ResultPage::ResultPage(const PageParts& parts, MoviePane& movie)
    : WindowPage(parts, 2),
      result(new HostedWidget),
      videocodecfield(parts.queue, *valueLabel(texts::video())),
      audiocodecfield(parts.queue, *valueLabel(texts::audio())),
      filmreport(new FilmReportPane(parts.queue, parts.pictures, videocodecfield.label(), audiocodecfield.label())),
      durationfield(parts.queue, *new QLabel(texts::nothing())),
      savedsizelabel(parts.queue, *new QLabel),
      previewbutton(parts.button(texts::preview(), QtButton::Look::push)),
      savebutton(parts.button(texts::save(), QtButton::Look::push)),
      clickherebutton(parts.button(texts::clickHere(), QtButton::Look::link)),
      downloadmplayertext(parts.queue, *piece()),
      downloadmplayertext1(parts.queue, *piece()),
      downloadmplayertext2(parts.queue, *piece()),
      downloadmplayertext3(parts.queue, *piece()),
      downloadmplayertext4(parts.queue, *piece()),
      partlyofferbutton(parts.button(texts::tryDeepRepair(), QtButton::Look::link)),
      partlyoffer(new OfferLine(parts.queue, *partlyofferbutton, Qt::Vertical)) {
  auto* const inResult = new QVBoxLayout(result);
  inResult->setContentsMargins(kResultMargin, kResultMargin, kResultMargin, kResultMargin);
  inResult->addWidget(&movie);
  movie.setPalette(paletteOf(Appearance::light));  // the result area is white in every scheme

  auto* const side = new QVBoxLayout;
  side->setSpacing(kPageGap * 3 / 4);
  videocodecfield.setShape(texts::codec);
  audiocodecfield.setShape(texts::codec);
  savedsizelabel.label().setText(texts::lastSaved());
  filmreport->addFigure(savedsizelabel.label(), *savedRow(durationfield));
  side->addWidget(scrolled(filmreport), 1);
  side->addWidget(partlyoffer);
  previewbutton->setTwoState(texts::stopPreview());
  movie.setStarter([this] { previewbutton->click(); });
  for (QtButton* button : {previewbutton, savebutton}) {
    button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    side->addWidget(button);
  }
  auto* const sideArea = new QWidget;
  side->setContentsMargins(0, 0, 0, 0);
  sideArea->setLayout(side);
  sideArea->setFixedWidth(kSideWidth);

  auto* const row = new QHBoxLayout;
  row->setSpacing(kPageMargin - kPageGap / 2);
  row->addWidget(result, 1);
  row->addWidget(sideArea);
  body()->addLayout(row, 1);

  auto* const sentence = new WrappingRow(kWordSpacing);
  for (QtTextField* field : {&downloadmplayertext, &downloadmplayertext1, &downloadmplayertext2}) {
    hideWhileEmpty(*field);
    sentence->addWidget(&field->label());
  }
  clickherebutton->hide();
  sentence->addWidget(clickherebutton);
  for (QtTextField* field : {&downloadmplayertext3, &downloadmplayertext4}) {
    hideWhileEmpty(*field);
    sentence->addWidget(&field->label());
  }
  body()->addLayout(sentence);
  downloadmplayertext.setStringValue(texts::tip().toStdString());
  setSaving(*savebutton);
  setFirstFocus(previewbutton);
}

}  // namespace zelvo::platform::qt
