#include "platform/qt/movie_preview.h"
#include "platform/qt/qt_movie_loader.h"

namespace zelvo::platform::qt {

std::unique_ptr<MovieLoader> makeMovieLoader(const MovieServices& services) {
  return std::make_unique<QtMovieLoader>(services);
}

}  // namespace zelvo::platform::qt
