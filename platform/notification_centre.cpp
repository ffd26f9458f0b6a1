#include "platform/notification_centre.h"

#include <algorithm>
#include <utility>

namespace zelvo::platform {

void NotificationCentre::addObserver(const void* observer, std::string_view name, Handler handler) {
  registrations_.push_back({observer, std::string(name), std::move(handler), nextNumber_++});
}

void NotificationCentre::removeObserver(const void* observer) {
  std::erase_if(registrations_, [observer](const Registration& one) { return one.observer == observer; });
}

void NotificationCentre::post(const Notification& notification) {
  // Numbers grow along the list, and only they stay true while handlers add and remove.
  const std::size_t end = nextNumber_;
  std::size_t next = 0;
  for (;;) {
    const auto found = std::find_if(registrations_.begin(), registrations_.end(), [&](const Registration& one) {
      return one.number >= next && one.number < end && one.name == notification.name;
    });
    if (found == registrations_.end()) return;
    next = found->number + 1;
    const Handler handler = found->handler;
    handler(notification);
  }
}

}  // namespace zelvo::platform
