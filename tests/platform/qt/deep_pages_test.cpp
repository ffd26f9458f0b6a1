// The pages of the deep repair over the three others, and what leads to them: by real events.
#include "platform/qt/deep/deep_pages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDragEnterEvent>
#include <QMimeData>
#include <QUrl>
#include <string>
#include <vector>

#include "tests/platform/qt/deep_samples.h"
#include "tests/platform/qt/element_bench.h"

namespace zelvo::tests {
namespace {

using platform::DeepPage;
using platform::qt::QtButton;
using testing::ElementsAre;
using testing::IsEmpty;

class DeepPagesTest : public testing::Test {
 protected:
  void note(platform::Button& button, const std::string& name) {
    dynamic_cast<QtButton&>(button).setAction([this, name](platform::Button&) { presses.push_back(name); });
  }
  void show(DeepPage page) {
    outlets.pages.show(page);
    settle();
  }
  /// Where Tab leads from the page's Home on.
  std::vector<std::string> tabStops(platform::qt::WindowPage& page) {
    page.home->setFocus(Qt::TabFocusReason);
    std::vector<std::string> names;
    do {
      const QWidget* const focused = window.focusWidget();
      const auto* const button = dynamic_cast<const QtButton*>(focused);
      names.push_back(button != nullptr ? button->title() : focused->accessibleName().toStdString());
      pressKey(window, Qt::Key_Tab);
    } while (window.focusWidget() != page.home && names.size() < 20);
    return names;
  }
  [[nodiscard]] std::string title() const { return window.windowTitle().toStdString(); }

