// The About panel, by the product's picture in the strip; and F1 over messages that are said in another language.
#include <gtest/gtest.h>

#include <QAccessible>
#include <QScrollBar>
#include <QTextBlock>

#include "app/texts.h"
#include "platform/qt/language.h"
#include "platform/qt/panels/panel_frame.h"
#include "tests/platform/qt/window_bench.h"

namespace zelvo::tests {
namespace {

namespace qt = platform::qt;

class About : public testing::Test {
 protected:
  void SetUp() override { bench.window->setVersion(QStringLiteral("1.2.3")); }
  void open() {
    bench.click(*bench.window->choosePage().mark);
    bench.settle();
    ASSERT_TRUE(panel.isShown());
  }

  WindowBench bench;
  qt::AboutPanel& panel = bench.window->aboutPanel();
};

TEST_F(About, ThePictureOfEachPageOpensIt) {
  qt::MainWindow& window = *bench.window;
  for (qt::WindowPage* page :
       {static_cast<qt::WindowPage*>(&window.choosePage()), static_cast<qt::WindowPage*>(&window.repairPage()),
        static_cast<qt::WindowPage*>(&window.resultPage())}) {
    bench.click(*page->mark);
    bench.settle();
    EXPECT_TRUE(panel.isShown());
    bench.key(Qt::Key_Escape);
    EXPECT_FALSE(panel.isShown());
    window.controllerOutlets().tabview.selectNextTabViewItem();
    bench.settle();
  }
}

TEST_F(About, TheKeyboardOpensAndClosesItAndComesBack) {
  qt::QtButton& mark = *bench.window->choosePage().mark;
  mark.setFocus(Qt::TabFocusReason);
  bench.key(Qt::Key_Space);
  bench.settle();
  ASSERT_TRUE(panel.isShown());
  bench.key(Qt::Key_Return);
  bench.settle();
  EXPECT_FALSE(panel.isShown());
  EXPECT_TRUE(mark.hasFocus());
}

TEST_F(About, ItTellsTheVersionAndWhatItIs) {
  open();
  EXPECT_EQ(panel.frame()->title(), QStringLiteral("Zelvo AVI Repair"));
  EXPECT_EQ(panel.frame()->message().text(),
            QStringLiteral("Version 1.2.3\nRepairs damaged AVI films on this computer. Your films are only read."));
}

TEST_F(About, ItTellsTheLicenceAndThoseOfTheLibraries) {
  open();
  EXPECT_EQ(panel.licences()->verticalScrollBar()->value(), 0) << "it begins at its beginning";
  const QString said = panel.licences()->toPlainText();
  EXPECT_TRUE(said.contains(QStringLiteral("GNU General Public License, version 3")));
  for (const char* library : {"Qt", "libmpv", "FFmpeg", "libcurl", "OpenSSL", "libplist", "libudev", "libmount",
                              "libmnl", "libseccomp", "CLI11"}) {
    EXPECT_TRUE(said.contains(QLatin1String(library))) << library;
  }
}

TEST_F(About, AScreenReaderIsToldOfADialogWithADocument) {
  open();
  QAccessibleInterface* const dialog = QAccessible::queryAccessibleInterface(panel.frame());
  ASSERT_NE(dialog, nullptr);
  EXPECT_EQ(dialog->role(), QAccessible::Dialog);
  EXPECT_EQ(dialog->text(QAccessible::Name), QStringLiteral("Zelvo AVI Repair"));
  QAccessibleInterface* const licences = QAccessible::queryAccessibleInterface(panel.licences());
  ASSERT_NE(licences, nullptr);
  EXPECT_EQ(licences->text(QAccessible::Name), QStringLiteral("Licences"));
  QAccessibleInterface* const mark = QAccessible::queryAccessibleInterface(bench.window->choosePage().mark);
  ASSERT_NE(mark, nullptr);
  EXPECT_EQ(mark->text(QAccessible::Name), QStringLiteral("About Zelvo AVI Repair"));
}

TEST_F(About, ASheetThatComesMeanwhileLiesBelow) {
  open();
  bench.sheets->beginSheet(bench.window->fixedPanels().repaircompletedwindow, *bench.window, {});
  bench.settle();
  EXPECT_EQ(bench.window->panels().top(), panel.frame());
  bench.key(Qt::Key_Escape);
  EXPECT_EQ(bench.window->panels().top(), &bench.window->fixedPanels().repaircompletedwindow);
}

TEST_F(About, PressedAgainItStaysOne) {
  open();
  const auto* const before = panel.frame();
  panel.show();
  EXPECT_EQ(panel.frame(), before);
}

TEST_F(About, ItFitsTheSmallestWindow) {
  bench.window->setMinimumSize(640, 420);
  bench.window->resize(640, 420);
  open();
  EXPECT_TRUE(bench.window->rect().contains(panel.frame()->geometry()));
  EXPECT_GT(panel.licences()->viewport()->height(), 3 * panel.licences()->fontMetrics().height());
}

TEST(HelpInAnotherLanguage, MessagesLeadToTheirPlaces) {
  const qt::Language german(QStringLiteral("de"));
  WindowBench bench;
  bench.onceAPanelIsUp([&](qt::PanelFrame& alert) {
    EXPECT_EQ(alert.title(), QStringLiteral("Die reparierte Datei konnte nicht geschrieben werden"));
    bench.key(Qt::Key_F1);
    QTextBrowser* const browser = bench.window->helpPanel().browser();
    EXPECT_NE(browser, nullptr);
    if (browser != nullptr) {
      EXPECT_EQ(browser->cursorForPosition(QPoint(30, 12)).block().text(),
                QStringLiteral("The repaired file could not be written"));
    }
    bench.key(Qt::Key_Escape);
    bench.key(Qt::Key_Escape);
  });
  static_cast<void>(bench.alerts->runAlertPanel({.title = bench.translator.translated(app::texts::kWriteFailedTitle),
                                                 .message = "?",
                                                 .defaultButton = app::texts::kOk,
                                                 .alternateButton = std::nullopt,
                                                 .otherButton = std::nullopt}));
}

TEST(HelpInAnotherLanguage, EscIsTheCancelOfThatLanguage) {
  const qt::Language german(QStringLiteral("de"));
  WindowBench bench;
  bench.onceAPanelIsUp([&](qt::PanelFrame&) { bench.key(Qt::Key_Escape); });
  const int answer = bench.alerts->runAlertPanel(
      {.title = "?", .message = "", .defaultButton = "Weiter", .alternateButton = "Nein", .otherButton = "Abbrechen"});
  EXPECT_EQ(answer, platform::kAlertOther);
}

TEST(WindowLanguage, TheGivenQuestionStaysEnglishInAGermanWindow) {
  const qt::Language german(QStringLiteral("de"));
  WindowBench bench;
  bool wasAsked = false;
  bench.onceAPanelIsUp([&](qt::PanelFrame& panel) {
    wasAsked = true;
    EXPECT_EQ(panel.message().text().remove(QChar(0x200b)), QStringLiteral("Do you want to quit application?"));
    bench.key(Qt::Key_Escape);
  });
  bench.window->close();
  EXPECT_TRUE(wasAsked);
  EXPECT_TRUE(bench.window->isVisible());
}

}  // namespace
}  // namespace zelvo::tests
