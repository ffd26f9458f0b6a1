#include "app/run_guard.h"

#include <utility>

namespace zelvo::app {

void RunGuard::beginSheet(platform::Window& sheet, platform::Window& over, std::function<bool()> stillWanted) {
  sheets_.beginSheet(sheet, over, [this, number = std::uint64_t{working_}, wanted = std::move(stillWanted)] {
    if (wanted && !wanted()) return false;
    return isLatest(number);
  });
}

}  // namespace zelvo::app
