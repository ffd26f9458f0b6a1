#include "salvage/plan/plan_choices.h"

#include <algorithm>
#include <vector>

namespace zelvo::salvage {

void emptyDamagedPictures(FilmPlan& plan, const FilmHeader& header) {
  for (Slot& slot : plan.slots) {
    const bool isHurt =
        slot.state == SlotState::damaged || slot.state == SlotState::torn || slot.state == SlotState::cut;
    if (!isHurt || header.streams[slot.stream].header.type != avi::kVids) continue;
    slot.state = SlotState::lost;
    slot.size = 0;
  }
}

void closeGaps(FilmPlan& plan) {
  const auto isGone = [](const Slot& slot) {
    return slot.state == SlotState::lost || slot.state == SlotState::refilled;
  };
  // How many slots stay in front of each: what a span's numbers become.
  std::vector<std::uint32_t> before(plan.slots.size() + 1);
  for (std::size_t i = 0; i < plan.slots.size(); ++i) before[i + 1] = before[i] + (isGone(plan.slots[i]) ? 0 : 1);
  for (PlanSpan& span : plan.spans) {
    const auto first = std::min<std::size_t>(span.firstSlot, plan.slots.size());
    const auto end = std::min<std::size_t>(first + span.slots, plan.slots.size());
    span.firstSlot = before[first];
    span.slots = before[end] - before[first];
  }
  std::erase_if(plan.slots, isGone);
}

}  // namespace zelvo::salvage
