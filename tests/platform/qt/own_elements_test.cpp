// The window's own elements: the card, the progress line, the report with its sheet, the reason of a refusal, and the
// looks of buttons and panels.
#include <QLabel>
#include <QScrollArea>

#include "platform/qt/texts.h"
#include "platform/qt/window/film_texts.h"
#include "tests/platform/qt/element_bench.h"

namespace zelvo::tests {
namespace {

using platform::FilmReport;
using platform::FilmVerdict;
namespace qt = platform::qt;

class OwnElementsOfTheWindow : public testing::Test {
 protected:
  [[nodiscard]] const platform::OwnOutlets& own() const { return window.controllerOutlets().own; }
  void choose(const std::string& path, std::function<std::optional<double>()> readLength = {}) {
    window.controllerOutlets().pathfield.setStringValue(path);
    own().chosenfilm.show({.path = path, .size = 734000000, .readLength = std::move(readLength)});
  }
  /// Serves the queue until `condition` holds; gives up after a bounded number of turns.
  [[nodiscard]] bool comesTrue(const std::function<bool()>& condition) {
    for (int turn = 0; turn < 10000 && !condition(); ++turn) {
      while (bench.queue.serve()) {
      }
      QTest::qWait(1);
    }
    return condition();
  }
  static FilmReport report(FilmVerdict verdict) {
    FilmReport made;
    made.verdict = verdict;
    made.pictures = verdict == FilmVerdict::nothing ? 0 : 100;
    made.soundChunks = 50;
    made.share = verdict == FilmVerdict::good ? 1.0 : 0.4;
    made.videoCodec = "MPEG-4";
    made.audioCodec = "PCM";
    return made;
  }

