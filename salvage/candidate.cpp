#include "salvage/candidate.h"

#include <algorithm>

namespace zelvo::salvage {

std::size_t CandidateList::firstAtOrAfter(std::uint64_t offset, std::size_t from, std::uint64_t& looks) const {
  const auto liesBefore = [&](std::size_t number) {
    ++looks;
    return (*this)[number].offset() < offset;
  };
  std::size_t low = from;
  std::size_t step = 1;
  std::size_t high = from;
  while (high < size_ && liesBefore(high)) {
    low = high + 1;
    high = std::min(size_, high + step);
    step *= 2;
  }
  while (low < high) {
    const std::size_t middle = low + (high - low) / 2;
    if (liesBefore(middle)) {
      low = middle + 1;
    } else {
      high = middle;
    }
  }
  return low;
}

}  // namespace zelvo::salvage
