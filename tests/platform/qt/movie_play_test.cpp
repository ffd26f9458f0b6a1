#include <QCoreApplication>
#include <clocale>
#include <filesystem>
#include <fstream>

#include "platform/qt/preview/movie_loader.h"
#include "platform/qt/preview/shown_movie.h"
#include "tests/platform/qt/movie_bench.h"

namespace zelvo::tests {

namespace {

using platform::qt::ShownMovie;
using Ends = std::vector<platform::NotificationSender*>;

class QtMovieTest : public MovieBench {
 protected:
  [[nodiscard]] std::shared_ptr<ShownMovie> loadShown(const std::string& path) {
    auto movie = std::dynamic_pointer_cast<ShownMovie>(load(path));
    EXPECT_NE(movie, nullptr);
    return movie;
  }
  void serveUntilShown(ShownMovie& movie, const QImage& picture,
                       const ::zelvo::tests::CodePlace& where = ::zelvo::tests::CodePlace::current()) {
    serveUntil([&] { return difference(movie.picture(picture.size()), picture) < kAlike; },
               [&] {
                 return "a movie of " + std::to_string(movie.shape().width()) + " by " +
                        std::to_string(movie.shape().height()) + ", \"" + movie.remark().toStdString() + "\", " +
                        std::to_string(difference(movie.picture(picture.size()), picture)) +
                        " from the picture waited for";
               },
               where);
  }
};

TEST_F(QtMovieTest, PlayedToTheEndTellsItOnce) {
  const auto movie = loadShown(film());
  movie->play();
  serveUntil([&] { return !ends().empty(); });
  EXPECT_FALSE(movie->isPlaying());
  serveForOneFilm();
  EXPECT_EQ(ends(), Ends{movie.get()});
}

TEST_F(QtMovieTest, LastPictureStaysAtTheEnd) {
  const std::string path = film();
  const auto movie = loadShown(path);
  movie->beginShow([] {});
  movie->play();
  serveUntil([&] { return !ends().empty(); });
  serveUntilShown(*movie, decoded(path).back());
}

TEST_F(QtMovieTest, AudienceIsToldOfAPictureThatCameWhileTheMainThreadWasBusy) {
  const std::string path = film();
  const QImage first = decoded(path).front();
  const auto movie = loadShown(path);
  bool isThere = false;
  movie->beginShow([&] { isThere = difference(movie->picture({64, 48}), first) < kAlike; });
  beBusyForOneFilm();
  serveUntil([&] { return isThere; });
}

TEST_F(QtMovieTest, AudienceIsToldOfALastPictureThatCameWhileTheMainThreadWasBusy) {
  const std::string path = film();
  const std::vector<QImage> pictures = decoded(path);
  const auto movie = loadShown(path);
  QImage told;
  movie->beginShow([&] { told = movie->picture({64, 48}).copy(); });
  serveUntilShown(*movie, pictures.front());
  movie->play();
  beBusyForOneFilm();
  beBusyForOneFilm();
  serveUntil([&] { return difference(told, pictures.back()) < kAlike; });
}

TEST_F(QtMovieTest, FirstPictureComesBackThoughTheMainThreadIsBusy) {
  const std::string path = film();
  const std::vector<QImage> pictures = decoded(path);
  const auto movie = loadShown(path);
  movie->beginShow([] {});
  movie->play();
  serveUntil([&] { return !ends().empty(); });
  serveUntilShown(*movie, pictures.back());
  movie->gotoBeginning();
  beBusyForOneFilm();
  serveUntilShown(*movie, pictures.front());
}

TEST_F(QtMovieTest, SoundNeedsNoSoundCard) {
  const auto movie = loadShown(filmOf("-f lavfi -i sine=duration=0.3 -c:a pcm_s16le"));
  movie->play();
  serveUntil([&] { return !ends().empty(); });
  EXPECT_TRUE(logged().empty());
}

TEST_F(QtMovieTest, SoundWithoutPictureSaysSo) {
  const auto movie = loadShown(filmOf("-f lavfi -i sine=duration=0.3 -c:a pcm_s16le"));
  movie->beginShow([] {});
  serveUntil([&] { return !movie->remark().isEmpty(); });
  EXPECT_TRUE(movie->remark().startsWith(QStringLiteral("The picture of this film cannot be shown here")));
  EXPECT_TRUE(movie->shape().isEmpty());
}

TEST_F(QtMovieTest, FilmOfOnePictureEnds) {
  const auto movie = loadShown(filmOf("-f lavfi -i testsrc2=size=64x48:rate=10 -frames:v 1 -c:v mpeg4"));
  movie->beginShow([] {});
  serveUntil([&] { return !movie->shape().isEmpty(); });
  for (std::size_t times = 1; times <= 3; ++times) {
    movie->gotoBeginning();
    movie->play();
    serveUntil([&] { return ends().size() == times; });
  }
}

TEST_F(QtMovieTest, StopLetsItStandStill) {
  const std::string path = film();
  const QImage first = decoded(path).front();
  const auto movie = loadShown(path);
  movie->beginShow([] {});
  serveUntilShown(*movie, first);
  movie->play();
  serveUntil([&] { return difference(movie->picture({64, 48}), first) > 2 * kAlike; });
  movie->stop();
  EXPECT_FALSE(movie->isPlaying());
  serveForOneFilm();
  const QImage standing = movie->picture({64, 48}).copy();
  serveForOneFilm();
  EXPECT_EQ(difference(movie->picture({64, 48}), standing), 0.0);
  EXPECT_TRUE(ends().empty());
}

TEST_F(QtMovieTest, StopBeforeTheFileIsOpenHolds) {
  const std::string path = film();
  const auto movie = loadShown(path);
  movie->beginShow([] {});
  movie->play();
  movie->stop();
  serveForOneFilm();
  serveUntilShown(*movie, decoded(path).front());
  EXPECT_TRUE(ends().empty());
}

TEST_F(QtMovieTest, GotoBeginningShowsTheFirstPicture) {
  const std::string path = film();
  const std::vector<QImage> pictures = decoded(path);
  const auto movie = loadShown(path);
  movie->beginShow([] {});
  movie->play();
  serveUntil([&] { return !ends().empty(); });
  serveUntilShown(*movie, pictures.back());
  movie->gotoBeginning();
  serveUntilShown(*movie, pictures.front());
  serveForOneFilm();
  EXPECT_LT(difference(movie->picture({64, 48}), pictures.front()), kAlike);
  EXPECT_EQ(ends().size(), 1U);
}

TEST_F(QtMovieTest, PlaysOnFromWhereItStood) {
  const std::string path = film();
  const QImage first = decoded(path).front();
  const auto movie = loadShown(path);
  movie->beginShow([] {});
  serveUntilShown(*movie, first);
  movie->play();
  serveUntil([&] { return difference(movie->picture({64, 48}), first) > 2 * kAlike; });
  movie->stop();
  movie->play();
  serveUntil([&] { return ends().size() == 1; });
}

TEST_F(QtMovieTest, PlayedAtItsEndStartsAgain) {
  const std::string path = film();
  const std::vector<QImage> pictures = decoded(path);
  const auto movie = loadShown(path);
  movie->beginShow([] {});
  movie->play();
  serveUntil([&] { return ends().size() == 1; });
  serveUntilShown(*movie, pictures.back());
  movie->play();
  serveUntilShown(*movie, pictures.front());
  serveUntil([&] { return ends().size() == 2; });
}

TEST_F(QtMovieTest, PressedAgainAndAgainStillEndsOnce) {
  const auto movie = loadShown(film());
  for (int press = 0; press < 20; ++press) {
    movie->gotoBeginning();
    movie->play();
    QCoreApplication::processEvents();
    movie->stop();
  }
  movie->gotoBeginning();
  movie->play();
  serveUntil([&] { return !ends().empty(); });
  serveForOneFilm();
  EXPECT_EQ(ends(), Ends{movie.get()});
}

TEST_F(QtMovieTest, FileThatIsNoFilmEndsThePreview) {
  std::string bytes(300'000, '\0');
  for (std::size_t at = 0; at < bytes.size(); ++at) bytes[at] = static_cast<char>(at * at * 31 + at / 7);
  const auto movie = loadShown(folder_.put("film.avi", bytes));
  movie->play();
  serveUntil([&] { return !ends().empty(); });
  EXPECT_EQ(ends(), Ends{movie.get()});
  EXPECT_EQ(
      movie->remark(),
      QStringLiteral("The preview cannot open this film. You can save it, but another player may not open it either."));
  ASSERT_EQ(logged().size(), 1U);
  EXPECT_TRUE(logged().front().starts_with("log: " + folder_.path("film.avi") + ": "));
}

TEST_F(QtMovieTest, FilmWithoutAnyFrameEndsThePreview) {
  const std::string whole = film();
  std::filesystem::resize_file(whole, 300);
  const auto movie = loadShown(whole);
  movie->play();
  serveUntil([&] { return !ends().empty(); });
  EXPECT_EQ(ends(), Ends{movie.get()});
}

TEST_F(QtMovieTest, FilmOfAnotherKindIsNotRead) {
  const auto movie =
      loadShown(filmOf("-f lavfi -i testsrc2=size=64x48:rate=10:duration=1 -c:v mpeg4 -f matroska", "film.avi"));
  movie->play();
  serveUntil([&] { return !ends().empty(); });
  EXPECT_FALSE(movie->remark().isEmpty());
}

TEST_F(QtMovieTest, MissingFileEndsThePreview) {
  const auto movie = loadShown(folder_.path("film.avi"));
  movie->play();
  EXPECT_TRUE(ends().empty());  // told from the event loop, never within the call
  serveUntil([&] { return !ends().empty(); });
  EXPECT_EQ(movie->remark(), QStringLiteral("The film is not there any more."));
}

TEST_F(QtMovieTest, MissingFileIsSaidWhenItIsLookedAt) {
  const auto movie = loadShown(folder_.path("film.avi"));
  movie->beginShow([] {});
  serveUntil([&] { return !movie->remark().isEmpty(); });
  EXPECT_TRUE(ends().empty());
}

TEST_F(QtMovieTest, FileThatCameLaterIsPlayed) {
  const auto movie = loadShown(folder_.path("film.avi"));
  movie->play();
  serveUntil([&] { return ends().size() == 1; });
  const std::string path = film();
  movie->beginShow([] {});
  movie->play();
  EXPECT_TRUE(movie->remark().isEmpty());
  serveUntilShown(*movie, decoded(path).front());
  serveUntil([&] { return ends().size() == 2; });
}

TEST_F(QtMovieTest, FileRemovedMeanwhilePlaysToTheEnd) {
  const std::string path = film();
  const QImage last = decoded(path).back();
  const auto movie = loadShown(path);
  movie->beginShow([] {});
  serveUntil([&] { return !movie->shape().isEmpty(); });
  std::filesystem::remove(path);
  movie->play();
  serveUntil([&] { return !ends().empty(); });
  serveUntilShown(*movie, last);
}

TEST_F(QtMovieTest, AnyNameIsAFileOfThisMachine) {
  const std::string name = "http:\\-film #1 %20 \xc3\xa4 \xff;.avi";
  std::filesystem::rename(film(), folder_.path(name));
  const auto movie = loadShown(folder_.path(name));
  movie->play();
  serveUntil([&] { return !ends().empty(); });
  EXPECT_TRUE(logged().empty());
}

TEST_F(QtMovieTest, NumbersOfTheUserDoNotStopIt) {
  ASSERT_NE(std::setlocale(LC_NUMERIC, "C.UTF-8"), nullptr);
  const auto movie = loadShown(film());
  movie->beginShow([] {});
  EXPECT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "C");
  serveUntil([&] { return !movie->shape().isEmpty(); });
}

TEST_F(QtMovieTest, MayGoWhileItPlays) {
  const std::string path = film();
  auto movie = loadShown(path);
  movie->play();
  serveUntil([&] { return isOpen(path); });
  movie.reset();
  serveUntil([&] { return !isOpen(path); });
  EXPECT_TRUE(ends().empty());
}

TEST_F(QtMovieTest, WorkerMayBeTheLastToLetGo) {
  const std::string path = film();
  auto movie = load(path);
  movie->play();
  serveUntil([&] { return isOpen(path); });
  const auto worker = workers_.startHelper([last = std::exchange(movie, nullptr)]() mutable { last.reset(); });
  worker->join();
  serveUntil([&] { return !isOpen(path); });
}

TEST_F(QtMovieTest, WorkerMayPlay) {
  const auto movie = load(film());
  const auto worker = workers_.startHelper([&movie] {
    movie->gotoBeginning();
    movie->play();
  });
  serveUntil([&] { return !ends().empty(); });
  worker->join();
  EXPECT_EQ(ends(), Ends{movie.get()});
}

TEST_F(QtMovieTest, TwoMoviesPlayAtATime) {
  const auto one = load(film("one.avi"));
  const auto other = load(film("other.avi"));
  one->play();
  other->play();
  serveUntil([&] { return ends().size() == 2; });
  EXPECT_NE(ends()[0], ends()[1]);
}

TEST_F(QtMovieTest, LoadingOpensNothing) {
  const platform::LoadedMovie missing = loader_->movieWithFile(folder_.path("missing.avi"));
  EXPECT_NE(missing.movie, nullptr);
  EXPECT_EQ(missing.error, std::nullopt);
  EXPECT_TRUE(logged().empty());
}

TEST_F(QtMovieTest, LoadingNoFileIsAnError) {
  const platform::LoadedMovie nothing = loader_->movieWithFile("");
  EXPECT_EQ(nothing.movie, nullptr);
  EXPECT_EQ(nothing.error, "No file is named that could be shown.");
}

}  // namespace

}  // namespace zelvo::tests
