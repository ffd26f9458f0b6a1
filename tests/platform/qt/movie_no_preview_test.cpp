#include "platform/qt/preview/no_preview.h"

#include "platform/qt/preview/movie_widget.h"
#include "tests/platform/qt/movie_bench.h"

namespace zelvo::tests {

namespace {

using Ends = std::vector<platform::NotificationSender*>;

class NoPreviewTest : public MovieBench {
 protected:
  platform::qt::NoPreviewLoader none_{queue_, centre_};
};

TEST_F(NoPreviewTest, SaysSoInTheFilmsPlace) {
  FilmWidget widget(300, 200);
  widget.setMovie(none_.movieWithFile(folder_.path("film.avi")).movie);
  widget.show();
  EXPECT_EQ(widget.accessibleDescription(),
            QStringLiteral("No preview in this build. You can save the film and open it in a player."));
}

TEST_F(NoPreviewTest, PlayEndsAtOnce) {
  const auto movie = none_.movieWithFile(folder_.path("film.avi")).movie;
  movie->gotoBeginning();
  movie->play();
  EXPECT_EQ(ends(), Ends{movie.get()});
}

}  // namespace

}  // namespace zelvo::tests
