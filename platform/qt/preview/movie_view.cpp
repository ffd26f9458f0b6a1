#include "platform/qt/preview/movie_view.h"

#include <utility>

namespace zelvo::platform::qt {

void QtMovieView::setMovie(std::shared_ptr<Movie> movie) {
  mainQueue_.perform([&widget = widget_, shown = std::move(movie)] { widget.setMovie(shown); });
}

}  // namespace zelvo::platform::qt
