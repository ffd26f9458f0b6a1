#include "platform/qt/preview/movie_bar.h"

#include <gmock/gmock.h>

#include <QAccessible>
#include <QAccessibleInterface>
#include <set>

#include "platform/qt/drawing/appearance.h"
#include "tests/platform/qt/movie_pane_bench.h"

namespace zelvo::tests {

namespace {

using platform::qt::Loudness;
using platform::qt::MovieBarButton;
using platform::qt::MoviePane;
using platform::qt::MovieSlider;
using testing::ElementsAre;
using testing::IsEmpty;

class MovieBarTest : public testing::Test {
 protected:
  MovieBarTest() {
    bench.pane.movie().setMovie(movie);
    MoviePaneBench::settle();
  }
  /// The deeds since the last look.
  [[nodiscard]] std::vector<std::string> deeds() { return std::exchange(movie->deeds, {}); }
  [[nodiscard]] std::string time() { return bench.bar.time().text().toStdString(); }
  void be(double at) {
    movie->at = at;
    movie->tell();
  }

  MoviePaneBench bench;
  std::shared_ptr<ToldMovie> movie = std::make_shared<ToldMovie>();
  MovieSlider& place = bench.bar.place();
  MovieSlider& volume = bench.bar.volume();
};

TEST_F(MovieBarTest, WithoutAMovieThereIsNothingToSteer) {
  bench.pane.movie().setMovie(nullptr);
  for (const QWidget* one :
       std::initializer_list<const QWidget*>{&bench.bar.playButton(), &place, &bench.bar.muteButton(), &volume}) {
    EXPECT_FALSE(one->isEnabled()) << one->accessibleName().toStdString();
  }
  EXPECT_EQ(time(), "");
  bench.click(bench.bar.playButton());
  bench.clickAt(place, 0.5);
  bench.key(Qt::Key_Space);
  EXPECT_THAT(deeds(), IsEmpty());
}

TEST_F(MovieBarTest, TimeAndHandleFollowTheMovie) {
  movie->length = 185.0;
  be(12.4);
  EXPECT_EQ(time(), "0:12 / 3:05");
  EXPECT_EQ(place.maximum(), 185'000);
  EXPECT_EQ(place.value(), 12'400);
  be(185.0);
  EXPECT_EQ(time(), "3:05 / 3:05");
  EXPECT_EQ(place.value(), 185'000);
  EXPECT_THAT(deeds(), IsEmpty()) << "what the movie tells is no wish of a person";
}

TEST_F(MovieBarTest, LengthThatIsNotKnownLeavesPlayAndSound) {
  movie->length.reset();
  be(72);
  EXPECT_EQ(time(), "1:12");
  EXPECT_FALSE(place.isEnabled());
  EXPECT_TRUE(bench.bar.playButton().isEnabled());
  EXPECT_TRUE(volume.isEnabled());
  bench.click(bench.bar.playButton());
  EXPECT_THAT(deeds(), ElementsAre("play"));
}

TEST_F(MovieBarTest, LongestFilmFitsTheHandle) {
  movie->length = 1e9;
  be(5e8);
  EXPECT_GT(place.maximum(), 0);
  EXPECT_LE(place.value(), place.maximum());
}

TEST_F(MovieBarTest, ButtonPlaysPausesAndGoesOn) {
  const MovieBarButton& button = bench.bar.playButton();
  EXPECT_EQ(button.accessibleName(), QStringLiteral("Play"));
  bench.click(bench.bar.playButton());
  EXPECT_EQ(button.accessibleName(), QStringLiteral("Pause"));
  EXPECT_EQ(button.sign(), MovieBarButton::Sign::pause);
  bench.click(bench.bar.playButton());
  EXPECT_EQ(button.accessibleName(), QStringLiteral("Play"));
  bench.click(bench.bar.playButton());
  EXPECT_THAT(deeds(), ElementsAre("play", "pause", "go on"));
}

TEST_F(MovieBarTest, ClickGoesToThePlace) {
  bench.clickAt(place, 0.25);
  ASSERT_EQ(movie->deeds.size(), 1U);
  EXPECT_NEAR(movie->at, 25.0, 0.5);
  EXPECT_NEAR(place.value(), 25'000, 500);
}

TEST_F(MovieBarTest, OtherMouseButtonGoesNowhere) {
  QTest::mouseClick(bench.pane.windowHandle(), Qt::RightButton, {}, bench.placeOf(place, 0.5));
  EXPECT_THAT(deeds(), IsEmpty());
}

TEST_F(MovieBarTest, KeysGoByFiveSecondsAndToBothEnds) {
  bench.focus(place);
  be(50);
  bench.key(Qt::Key_Right);
  bench.key(Qt::Key_Left);
  bench.key(Qt::Key_Left);
  bench.key(Qt::Key_Home);
  bench.key(Qt::Key_Left);
  bench.key(Qt::Key_PageUp);
  bench.key(Qt::Key_End);
  EXPECT_THAT(deeds(), ElementsAre("to 55.000", "to 50.000", "to 45.000", "to 0.000", "to 60.000", "to 100.000"));
}

TEST_F(MovieBarTest, SpacePlaysAndMMutes) {
  bench.focus(place);
  bench.key(Qt::Key_Space);
  bench.key(Qt::Key_Space);
  EXPECT_THAT(deeds(), ElementsAre("play", "pause"));
  bench.key(Qt::Key_M);
  EXPECT_EQ(movie->loudness, (Loudness{100, true}));
  bench.key(Qt::Key_Down);
  EXPECT_EQ(movie->loudness, (Loudness{95, false})) << "who moves the volume wants to hear it";
  bench.key(Qt::Key_Up);
  EXPECT_EQ(movie->loudness, (Loudness{100, false}));
}

TEST_F(MovieBarTest, DragHoldsTheFilmAndLetsItGoOn) {
  movie->play();
  static_cast<void>(deeds());
  bench.press(place, 0.2);
  bench.drag(place, 0.4);
  EXPECT_NEAR(movie->at, 40.0, 0.5);
  EXPECT_TRUE(movie->paused);
  EXPECT_EQ(bench.bar.playButton().accessibleName(), QStringLiteral("Pause")) << "it is no pause of a person's";
  bench.release(place, 0.4);
  EXPECT_FALSE(movie->paused);
  const std::vector<std::string> all = deeds();
  EXPECT_EQ(all.front(), "pause");
  EXPECT_EQ(all.back(), "go on");
}

TEST_F(MovieBarTest, DragOfAPausedFilmLeavesItPaused) {
  movie->play();
  movie->setPaused(true);
  bench.press(place, 0.2);
  bench.drag(place, 0.4);
  bench.release(place, 0.4);
  EXPECT_TRUE(movie->paused);
}

TEST_F(MovieBarTest, HandleInTheHandDoesNotFollowTheFilm) {
  bench.press(place, 0.2);
  bench.drag(place, 0.4);
  be(90);
  EXPECT_NEAR(place.value(), 40'000, 500);
  bench.release(place, 0.4);
}

TEST_F(MovieBarTest, DragOverTheEndIsTheEndOnlyWhenItIsLetGoThere) {
  movie->play();
  bench.press(place, 0.5);
  bench.drag(place, 1.0);
  EXPECT_LT(movie->at, 100.0);
  EXPECT_GT(movie->at, 99.9);
  bench.drag(place, 0.8);
  bench.release(place, 0.8);
  EXPECT_NEAR(movie->at, 80.0, 0.5);
  EXPECT_FALSE(movie->paused);
  bench.press(place, 0.5);
  bench.drag(place, 1.0);
  bench.release(place, 1.0);
  EXPECT_EQ(movie->at, 100.0);
}

TEST_F(MovieBarTest, MovieThatGoesDuringADragTakesTheHandleAlong) {
  movie->play();
  bench.press(place, 0.2);
  bench.pane.movie().setMovie(nullptr);
  EXPECT_FALSE(place.isSliderDown());
  bench.release(place, 0.5);
  EXPECT_FALSE(place.isEnabled());
}

TEST_F(MovieBarTest, PaneThatIsHiddenDuringADragLetsGo) {
  movie->play();
  bench.press(place, 0.2);
  bench.pane.hide();
  EXPECT_FALSE(place.isSliderDown());
}

TEST_F(MovieBarTest, StarterPlaysInThePlaceOfTheMovieAndItGoesOnFromWhereItStood) {
  bench.pane.setStarter([&] {
    movie->gotoBeginning();
    movie->play();
  });
  be(30);
  bench.click(bench.bar.playButton());
  EXPECT_THAT(deeds(), ElementsAre("to 0.000", "play", "to 30.000"));
  bench.click(bench.bar.playButton());
  bench.click(bench.bar.playButton());
  EXPECT_THAT(deeds(), ElementsAre("pause", "go on")) << "a film that plays needs no starter";
  movie->stop();
  be(100);
  static_cast<void>(deeds());
  bench.click(bench.bar.playButton());
  EXPECT_THAT(deeds(), ElementsAre("to 0.000", "play")) << "at its end it begins again";
}

TEST_F(MovieBarTest, StarterMayComeToNothing) {
  bench.pane.setStarter([] {});
  be(30);
  bench.click(bench.bar.playButton());
  EXPECT_THAT(deeds(), IsEmpty());
}

TEST_F(MovieBarTest, MuteAndVolumeReachTheMovie) {
  EXPECT_EQ(movie->loudness, (Loudness{100, false}));
  EXPECT_EQ(bench.bar.muteButton().accessibleName(), QStringLiteral("Mute"));
  bench.click(bench.bar.muteButton());
  EXPECT_EQ(movie->loudness, (Loudness{100, true}));
  EXPECT_EQ(bench.bar.muteButton().accessibleName(), QStringLiteral("Sound on"));
  bench.click(bench.bar.muteButton());
  EXPECT_EQ(movie->loudness, (Loudness{100, false}));
  EXPECT_EQ(volume.value(), 100);
  bench.clickAt(volume, 0.5);
  EXPECT_NEAR(movie->loudness->percent, 50, 2);
  bench.click(bench.bar.muteButton());
  bench.clickAt(volume, 0.2);
  EXPECT_FALSE(movie->loudness->isMuted) << "who moves the volume wants to hear it";
}

TEST_F(MovieBarTest, NextMovieIsAsLoud) {
  bench.clickAt(volume, 0.5);
  const auto next = std::make_shared<ToldMovie>();
  bench.pane.movie().setMovie(next);
  EXPECT_EQ(next->loudness, movie->loudness);
}

TEST_F(MovieBarTest, LoudnessIsRememberedByAllPanes) {
  RememberedSettings settings;
  bench.pane.setSettings(settings);
  MoviePane other;
  other.setSettings(settings);
  bench.clickAt(volume, 0.5);
  bench.click(bench.bar.muteButton());
  EXPECT_TRUE(movie->loudness->isMuted);
  other.show();
  EXPECT_EQ(other.bar().loudness(), *movie->loudness);
}

TEST_F(MovieBarTest, NonsenseInTheSettingsIsNoLoudness) {
  RememberedSettings settings;
  for (const char* nonsense : {"", "loud", "1e3", "-5", "1000", "999999999999999999"}) {
    settings.values = {{"preview/volume", nonsense}, {"preview/muted", nonsense}};
    bench.pane.setSettings(settings);
    EXPECT_GE(bench.bar.loudness().percent, 0) << nonsense;
    EXPECT_LE(bench.bar.loudness().percent, 100) << nonsense;
    EXPECT_FALSE(bench.bar.loudness().isMuted) << nonsense;
  }
}

TEST_F(MovieBarTest, ShortBarHasARowForThePlace) {
  movie->length = 7265.0;
  be(3661);
  const auto middle = [](const QWidget& one) { return one.geometry().center().y(); };
  EXPECT_NEAR(middle(place), middle(bench.bar.playButton()), 2);
  const int low = bench.bar.height();
  bench.pane.resize(300, 300);
  MoviePaneBench::settle();
  EXPECT_LT(place.geometry().bottom(), middle(bench.bar.playButton()));
  EXPECT_EQ(place.width(), bench.bar.width());
  EXPECT_TRUE(volume.isVisible());
  EXPECT_GT(bench.bar.height(), low);
  EXPECT_EQ(bench.bar.height(), bench.bar.heightForWidth(300));
  EXPECT_EQ(low, bench.bar.heightForWidth(480));
  bench.pane.resize(480, 300);
  MoviePaneBench::settle();
  EXPECT_NEAR(middle(place), middle(bench.bar.playButton()), 2);
  EXPECT_EQ(bench.bar.height(), low);
}

TEST_F(MovieBarTest, BarKeepsItsRowsWhenAFilmComes) {
  bench.pane.movie().setMovie(nullptr);
  bench.pane.resize(300, 300);
  MoviePaneBench::settle();
  const QRect before = place.geometry();
  bench.pane.movie().setMovie(movie);
  be(50);
  MoviePaneBench::settle();
  EXPECT_EQ(place.geometry(), before);
}

TEST_F(MovieBarTest, ShortestBarGivesUpTheVolume) {
  movie->length = 7265.0;
  be(3661);
  bench.pane.resize(bench.pane.minimumSizeHint());
  MoviePaneBench::settle();
  EXPECT_FALSE(volume.isVisible());
  EXPECT_TRUE(bench.bar.muteButton().isVisible());
  EXPECT_GE(place.width(), place.minimumSizeHint().width());
  EXPECT_GE(bench.bar.time().width(), bench.bar.time().fontMetrics().horizontalAdvance(bench.bar.time().text()));
  EXPECT_LE(bench.bar.muteButton().geometry().right(), bench.bar.width());
}

TEST_F(MovieBarTest, ScreenReaderIsToldThePlaceInWordsAndSeconds) {
  movie->length = 185.0;
  be(12.4);
  QAccessibleInterface& told = *QAccessible::queryAccessibleInterface(&place);
  EXPECT_EQ(told.role(), QAccessible::Slider);
  EXPECT_EQ(told.text(QAccessible::Name), QStringLiteral("Place in the film"));
  EXPECT_EQ(told.text(QAccessible::Value), QStringLiteral("0:12 of 3:05"));
  EXPECT_EQ(told.text(QAccessible::Description), QStringLiteral("0:12 of 3:05"));
  QAccessibleValueInterface* const value = told.valueInterface();
  ASSERT_NE(value, nullptr);
  EXPECT_DOUBLE_EQ(value->currentValue().toDouble(), 12.4);
  EXPECT_DOUBLE_EQ(value->minimumValue().toDouble(), 0);
  EXPECT_DOUBLE_EQ(value->maximumValue().toDouble(), 185);
  EXPECT_DOUBLE_EQ(value->minimumStepSize().toDouble(), 5);
  value->setCurrentValue(60.0);
  value->setCurrentValue(1e30);
  value->setCurrentValue(QStringLiteral("nonsense"));
  EXPECT_THAT(deeds(), ElementsAre("to 60.000", "to 185.000", "to 0.000"));
}

TEST_F(MovieBarTest, ScreenReaderIsToldTheVolumeInPerCent) {
  QAccessibleInterface& told = *QAccessible::queryAccessibleInterface(&volume);
  EXPECT_EQ(told.text(QAccessible::Value), QStringLiteral("100 %"));
  EXPECT_EQ(told.valueInterface()->currentValue().toDouble(), 100);
  bench.click(bench.bar.muteButton());
  EXPECT_EQ(told.text(QAccessible::Value), QStringLiteral("Muted"));
}

TEST_F(MovieBarTest, TabWalksThroughItsElements) {
  bench.focus(bench.bar.playButton());
  for (const QWidget* next : std::initializer_list<const QWidget*>{&place, &bench.bar.muteButton(), &volume}) {
    bench.key(Qt::Key_Tab);
    EXPECT_TRUE(next->hasFocus()) << next->accessibleName().toStdString();
  }
}

TEST_F(MovieBarTest, TimesOfOneLengthTakeOneWidth) {
  std::set<int> places;
  for (double at = 0; at < 100; at += 1) {
    be(at);
    MoviePaneBench::settle();
    places.insert(place.width());
  }
  EXPECT_EQ(places.size(), 1U) << "the bar does not jump about while a film plays";
}

class MovieBarLook : public MovieBarTest, public testing::WithParamInterface<std::tuple<bool, double>> {};

TEST_P(MovieBarLook, SignsAndHandleStandOutInEachSchemeAtEachScale) {
  const bool isDark = std::get<0>(GetParam());
  const double ratio = std::get<1>(GetParam());
  bench.pane.setPalette(
      platform::qt::paletteOf(isDark ? platform::qt::Appearance::dark : platform::qt::Appearance::light));
  be(50);
  MoviePaneBench::settle();
  QImage image((QSizeF(bench.bar.size()) * ratio).toSize(), QImage::Format_RGB32);
  image.setDevicePixelRatio(ratio);
  image.fill(bench.pane.palette().color(QPalette::Window));
  bench.bar.render(&image, {}, {}, QWidget::DrawChildren);
  const QColor ground = bench.pane.palette().color(QPalette::Window);
  const auto colourAt = [&](const QWidget& widget, QPointF at) {
    return image.pixelColor(((QPointF(widget.pos()) + at) * ratio).toPoint());
  };
  const auto contrast = [](const QColor& one, const QColor& other) {
    const auto light = [](const QColor& colour) {
      const auto part = [](double value) {
        return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
      };
      return 0.2126 * part(colour.redF()) + 0.7152 * part(colour.greenF()) + 0.0722 * part(colour.blueF());
    };
    const auto [low, high] = std::minmax({light(one), light(other)});
    return (high + 0.05) / (low + 0.05);
  };
  const QPointF middle(bench.bar.playButton().rect().center());
  EXPECT_GT(contrast(colourAt(bench.bar.playButton(), middle), ground), 4.5);
  const QPointF handle(place.placeOf(place.value()), place.height() / 2.0);
  EXPECT_GT(contrast(colourAt(place, handle), ground), 3.0);
  EXPECT_EQ(colourAt(place, {1, 1}), ground);
}

INSTANTIATE_TEST_SUITE_P(All, MovieBarLook, testing::Combine(testing::Bool(), testing::Values(1.0, 1.5, 2.0)));

}  // namespace

}  // namespace zelvo::tests
