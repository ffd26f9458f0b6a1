// What the window says of its own accord, on its real elements: why a film is no film, how a save ended, where it
// works.
#include <gtest/gtest.h>

#include <filesystem>

#include "engine/globals.h"
#include "platform/qt/panels/panel_frame.h"
#include "tests/platform/qt/window_bench.h"

namespace zelvo::tests {
namespace {

namespace fs = std::filesystem;
namespace qt = platform::qt;

class WindowStates : public testing::Test {
 protected:
  /// Saves what was repaired as `folder`, up to the completion sheet.
  void saveAs(const std::string& folder) {
    bench.key(Qt::Key_S, Qt::ControlModifier);
    bench.until([&] { return !window.panels().isEmpty(); });
    bench.type(QString::fromStdString(bench.temp.path(folder)));
    bench.key(Qt::Key_Return);
    bench.until([&] { return bench.isShown(panels.savecompletedwindow); });
  }
  /// Repairs a film and tells where the rebuilt file lies.
  std::string repaired() {
    bench.repair(damagedFilm(bench.temp));
    return engine::internalpath.get();
  }

  WindowBench bench;
  qt::MainWindow& window = *bench.window;
  qt::WindowPanels& panels = window.fixedPanels();
};

TEST_F(WindowStates, AFilmThatVanishedHasATitleAndATextOfItsOwn) {
  const std::string film = damagedFilm(bench.temp);
  bench.chooseByTyping(film);
  fs::remove(film);
  const int before = panels.invalidfilewindow.height();

  bench.key(Qt::Key_R, Qt::ControlModifier);
  bench.until([&] { return bench.isShown(panels.invalidfilewindow); });

  EXPECT_EQ(panels.invalidfilewindow.title(), QStringLiteral("This film is no longer there"));
  EXPECT_TRUE(panels.invalidfilewindow.message().text().startsWith(QStringLiteral("There is no such film.")));
  EXPECT_NE(panels.invalidfilewindow.height(), before);  // placed for what it says now
}

TEST_F(WindowStates, ALinkHasATextOfItsOwnAndAnotherFileTheUsualOneAgain) {
  const std::string usual = panels.invalidfilewindow.title().toStdString();
  const QString message = panels.invalidfilewindow.message().text();
  const std::string film = damagedFilm(bench.temp);
  const std::string link = bench.temp.path("link.avi");
  fs::create_symlink(film, link);
  for (const std::string& chosen : {link, bench.temp.put("letter.avi", std::string(3000, 'x'))}) {
    bench.chooseByTyping(chosen);
    bench.key(Qt::Key_R, Qt::ControlModifier);
    bench.until([&] { return bench.isShown(panels.invalidfilewindow); });
    const std::string title = panels.invalidfilewindow.title().toStdString();
    EXPECT_EQ(title, chosen == link ? "This is only a link to a film" : usual);
    EXPECT_EQ(panels.invalidfilewindow.message().text() == message, chosen != link);
    bench.key(Qt::Key_Return);
  }
}

TEST_F(WindowStates, ASaveOfAFileThatIsGoneBearsAWarningAndTheNextWholeOneATick) {
  const std::string scratch = repaired();
  const std::string aside = scratch + ".aside";
  fs::rename(scratch, aside);

  saveAs("Lost");

  EXPECT_EQ(panels.savecompletedwindow.title(), QStringLiteral("The film was not saved whole"));
  EXPECT_EQ(panels.savecompletedwindow.pictureName(), QStringLiteral("sheet-warning"));
  EXPECT_TRUE(panels.savecompletedtext.text().contains(QStringLiteral("no longer there")));
  EXPECT_EQ(window.resultPage().savedsizelabel.label().text(), QStringLiteral("Not whole"));
  EXPECT_EQ(fs::file_size(bench.temp.path("Lost/repaired.avi")), 0U);
  bench.key(Qt::Key_Return);
  fs::rename(aside, scratch);

  saveAs("Whole");

  EXPECT_EQ(panels.savecompletedwindow.title(), QStringLiteral("Saving is done"));
  EXPECT_EQ(panels.savecompletedwindow.pictureName(), QStringLiteral("sheet-done"));
  EXPECT_EQ(window.resultPage().savedsizelabel.label().text(), QStringLiteral("Last saved"));
}

TEST_F(WindowStates, BytesCopiedStandOnTheSheetOfTheSave) {
  repaired();

  saveAs("Whole");

  EXPECT_TRUE(panels.savedbytestext.text().endsWith(QStringLiteral(" copied")))
      << panels.savedbytestext.text().toStdString();
  EXPECT_TRUE(panels.stopsavingbutton.isEnabled());
}

TEST_F(WindowStates, TheWorkingFolderStandsBelowAChosenFilm) {
  qt::ChoosePage& page = window.choosePage();
  EXPECT_FALSE(page.workingfolderbutton->isVisible());

  bench.chooseByTyping(damagedFilm(bench.temp));

  EXPECT_TRUE(page.workingfolderbutton->isVisible());
  EXPECT_TRUE(page.workingfoldertext.label().isVisible());
  EXPECT_TRUE(page.workingfoldertext.text().startsWith(QStringLiteral("Working folder: ") +
                                                       QString::fromStdString(bench.temp.path("cache"))))
      << page.workingfoldertext.text().toStdString();
  bench.window->controllerOutlets().pathfield.setStringValue("");
  bench.settle();
  EXPECT_FALSE(page.workingfolderbutton->isVisible());
}

TEST_F(WindowStates, WithoutAWorkingFolderAnotherIsChosenAndTheRepairRuns) {
  const std::string film = damagedFilm(bench.temp);
  bench.chooseByTyping(film);
  fs::remove_all(bench.temp.path("cache"));
  bench.temp.put("cache", "a file in its place");
  fs::create_directory(bench.temp.path("disk"));
  QString title;
  bench.onceAPanelIsUp([&](qt::PanelFrame& panel) {
    title = panel.title();
    bench.key(Qt::Key_Return);
  });

  bench.key(Qt::Key_R, Qt::ControlModifier);

  EXPECT_EQ(title, QStringLiteral("The working folder cannot be used"));
  EXPECT_EQ(window.page(), 0);
  bench.until([&] { return !window.panels().isEmpty(); });
  bench.type(QString::fromStdString(bench.temp.path("disk")));
  bench.key(Qt::Key_Return);
  bench.until([&] { return window.panels().isEmpty(); });
  EXPECT_TRUE(window.choosePage().workingfoldertext.text().contains(QStringLiteral("/disk")));

  bench.key(Qt::Key_R, Qt::ControlModifier);
  bench.until([&] { return bench.isShown(panels.repaircompletedwindow); });

  EXPECT_TRUE(fs::exists(bench.temp.path("disk/zelvo-avi-repair/slot1/testfile1.avi")));
}

TEST_F(WindowStates, AWaitingRunSaysSoOnlyWhileItWaits) {
  qt::RepairPage& page = window.repairPage();
  window.controllerOutlets().tabview.selectNextTabViewItem();
  bench.settle();
  EXPECT_FALSE(page.waitingtext.label().isVisible());
  window.controllerOutlets().own.waitingtext.setStringValue("Waiting");
  bench.settle();
  EXPECT_TRUE(page.waitingtext.label().isVisible());
  window.controllerOutlets().own.waitingtext.setStringValue("");
  bench.settle();
  EXPECT_FALSE(page.waitingtext.label().isVisible());
}

}  // namespace
}  // namespace zelvo::tests
