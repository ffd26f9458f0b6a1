// The bar with films that are played: what the mouse and the keyboard do is seen in the picture.
#include "tests/platform/qt/movie_bench.h"
#include "tests/platform/qt/movie_pane_bench.h"

namespace zelvo::tests {

namespace {

using platform::qt::ShownMovie;
using Ends = std::vector<platform::NotificationSender*>;

/// Twenty pictures of a second each, without sound.
class MovieBarFilm : public MovieBench {
 protected:
  void SetUp() override {
    path_ = filmOf(
        "-f lavfi -i 'testsrc2=size=64x48:rate=1:duration=20,hue=H=2*PI*t/20' -c:v mjpeg -pix_fmt yuvj444p -q:v 2",
        "long.avi");
    pictures_ = decoded(path_);
    ASSERT_EQ(pictures_.size(), 20U);
    show(path_);
  }
  void show(const std::string& path) {
    movie_ = std::dynamic_pointer_cast<ShownMovie>(load(path));
    bench_.pane.movie().setMovie(movie_);
    serveUntil([&] { return movie_->duration().has_value(); });
  }
  [[nodiscard]] bool shows(std::size_t picture) {
    return difference(movie_->picture({64, 48}), pictures_[picture]) < kAlike;
  }
  void serveUntilShows(std::size_t picture,
                       const ::zelvo::tests::CodePlace& where = ::zelvo::tests::CodePlace::current()) {
    serveUntil([&] { return shows(picture); },
               [&] { return std::to_string(movie_->position()) + " s, not picture " + std::to_string(picture); },
               where);
  }
  [[nodiscard]] std::string time() { return bench_.bar.time().text().toStdString(); }

  std::string path_;
  std::vector<QImage> pictures_;
  MoviePaneBench bench_;
  std::shared_ptr<ShownMovie> movie_;
};

TEST_F(MovieBarFilm, KeysWalkThroughAStillFilm) {
  serveUntilShows(0);
  EXPECT_EQ(time(), "0:00 / 0:20");
  bench_.focus(bench_.bar.place());
  bench_.key(Qt::Key_Right);
  serveUntilShows(5);
  serveUntil([&] { return time() == "0:05 / 0:20"; });
  bench_.key(Qt::Key_Right);
  serveUntilShows(10);
  bench_.key(Qt::Key_Left);
  serveUntilShows(5);
  bench_.key(Qt::Key_End);
  serveUntilShows(19);
  serveUntil([&] { return time() == "0:20 / 0:20"; });
  bench_.key(Qt::Key_Home);
  serveUntilShows(0);
  EXPECT_TRUE(ends().empty());
}

TEST_F(MovieBarFilm, DragShowsWhatIsUnderTheHandle) {
  serveUntilShows(0);
  bench_.press(bench_.bar.place(), 0.0);
  for (const double share : {0.3, 0.7, 0.95, 1.0, 0.2}) {
    bench_.drag(bench_.bar.place(), share);
    // The handle stands on a whole point, so the picture is one of two.
    const auto picture = std::min<std::size_t>(static_cast<std::size_t>(std::ceil(movie_->position())), 19);
    serveUntilShows(picture);
  }
  bench_.release(bench_.bar.place(), 0.2);
  EXPECT_TRUE(ends().empty());
}

TEST_F(MovieBarFilm, PauseAndPlayByTheButton) {
  bench_.click(bench_.bar.playButton());
  EXPECT_TRUE(movie_->isPlaying());
  bench_.click(bench_.bar.playButton());
  EXPECT_TRUE(movie_->isPaused());
  EXPECT_EQ(bench_.pane.movie().accessibleName(), QStringLiteral("Preview of the film, paused"));
  bench_.clickAt(bench_.bar.place(), 0.9);
  serveUntil([&] { return shows(18) || shows(19); });
  serveForOneFilm();
  EXPECT_TRUE(ends().empty());
  bench_.click(bench_.bar.playButton());
  serveUntil([&] { return !ends().empty(); });
  EXPECT_EQ(ends(), Ends{movie_.get()});
  EXPECT_EQ(bench_.bar.playButton().accessibleName(), QStringLiteral("Play"));
  EXPECT_EQ(bench_.bar.place().value(), bench_.bar.place().maximum());
}

TEST_F(MovieBarFilm, ClickOnTheEndOfAPlayingFilmEndsItOnce) {
  bench_.click(bench_.bar.playButton());
  bench_.clickAt(bench_.bar.place(), 1.0);
  serveUntil([&] { return !ends().empty(); });
  serveUntilShows(19);
  serveForOneFilm();
  EXPECT_EQ(ends(), Ends{movie_.get()});
  EXPECT_EQ(time(), "0:20 / 0:20");
}

TEST_F(MovieBarFilm, DragOfAPlayingFilmToAndFroAndToTheEndEndsItOnce) {
  bench_.click(bench_.bar.playButton());
  bench_.press(bench_.bar.place(), 0.1);
  for (const double share : {0.5, 0.2, 0.8, 0.4, 0.9}) bench_.drag(bench_.bar.place(), share);
  serveForOneFilm();
  EXPECT_TRUE(ends().empty()) << "held, it does not play";
  bench_.drag(bench_.bar.place(), 1.0);
  bench_.release(bench_.bar.place(), 1.0);
  serveUntil([&] { return !ends().empty(); });
  serveForOneFilm();
  EXPECT_EQ(ends(), Ends{movie_.get()});
}

TEST_F(MovieBarFilm, SoundAloneIsSteered) {
  show(filmOf("-f lavfi -i sine=duration=10 -c:a pcm_s16le", "sound.avi"));
  serveUntil([&] { return time() == "0:00 / 0:10"; });
  bench_.clickAt(bench_.bar.place(), 0.8);
  bench_.click(bench_.bar.playButton());
  EXPECT_TRUE(movie_->isPlaying());
  serveUntil([&] { return movie_->position() > 8.5; });
  bench_.focus(bench_.bar.place());
  bench_.key(Qt::Key_End);
  serveUntil([&] { return !ends().empty(); });
}

TEST_F(MovieBarFilm, FilmThatCannotBePlayedMayBeTriedAgain) {
  bench_.pane.movie().setMovie(load(folder_.path("missing.avi")));
  serveUntil([&] { return !bench_.pane.movie().accessibleDescription().isEmpty(); });
  EXPECT_FALSE(bench_.bar.place().isEnabled());
  EXPECT_TRUE(bench_.bar.playButton().isEnabled());
  bench_.click(bench_.bar.playButton());
  serveUntil([&] { return !ends().empty(); });
  EXPECT_EQ(bench_.bar.playButton().accessibleName(), QStringLiteral("Play"));
}

}  // namespace

}  // namespace zelvo::tests
