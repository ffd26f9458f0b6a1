#include "platform/qt/preview/open_movies.h"

#include <algorithm>
#include <utility>

#include "platform/qt/preview/movie.h"

namespace zelvo::platform::qt {

OpenMovies::OpenMovies(const MovieServices& services)
    : services_(services), serveMovies_(services.mainQueue, [this] { serveMovies(); }) {}

void OpenMovies::serve(const std::shared_ptr<QtMovie>& movie) {
  std::erase_if(movies_, [&movie](const std::weak_ptr<QtMovie>& one) { return one.expired() || one.lock() == movie; });
  movies_.push_back(movie);
}

void OpenMovies::serveMovies() {
  const std::vector<std::weak_ptr<QtMovie>> movies = movies_;  // who is told of an end may open another
  for (const std::weak_ptr<QtMovie>& one : movies) {
    if (const std::shared_ptr<QtMovie> movie = one.lock()) movie->serve();
  }
}

void OpenMovies::postEnd(QtMovie& movie) { services_.notifications.post({kMovieDidEndNotification, &movie}); }

void OpenMovies::release(std::unique_ptr<MpvPlayer> player) {
  if (!player) return;
  player->silence();
  // A player waits for its file and its sound device, which may take long.
  // Decision: preview, Players are let go on a worker
  services_.workers.start(std::make_shared<CancelMark>(),
                          [released = std::shared_ptr<MpvPlayer>(std::move(player))]() mutable { released.reset(); });
}

}  // namespace zelvo::platform::qt
