// F1, the help inside the window, and what lies over what while a question waits.
#include <gtest/gtest.h>

#include <QScrollBar>
#include <QTextBlock>
#include <fstream>
#include <sstream>

#include "platform/qt/panels/panel_frame.h"
#include "tests/platform/qt/window_bench.h"

namespace zelvo::tests {
namespace {

namespace qt = platform::qt;

class Help : public testing::Test {
 protected:
  void show(qt::PanelFrame& panel) {
    bench.sheets->beginSheet(panel, window, {});
    bench.settle();
    ASSERT_TRUE(bench.isShown(panel));
  }
  void alert(const platform::AlertPanel& alert, const std::function<void(qt::PanelFrame& panel)>& meanwhile) {
    bench.onceAPanelIsUp(meanwhile);
    static_cast<void>(bench.alerts->runAlertPanel(alert));
  }
  [[nodiscard]] bool helpIsUp() { return window.helpPanel().isShown(); }
  /// The topmost line that the help shows.
  [[nodiscard]] std::string topLine() {
    QTextBrowser& browser = *window.helpPanel().browser();
    return browser.cursorForPosition(QPoint(30, 12)).block().text().toStdString();
  }

  WindowBench bench;
  qt::MainWindow& window = *bench.window;
  qt::WindowPanels& panels = window.fixedPanels();
  const platform::AlertPanel question{.title = " ",
                                      .message = "Do you want to quit application?",
                                      .defaultButton = "Cancel",
                                      .alternateButton = "Yes",
                                      .otherButton = std::nullopt};
};

TEST_F(Help, FOneWhileASheetIsUpLeadsToThatMessage) {
  show(panels.filenotsupportedwindow);
  bench.key(Qt::Key_F1);
  ASSERT_TRUE(helpIsUp());
  EXPECT_EQ(topLine(), "This film cannot be repaired");
  EXPECT_TRUE(bench.isShown(panels.filenotsupportedwindow)) << "the message waits below";
}

TEST_F(Help, FOneWhileAQuestionIsUpLeadsToThatQuestion) {
  alert(question, [&](qt::PanelFrame&) {
    bench.key(Qt::Key_F1);
    EXPECT_TRUE(helpIsUp());
    EXPECT_EQ(topLine(), "Do you want to quit application?");
    bench.key(Qt::Key_Escape);
    EXPECT_FALSE(helpIsUp());
    bench.key(Qt::Key_Escape);
  });
}

TEST_F(Help, FOneWhileAnUnknownMessageIsUpLeadsToAllMessages) {
  alert({.title = "Something new",
         .message = "Nobody wrote about it.",
         .defaultButton = "OK",
         .alternateButton = std::nullopt,
         .otherButton = std::nullopt},
        [&](qt::PanelFrame&) {
          bench.key(Qt::Key_F1);
          EXPECT_EQ(topLine(), "What each message means");
          bench.key(Qt::Key_Escape);
          bench.key(Qt::Key_Escape);
        });
}

TEST_F(Help, FOneAndTheHelpButtonOfADeepRepairsPageLeadToWhatTellsOfIt) {
  for (const auto& [page, line] : {std::pair(platform::DeepPage::run, "The deep repair"),
                                   {platform::DeepPage::result, "What the deep repair shows"},
                                   {platform::DeepPage::films, "Several films"}}) {
    bench.deep->show(page);
    bench.settle();
    bench.key(Qt::Key_F1);
    ASSERT_TRUE(helpIsUp());
    EXPECT_EQ(topLine(), line);
    bench.key(Qt::Key_Escape);
    bench.click(*window.shownPage().help);
    ASSERT_TRUE(helpIsUp());
    EXPECT_EQ(topLine(), line);
    bench.key(Qt::Key_Escape);
  }
  bench.deep->show(platform::DeepPage::none);
}

TEST_F(Help, FOneInTheHelpChangesNothing) {
  show(panels.filenotselectedwindow);
  bench.key(Qt::Key_F1);
  const auto* const before = window.helpPanel().frame();
  bench.key(Qt::Key_F1);
  EXPECT_EQ(window.helpPanel().frame(), before);
}

TEST_F(Help, TheHelpGivesTheKeyboardBackToTheMessage) {
  show(panels.filenotselectedwindow);
  bench.key(Qt::Key_F1);
  bench.key(Qt::Key_Escape);
  EXPECT_FALSE(helpIsUp());
  EXPECT_TRUE(panels.filenotselectedokbutton.hasFocus());
  bench.key(Qt::Key_Return);
  EXPECT_TRUE(window.panels().isEmpty());
}

TEST_F(Help, OtherShortcutsStillPressNothingWhileAMessageIsUp) {
  show(panels.filenotselectedwindow);
  bench.key(Qt::Key_O, Qt::ControlModifier);
  EXPECT_EQ(window.panels().top(), &panels.filenotselectedwindow);
}

TEST_F(Help, EveryFixedMessageHasItsPlaceOnThePage) {
  std::ifstream file(ZELVO_HELP_PAGE);
  std::ostringstream page;
  page << file.rdbuf();
  for (const qt::PanelFrame* panel :
       {&panels.filenotselectedwindow, &panels.stoprepairwindow, &panels.invalidfilewindow,
        &panels.filenotsupportedwindow, &panels.repaircompletedwindow, &panels.saveprogresspanel,
        &panels.stopsavingwindow, &panels.savecompletedwindow, &panels.PreviewErrorWindow}) {
    EXPECT_NE(page.str().find("id=\"" + panel->helpTopic().toStdString() + "\""), std::string::npos)
        << panel->title().toStdString();
  }
}

TEST_F(Help, WhatNoBrowserOpensIsShownInside) {
  window.showUnopened(QUrl::fromLocalFile(QStringLiteral(ZELVO_HELP_PAGE)));
  bench.settle();
  ASSERT_TRUE(helpIsUp());
  EXPECT_TRUE(
      window.helpPanel().frame()->message().text().startsWith(QStringLiteral("No web browser could be started")));
  EXPECT_TRUE(window.helpPanel().browser()->toPlainText().contains(QStringLiteral("What it cannot do")));
}

TEST_F(Help, AnAddressOfTheWebIsToldInside) {
  window.showUnopened(QUrl(QStringLiteral("https://player.example/get")));
  bench.settle();
  EXPECT_TRUE(window.helpPanel().browser()->toPlainText().contains(QStringLiteral("https://player.example/get")));
}

TEST_F(Help, LinksBetweenThePagesWork) {
  window.showUnopened(QUrl::fromLocalFile(QStringLiteral(ZELVO_HELP_PAGE)));
  bench.settle();
  QTextBrowser& browser = *window.helpPanel().browser();
  Q_EMIT browser.anchorClicked(QUrl(QStringLiteral("tips_for_previewing.htm")));
  EXPECT_TRUE(browser.source().toString().endsWith(QStringLiteral("tips_for_previewing.htm")));
}

// ---- Sheets and questions ----

TEST_F(Help, ASheetThatComesDuringAQuestionLiesBelowIt) {
  alert(question, [&](qt::PanelFrame& asked) {
    show(panels.repaircompletedwindow);
    EXPECT_EQ(window.panels().top(), &asked);
    EXPECT_TRUE(asked.isAncestorOf(window.focusWidget())) << "the keyboard stays with the question";
    bench.key(Qt::Key_Escape);
  });
  EXPECT_EQ(window.panels().top(), &panels.repaircompletedwindow);
  EXPECT_TRUE(panels.repaircompletedokbutton.hasFocus());
  EXPECT_TRUE(window.isVisible());
}

TEST_F(Help, ASheetBelowAQuestionTakesNoClick) {
  alert(question, [&](qt::PanelFrame& asked) {
    show(panels.repaircompletedwindow);
    bench.click(panels.repaircompletedokbutton);
    EXPECT_TRUE(bench.isShown(panels.repaircompletedwindow));
    EXPECT_TRUE(bench.isShown(asked));
    bench.key(Qt::Key_Escape);
  });
}

TEST_F(Help, ASheetMayEndBelowAQuestion) {
  alert(question, [&](qt::PanelFrame& asked) {
    show(panels.repaircompletedwindow);
    bench.sheets->endSheet(panels.repaircompletedwindow);
    panels.repaircompletedwindow.orderOut();
    EXPECT_EQ(window.panels().top(), &asked);
    bench.key(Qt::Key_Escape);
  });
  EXPECT_TRUE(window.panels().isEmpty());
}

TEST_F(Help, ASheetThatComesDuringTheHelpLiesBelowIt) {
  show(panels.stoprepairwindow);
  bench.key(Qt::Key_F1);
  show(panels.repaircompletedwindow);
  EXPECT_EQ(window.panels().top(), window.helpPanel().frame());
  bench.key(Qt::Key_Escape);
  EXPECT_EQ(window.panels().top(), &panels.repaircompletedwindow);
}

}  // namespace
}  // namespace zelvo::tests
