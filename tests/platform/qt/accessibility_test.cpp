// What a screen reader is told, and where the keyboard can go.
#include <QScrollArea>
#include <array>
#include <string>
#include <vector>

#include "platform/qt/panels/panel_frame.h"
#include "tests/platform/qt/bounded_wait.h"
#include "tests/platform/qt/element_bench.h"
#include "tests/platform/qt/screen_reader.h"

namespace zelvo::tests {
namespace {

using platform::qt::PanelFrame;
using platform::qt::QtButton;
using Names = std::vector<std::string>;

class Accessibility : public testing::Test {
 protected:
  void showPage(int page) {
    window.controllerOutlets().tabview.selectFirstTabViewItem();
    for (int step = 0; step < page; ++step) window.controllerOutlets().tabview.selectNextTabViewItem();
    settle();
  }
  /// Everything of the hint is there.
  void showHint() {
    window.controllerOutlets().clickherebutton.setHidden(false);
    settle();
  }
  [[nodiscard]] platform::qt::WindowPage& pageAt(int page) {
    if (page == 0) return window.choosePage();
    if (page == 1) return window.repairPage();
    return window.resultPage();
  }
  /// Where Tab leads from the first stop on, until it comes round.
  std::vector<QWidget*> tabStops() {
    std::vector<QWidget*> stops;
    pressKey(window, Qt::Key_Tab);
    QWidget* const start = window.focusWidget();
    do {
      stops.push_back(window.focusWidget());
      pressKey(window, Qt::Key_Tab);
    } while (window.focusWidget() != start && stops.size() < 50);
    return stops;
  }

