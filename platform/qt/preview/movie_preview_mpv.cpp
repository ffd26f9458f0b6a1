#include "platform/qt/preview/movie_loader.h"
#include "platform/qt/preview/movie_preview.h"

namespace zelvo::platform::qt {

std::unique_ptr<MovieLoader> makeMovieLoader(const MovieServices& services) {
  return std::make_unique<QtMovieLoader>(services);
}

}  // namespace zelvo::platform::qt
