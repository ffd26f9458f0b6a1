// Every flow of the window by its real elements, with the real engine on a damaged film.
#include <gtest/gtest.h>

#include <QApplication>
#include <QEnterEvent>
#include <QTest>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "app/globals.h"
#include "engine/globals.h"
#include "platform/qt/panels/panel_frame.h"
#include "tests/platform/qt/window_bench.h"

namespace zelvo::tests {
namespace {

namespace fs = std::filesystem;
namespace qt = platform::qt;

std::string bytesOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream whole;
  whole << file.rdbuf();
  return whole.str();
}

/// What a save of these bytes writes: whole blocks of 32 KiB, and the beginning of the last one again.
std::string padded(std::string bytes) {
  constexpr std::size_t kBlock = 32768;
  const std::size_t rest = bytes.size() % kBlock;
  if (rest == 0) return bytes;
  const std::string tail = bytes.substr(bytes.size() - rest);
  bytes.resize(bytes.size() + kBlock - rest, '\0');
  return bytes + tail;
}

void enter(QWidget& widget) {
  QEnterEvent event(QPointF(1, 1), QPointF(1, 1), QPointF(1, 1));
  QCoreApplication::sendEvent(&widget, &event);
}

void leave(QWidget& widget) {
  QEvent event(QEvent::Leave);
  QCoreApplication::sendEvent(&widget, &event);
}

class WindowFlow : public testing::Test {
 protected:
  WindowBench bench;
  qt::MainWindow& window = *bench.window;
  qt::WindowPanels& panels = window.fixedPanels();
};

TEST_F(WindowFlow, TheWindowOpensOnPageOneWithTheUpdateCheckDone) {
  EXPECT_EQ(window.page(), 0);
  EXPECT_TRUE(window.isVisible());
  const auto lines = bench.events.lines();
  EXPECT_NE(std::find(lines.begin(), lines.end(), "update check at start"), lines.end());
}

TEST_F(WindowFlow, RepairWithoutAFileAsksForOneAndStaysOnPageOne) {
  bench.click(*window.choosePage().repairbutton);

  ASSERT_TRUE(bench.isShown(panels.filenotselectedwindow));
  bench.key(Qt::Key_Return);
  EXPECT_TRUE(window.panels().isEmpty());
  EXPECT_EQ(window.page(), 0);
}

TEST_F(WindowFlow, ATypedPathIsShownOnPageOne) {
  const std::string film = damagedFilm(bench.temp);

  bench.chooseByTyping(film);

  EXPECT_EQ(window.choosePage().pathfield.text().toStdString(), film);
  EXPECT_EQ(window.choosePage().textfield.text().toStdString(), film);
  EXPECT_EQ(engine::path.get(), film);
}

TEST_F(WindowFlow, CancellingTheChooserKeepsTheEarlierChoice) {
  const std::string film = damagedFilm(bench.temp);
  bench.chooseByTyping(film);

  bench.click(*window.choosePage().browsebutton);
  bench.until([&] { return !window.panels().isEmpty(); });
  bench.key(Qt::Key_Escape);

  bench.until([&] { return window.panels().isEmpty(); });
  EXPECT_EQ(engine::path.get(), film);
}

TEST_F(WindowFlow, TheWholeOfPageOneOpensTheChooser) {
  QTest::mouseClick(window.choosePage().dropArea, Qt::LeftButton, {}, QPoint(10, 10));
  bench.settle();

  EXPECT_FALSE(window.panels().isEmpty());
  bench.key(Qt::Key_Escape);
}

TEST_F(WindowFlow, AFilmIsRepairedAndShownOnPageThree) {
  const std::string film = damagedFilm(bench.temp);
  const std::string before = bytesOf(film);

  bench.repair(film);

  EXPECT_EQ(window.resultPage().videocodecfield.text(), QStringLiteral("FMP4"));
  EXPECT_FALSE(window.resultPage().audiocodecfield.text().isEmpty());
  ASSERT_TRUE(bench.controller->unipath());
  EXPECT_TRUE(bytesOf(*bench.controller->unipath()).starts_with("RIFF"));
  EXPECT_EQ(bytesOf(film), before);
}

TEST_F(WindowFlow, AnInvalidFileLeadsBackToPageOne) {
  const std::string file = bench.temp.put("letter.avi", std::string(600000, 'x'));
  bench.chooseByTyping(file);

  bench.key(Qt::Key_R, Qt::ControlModifier);
  bench.until([&] { return bench.isShown(panels.invalidfilewindow); });
  bench.click(panels.invalidfileokbutton);

  EXPECT_EQ(window.page(), 0);
  EXPECT_EQ(engine::path.get(), std::nullopt);
  EXPECT_TRUE(window.choosePage().pathfield.text().isEmpty());
}

TEST_F(WindowFlow, AFilmThatIsTooSmallLeadsBackToPageOne) {
  const std::string file = bench.temp.put("short.avi", "RIFF" + std::string(4000, '\0'));
  bench.chooseByTyping(file);

  bench.key(Qt::Key_R, Qt::ControlModifier);
  bench.until([&] { return bench.isShown(panels.filenotsupportedwindow); });
  bench.key(Qt::Key_Escape);

  EXPECT_EQ(window.page(), 0);
}

TEST_F(WindowFlow, AStoppedRepairLeadsBackToPageOneAndTheNextUsesTheOtherScratchFile) {
  const std::string film = damagedFilm(bench.temp);
  bench.chooseByTyping(film);
  const std::string first = [&] {
    window.choosePage().repairbutton->click();
    return engine::internalpath.get();
  }();
  window.repairPage().stopbutton->click();
  ASSERT_TRUE(bench.isShown(panels.stoprepairwindow));
  panels.stoprepairokbutton.click();

  EXPECT_EQ(window.page(), 0);
  EXPECT_TRUE(window.choosePage().pathfield.text().isEmpty());
  // A run that was stopped among the headers is turned away for what it had found of them by then.
  bench.workers.joinAll();
  bench.settle();
  if (bench.isShown(panels.filenotsupportedwindow)) bench.click(panels.filenotsupportedokbutton);
  bench.repair(film);
  EXPECT_NE(engine::internalpath.get(), first);
}

TEST_F(WindowFlow, HomeOnTheResultPageRemovesTheScratchFile) {
  bench.repair(damagedFilm(bench.temp));
  const std::string scratch = engine::internalpath.get();
  ASSERT_TRUE(fs::exists(scratch));

  bench.click(*window.resultPage().home);

  EXPECT_EQ(window.page(), 0);
  EXPECT_FALSE(fs::exists(scratch));
}

TEST_F(WindowFlow, ThePreviewPlaysToItsEndAndGivesThePageBack) {
  bench.repair(damagedFilm(bench.temp));
  qt::ResultPage& page = window.resultPage();

  bench.key(Qt::Key_P, Qt::ControlModifier);

  EXPECT_EQ(page.previewbutton->state(), platform::Button::State::on);
  EXPECT_FALSE(page.home->isEnabled());
  EXPECT_FALSE(page.savebutton->isEnabled());
  EXPECT_TRUE(page.clickherebutton->isVisible());
  bench.until([&] { return page.savebutton->isEnabled(); });
  EXPECT_EQ(page.previewbutton->state(), platform::Button::State::off);
  EXPECT_TRUE(page.home->isEnabled());
}

TEST_F(WindowFlow, ASecondPressStopsThePreview) {
  bench.repair(damagedFilm(bench.temp));
  qt::ResultPage& page = window.resultPage();

  bench.click(*page.previewbutton);
  bench.click(*page.previewbutton);

  EXPECT_TRUE(page.savebutton->isEnabled());
  EXPECT_TRUE(page.home->isEnabled());
  EXPECT_EQ(page.previewbutton->text(), QStringLiteral("Preview"));
}

TEST_F(WindowFlow, TheLinkOpensTheTips) {
  bench.repair(damagedFilm(bench.temp));

  bench.click(*window.resultPage().clickherebutton);

  const auto lines = bench.events.lines();
  EXPECT_TRUE(lines.back().ends_with("HTML/tips_for_previewing.htm)")) << lines.back();
}

TEST_F(WindowFlow, ASavedFilmIsThePaddedCopyInANewFolder) {
  bench.repair(damagedFilm(bench.temp));
  const std::string rebuilt = bytesOf(*bench.controller->unipath());

  bench.key(Qt::Key_S, Qt::ControlModifier);
  bench.until([&] { return !window.panels().isEmpty(); });
  bench.type(QString::fromStdString(bench.temp.path("Mended")));
  bench.key(Qt::Key_Return);
  bench.until([&] { return bench.isShown(panels.savecompletedwindow); });
  bench.key(Qt::Key_Return);

  EXPECT_EQ(bytesOf(bench.temp.path("Mended/repaired.avi")), padded(rebuilt));
  EXPECT_TRUE(window.resultPage().savebutton->isEnabled());
  EXPECT_TRUE(panels.savecompletedtext.text().contains(QStringLiteral("Mended/repaired.avi")));
}

TEST_F(WindowFlow, TheProposedNameIsTakenAsItStands) {
  const std::string film = damagedFilm(bench.temp);
  fs::create_directory(bench.temp.path("Repaired"));
  bench.repair(film);

  bench.click(*window.resultPage().savebutton);
  bench.until([&] { return !window.panels().isEmpty(); });
  bench.key(Qt::Key_Return);
  bench.until([&] { return bench.isShown(panels.savecompletedwindow); });

  EXPECT_TRUE(fs::exists(bench.temp.path("Repaired/repaired.avi")));
}

TEST_F(WindowFlow, CancellingTheSavePanelLeavesTheButtonOn) {
  bench.repair(damagedFilm(bench.temp));

  bench.click(*window.resultPage().savebutton);
  bench.until([&] { return !window.panels().isEmpty(); });
  EXPECT_FALSE(window.resultPage().savebutton->isEnabled());
  bench.key(Qt::Key_Escape);

  bench.until([&] { return window.panels().isEmpty(); });
  EXPECT_TRUE(window.resultPage().savebutton->isEnabled());
}

TEST_F(WindowFlow, QuittingAsksAndEscKeepsTheWindow) {
  bench.onceAPanelIsUp([&](qt::PanelFrame&) { bench.key(Qt::Key_Escape); });

  bench.key(Qt::Key_Q, Qt::ControlModifier);

  EXPECT_TRUE(window.isVisible());
  EXPECT_FALSE(bench.application->terminated());
}

TEST_F(WindowFlow, YesClosesTheWindowAndEndsTheProgram) {
  bench.onceAPanelIsUp([&](qt::PanelFrame&) {
    bench.key(Qt::Key_Tab);
    bench.key(Qt::Key_Space);
  });

  bench.key(Qt::Key_Q, Qt::ControlModifier);

  EXPECT_FALSE(window.isVisible());
  EXPECT_TRUE(bench.application->terminated());
}

TEST_F(WindowFlow, TheWindowStaysWhileASheetIsUp) {
  bench.click(*window.choosePage().repairbutton);

  bench.key(Qt::Key_Q, Qt::ControlModifier);

  EXPECT_TRUE(window.isVisible());
  EXPECT_TRUE(bench.isShown(panels.filenotselectedwindow));
}

TEST_F(WindowFlow, EnteringTheRepairButtonLightsItAndLeavingAnyButtonResetsAll) {
  qt::ChoosePage& page = window.choosePage();

  enter(*page.repairbutton);
  EXPECT_EQ(page.repairbutton->imageName(), "repair_button_hover");
  enter(*page.help);
  EXPECT_EQ(page.help->imageName(), "help-2");
  leave(*page.update);

  EXPECT_EQ(page.repairbutton->imageName(), "repair_button_normal");
  EXPECT_EQ(page.help->imageName(), "help-1");
  EXPECT_EQ(window.resultPage().home->imageName(), "home-1");
}

TEST_F(WindowFlow, EnteringTheHomeButtonOfPageOneChangesNothing) {
  enter(*window.choosePage().home);

  EXPECT_EQ(window.choosePage().home->imageName(), "home-1");
}

TEST_F(WindowFlow, FOneOpensTheHelpOfThePage) {
  bench.key(Qt::Key_F1);

  const auto lines = bench.events.lines();
  EXPECT_TRUE(lines.back().starts_with("openURL(file://")) << lines.back();
  EXPECT_TRUE(lines.back().ends_with("HTML/index.html)")) << lines.back();
}

TEST_F(WindowFlow, AnOfferedFileIsChosenOnPageOne) {
  const std::string film = damagedFilm(bench.temp, "film.XVID");

  window.offerFile(film);

  EXPECT_EQ(engine::path.get(), film);
}

TEST_F(WindowFlow, AnOfferedFileOfAnotherKindIsRefusedInWords) {
  const std::string file = bench.temp.put("film.mov", "x");
  QString said;
  bench.onceAPanelIsUp([&](qt::PanelFrame& panel) {
    said = panel.message().text().remove(QChar(0x200b));  // where a long path may break
    bench.key(Qt::Key_Return);
  });

  window.offerFile(file);

  EXPECT_EQ(engine::path.get(), std::nullopt);
  EXPECT_TRUE(said.contains(QStringLiteral(".avi, .divx or .xvid"))) << said.toStdString();
}

}  // namespace
}  // namespace zelvo::tests
