#include "avi/byte_ranges.h"

#include <algorithm>
#include <iterator>

namespace zelvo::avi {

void ByteRanges::add(std::uint64_t begin, std::uint64_t end) {
  if (begin >= end) return;
  auto next = ranges_.upper_bound(begin);
  const bool touchesBefore = next != ranges_.begin() && std::prev(next)->second >= begin;
  const bool touchesNext = next != ranges_.end() && next->first <= end;
  if (!touchesBefore && !touchesNext && ranges_.size() == kMax) return;
  if (touchesBefore) {
    --next;
    begin = next->first;
  }
  while (next != ranges_.end() && next->first <= end) {
    end = std::max(end, next->second);
    bytes_ -= next->second - next->first;
    next = ranges_.erase(next);
  }
  ranges_.emplace_hint(next, begin, end);
  bytes_ += end - begin;
}

}  // namespace zelvo::avi
