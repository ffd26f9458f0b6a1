#include "app/run_guard.h"

#include <utility>

namespace zelvo::app {

void RunGuard::setProgressBarValue(double percent) {
  storing_ = std::this_thread::get_id();
  if (passes()) relay_.setProgressBarValue(percent);
  storing_.store({}, std::memory_order_release);
}

void RunGuard::hideProgress() {
  shown_ = 0;
  // A value that passed just before is handed on first: one store, not the run, is waited for. A stop that is pressed
  // while this very thread hands one on has nothing to wait for.
  for (auto storer = storing_.load(); storer != std::thread::id{} && storer != std::this_thread::get_id();
       storer = storing_.load()) {
    std::this_thread::yield();
  }
}

void RunGuard::beginSheet(platform::Window& sheet, platform::Window& over, std::function<bool()> stillWanted) {
  sheets_.beginSheet(sheet, over, [this, number = std::uint64_t{working_}, wanted = std::move(stillWanted)] {
    if (wanted && !wanted()) return false;
    return isLatest(number) && (number == 0 || number >= sheetsBegin_);
  });
}

}  // namespace zelvo::app