  ElementBench bench;
  platform::qt::MainWindow& window = bench.window;
};

TEST_F(Accessibility, NoInteractiveElementIsNamelessOnAnyPage) {
  showHint();
  for (const int page : {0, 1, 2}) {
    showPage(page);
    int interactive = 0;
    walk(told(window), [&](QAccessibleInterface& element) {
      if (!isInteractive(element)) return;
      ++interactive;
      EXPECT_NE(nameOf(element), "") << "page " << page << ": " << element.object()->metaObject()->className();
    });
    EXPECT_GE(interactive, 4) << page;
  }
}

TEST_F(Accessibility, NoInteractiveElementIsNamelessInAnyPanel) {
  for (PanelFrame* panel : allBelow<PanelFrame>(window)) {
    window.panels().begin(*panel);
    int interactive = 0;
    walk(told(*panel), [&](QAccessibleInterface& element) {
      if (!isInteractive(element)) return;
      ++interactive;
      EXPECT_NE(nameOf(element), "") << panel->title().toStdString();
    });
    EXPECT_GE(interactive, 2) << panel->title().toStdString();
    window.panels().orderOut(*panel);
  }
}

TEST_F(Accessibility, IconsTellWhatTheyAre) {
  for (const int page : {0, 1, 2}) {
    showPage(page);
    const platform::qt::WindowPage& shown = pageAt(page);
    const std::array<std::pair<QtButton*, const char*>, 3> icons = {
        std::pair(shown.home, "Home"), {shown.help, "Help"}, {shown.update, "Look for an update"}};
    for (const auto& [icon, name] : icons) {
      EXPECT_EQ(nameOf(*icon), name);
      EXPECT_EQ(told(*icon).role(), QAccessible::Button);
    }
  }
}

TEST_F(Accessibility, ButtonsAreButtonsWithTheirTitles) {
  showHint();
  const std::array<std::pair<QtButton*, const char*>, 6> buttons = {
      std::pair(window.choosePage().browsebutton, "Choose a file…"),
      {window.choosePage().repairbutton, "Repair"},
      {window.repairPage().stopbutton, "Stop"},
      {window.resultPage().previewbutton, "Preview"},
      {window.resultPage().savebutton, "Save…"},
      {window.resultPage().clickherebutton, "click here"}};
  for (const auto& [button, name] : buttons) {
    EXPECT_EQ(nameOf(*button), name);
    EXPECT_EQ(told(*button).role(), QAccessible::Button) << name;
  }
}

TEST_F(Accessibility, ButtonOfTwoStatesIsNamedAfterWhatItDoesNext) {
  QtButton& preview = *window.resultPage().previewbutton;
  preview.setState(platform::Button::State::on);
  EXPECT_EQ(nameOf(preview), "Stop preview");
  EXPECT_EQ(told(preview).role(), QAccessible::Button) << "its name says it all; it is no box to tick";
  EXPECT_EQ(told(preview).state().checked, 0U);
}

TEST_F(Accessibility, ButtonIsPressedByAScreenReader) {
  int presses = 0;
  window.choosePage().browsebutton->setAction([&](platform::Button&) { ++presses; });
  QAccessibleInterface& button = told(*window.choosePage().browsebutton);
  QAccessibleActionInterface* const actions = button.actionInterface();
  ASSERT_NE(actions, nullptr);
  actions->doAction(QAccessibleActionInterface::pressAction());
  // The button is shown pressed for a moment first.
  waitUntil([&] { return presses > 0; }, settle, [] { return std::string("no press"); });
  EXPECT_EQ(presses, 1);
}

TEST_F(Accessibility, WindowIsAFrameNamedAfterTheProduct) {
  EXPECT_EQ(told(window).role(), QAccessible::Window);
  EXPECT_EQ(nameOf(window), "Zelvo AVI Repair");
}

TEST_F(Accessibility, NoNameHoldsThePlacesAtWhichALineMayEnd) {
  const std::string path = "/media/somebody/a very long name of a disk without an end/film_of_a_summer_by_the_sea.avi";
  window.controllerOutlets().savecompletedtext.setStringValue("The repaired file was saved as " + path + ".");
  auto& said = *new PanelFrame(window.panels(), {QString(), QString(), QString::fromStdString("Not found: " + path)});
  for (PanelFrame* panel : {&window.fixedPanels().savecompletedwindow, &said}) {
    window.panels().begin(*panel);
    settle();
    EXPECT_TRUE(panel->message().text().contains(QChar(0x200b))) << "a long path may be broken";
    walk(told(*panel), [&](QAccessibleInterface& element) {
      for (const auto kind : {QAccessible::Name, QAccessible::Description}) {
        EXPECT_FALSE(element.text(kind).contains(QChar(0x200b))) << element.text(kind).toStdString();
      }
    });
    EXPECT_NE(told(panel->message()).text(QAccessible::Name).toStdString().find(path), std::string::npos);
    window.panels().orderOut(*panel);
  }
}

TEST_F(Accessibility, UpdateButtonsSayWhatTheyCannotDo) {
  window.setUpdateRemark(QStringLiteral("There is no updater."));
  for (int page = 0; page < 3; ++page) {
    QtButton& button = *pageAt(page).update;
    EXPECT_EQ(told(button).text(QAccessible::Description).toStdString(), "There is no updater.");
    EXPECT_EQ(button.toolTip().toStdString(), "Look for an update\nThere is no updater.");
    EXPECT_EQ(nameOf(button), "Look for an update");
    EXPECT_TRUE(button.isEnabled()) << "a press does what it always does";
  }
}

TEST_F(Accessibility, ScrollAreaHasNoChildBehindItsLast) {
  showPage(2);
  const std::vector<QScrollArea*> areas = allBelow<QScrollArea>(window);
  ASSERT_FALSE(areas.empty());
  for (QScrollArea* area : areas) {
    QAccessibleInterface& element = told(*area);
    const int count = element.childCount();
    ASSERT_GE(count, 1);
    for (int past = 0; past < 1000; ++past) EXPECT_EQ(element.child(count + past), nullptr);
    EXPECT_EQ(element.child(-1), nullptr);
    bool holdsContent = false;
    walk(element,
         [&](QAccessibleInterface& below) { holdsContent = holdsContent || below.object() == area->widget(); });
    EXPECT_TRUE(holdsContent || !area->isVisible());
  }
}

TEST_F(Accessibility, DisabledButtonSaysSo) {
  window.controllerOutlets().savebutton.setEnabled(false);
  EXPECT_EQ(told(*window.resultPage().savebutton).state().disabled, 1U);
}

TEST_F(Accessibility, StepIsTold) {
  for (const int page : {0, 1, 2}) {
    showPage(page);
    Names names;
    walk(told(window), [&](QAccessibleInterface& element) { names.push_back(nameOf(element)); });
    const std::array expected = {"Step 1 of 3: Choose", "Step 2 of 3: Repair", "Step 3 of 3: Result"};
    EXPECT_EQ(std::count(names.begin(), names.end(), expected[static_cast<std::size_t>(page)]), 1) << page;
  }
}

TEST_F(Accessibility, ProgressBarsHaveNamesAndValues) {
  window.controllerOutlets().progressbar.setDoubleValue(38.4);
  window.controllerOutlets().saveprogressbar.setDoubleValue(62);
  const std::array<std::tuple<platform::qt::FlatProgressBar*, const char*, double>, 2> bars = {
      std::tuple(window.repairPage().bar, "Repairing your film", 38.4),
      {&window.fixedPanels().saveBar, "Saving your film", 62.0}};
  for (const auto& [bar, name, percent] : bars) {
    QAccessibleInterface& element = told(*bar);
    EXPECT_EQ(element.role(), QAccessible::ProgressBar);
    EXPECT_EQ(nameOf(element), name);
    QAccessibleValueInterface* const value = element.valueInterface();
    ASSERT_NE(value, nullptr);
    EXPECT_NEAR(100 * value->currentValue().toDouble() / value->maximumValue().toDouble(), percent, 0.005);
    EXPECT_EQ(value->minimumValue().toDouble(), 0);
  }
}

TEST_F(Accessibility, PanelsAreModalDialogsNamedAfterTheirTitles) {
  for (PanelFrame* panel : allBelow<PanelFrame>(window)) {
    QAccessibleInterface& element = told(*panel);
    EXPECT_EQ(element.role(), QAccessible::Dialog);
    EXPECT_EQ(element.state().modal, 1U);
    EXPECT_EQ(nameOf(element), panel->title().toStdString());
    EXPECT_EQ(element.text(QAccessible::Description), panel->message().text());
  }
}

TEST_F(Accessibility, PanelWithoutATitleIsNamedAfterItsText) {
  PanelFrame panel(window.panels(), {QString(), QString(), QStringLiteral("Do you want to quit application?")});
  EXPECT_EQ(nameOf(panel), "Do you want to quit application?");
}

TEST_F(Accessibility, PathsAreToldWhole) {
  const std::string path = "/media/camera/DCIM/2019-06-22 wedding of Anna and Paul & friends/MVI_0042.AVI";
  window.controllerOutlets().pathfield.setStringValue(path);
  window.controllerOutlets().pathlabel.setStringValue(path);
  EXPECT_EQ(nameOf(window.choosePage().pathfield.label()), path);
  EXPECT_EQ(nameOf(window.repairPage().pathlabel.label()), path);
}

TEST_F(Accessibility, MissingPathIsTold) {
  EXPECT_EQ(nameOf(window.choosePage().pathfield.label()), "No file chosen yet");
}

TEST_F(Accessibility, TabReachesEveryStopOfAPageInTheOrderThatIsRead) {
  showHint();
  for (const int page : {0, 1, 2}) {
    showPage(page);
    Names reached;
    for (const QWidget* stop : tabStops()) reached.push_back(nameOf(*const_cast<QWidget*>(stop)));
    constexpr const char* kAbout = "About Zelvo AVI Repair";  // the picture before Home
    // From wherever it began, round to the first of the page.
    const auto home = std::find(reached.begin(), reached.end(), "Home");
    ASSERT_NE(home, reached.end()) << page;
    std::rotate(reached.begin(), home, reached.end());
    const std::array<Names, 3> expected = {
        Names{"Home", "Help", "Look for an update", "Choose a file…", "Add films…", "Repair", kAbout},
        Names{"Home", "Help", "Look for an update", "Stop", kAbout},
        Names{"Home", "Help", "Look for an update", "Preview", "Save…", "click here", kAbout}};
    EXPECT_EQ(reached, expected[static_cast<std::size_t>(page)]);
  }
}

TEST_F(Accessibility, WhatTakesTheFocusIsReachedByTab) {
  showHint();
  for (const int page : {0, 1, 2}) {
    showPage(page);
    const std::vector<QWidget*> stops = tabStops();
    for (QWidget* widget : allBelow<QWidget>(window)) {
      if (!widget->isVisible() || !widget->isEnabled() || widget->focusPolicy() == Qt::NoFocus) continue;
      EXPECT_NE(std::find(stops.begin(), stops.end(), widget), stops.end())
          << page << " " << widget->metaObject()->className();
    }
  }
}

}  // namespace
}  // namespace zelvo::tests
