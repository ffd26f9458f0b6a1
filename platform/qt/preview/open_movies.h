/// What the movies of one loader share: where their ends are told, and the one operation of the main queue that serves
/// all of them when a player rings.
#pragma once

#include <memory>
#include <vector>

#include "platform/log.h"
#include "platform/main_queue.h"
#include "platform/notification_centre.h"
#include "platform/qt/preview/movie_preview.h"
#include "platform/qt/preview/mpv_player.h"
#include "platform/workers.h"

namespace zelvo::platform::qt {

class QtMovie;

/// Lifetime: outlives its movies, and the last run of the main queue; the services outlive it.
class OpenMovies {
 public:
  explicit OpenMovies(const MovieServices& services);

  [[nodiscard]] MainQueue& mainQueue() const { return services_.mainQueue; }
  [[nodiscard]] Log& log() const { return services_.log; }

  /// Asks that the movies be served soon, never within this call. Thread: any.
  void ring() { serveMovies_.request(); }
  /// Serves `movie` from now on, until it is gone. Thread: main.
  void serve(const std::shared_ptr<QtMovie>& movie);
  /// Tells that `movie` is at its end. Thread: main.
  void postEnd(QtMovie& movie);
  /// Lets go of a player without waiting for it. Thread: main.
  void release(std::unique_ptr<MpvPlayer> player);

 private:
  void serveMovies();

  MovieServices services_;
  std::vector<std::weak_ptr<QtMovie>> movies_;
  CoalescedOperation serveMovies_;
};

}  // namespace zelvo::platform::qt
