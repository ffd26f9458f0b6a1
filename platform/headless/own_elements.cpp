#include "platform/headless/own_elements.h"

namespace zelvo::platform::headless {

void HeadlessFilmReport::show(const FilmReport& report) {
  {
    const std::lock_guard lock(mutex_);
    report_ = report;
  }
  if (changed) changed();
}

void HeadlessFilmReport::clear() {
  {
    const std::lock_guard lock(mutex_);
    report_.reset();
  }
  if (changed) changed();
}

std::optional<FilmReport> HeadlessFilmReport::report() const {
  const std::lock_guard lock(mutex_);
  return report_;
}

void HeadlessRejection::show(Rejection reason) {
  const std::lock_guard lock(mutex_);
  reason_ = reason;
}

std::optional<Rejection> HeadlessRejection::reason() const {
  const std::lock_guard lock(mutex_);
  return reason_;
}

}  // namespace zelvo::platform::headless
