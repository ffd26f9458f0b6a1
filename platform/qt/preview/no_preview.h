/// The preview of a build without a movie library: says so, and never keeps anybody waiting.
#pragma once

#include "platform/main_queue.h"
#include "platform/movies.h"
#include "platform/notification_centre.h"

namespace zelvo::platform::qt {

/// Its movies show a sentence, and are at their end as soon as they are played.
/// Lifetime: outlives its movies. Thread: any.
class NoPreviewLoader final : public MovieLoader {
 public:
  NoPreviewLoader(MainQueue& mainQueue, NotificationCentre& notifications)
      : mainQueue_(mainQueue), notifications_(notifications) {}
  [[nodiscard]] LoadedMovie movieWithFile(const std::string& path) override;

 private:
  MainQueue& mainQueue_;
  NotificationCentre& notifications_;
};

}  // namespace zelvo::platform::qt
