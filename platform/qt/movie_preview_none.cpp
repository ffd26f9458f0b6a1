#include "platform/qt/movie_preview.h"
#include "platform/qt/no_preview.h"

namespace zelvo::platform::qt {

std::unique_ptr<MovieLoader> makeMovieLoader(const MovieServices& services) {
  return std::make_unique<NoPreviewLoader>(services.mainQueue, services.notifications);
}

}  // namespace zelvo::platform::qt
