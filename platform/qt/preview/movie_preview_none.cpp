#include "platform/qt/preview/movie_preview.h"
#include "platform/qt/preview/no_preview.h"

namespace zelvo::platform::qt {

std::unique_ptr<MovieLoader> makeMovieLoader(const MovieServices& services) {
  return std::make_unique<NoPreviewLoader>(services.mainQueue, services.notifications);
}

}  // namespace zelvo::platform::qt
