#include <QCoreApplication>
#include <limits>

#include "platform/qt/preview/movie_loader.h"
#include "platform/qt/preview/mpv_player.h"
#include "platform/qt/preview/shown_movie.h"
#include "tests/platform/qt/movie_bench.h"

namespace zelvo::tests {

namespace {

using platform::qt::Loudness;
using platform::qt::MpvPlayer;
using platform::qt::ShownMovie;
using Ends = std::vector<platform::NotificationSender*>;

/// Ten pictures, 0.1 s each; the picture of 0.5 s is the sixth.
class MovieTime : public MovieBench {
 protected:
  void SetUp() override {
    path_ = film();
    pictures_ = decoded(path_);
    ASSERT_EQ(pictures_.size(), 10U);
    movie_ = std::dynamic_pointer_cast<ShownMovie>(load(path_));
    ASSERT_NE(movie_, nullptr);
  }
  [[nodiscard]] bool shows(std::size_t picture) {
    return difference(movie_->picture(pictures_[picture].size()), pictures_[picture]) < kAlike;
  }
  void serveUntilShows(std::size_t picture,
                       const ::zelvo::tests::CodePlace& where = ::zelvo::tests::CodePlace::current()) {
    serveUntil([&] { return shows(picture); },
               [&] {
                 std::string all = std::to_string(movie_->position()) + " s, not picture " + std::to_string(picture);
                 for (std::size_t one = 0; one < pictures_.size(); ++one) {
                   if (shows(one)) all += ", but picture " + std::to_string(one);
                 }
                 return all;
               },
               where);
  }
  void openIt() {
    movie_->beginShow([] {});
    serveUntilShows(0);
    serveUntil([&] { return movie_->duration().has_value(); });
  }

