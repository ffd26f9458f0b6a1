/// The preview of this build: with a movie library, or the honest choice without one. The build decides which source
/// stands behind this header.
#pragma once

#include <memory>

#include "platform/log.h"
#include "platform/main_queue.h"
#include "platform/movies.h"
#include "platform/notification_centre.h"
#include "platform/workers.h"

namespace zelvo::platform::qt {

/// What the preview needs; all of it outlives the loader.
struct MovieServices {
  MainQueue& mainQueue;
  Workers& workers;
  NotificationCentre& notifications;
  Log& log;
};

/// Makes the loader whose movies a `MovieWidget` can show. It outlives them and the last run of the main queue.
/// Thread: main, after the application object is made and before any worker is.
[[nodiscard]] std::unique_ptr<MovieLoader> makeMovieLoader(const MovieServices& services);

}  // namespace zelvo::platform::qt
