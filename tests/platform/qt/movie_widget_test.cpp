#include "platform/qt/preview/movie_widget.h"

#include <QPalette>
#include <filesystem>

#include "platform/headless/elements.h"
#include "platform/qt/preview/movie_view.h"
#include "platform/qt/preview/shown_movie.h"
#include "tests/platform/qt/movie_bench.h"

namespace zelvo::tests {

namespace {

using platform::qt::MovieWidget;

class MovieWidgetTest : public MovieBench {};

TEST_F(MovieWidgetTest, FirstPictureIsTheOneThatFfmpegDecodes) {
  const std::string path = film();
  const std::vector<QImage> pictures = decoded(path);
  ASSERT_EQ(pictures.size(), 10U);
  FilmWidget widget(64, 48);
  widget.setMovie(load(path));
  widget.show();
  serveUntilShown(widget, pictures.front());
  for (std::size_t other = 1; other < pictures.size(); ++other) {
    EXPECT_GT(difference(shown(widget), pictures[other]), 2 * kAlike) << other;
  }
  EXPECT_TRUE(ends().empty());
}

TEST_F(MovieWidgetTest, PictureKeepsItsShapeOnTheGround) {
  const std::string path = film();
  const QImage first = decoded(path).front();
  FilmWidget widget(164, 48);
  QPalette palette;
  palette.setColor(QPalette::Window, QColor(10, 20, 30));
  widget.setPalette(palette);
  widget.setMovie(load(path));
  widget.show();
  serveUntil([&] { return difference(shown(widget).copy(50, 0, 64, 48), first) < kAlike; });
  const QImage all = shown(widget);
  EXPECT_EQ(all.pixelColor(0, 0), QColor(10, 20, 30));
  EXPECT_EQ(all.pixelColor(49, 24), QColor(10, 20, 30));
  EXPECT_EQ(all.pixelColor(114, 24), QColor(10, 20, 30));
}

TEST_F(MovieWidgetTest, ShapeOfThePixelsIsHonoured) {
  const std::string path = filmOf("-f lavfi -i testsrc2=size=64x48:rate=10:duration=1 -c:v mpeg4 -aspect 8:3");
  FilmWidget widget(128, 128);
  widget.setMovie(load(path));
  widget.show();
  const QImage first = decoded(path, "scale=128:48").front();
  serveUntil([&] { return difference(shown(widget).copy(0, 40, 128, 48), first) < 2 * kAlike; });
}

TEST_F(MovieWidgetTest, EveryPixelIsOpaque) {
  FilmWidget widget(64, 48);
  const auto movie = std::dynamic_pointer_cast<platform::qt::ShownMovie>(load(film()));
  widget.setMovie(movie);
  widget.show();
  serveUntil([&] { return !movie->picture({30, 20}).isNull(); });
  const QImage picture = movie->picture({30, 20});
  for (int y = 0; y < picture.height(); ++y) {
    const auto* line = reinterpret_cast<const QRgb*>(picture.constScanLine(y));
    for (int x = 0; x < picture.width(); ++x) ASSERT_EQ(qAlpha(line[x]), 255) << x << " " << y;
  }
}

class MovieWidgetAtRatio : public MovieWidgetTest, public testing::WithParamInterface<double> {};

TEST_P(MovieWidgetAtRatio, PictureHasThePixelsOfTheDevice) {
  const std::string path = film();
  const double ratio = GetParam();
  const QSize pixels = (QSizeF(64, 48) * ratio).toSize();
  const std::string scale = "scale=" + std::to_string(pixels.width()) + ":" + std::to_string(pixels.height());
  const QImage sharp = decoded(path, scale + ":flags=bilinear").front();
  FilmWidget widget(64, 48);
  const auto movie = std::dynamic_pointer_cast<platform::qt::ShownMovie>(load(path));
  widget.setMovie(movie);
  widget.show();
  serveUntil([&] { return difference(shown(widget, ratio), sharp) < 2 * kAlike; });
  const QImage image = shown(widget, ratio);
  EXPECT_EQ(image.size(), pixels);
  EXPECT_EQ(difference(image, movie->picture(pixels)), 0.0);  // pixel for pixel, not stretched
}

INSTANTIATE_TEST_SUITE_P(Ratios, MovieWidgetAtRatio, testing::Values(1.0, 1.25, 1.5, 2.0));

TEST_F(MovieWidgetTest, PictureThatCameWhileTheMainThreadWasBusyIsShown) {
  const std::string path = film();
  const QImage first = decoded(path).front();
  FilmWidget widget(64, 48);
  widget.setMovie(load(path));
  widget.show();
  beBusyForOneFilm();
  serveUntilShown(widget, first);
}

TEST_F(MovieWidgetTest, ResizingDrawsTheStandingPictureAnew) {
  const std::string path = film();
  FilmWidget widget(64, 48);
  widget.setMovie(load(path));
  widget.show();
  serveUntilShown(widget, decoded(path).front());
  widget.resize(32, 24);
  EXPECT_LT(difference(shown(widget), decoded(path, "scale=32:24:flags=area").front()), 3 * kAlike);
}

TEST_F(MovieWidgetTest, EmptyViewSaysWhatWillBeThere) {
  FilmWidget widget(300, 200);
  EXPECT_EQ(widget.accessibleName(), QStringLiteral("Preview, no film yet"));
  EXPECT_EQ(widget.accessibleDescription(), QStringLiteral("Your repaired film will be shown here."));
  const QImage image = shown(widget);
  QImage ground(image.size(), QImage::Format_RGB32);
  ground.fill(widget.palette().color(QPalette::Window));
  EXPECT_GT(difference(image, ground), 0.0);
}

TEST_F(MovieWidgetTest, NameSaysWhetherItPlays) {
  FilmWidget widget(64, 48);
  const auto movie = load(film());
  widget.setMovie(movie);
  widget.show();
  EXPECT_EQ(widget.accessibleName(), QStringLiteral("Preview of the film, not playing"));
  movie->play();
  EXPECT_EQ(widget.accessibleName(), QStringLiteral("Preview of the film, playing"));
  serveUntil([&] { return ends().size() == 1; });
  EXPECT_EQ(widget.accessibleName(), QStringLiteral("Preview of the film, not playing"));
}

TEST_F(MovieWidgetTest, MovieThatNobodySeesIsNotOpened) {
  const std::string path = film();
  FilmWidget widget(64, 48);
  widget.setMovie(load(path));
  static_cast<void>(shown(widget));
  serveForOneFilm();
  EXPECT_FALSE(isOpen(path));
}

TEST_F(MovieWidgetTest, HiddenViewLetsGoOfTheFile) {
  const std::string path = film();
  const QImage first = decoded(path).front();
  FilmWidget widget(64, 48);
  widget.setMovie(load(path));
  widget.show();
  serveUntilShown(widget, first);
  EXPECT_TRUE(isOpen(path));
  std::filesystem::remove(path);
  widget.hide();
  serveUntil([&] { return !isOpen(path); });
}

TEST_F(MovieWidgetTest, ViewShownAgainShowsTheMovieAgain) {
  const std::string path = film();
  const QImage first = decoded(path).front();
  FilmWidget widget(64, 48);
  widget.setMovie(load(path));
  widget.show();
  serveUntilShown(widget, first);
  widget.hide();
  widget.show();
  serveUntilShown(widget, first);
}

TEST_F(MovieWidgetTest, HidingEndsTheMovieThatPlays) {
  FilmWidget widget(64, 48);
  const auto movie = load(film());
  widget.setMovie(movie);
  widget.show();
  movie->play();
  widget.hide();
  EXPECT_EQ(ends(), (std::vector<platform::NotificationSender*>{movie.get()}));
}

TEST_F(MovieWidgetTest, NextMovieTakesThePlaceOfOneThatPlays) {
  const auto first = load(film("first.avi"));
  const std::string path = filmOf("-f lavfi -i color=orange:size=64x48:rate=10:duration=1 -c:v mpeg4", "second.avi");
  FilmWidget widget(64, 48);
  widget.setMovie(first);
  widget.show();
  first->play();
  widget.setMovie(load(path));
  serveUntilShown(widget, decoded(path).front());
  serveUntil([&] { return !isOpen(folder_.path("first.avi")); });
  EXPECT_TRUE(ends().empty());
}

TEST_F(MovieWidgetTest, MovieThatWasReplacedPlaysNoMore) {
  const auto first = load(film("first.avi"));
  FilmWidget widget(64, 48);
  widget.setMovie(first);
  widget.show();
  first->play();
  widget.setMovie(nullptr);
  serveForOneFilm();
  EXPECT_TRUE(ends().empty());
  EXPECT_EQ(widget.accessibleName(), QStringLiteral("Preview, no film yet"));
}

TEST_F(MovieWidgetTest, MovieOfAnotherKindShowsAnEmptyView) {
  FilmWidget widget(64, 48);
  widget.setMovie(std::make_shared<platform::headless::HeadlessMovie>("movie", nullptr));
  EXPECT_EQ(widget.accessibleName(), QStringLiteral("Preview, no film yet"));
}

TEST_F(MovieWidgetTest, WidgetMayGoWhileItsMoviePlays) {
  const auto movie = load(film());
  {
    FilmWidget widget(64, 48);
    widget.setMovie(movie);
    widget.show();
    movie->play();
    serveUntil([&] { return isOpen(folder_.path("film.avi")); });
  }
  serveUntil([&] { return !isOpen(folder_.path("film.avi")); });
  EXPECT_TRUE(ends().empty());
}

TEST_F(MovieWidgetTest, ViewTakesMoviesOfWorkersInOrder) {
  const std::string path = film();
  FilmWidget widget(64, 48);
  widget.show();
  platform::qt::QtMovieView view(queue_, widget);
  const auto worker = workers_.startHelper([&] {
    view.setMovie(load(folder_.path("missing.avi")));
    view.setMovie(load(path));
  });
  serveUntilShown(widget, decoded(path).front());
  worker->join();
  EXPECT_EQ(widget.accessibleDescription(), QString());
}

}  // namespace

}  // namespace zelvo::tests
