#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <thread>

#include "tests/platform/qt/panel_bench.h"

namespace zelvo::tests {
namespace {

using platform::AlertPanel;
using platform::kAlertAlternate;
using platform::kAlertDefault;
using platform::kAlertOther;
using platform::qt::PanelFrame;
using platform::qt::QtButton;
using testing::ElementsAre;

AlertPanel question() {
  return {.title = "Keep it?",
          .message = "It can be made again.",
          .defaultButton = "Yes",
          .alternateButton = "No",
          .otherButton = "Later"};
}

class AlertPanels : public testing::Test {
 protected:
  /// Shows the alert and does `what` while it is up.
  int ask(const AlertPanel& alert, std::function<void()> what) {
    bench.later(std::move(what));
    return bench.alerts.runAlertPanel(alert);
  }

  PanelBench bench;
};

TEST_F(AlertPanels, ButtonsStandOtherAlternateDefault) {
  std::vector<std::string> titles;
  ask(question(), [&] {
    titles = bench.buttonTitles();
    bench.press(Qt::Key_Escape);
  });
  EXPECT_THAT(titles, ElementsAre("Later", "No", "Yes"));
}

TEST_F(AlertPanels, EachButtonHasItsAnswer) {
  EXPECT_EQ(ask(question(), [&] { bench.click(bench.button("Yes")); }), kAlertDefault);
  EXPECT_EQ(ask(question(), [&] { bench.click(bench.button("No")); }), kAlertAlternate);
  EXPECT_EQ(ask(question(), [&] { bench.click(bench.button("Later")); }), kAlertOther);
}

TEST_F(AlertPanels, EmptyThirdTitleShowsNoThirdButton) {
  AlertPanel alert = question();
  alert.otherButton = "";
  std::vector<std::string> titles;
  ask(alert, [&] {
    titles = bench.buttonTitles();
    bench.press(Qt::Key_Escape);
  });
  EXPECT_THAT(titles, ElementsAre("No", "Yes"));
}

TEST_F(AlertPanels, DefaultButtonWithoutTitleSaysOk) {
  std::vector<std::string> titles;
  ask({.title = "Done", .message = {}, .defaultButton = {}, .alternateButton = {}, .otherButton = {}}, [&] {
    titles = bench.buttonTitles();
    bench.press(Qt::Key_Return);
  });
  EXPECT_THAT(titles, ElementsAre("OK"));
}

TEST_F(AlertPanels, BlankTitleShowsNoTitleLine) {
  AlertPanel alert = question();
  alert.title = " ";
  std::vector<std::string> texts;
  ask(alert, [&] {
    texts = bench.shownTexts();
    bench.press(Qt::Key_Escape);
  });
  EXPECT_THAT(texts, ElementsAre("It can be made again."));
}

TEST_F(AlertPanels, SignIsTheOneThatIsWantedOrByTheNumberOfButtons) {
  AlertPanel alert = question();
  const auto sign = [&] {
    std::string shown;
    ask(alert, [&] {
      shown = bench.top()->pictureName().toStdString();
      bench.press(Qt::Key_Escape);
    });
    return shown;
  };
  EXPECT_EQ(sign(), "sheet-question");
  alert.sign = platform::SheetSign::done;
  EXPECT_EQ(sign(), "sheet-done");
  alert = {.title = "Gone", .message = {}, .defaultButton = {}, .alternateButton = {}, .otherButton = {}};
  EXPECT_EQ(sign(), "sheet-warning");
}

TEST_F(AlertPanels, EscAnswersCancelWhicheverButtonThatIs) {
  AlertPanel alert = question();
  EXPECT_EQ(ask(alert, [&] { bench.press(Qt::Key_Escape); }), kAlertAlternate);
  alert.defaultButton = "Cancel";
  EXPECT_EQ(ask(alert, [&] { bench.press(Qt::Key_Escape); }), kAlertDefault);
  alert.defaultButton = "Yes";
  alert.otherButton = "Cancel";
  EXPECT_EQ(ask(alert, [&] { bench.press(Qt::Key_Escape); }), kAlertOther);
}

TEST_F(AlertPanels, FocusStartsAtTheDefaultButtonAndEnterPressesIt) {
  QWidget* focused = nullptr;
  QWidget* expected = nullptr;
  const int answer = ask(question(), [&] {
    focused = bench.focus();
    expected = &bench.button("Yes");
    bench.press(Qt::Key_Return);
  });
  EXPECT_EQ(focused, expected);
  EXPECT_EQ(answer, kAlertDefault);
}

TEST_F(AlertPanels, EnterPressesTheButtonThatHasTheFocus) {
  const int answer = ask(question(), [&] {
    bench.press(Qt::Key_Tab, Qt::ShiftModifier);
    bench.press(Qt::Key_Return);
  });
  EXPECT_EQ(answer, kAlertAlternate);
}

TEST_F(AlertPanels, TabGoesRoundWithinThePanel) {
  std::vector<QWidget*> way;
  ask(question(), [&] {
    for (int step = 0; step < 3; ++step) {
      bench.press(Qt::Key_Tab);
      way.push_back(bench.focus());
    }
    const std::vector<QWidget*> expected = {&bench.button("Later"), &bench.button("No"), &bench.button("Yes")};
    EXPECT_EQ(way, expected);
    bench.press(Qt::Key_Escape);
  });
}

TEST_F(AlertPanels, WindowStaysActiveAndItsButtonShowsTheFocus) {
  ask(question(), [&] {
    EXPECT_TRUE(bench.window.isActiveWindow());
    EXPECT_EQ(QApplication::focusWidget(), &bench.button("Yes"));
    bench.press(Qt::Key_Escape);
  });
}

TEST_F(AlertPanels, FocusReturnsToWhereItWas) {
  QWidget* const before = bench.focus();
  ASSERT_NE(before, nullptr);
  ask(question(), [&] { bench.press(Qt::Key_Return); });
  EXPECT_EQ(bench.focus(), before);
  EXPECT_TRUE(bench.window.panels().isEmpty());
}

TEST_F(AlertPanels, NothingBelowTakesInputMeanwhile) {
  int pressed = 0;
  bench.window.choosePage().browsebutton->setAction([&](platform::Button&) { ++pressed; });
  ask(question(), [&] {
    bench.click(*bench.window.choosePage().browsebutton);
    bench.press(Qt::Key_O, Qt::ControlModifier);
    bench.window.close();
    EXPECT_TRUE(bench.window.isVisible());
    bench.press(Qt::Key_Return);
  });
  EXPECT_EQ(pressed, 0);
  bench.click(*bench.window.choosePage().browsebutton);
  EXPECT_EQ(pressed, 1);
}

TEST_F(AlertPanels, NestedAlertsEndTheInnerFirst) {
  int inner = 2;
  const int outer = ask(question(), [&] {
    inner =
        ask({.title = "Sure?", .message = {}, .defaultButton = "Go", .alternateButton = {}, .otherButton = {}}, [&] {
          EXPECT_EQ(bench.top()->title(), QStringLiteral("Sure?"));
          bench.press(Qt::Key_Return);
        });
    EXPECT_EQ(bench.top()->title(), QStringLiteral("Keep it?"));
    EXPECT_EQ(bench.focus(), &bench.button("Yes"));
    bench.click(bench.button("Later"));
  });
  EXPECT_EQ(inner, kAlertDefault);
  EXPECT_EQ(outer, kAlertOther);
}

TEST_F(AlertPanels, WorkForTheMainThreadIsServedMeanwhile) {
  std::thread worker;
  const int answer = ask(question(), [&] {
    worker = std::thread([&] { bench.queue.perform([&] { bench.click(bench.button("Later")); }); });
  });
  worker.join();
  EXPECT_EQ(answer, kAlertOther);
}

TEST_F(AlertPanels, TheEndOfTheProgramAnswersAsEscDoes) {
  AlertPanel safe = question();
  safe.defaultButton = "Cancel";
  int outer = 2;
  int inner = 2;
  bench.later([&] { outer = ask(question(), [&] { inner = ask(safe, [&] { bench.application.terminate(); }); }); });
  EXPECT_EQ(bench.application.run(), 0);
  EXPECT_EQ(inner, kAlertDefault);
  EXPECT_EQ(outer, kAlertAlternate);
  EXPECT_TRUE(bench.window.panels().isEmpty());
}

TEST_F(AlertPanels, NoneIsShownAfterTheEndOfTheProgram) {
  bench.later([&] { bench.application.terminate(); });
  EXPECT_EQ(bench.application.run(), 0);
  int shown = 0;
  bench.window.panels().setBeginObserver([&](PanelFrame&) { ++shown; });
  EXPECT_EQ(bench.alerts.runAlertPanel(question()), kAlertAlternate);
  EXPECT_EQ(shown, 0);
}

TEST_F(AlertPanels, HiddenWindowIsShownForAnAlert) {
  bench.window.hide();
  bool isVisible = false;
  ask(question(), [&] {
    isVisible = bench.top()->isVisible() && bench.window.isVisible();
    bench.click(bench.button("Yes"));
  });
  EXPECT_TRUE(isVisible);
}

TEST_F(AlertPanels, LongNamesBreakWithinThePanel) {
  AlertPanel alert = question();
  alert.message = "Only 12.0 MB are free in /media/" + std::string(300, 'w') + "/" + std::string(80, 'x') + ".";
  ask(alert, [&] {
    const QLabel& message = bench.top()->message();
    EXPECT_LE(bench.top()->width(), bench.window.width());
    EXPECT_TRUE(bench.top()->rect().contains(message.geometry()));
    EXPECT_LE(message.minimumSizeHint().width(), message.width());
    EXPECT_GE(message.height(), message.heightForWidth(message.width()));
    bench.press(Qt::Key_Return);
  });
}

TEST_F(AlertPanels, ScreenReaderIsToldTitleAndMessage) {
  ask(question(), [&] {
    QAccessibleInterface* const panel = QAccessible::queryAccessibleInterface(bench.top());
    EXPECT_EQ(panel->role(), QAccessible::Dialog);
    EXPECT_TRUE(panel->state().modal);
    EXPECT_EQ(panel->text(QAccessible::Name), QStringLiteral("Keep it?"));
    EXPECT_EQ(panel->text(QAccessible::Description), QStringLiteral("It can be made again."));
    bench.press(Qt::Key_Return);
  });
}

}  // namespace
}  // namespace zelvo::tests