  ElementBench bench;
  qt::MainWindow& window = bench.window;
  qt::ChoosePage& choosePage = window.choosePage();
  qt::FilmReportPane& pane = *window.resultPage().filmreport;
  qt::PanelFrame& sheet = window.fixedPanels().repaircompletedwindow;
};

// ---- The card ----

TEST_F(OwnElementsOfTheWindow, TheCardTellsNameAndSizeAndGivesRepairTheFocus) {
  EXPECT_EQ(choosePage.dropArea->title(), qt::texts::dropHere());
  choose("/films/summer.avi");
  settle();
  EXPECT_TRUE(choosePage.dropArea->isCard());
  EXPECT_EQ(choosePage.dropArea->title(), QStringLiteral("summer.avi"));
  EXPECT_EQ(choosePage.dropArea->facts(), QStringLiteral("734.0 MB"));
  EXPECT_EQ(choosePage.browsebutton->title(), qt::texts::chooseAnother().toStdString());
  EXPECT_TRUE(choosePage.browsebutton->isOutlined()) << "Repair is the next step";
  EXPECT_TRUE(choosePage.repairbutton->hasFocus());
}

TEST_F(OwnElementsOfTheWindow, TheLengthComesOnceItWasRead) {
  choose("/films/summer.avi", [] { return std::optional<double>(5520); });
  EXPECT_TRUE(comesTrue([&] { return choosePage.dropArea->facts() == QStringLiteral("734.0 MB \u00b7 1 h 32 min"); }))
      << choosePage.dropArea->facts().toStdString();
}

TEST_F(OwnElementsOfTheWindow, TheLengthOfAnotherFilmIsNotShown) {
  choose("/films/summer.avi", [] { return std::optional<double>(5520); });
  choose("/films/winter.avi", [] { return std::optional<double>(60); });
  EXPECT_TRUE(comesTrue([&] { return choosePage.dropArea->facts() == QStringLiteral("734.0 MB \u00b7 1 min 0 s"); }))
      << choosePage.dropArea->facts().toStdString();
}

TEST_F(OwnElementsOfTheWindow, TheCardGoesWithThePath) {
  choose("/films/summer.avi");
  settle();
  window.controllerOutlets().pathfield.setStringValue("");
  EXPECT_FALSE(choosePage.dropArea->isCard());
  EXPECT_EQ(choosePage.dropArea->title(), qt::texts::dropHere());
  EXPECT_EQ(choosePage.browsebutton->title(), qt::texts::chooseFile().toStdString());
  EXPECT_FALSE(choosePage.browsebutton->isOutlined());
  EXPECT_EQ(choosePage.firstFocus(), choosePage.browsebutton);
}

TEST_F(OwnElementsOfTheWindow, TheCardTakesNoFocusFromAPanel) {
  window.panels().begin(window.fixedPanels().filenotselectedwindow);
  choose("/films/summer.avi");
  settle();
  EXPECT_TRUE(window.fixedPanels().filenotselectedokbutton.hasFocus());
  window.panels().orderOut(window.fixedPanels().filenotselectedwindow);
}

TEST_F(OwnElementsOfTheWindow, TheCardGivesUpItsPictureWhereThereIsLittleRoom) {
  choose("/films/summer.avi");
  const auto pictureIsShown = [&] { return allBelow<qt::PictureWidget>(*choosePage.dropArea).front()->isVisible(); };
  settle();
  EXPECT_TRUE(pictureIsShown());
  window.setMinimumSize(640, 420);
  window.resize(640, 420);
  settle();
  EXPECT_FALSE(pictureIsShown());
  const QRect button(choosePage.browsebutton->mapTo(choosePage.dropArea, QPoint(0, 0)),
                     choosePage.browsebutton->size());
  EXPECT_TRUE(choosePage.dropArea->rect().contains(button));
}

// ---- Progress ----

TEST_F(OwnElementsOfTheWindow, TheProgressLineTellsWhatItIsToldToLookAt) {
  platform::RunProgress progress{platform::RunStage::searching, 10000000, 100000000};
  own().runprogress.follow([&] { return progress; });
  qt::RunProgressLine& line = *window.repairPage().runprogress;
  EXPECT_EQ(line.text(), QStringLiteral("Reading the damaged film: 10.0 of 100.0 MB"));
  const auto now = platform::TimeLeft::Clock::now();
  progress.done = 55000000;
  line.showLine(now + std::chrono::seconds(45));
  EXPECT_TRUE(line.text().startsWith(QStringLiteral("Reading the damaged film: 55.0 of 100.0 MB, about ")))
      << line.text().toStdString();
  progress = {};
  line.showLine(now + std::chrono::seconds(46));
  EXPECT_TRUE(line.text().isEmpty());
  own().runprogress.follow({});
}

TEST_F(OwnElementsOfTheWindow, TheTitleTellsThePerCentWhileARunOrASaveIsShown) {
  const platform::ControllerOutlets& outlets = window.controllerOutlets();
  outlets.progressbar.setDoubleValue(38.9);
  EXPECT_EQ(window.windowTitle(), qt::texts::productName());
  outlets.tabview.selectNextTabViewItem();
  EXPECT_EQ(window.windowTitle(), QStringLiteral("38 % \u2013 Zelvo AVI Repair"));
  outlets.progressbar.setDoubleValue(100);
  EXPECT_EQ(window.windowTitle(), QStringLiteral("100 % \u2013 Zelvo AVI Repair"));
  outlets.tabview.selectNextTabViewItem();
  EXPECT_EQ(window.windowTitle(), qt::texts::productName());
  window.panels().begin(window.fixedPanels().saveprogresspanel);
  outlets.saveprogressbar.setDoubleValue(7);
  EXPECT_EQ(window.windowTitle(), QStringLiteral("7 % \u2013 Zelvo AVI Repair"));
  window.panels().orderOut(window.fixedPanels().saveprogresspanel);
  EXPECT_EQ(window.windowTitle(), qt::texts::productName());
}

// ---- The report ----

TEST_F(OwnElementsOfTheWindow, TheVerdictChoosesTheSheetsPictureAndWords) {
  EXPECT_EQ(sheet.pictureName(), QStringLiteral("sheet-done"));
  for (const FilmVerdict verdict : {FilmVerdict::nothing, FilmVerdict::partly, FilmVerdict::good}) {
    own().filmreport.show(report(verdict));
    EXPECT_EQ(sheet.pictureName(), qt::texts::completedPicture(verdict));
    EXPECT_EQ(sheet.title(), qt::texts::completedTitle(verdict));
    EXPECT_EQ(sheet.message().text(), qt::texts::completedMessage(verdict));
    EXPECT_EQ(pane.title(), qt::texts::resultTitle(verdict));
    EXPECT_EQ(pane.pictureName(), verdict == FilmVerdict::good ? QString() : qt::texts::completedPicture(verdict));
  }
}

TEST_F(OwnElementsOfTheWindow, AReportFromAWorkerIsShown) {
  bench.onWorker([this] { own().filmreport.show(report(FilmVerdict::partly)); });
  EXPECT_EQ(pane.title(), qt::texts::resultTitle(FilmVerdict::partly));
}

TEST_F(OwnElementsOfTheWindow, ThePageTellsFiguresAndFailedReads) {
  FilmReport told = report(FilmVerdict::partly);
  told.failedReads = 2;
  told.unreadableBytes = 4096;
  told.firstUnreadable = 8192;
  own().filmreport.show(told);
  EXPECT_EQ(pane.figure(0), qt::texts::keptPictures(told));
  EXPECT_EQ(pane.figure(1), qt::texts::keptSound(told));
  EXPECT_EQ(pane.figure(2), qt::texts::keptShare(told));
  EXPECT_EQ(pane.failedReads(), qt::texts::unreadable(told));
  own().filmreport.clear();
  EXPECT_EQ(pane.figure(0), qt::texts::nothing());
  EXPECT_TRUE(pane.failedReads().isEmpty());
  EXPECT_EQ(sheet.pictureName(), QStringLiteral("sheet-done"));
}

TEST_F(OwnElementsOfTheWindow, TheCommonCodecNameStandsBesideTheGivenField) {
  window.jobOutlets().videocodecfield.setStringValue("FMP4");
  window.jobOutlets().audiocodecfield.setStringValue("Unknown");
  own().filmreport.show(report(FilmVerdict::good));
  EXPECT_EQ(pane.videoName(), QStringLiteral("MPEG-4"));
  EXPECT_EQ(pane.audioName(), QStringLiteral("PCM"));
  EXPECT_EQ(window.resultPage().videocodecfield.label().text(), QStringLiteral("FMP4"));
  EXPECT_EQ(window.resultPage().audiocodecfield.label().text(), QStringLiteral("Unknown"));
}

TEST_F(OwnElementsOfTheWindow, TheResultPageKeepsItsButtonsAtTheSmallestSize) {
  FilmReport told = report(FilmVerdict::partly);
  told.failedReads = 1;
  told.unreadableBytes = 4096;
  told.blankPictures = 7;
  own().filmreport.show(told);
  window.controllerOutlets().tabview.selectNextTabViewItem();
  window.controllerOutlets().tabview.selectNextTabViewItem();
  window.setMinimumSize(640, 420);
  window.resize(640, 420);
  settle();
  ASSERT_EQ(window.size(), QSize(640, 420));
  for (const qt::QtButton* button : {window.resultPage().previewbutton, window.resultPage().savebutton}) {
    const QRect place(button->mapTo(&window, QPoint(0, 0)), button->size());
    EXPECT_TRUE(window.rect().contains(place));
  }
}

TEST_F(OwnElementsOfTheWindow, TheSavedSizeSaysItsUnitBesideTheGivenNumber) {
  window.controllerOutlets().durationfield.setIntegerValue(217);
  EXPECT_EQ(window.resultPage().durationfield.label().text(), QStringLiteral("217"));
  const auto labels = allBelow<QLabel>(window.resultPage());
  const auto unit = std::find_if(labels.begin(), labels.end(),
                                 [](const QLabel* one) { return one->text() == qt::texts::mebibytesUnit(); });
  ASSERT_NE(unit, labels.end());
  EXPECT_FALSE((*unit)->isHidden());
  window.controllerOutlets().durationfield.setIntegerValue(0);
  EXPECT_TRUE((*unit)->isHidden());
}

// ---- The refusal ----

TEST_F(OwnElementsOfTheWindow, TheNotSupportedSheetNamesTheOneReason) {
  own().rejectionreason.show(platform::Rejection::noSound);
  EXPECT_EQ(window.fixedPanels().filenotsupportedwindow.message().text(),
            qt::texts::rejection(platform::Rejection::noSound));
}

// ---- Looks ----

TEST_F(OwnElementsOfTheWindow, APanelHasOneFilledButtonAtMost) {
  int panels = 0;
  for (const qt::PanelFrame* panel : allBelow<qt::PanelFrame>(window)) {
    int filled = 0;
    for (const qt::QtButton* button : allBelow<qt::QtButton>(*panel)) filled += button->isOutlined() ? 0 : 1;
    EXPECT_LE(filled, 1) << panel->title().toStdString();
    ++panels;
  }
  EXPECT_GE(panels, 9);
  EXPECT_FALSE(window.fixedPanels().stoprepaircancelbutton.isOutlined()) << "the default";
  EXPECT_TRUE(window.fixedPanels().stoprepairokbutton.isOutlined());
}

TEST_F(OwnElementsOfTheWindow, AnOutlinedButtonIsNotFilled) {
  window.panels().begin(window.fixedPanels().stoprepairwindow);
  settle();
  const auto middle = [](QWidget& button) { return button.grab().toImage().pixelColor(6, 6); };
  EXPECT_EQ(middle(window.fixedPanels().stoprepairokbutton), QColor(Qt::white));
  EXPECT_NE(middle(window.fixedPanels().stoprepaircancelbutton), QColor(Qt::white));
  window.panels().orderOut(window.fixedPanels().stoprepairwindow);
}

TEST_F(OwnElementsOfTheWindow, APanelCoversTheOneOfItsKindBelow) {
  qt::PanelFrame& below = window.fixedPanels().saveprogresspanel;
  qt::PanelFrame& above = window.fixedPanels().stopsavingwindow;
  window.panels().begin(below);
  window.panels().begin(above);
  settle();
  EXPECT_TRUE(above.geometry().contains(below.geometry()));
  window.panels().orderOut(above);
  window.panels().orderOut(below);
}

TEST_F(OwnElementsOfTheWindow, APanelChangesItsHeadAndItsRoom) {
  window.panels().begin(sheet);
  const int height = sheet.height();
  own().filmreport.show(report(FilmVerdict::partly));
  EXPECT_GT(sheet.height(), height) << "the longer message has room";
  window.panels().orderOut(sheet);
}

}  // namespace
}  // namespace zelvo::tests
