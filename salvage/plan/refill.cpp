#include "salvage/plan/refill.h"

#include <algorithm>

namespace zelvo::salvage {

std::vector<Slot> refillInTurn(const std::vector<Refill>& missing, std::size_t most) {
  std::vector<Slot> slots;
  std::vector<std::size_t> done(missing.size(), 0);
  std::vector<double> shares;  // of what each misses that is done; 1 where nothing is left
  for (const Refill& part : missing) shares.push_back(part.count == 0 ? 1 : 0);
  while (slots.size() < most && !shares.empty()) {
    // Whichever is furthest behind comes next.
    const auto least = std::ranges::min_element(shares);
    if (*least >= 1) break;
    const auto next = static_cast<std::size_t>(least - shares.begin());
    *least = static_cast<double>(++done[next]) / static_cast<double>(missing[next].count);
    Slot slot;
    slot.stream = missing[next].stream;
    slot.size = missing[next].size;
    slot.state = SlotState::refilled;
    slots.push_back(slot);
  }
  return slots;
}

std::vector<std::vector<std::uint32_t>> sampledSizes(const std::vector<Slot>& slots, std::size_t streams) {
  constexpr std::size_t kSamples = 65'536;
  std::vector<std::vector<std::uint32_t>> sizes(streams);
  for (const Slot& slot : slots) {
    if (slot.size > 0 && slot.hasSource() && !slot.isPalette && sizes[slot.stream].size() < kSamples) {
      sizes[slot.stream].push_back(slot.size);
    }
  }
  for (std::vector<std::uint32_t>& each : sizes) std::ranges::sort(each);
  return sizes;
}

}  // namespace zelvo::salvage
