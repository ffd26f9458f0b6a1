/// The movie view that logic sees: hands movies over to the widget that shows them.
#pragma once

#include <memory>

#include "platform/main_queue.h"
#include "platform/movies.h"
#include "platform/qt/preview/movie_widget.h"

namespace zelvo::platform::qt {

/// Lifetime: `mainQueue` and `widget` outlive it and whatever it handed to the queue.
/// Thread: any; movies reach the widget in the order of the calls, at once when called on the main thread.
class QtMovieView final : public MovieView {
 public:
  QtMovieView(MainQueue& mainQueue, MovieWidget& widget) : mainQueue_(mainQueue), widget_(widget) {}
  void setMovie(std::shared_ptr<Movie> movie) override;

 private:
  MainQueue& mainQueue_;
  MovieWidget& widget_;
};

}  // namespace zelvo::platform::qt
