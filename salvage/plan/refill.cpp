#include "salvage/plan/refill.h"

#include <optional>

namespace zelvo::salvage {

std::vector<Slot> refillInTurn(const std::vector<Refill>& missing, std::size_t most) {
  std::vector<Slot> slots;
  std::vector<std::size_t> done(missing.size(), 0);
  while (slots.size() < most) {
    // Whichever is furthest behind comes next.
    std::optional<std::size_t> next;
    for (std::size_t i = 0; i < missing.size(); ++i) {
      const auto share = [&](std::size_t part) {
        return static_cast<double>(done[part]) / static_cast<double>(missing[part].count);
      };
      if (done[i] < missing[i].count && (!next || share(i) < share(*next))) next = i;
    }
    if (!next) break;
    ++done[*next];
    Slot slot;
    slot.stream = missing[*next].stream;
    slot.size = missing[*next].size;
    slot.state = SlotState::refilled;
    slots.push_back(slot);
  }
  return slots;
}

}  // namespace zelvo::salvage