  std::string path_;
  std::vector<QImage> pictures_;
  std::shared_ptr<ShownMovie> movie_;
};

TEST_F(MovieTime, StillFilmShowsThePictureOfThatTime) {
  openIt();
  movie_->gotoTime(0.5);
  EXPECT_DOUBLE_EQ(movie_->position(), 0.5) << "where it is going is where it is";
  serveUntilShows(5);
  serveForOneFilm();
  EXPECT_TRUE(shows(5));
  EXPECT_NEAR(movie_->position(), 0.5, 0.01);
  EXPECT_FALSE(movie_->isPlaying());
  EXPECT_TRUE(ends().empty());
}

TEST_F(MovieTime, FilmThatIsNotOpenYetBeginsThere) {
  movie_->gotoTime(0.5);
  EXPECT_FALSE(isOpen(path_));
  movie_->beginShow([] {});
  serveUntilShows(5);
  serveForOneFilm();
  EXPECT_TRUE(shows(5));
}

TEST_F(MovieTime, FilmThatIsBeingOpenedBeginsThere) {
  movie_->beginShow([] {});
  movie_->gotoTime(0.5);
  serveUntilShows(5);
}

TEST_F(MovieTime, BeginningIsAPlaceToo) {
  movie_->gotoTime(0.5);
  movie_->gotoBeginning();
  movie_->beginShow([] {});
  serveUntilShows(0);
  movie_->gotoTime(0.5);
  serveUntilShows(5);
  movie_->gotoTime(-3);
  serveUntilShows(0);
  movie_->gotoTime(std::numeric_limits<double>::quiet_NaN());
  serveForOneFilm();
  EXPECT_TRUE(shows(0));
}

TEST_F(MovieTime, PlayedAfterAJumpItGoesOnFromThere) {
  movie_->beginShow([] {});
  movie_->gotoTime(0.8);
  movie_->play();
  bool sawAnEarlierOne = false;
  serveUntil([&] {
    sawAnEarlierOne = sawAnEarlierOne || shows(4) || shows(5) || shows(6);
    return !ends().empty();
  });
  EXPECT_FALSE(sawAnEarlierOne);
  EXPECT_EQ(ends(), Ends{movie_.get()});
}

TEST_F(MovieTime, PlayingFilmPlaysOnFromThePlace) {
  openIt();
  movie_->play();
  movie_->gotoTime(0.7);
  serveUntil([&] { return shows(7) || shows(8) || shows(9); });
  EXPECT_TRUE(movie_->isPlaying() || !ends().empty());
  serveUntil([&] { return !ends().empty(); });
  serveForOneFilm();
  EXPECT_EQ(ends(), Ends{movie_.get()});
}

TEST_F(MovieTime, JumpToTheEndOfAPlayingFilmIsItsEnd) {
  openIt();
  movie_->play();
  movie_->gotoTime(99);
  EXPECT_TRUE(ends().empty()) << "never told within the call";
  serveUntil([&] { return !ends().empty(); });
  EXPECT_FALSE(movie_->isPlaying());
  serveUntilShows(9);
  serveForOneFilm();
  EXPECT_EQ(ends(), Ends{movie_.get()});
  EXPECT_DOUBLE_EQ(movie_->position(), *movie_->duration());
}

TEST_F(MovieTime, JumpToTheEndOfAPausedFilmIsItsEnd) {
  openIt();
  movie_->play();
  movie_->setPaused(true);
  movie_->gotoTime(*movie_->duration());
  serveUntil([&] { return !ends().empty(); });
  EXPECT_FALSE(movie_->isPlaying());
  EXPECT_FALSE(movie_->isPaused());
  serveUntilShows(9);
  serveForOneFilm();
  EXPECT_EQ(ends(), Ends{movie_.get()});
  movie_->play();
  serveUntil([&] { return ends().size() == 2; });
}

TEST_F(MovieTime, JumpBehindTheEndBeforeTheFilmIsOpenEndsIt) {
  movie_->gotoTime(99);
  movie_->play();
  serveUntil([&] { return !ends().empty(); });
  serveForOneFilm();
  EXPECT_EQ(ends(), Ends{movie_.get()});
}

TEST_F(MovieTime, StillFilmGoesToItsEndWithoutAWord) {
  openIt();
  movie_->gotoTime(99);
  serveUntilShows(9);
  serveForOneFilm();
  EXPECT_TRUE(ends().empty());
  EXPECT_DOUBLE_EQ(movie_->position(), *movie_->duration());
  movie_->play();
  serveUntilShows(0);
  serveUntil([&] { return ends().size() == 1; });
}

TEST_F(MovieTime, JumpBackFromTheEndIsNoEndAnyMore) {
  openIt();
  movie_->gotoTime(99);
  movie_->gotoTime(0.3);
  serveUntilShows(3);
  movie_->play();
  serveUntil([&] { return shows(5); });
  serveUntil([&] { return ends().size() == 1; });
}

TEST_F(MovieTime, PauseIsNoEndAndNoStop) {
  openIt();
  movie_->play();
  serveUntil([&] { return !shows(0); });
  movie_->setPaused(true);
  EXPECT_TRUE(movie_->isPlaying());
  EXPECT_TRUE(movie_->isPaused());
  serveForOneFilm();
  const QImage standing = movie_->picture({64, 48}).copy();
  serveForOneFilm();
  EXPECT_EQ(difference(movie_->picture({64, 48}), standing), 0.0);
  EXPECT_TRUE(ends().empty());
  movie_->setPaused(false);
  serveUntil([&] { return !ends().empty(); });
  serveForOneFilm();
  EXPECT_EQ(ends(), Ends{movie_.get()});
}

TEST_F(MovieTime, PauseBeforeTheFilmIsOpenHolds) {
  movie_->beginShow([] {});
  movie_->play();
  movie_->setPaused(true);
  serveForOneFilm();
  serveUntilShows(0);
  EXPECT_TRUE(ends().empty());
  movie_->setPaused(false);
  serveUntil([&] { return !ends().empty(); });
}

TEST_F(MovieTime, PausedFilmGoesToAPlaceAndStands) {
  openIt();
  movie_->play();
  movie_->setPaused(true);
  movie_->gotoTime(0.5);
  serveUntilShows(5);
  serveForOneFilm();
  EXPECT_TRUE(shows(5));
  EXPECT_TRUE(ends().empty());
}

TEST_F(MovieTime, PausedAgainAndAgainStillEndsOnceAndNotBefore) {
  openIt();
  movie_->play();
  for (int turn = 0; turn < 20; ++turn) {
    movie_->gotoTime(0.1 * (turn % 5));
    movie_->setPaused(turn % 2 == 0);
    QCoreApplication::processEvents();
  }
  movie_->gotoTime(0.2);
  movie_->setPaused(true);
  serveUntilShows(2);
  serveForOneFilm();
  EXPECT_TRUE(ends().empty());
  movie_->setPaused(false);
  serveUntil([&] { return !ends().empty(); });
  serveForOneFilm();
  EXPECT_EQ(ends(), Ends{movie_.get()});
}

TEST_F(MovieTime, StopEndsAPause) {
  openIt();
  movie_->play();
  movie_->setPaused(true);
  movie_->stop();
  EXPECT_FALSE(movie_->isPaused());
  movie_->play();
  EXPECT_FALSE(movie_->isPaused());
  serveUntil([&] { return !ends().empty(); });
}

TEST_F(MovieTime, FilmThatDoesNotPlayIsNotPaused) {
  openIt();
  movie_->setPaused(true);
  EXPECT_FALSE(movie_->isPaused());
  movie_->play();
  serveUntil([&] { return !ends().empty(); });
}

TEST_F(MovieTime, PausedFilmThatIsHiddenEnds) {
  openIt();
  movie_->play();
  movie_->setPaused(true);
  movie_->pauseShow();
  EXPECT_EQ(ends(), Ends{movie_.get()});
  EXPECT_FALSE(movie_->isPaused());
}

TEST_F(MovieTime, TimeGoesOnToTheLength) {
  openIt();
  EXPECT_NEAR(movie_->position(), 0.0, 0.001);
  EXPECT_NEAR(*movie_->duration(), 1.0, 0.1);
  movie_->play();
  double last = 0;
  bool wentBack = false;
  serveUntil([&] {
    wentBack = wentBack || movie_->position() < last;
    last = movie_->position();
    return !ends().empty();
  });
  EXPECT_FALSE(wentBack);
  EXPECT_DOUBLE_EQ(movie_->position(), *movie_->duration());
}

TEST_F(MovieTime, SoundAloneHasTimeToo) {
  const auto sound =
      std::dynamic_pointer_cast<ShownMovie>(load(filmOf("-f lavfi -i sine=duration=2 -c:a pcm_s16le", "sound.avi")));
  sound->beginShow([] {});
  serveUntil([&] { return sound->duration().has_value(); });
  EXPECT_NEAR(*sound->duration(), 2.0, 0.1);
  sound->play();
  sound->gotoTime(1.5);
  serveUntil([&] { return sound->position() > 1.6; });
  sound->gotoTime(99);
  serveUntil([&] { return !ends().empty(); });
  serveForOneFilm();
  EXPECT_EQ(ends(), Ends{sound.get()});
}

TEST_F(MovieTime, FilmWithoutSoundGoesToItsEnd) {
  const std::string path =
      filmOf("-f lavfi -i 'testsrc2=size=64x48:rate=10:duration=1,hue=H=2*PI*t' -c:v mjpeg -pix_fmt yuvj444p -q:v 2",
             "silent.avi");
  const auto silent = std::dynamic_pointer_cast<ShownMovie>(load(path));
  const QImage last = decoded(path).back();
  silent->beginShow([] {});
  silent->gotoTime(99);
  serveUntil([&] { return difference(silent->picture(last.size()), last) < kAlike; });
  EXPECT_TRUE(ends().empty());
}

TEST_F(MovieTime, FilmThatIsNotThereHasNoTime) {
  const auto missing = std::dynamic_pointer_cast<ShownMovie>(load(folder_.path("missing.avi")));
  missing->gotoTime(3);
  missing->beginShow([] {});
  serveUntil([&] { return !missing->remark().isEmpty(); });
  EXPECT_EQ(missing->duration(), std::nullopt);
  EXPECT_EQ(missing->position(), 0.0);
  missing->gotoTime(3);
  missing->setPaused(true);
  missing->setLoudness({50, true});
  EXPECT_TRUE(ends().empty());
}

TEST_F(MovieTime, PlayerIsAsLoudAsItIsTold) {
  std::atomic<bool> rang{false};
  const auto player = MpvPlayer::open(path_, [&rang] { rang = true; });
  ASSERT_NE(player, nullptr);
  const auto untilLoud = [&](const Loudness& loudness) {
    player->setLoudness(loudness);
    serveUntil([&] {
      static_cast<void>(player->news());
      return player->loudness() == loudness;
    });
  };
  untilLoud({30, false});
  untilLoud({30, true});
  untilLoud({0, false});
  untilLoud({100, false});
  player->setLoudness({1000, false});
  player->setLoudness({1000, true});
  serveUntil([&] {
    static_cast<void>(player->news());
    return player->loudness() == Loudness{100, true};
  });
  player->silence();
}

TEST_F(MovieTime, LoudnessOfAnOpenFilmChangesNothingElse) {
  openIt();
  movie_->play();
  for (int percent = 0; percent <= 100; ++percent) movie_->setLoudness({percent, percent % 2 == 0});
  serveUntil([&] { return !ends().empty(); });
  EXPECT_EQ(ends(), Ends{movie_.get()});
}

}  // namespace

}  // namespace zelvo::tests
