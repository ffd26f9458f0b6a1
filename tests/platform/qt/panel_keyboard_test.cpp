// Panels steered by the keyboard, and sheets that workers begin and end.
#include <algorithm>
#include <string>
#include <thread>
#include <vector>

#include "platform/qt/panels/panel_frame.h"
#include "platform/qt/panels/panel_stack.h"
#include "tests/platform/qt/element_bench.h"

namespace zelvo::tests {
namespace {

using platform::qt::PanelFrame;
using platform::qt::QtButton;
using Role = PanelFrame::Role;

class PanelKeyboard : public testing::Test {
 protected:
  PanelKeyboard() {
    for (auto* const button : {&first, &cancel, &byDefault}) {
      button->setAction(
          [this](platform::Button& sender) { presses.push_back(dynamic_cast<QtButton&>(sender).title()); });
    }
    browse.setAction([this](platform::Button&) { presses.emplace_back("browse"); });
    browse.setFocus();
    settle();
  }
  ~PanelKeyboard() override {
    while (PanelFrame* const top = panels.top()) panels.orderOut(*top);
  }
  void begin(PanelFrame& shown) {
    panels.begin(shown);
    settle();
  }
  void end(PanelFrame& shown) {
    panels.end(shown);
    panels.orderOut(shown);
    settle();
  }
  PanelFrame& makePanel(const char* title) {
    return *new PanelFrame(panels, {QString(), QString::fromUtf8(title), QStringLiteral("Text.")});
  }
  [[nodiscard]] QWidget* focus() const { return bench.window.focusWidget(); }
  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) { pressKey(bench.window, key, modifiers); }

  ElementBench bench;
  platform::qt::PanelStack& panels = bench.window.panels();
  QtButton& browse = *bench.window.choosePage().browsebutton;
  PanelFrame& panel = makePanel("Panel");
  QtButton& first = panel.addButton(QStringLiteral("first"));
  QtButton& cancel = panel.addButton(QStringLiteral("cancel"), Role::cancels);
  QtButton& byDefault = panel.addButton(QStringLiteral("default"), Role::byDefault);
  PanelFrame& upper = makePanel("Upper");
  QtButton& upperOk = upper.addButton(QStringLiteral("ok"), Role::defaultAndCancels);
  std::vector<std::string> presses;
};

using Presses = std::vector<std::string>;

TEST_F(PanelKeyboard, DefaultButtonHasTheFocusFirst) {
  begin(panel);
  EXPECT_EQ(focus(), &byDefault);
}

TEST_F(PanelKeyboard, FirstUsableButtonHasTheFocusWhenTheDefaultOneIsDisabled) {
  byDefault.setEnabled(false);
  begin(panel);
  EXPECT_EQ(focus(), &first);
}

TEST_F(PanelKeyboard, EnterPressesTheDefaultButton) {
  begin(panel);
  press(Qt::Key_Return);
  press(Qt::Key_Enter);
  EXPECT_EQ(presses, (Presses{"default", "default"}));
}

TEST_F(PanelKeyboard, EnterPressesTheButtonThatHasTheFocus) {
  begin(panel);
  first.setFocus();
  press(Qt::Key_Return);
  EXPECT_EQ(presses, (Presses{"first"}));
}

TEST_F(PanelKeyboard, EscPressesTheButtonThatCancelsWhereverTheFocusIs) {
  begin(panel);
  press(Qt::Key_Escape);
  first.setFocus();
  press(Qt::Key_Escape);
  EXPECT_EQ(presses, (Presses{"cancel", "cancel"}));
}

TEST_F(PanelKeyboard, EscDoesNothingWhereNothingCancels) {
  cancel.setEnabled(false);
  begin(panel);
  press(Qt::Key_Escape);
  EXPECT_TRUE(presses.empty());
  EXPECT_TRUE(panels.isShown(panel));
}

TEST_F(PanelKeyboard, TabGoesRoundInsideThePanelInItsOrder) {
  begin(panel);
  first.setFocus();
  std::vector<QWidget*> stops;
  for (int times = 0; times < 4; ++times) {
    press(Qt::Key_Tab);
    stops.push_back(focus());
  }
  EXPECT_EQ(stops, (std::vector<QWidget*>{&cancel, &byDefault, &first, &cancel}));
  press(Qt::Key_Backtab);
  EXPECT_EQ(focus(), &first);
  press(Qt::Key_Backtab);
  EXPECT_EQ(focus(), &byDefault);
}

TEST_F(PanelKeyboard, TabPassesOverDisabledButtons) {
  cancel.setEnabled(false);
  begin(panel);
  first.setFocus();
  press(Qt::Key_Tab);
  EXPECT_EQ(focus(), &byDefault);
}

TEST_F(PanelKeyboard, PanelWithoutAUsableButtonKeepsTheKeyboardAllTheSame) {
  for (auto* const button : {&first, &cancel, &byDefault}) button->setEnabled(false);
  begin(panel);
  for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Space, Qt::Key_Tab, Qt::Key_Return, Qt::Key_Space}) press(key);
  EXPECT_TRUE(presses.empty());
}

