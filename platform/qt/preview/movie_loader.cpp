#include "platform/qt/preview/movie_loader.h"

#include "platform/qt/preview/movie.h"

namespace zelvo::platform::qt {

QtMovieLoader::QtMovieLoader(const MovieServices& services) : openMovies_(services) {
  MpvPlayer::useDecimalPoints();  // before any worker looks at the conventions
}

LoadedMovie QtMovieLoader::movieWithFile(const std::string& path) {
  if (path.empty()) return {nullptr, "No file is named that could be shown."};
  return {std::make_shared<QtMovie>(path, openMovies_), std::nullopt};
}

}  // namespace zelvo::platform::qt
