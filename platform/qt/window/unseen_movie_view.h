/// Shows a movie that no page has a place for: nothing. It keeps it as one that is shown would be kept.
#pragma once

#include <memory>
#include <utility>

#include "platform/main_queue.h"
#include "platform/movies.h"

namespace zelvo::platform::qt {

/// Thread: any.
class UnseenMovieView final : public MovieView {
 public:
  explicit UnseenMovieView(MainQueue& queue) : queue_(queue) {}
  void setMovie(std::shared_ptr<Movie> movie) override {
    queue_.perform([this, movie = std::move(movie)] { movie_ = movie; });
  }

 private:
  MainQueue& queue_;
  std::shared_ptr<Movie> movie_;
};

}  // namespace zelvo::platform::qt