TEST_F(PanelKeyboard, KeyboardStaysInsideWhenTheLastUsableButtonIsDisabled) {
  begin(upper);
  upperOk.setEnabled(false);
  for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Space, Qt::Key_Tab, Qt::Key_Return, Qt::Key_Space}) press(key);
  EXPECT_TRUE(presses.empty());
  upperOk.setAction([this](platform::Button&) { presses.emplace_back("ok"); });
  upperOk.setEnabled(true);
  press(Qt::Key_Return);
  EXPECT_EQ(presses, (Presses{"ok"}));
}

TEST_F(PanelKeyboard, FocusComesBackAfterThePanel) {
  begin(panel);
  end(panel);
  EXPECT_EQ(focus(), &browse);
  press(Qt::Key_Return);
  EXPECT_EQ(presses, (Presses{"browse"}));
}

TEST_F(PanelKeyboard, FocusComesBackStepByStepAfterNestedPanels) {
  begin(panel);
  first.setFocus();
  begin(upper);
  EXPECT_EQ(focus(), &upperOk);
  end(upper);
  EXPECT_EQ(focus(), &first);
  end(panel);
  EXPECT_EQ(focus(), &browse);
}

TEST_F(PanelKeyboard, LowerPanelMayEndFirst) {
  QtButton& before = *bench.window.choosePage().repairbutton;
  before.setFocus();
  begin(panel);
  begin(upper);
  end(panel);
  EXPECT_EQ(focus(), &upperOk);
  EXPECT_EQ(panels.top(), &upper);
  end(upper);
  EXPECT_EQ(focus(), &before);
  EXPECT_TRUE(panels.isEmpty());
}

TEST_F(PanelKeyboard, FocusGoesToThePageThatCameMeanwhile) {
  begin(panel);
  bench.window.controllerOutlets().tabview.selectNextTabViewItem();
  settle();
  EXPECT_TRUE(panel.isAncestorOf(focus())) << "not before the panel ends";
  end(panel);
  EXPECT_EQ(focus(), bench.window.repairPage().stopbutton);
}

TEST_F(PanelKeyboard, FocusGoesElsewhereWhenItsButtonWasDisabledMeanwhile) {
  begin(panel);
  browse.setEnabled(false);
  end(panel);
  ASSERT_NE(focus(), nullptr);
  EXPECT_TRUE(focus()->isEnabled());
  EXPECT_TRUE(focus()->isVisible());
}

TEST_F(PanelKeyboard, PanelThatIsBroughtToTheFrontTakesTheKeyboardBack) {
  begin(panel);
  browse.setFocus();
  panel.makeKeyAndOrderFront();
  EXPECT_EQ(focus(), &byDefault);
}