  ElementBench bench;
  platform::qt::MainWindow& window = bench.window;
  platform::qt::QtDeepPages& deep = bench.deep;
  const platform::DeepOutlets& outlets = deep.outlets();
  std::vector<std::string> presses;
};

// ---- Over the three pages ----

TEST_F(DeepPagesTest, LieOverTheThreePagesWhichStayAsTheyAre) {
  EXPECT_EQ(outlets.pages.shown(), DeepPage::none);
  for (const auto& [page, widget] : {std::pair<DeepPage, QWidget*>(DeepPage::run, &deep.runPage()),
                                     {DeepPage::result, &deep.resultPage()},
                                     {DeepPage::films, &deep.filmsPage()}}) {
    show(page);
    EXPECT_EQ(outlets.pages.shown(), page);
    EXPECT_TRUE(widget->isVisible());
    EXPECT_FALSE(window.choosePage().isVisible());
    EXPECT_EQ(window.page(), 0);
  }
  show(DeepPage::none);
  EXPECT_TRUE(window.choosePage().isVisible());
  EXPECT_EQ(window.focusWidget(), window.choosePage().browsebutton);
}

TEST_F(DeepPagesTest, UncoverThePageThatTheyCameFrom) {
  window.controllerOutlets().tabview.selectNextTabViewItem();
  window.controllerOutlets().tabview.selectNextTabViewItem();
  show(DeepPage::run);
  show(DeepPage::none);
  EXPECT_TRUE(window.resultPage().isVisible());
}

TEST_F(DeepPagesTest, FocusGoesToTheNextStepOfEachPage) {
  show(DeepPage::run);
  EXPECT_EQ(window.focusWidget(), deep.runPage().runstopbutton);
  outlets.result.show(partialResult());
  show(DeepPage::result);
  EXPECT_EQ(window.focusWidget(), deep.resultPage().savebutton);
  show(DeepPage::films);
  EXPECT_EQ(window.focusWidget(), deep.filmsPage().queueaddbutton);
}

TEST_F(DeepPagesTest, PageThatTurnsBelowDoesNotTakeTheKeyboard) {
  show(DeepPage::run);
  deep.runPage().home->setFocus(Qt::TabFocusReason);
  window.controllerOutlets().tabview.selectNextTabViewItem();
  settle();
  EXPECT_EQ(window.focusWidget(), deep.runPage().home);
  window.controllerOutlets().tabview.selectFirstTabViewItem();
}

TEST_F(DeepPagesTest, OnlyTheFirstPageWithoutPanelsIsForChoosing) {
  EXPECT_TRUE(outlets.pages.isChoosing());
  window.panels().begin(window.fixedPanels().filenotselectedwindow);
  EXPECT_FALSE(outlets.pages.isChoosing());
  window.panels().orderOut(window.fixedPanels().filenotselectedwindow);
  show(DeepPage::films);
  EXPECT_FALSE(outlets.pages.isChoosing());
  show(DeepPage::none);
  window.controllerOutlets().tabview.selectNextTabViewItem();
  EXPECT_FALSE(outlets.pages.isChoosing());
}

TEST_F(DeepPagesTest, TitleTellsHowFarARunIsAndNothingWhileNobodyKnows) {
  std::uint64_t all = 0;
  outlets.runprogress.follow([&all] { return platform::DeepProgress{"Reading", 40, all}; });
  show(DeepPage::run);
  EXPECT_EQ(title(), "Zelvo AVI Repair");
  all = 100;
  deep.runPage().runprogress->showProgress(platform::TimeLeft::Clock::now());
  EXPECT_EQ(title(), "40 % – Zelvo AVI Repair");
  show(DeepPage::none);
  EXPECT_EQ(title(), "Zelvo AVI Repair");
  outlets.runprogress.follow({});
}

TEST_F(DeepPagesTest, NothingIsDroppedOnThem) {
  std::vector<std::string> files;
  window.setFileReceiver([&files](const std::string& file) { files.push_back(file); });
  window.setFilesReceiver([&files](const std::vector<std::string>& all) { files = all; });
  QMimeData data;
  data.setUrls({QUrl::fromLocalFile(QStringLiteral("/films/a.avi"))});
  for (const DeepPage page : {DeepPage::run, DeepPage::result, DeepPage::films}) {
    show(page);
    QDragEnterEvent enter(window.rect().center(), Qt::CopyAction, &data, Qt::LeftButton, {});
    enter.ignore();
    QCoreApplication::sendEvent(window.windowHandle(), &enter);
    EXPECT_FALSE(enter.isAccepted());
    window.offerFile("/films/a.avi");
  }
  EXPECT_THAT(files, IsEmpty());
}

TEST_F(DeepPagesTest, ShortcutsOfThePagesBelowDoNothing) {
  note(*window.choosePage().browsebutton, "browse");
  note(*window.choosePage().repairbutton, "repair");
  note(*window.resultPage().savebutton, "other save");
  note(outlets.savebutton, "save");
  show(DeepPage::result);
  for (const Qt::Key key : {Qt::Key_O, Qt::Key_R, Qt::Key_P, Qt::Key_S}) pressKey(window, key, Qt::ControlModifier);
  EXPECT_THAT(presses, ElementsAre("save"));
  show(DeepPage::films);
  pressKey(window, Qt::Key_S, Qt::ControlModifier);
  EXPECT_THAT(presses, ElementsAre("save"));
}

// ---- By keyboard alone ----

TEST_F(DeepPagesTest, TabReachesEveryStopInTheOrderThatIsRead) {
  constexpr const char* kMark = "About Zelvo AVI Repair";
  show(DeepPage::run);
  EXPECT_THAT(tabStops(deep.runPage()), ElementsAre("Home", "Help", "Stop", kMark));
  outlets.result.show(partialResult());
  outlets.result.showComparison(sampleComparison());
  outlets.donorbutton.setHidden(false);
  show(DeepPage::result);
  EXPECT_THAT(tabStops(deep.resultPage()),
              ElementsAre("Home", "Help", "Save…", "Normal and deep repair", "Damage picture", "What happened where",
                          "Copy report", "Compare", "Use a film of the same camera…", kMark));
  show(DeepPage::films);
  EXPECT_THAT(tabStops(deep.filmsPage()),
              ElementsAre("Home", "Help", "Films to be repaired", "Change…", "Add films…", "Stop", "Start", kMark));
}

TEST_F(DeepPagesTest, EveryButtonIsPressedByTheKeyboard) {
  note(outlets.runhome, "home");
  note(outlets.runstopbutton, "stop");
  show(DeepPage::run);
  pressKey(window, Qt::Key_Return);
  deep.runPage().home->setFocus(Qt::TabFocusReason);
  pressKey(window, Qt::Key_Space);
  EXPECT_THAT(presses, ElementsAre("stop", "home"));
}

// ---- By mouse alone ----

TEST_F(DeepPagesTest, EveryButtonIsPressedByTheMouse) {
  outlets.donorbutton.setHidden(false);
  outlets.result.show(partialResult());
  const std::vector<std::pair<DeepPage, std::vector<std::pair<std::string, platform::Button*>>>> all = {
      {DeepPage::run, {{"run home", &outlets.runhome}, {"run stop", &outlets.runstopbutton}}},
      {DeepPage::result,
       {{"result home", &outlets.resulthome},
        {"save", &outlets.savebutton},
        {"copy", &outlets.copyreportbutton},
        {"compare", &outlets.comparebutton},
        {"donor", &outlets.donorbutton}}},
      {DeepPage::films,
       {{"films home", &outlets.queuehome},
        {"folder", &outlets.queuefolderbutton},
        {"add", &outlets.queueaddbutton},
        {"start", &outlets.queuestartbutton},
        {"stop", &outlets.queuestopbutton}}}};
  std::vector<std::string> names;
  for (const auto& [page, buttons] : all) {
    show(page);
    for (const auto& [name, button] : buttons) {
      names.push_back(name);
      note(*button, name);
      clickOn(dynamic_cast<QtButton&>(*button));
    }
  }
  EXPECT_EQ(presses, names);
}

// ---- On the given pages ----

TEST_F(DeepPagesTest, FirstPageHasAQuietButtonThatWaitsForAFilm) {
  note(outlets.deeprepairbutton, "deep");
  note(outlets.addfilmsbutton, "films");
  const QtButton& button = *window.choosePage().deeprepairbutton;
  clickOn(button);
  EXPECT_THAT(presses, IsEmpty());
  outlets.deeprepairbutton.setEnabled(true);
  clickOn(button);
  clickOn(*window.choosePage().addfilmsbutton);
  EXPECT_THAT(presses, ElementsAre("deep", "films")) << "and the drop area's chooser is not opened";
}

TEST_F(DeepPagesTest, OfferIsSeenWithItsButtonOrNotAtAll) {
  note(outlets.refusedofferbutton, "refused");
  note(outlets.partlyofferbutton, "partly");
  QtButton& refused = *window.choosePage().refusedofferbutton;
  EXPECT_FALSE(refused.isVisible());
  outlets.refusedoffer.show("A deep repair may still bring it back.");
  settle();
  EXPECT_EQ(window.choosePage().refusedoffer->sentence().toStdString(), "A deep repair may still bring it back.");
  clickOn(refused);
  outlets.refusedoffer.hide();
  settle();
  EXPECT_FALSE(refused.isVisible());

  window.controllerOutlets().tabview.selectNextTabViewItem();
  window.controllerOutlets().tabview.selectNextTabViewItem();
  outlets.partlyoffer.show("More may be brought back.");
  settle();
  clickOn(*window.resultPage().partlyofferbutton);
  EXPECT_THAT(presses, ElementsAre("refused", "partly"));
}

TEST_F(DeepPagesTest, OfferOfTheFirstPageStandsInForTheExplanation) {
  const auto explained = [this] {
    for (const QLabel* const label : window.choosePage().findChildren<QLabel*>()) {
      if (label->isVisible() && label->text().startsWith(QStringLiteral("Choose an AVI file."))) return true;
    }
    return false;
  };
  EXPECT_TRUE(explained());
  outlets.refusedoffer.show("Something");
  EXPECT_FALSE(explained());
  outlets.refusedoffer.hide();
  EXPECT_TRUE(explained());
}

TEST_F(DeepPagesTest, ElementsAreReachedFromWorkers) {
  bench.onWorker([this] {
    outlets.refusedoffer.show("From a worker");
    outlets.result.show(partialResult());
    outlets.queue.show(sampleQueue());
    outlets.runpathlabel.setStringValue("/films/a.avi");
  });
  EXPECT_EQ(window.choosePage().refusedoffer->sentence().toStdString(), "From a worker");
  EXPECT_EQ(deep.resultPage().sentence().toStdString(), partialResult().sentence);
  EXPECT_EQ(deep.filmsPage().queue->films().films(), sampleQueue());
  EXPECT_EQ(deep.runPage().runpathlabel.label().text().toStdString(), "/films/a.avi");
}

// ---- The sheet of a save ----

TEST_F(DeepPagesTest, SaveSheetTellsHowFarItIsAndIsStoppedByEscOrTheMouse) {
  note(outlets.savestopbutton, "stop");
  outlets.saveprogressbar.setDoubleValue(62);
  outlets.savebytestext.setStringValue("455.1 MB of 734.0 MB copied");
  bench.sheets.beginSheet(outlets.savepanel, outlets.mainWindow, {});
  settle();
  EXPECT_EQ(title(), "62 % – Zelvo AVI Repair");
  pressKey(window, Qt::Key_Escape);
  clickOn(dynamic_cast<QtButton&>(outlets.savestopbutton));
  EXPECT_THAT(presses, ElementsAre("stop", "stop"));
  std::vector<std::string> texts;
  for (const QLabel* const label : deep.savePanel().findChildren<QLabel*>()) {
    if (label->isVisible()) texts.push_back(label->text().toStdString());
  }
  EXPECT_THAT(texts, testing::Contains("455.1 MB of 734.0 MB copied"));
  bench.sheets.endSheet(outlets.savepanel);
  outlets.savepanel.orderOut();
  settle();
  EXPECT_EQ(title(), "Zelvo AVI Repair");
}

}  // namespace
}  // namespace zelvo::tests
