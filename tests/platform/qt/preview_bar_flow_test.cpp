// The bar below the preview of the result page: it steers the film, and what the preview disables stays as the
// preview's button has it.
#include <gtest/gtest.h>

#include <QTest>

#include "platform/qt/drawing/appearance.h"
#include "tests/platform/qt/window_bench.h"

namespace zelvo::tests {

namespace {

namespace qt = platform::qt;

class PreviewBarFlow : public testing::Test {
 protected:
  PreviewBarFlow() {
    bench.repair(damagedFilm(bench.temp));
    bench.until([this] { return bar.place().isEnabled(); });
  }
  void clickPlace(double share) {
    qt::MovieSlider& place = bar.place();
    const int at = static_cast<int>(place.placeOf(static_cast<int>(share * place.maximum())));
    QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, place.mapTo(&window, QPoint(at, place.height() / 2)));
    bench.settle();
  }
  void expectPlaying(bool isPlaying) {
    EXPECT_EQ(page.previewbutton->state(), isPlaying ? platform::Button::State::on : platform::Button::State::off);
    EXPECT_EQ(page.savebutton->isEnabled(), !isPlaying);
    EXPECT_EQ(page.home->isEnabled(), !isPlaying);
    EXPECT_TRUE(page.previewbutton->isEnabled());
  }
  [[nodiscard]] const qt::ShownMovie& film() const { return *bench.movie->movie().movie(); }

  WindowBench bench;
  qt::MainWindow& window = *bench.window;
  qt::ResultPage& page = window.resultPage();
  qt::MovieBar& bar = bench.movie->bar();
};

TEST_F(PreviewBarFlow, APauseIsNoStop) {
  bench.click(*page.previewbutton);
  bench.click(bar.playButton());
  EXPECT_TRUE(film().isPaused());
  expectPlaying(true);
  bench.click(bar.playButton());
  EXPECT_FALSE(film().isPaused());
  expectPlaying(true);
  bench.until([this] { return page.savebutton->isEnabled(); });
  expectPlaying(false);
}

TEST_F(PreviewBarFlow, APausedPreviewIsStoppedByItsButton) {
  bench.click(*page.previewbutton);
  bench.click(bar.playButton());
  bench.click(*page.previewbutton);
  EXPECT_FALSE(film().isPlaying());
  expectPlaying(false);
}

TEST_F(PreviewBarFlow, AJumpToTheEndIsTheEnd) {
  int ends = 0;
  bench.notifications.addObserver(this, platform::kMovieDidEndNotification,
                                  [&ends](const platform::Notification&) { ++ends; });
  bench.click(*page.previewbutton);
  bench.click(bar.playButton());
  clickPlace(1.0);
  bench.until([&ends] { return ends > 0; });
  expectPlaying(false);
  EXPECT_EQ(ends, 1);
  bench.notifications.removeObserver(this);
}

TEST_F(PreviewBarFlow, AJumpOfAFilmThatPlaysLeavesItPlaying) {
  bench.click(*page.previewbutton);
  clickPlace(0.5);
  expectPlaying(true);
  bench.until([this] { return film().position() > 0.9; });
  bench.until([this] { return page.savebutton->isEnabled(); });
}

TEST_F(PreviewBarFlow, AJumpOfAFilmThatStandsDisablesNothing) {
  clickPlace(0.5);
  expectPlaying(false);
  clickPlace(1.0);
  bench.until([this] { return bar.place().value() == bar.place().maximum(); });
  expectPlaying(false);
}

TEST_F(PreviewBarFlow, PlayIsThePreviewFromWhereTheFilmStands) {
  clickPlace(0.5);
  bench.click(bar.playButton());
  expectPlaying(true);
  EXPECT_TRUE(page.clickherebutton->isVisible());
  bool wasAtTheBeginning = false;
  bench.until([&] {
    wasAtTheBeginning = wasAtTheBeginning || film().position() < 0.5;
    return page.savebutton->isEnabled();
  });
  EXPECT_FALSE(wasAtTheBeginning);
  expectPlaying(false);
}

TEST_F(PreviewBarFlow, ThePreviewsButtonBeginsAtTheBeginning) {
  clickPlace(0.5);
  bench.click(*page.previewbutton);
  EXPECT_EQ(film().position(), 0.0);
  bench.until([this] { return page.savebutton->isEnabled(); });
}

TEST_F(PreviewBarFlow, TheBarOfAButtonThatIsOffStartsNothing) {
  page.previewbutton->setEnabled(false);
  bench.click(bar.playButton());
  EXPECT_FALSE(film().isPlaying());
}

TEST_F(PreviewBarFlow, ThePageIsGivenBackWithTheBarOff) {
  bench.click(*page.home);
  bench.until([this] { return window.page() == 0 || !window.panels().isEmpty(); });
  if (!window.panels().isEmpty()) bench.key(Qt::Key_Return);
  bench.until([this] { return window.page() == 0; });
  EXPECT_FALSE(bar.isVisible());
}

TEST_F(PreviewBarFlow, TheResultAreaIsWhiteInBothSchemes) {
  qt::apply(qt::Appearance::dark);
  const QImage shown = bench.movie->grab().toImage();
  EXPECT_EQ(shown.pixelColor(1, shown.height() - 2), QColor(Qt::white));
  EXPECT_EQ(bar.time().palette().color(QPalette::WindowText),
            qt::paletteOf(qt::Appearance::light).color(QPalette::WindowText));
  qt::apply(qt::Appearance::light);
}

}  // namespace

}  // namespace zelvo::tests