TEST_F(PanelKeyboard, LowerPanelIsNotBroughtBeforeTheUpperOne) {
  begin(panel);
  begin(upper);
  panel.makeKeyAndOrderFront();
  EXPECT_EQ(focus(), &upperOk);
  EXPECT_EQ(panels.top(), &upper);
}

TEST_F(PanelKeyboard, CtrlQDoesNotCloseTheWindowWhileAPanelIsShown) {
  bench.window.setCloseJudge([this] {
    presses.emplace_back("judge");
    return true;
  });
  begin(panel);
  press(Qt::Key_Q, Qt::ControlModifier);
  EXPECT_TRUE(bench.window.isVisible());
  EXPECT_TRUE(presses.empty());
}

// ---- Sheets, as the application begins and ends them ----

using Sheets = PanelKeyboard;

TEST_F(Sheets, OpenAndCloseAtOnceOnTheMainThread) {
  bench.sheets.beginSheet(panel, bench.window, {});
  EXPECT_TRUE(panels.isShown(panel));
  bench.sheets.endSheet(panel);
  EXPECT_TRUE(panels.isEmpty());
  EXPECT_TRUE(panel.isVisible());
  panel.orderOut();
  EXPECT_FALSE(panel.isVisible());
}

TEST_F(Sheets, OneThatIsNotWantedAnyMoreDoesNotOpen) {
  int asked = 0;
  bench.sheets.beginSheet(panel, bench.window, [&] {
    ++asked;
    return false;
  });
  EXPECT_EQ(asked, 1);
  EXPECT_TRUE(panels.isEmpty());
  EXPECT_FALSE(panel.isVisible());
}

TEST_F(Sheets, WhetherAWorkersOneIsWantedIsAskedWhenItWouldOpen) {
  bool wanted = true;
  std::thread([&] {
    bench.sheets.beginSheet(panel, bench.window, [&] {
      EXPECT_TRUE(bench.queue.isMainThread());
      return wanted;
    });
  }).join();
  wanted = false;
  bench.onWorker([] {});
  EXPECT_TRUE(panels.isEmpty());
}

TEST_F(Sheets, WorkersCallsTakeEffectInOrder) {
  std::vector<std::string> seen;
  panels.setObserver([&] { seen.push_back(panels.isEmpty() ? "none" : panels.top()->title().toStdString()); });
  std::thread([&] {
    bench.sheets.beginSheet(panel, bench.window, {});
    bench.sheets.endSheet(panel);
    panel.orderOut();
    bench.sheets.beginSheet(upper, bench.window, {});
  }).join();
  EXPECT_TRUE(seen.empty());
  bench.onWorker([] {});
  EXPECT_EQ(seen, (std::vector<std::string>{"Panel", "none", "Upper"}));
  EXPECT_FALSE(panel.isVisible());
  EXPECT_TRUE(upper.isVisible());
  panels.setObserver({});
}

TEST_F(Sheets, TwoThatAWorkerQueuedKeepTheKeyboard) {
  bench.onWorker([&] {
    bench.sheets.beginSheet(panel, bench.window, {});
    bench.sheets.beginSheet(upper, bench.window, {});
  });
  upperOk.setAction([&](platform::Button&) {
    presses.emplace_back("ok");
    bench.sheets.endSheet(upper);
    upper.orderOut();
  });
  press(Qt::Key_Return);
  EXPECT_EQ(presses, (Presses{"ok"}));
  press(Qt::Key_Escape);
  EXPECT_EQ(presses, (Presses{"ok", "cancel"}));
}

TEST_F(Sheets, WindowThatIsNoPanelIsNoSheet) {
  bench.sheets.beginSheet(bench.window, bench.window, {});
  bench.sheets.endSheet(bench.window);
  EXPECT_TRUE(panels.isEmpty());
}

}  // namespace
}  // namespace zelvo::tests
