#include "salvage/scan/candidate.h"

#include <algorithm>

namespace zelvo::salvage {

namespace {

/// Once the search takes longer steps, the directory is asked.
constexpr std::size_t kNear = 1;

}  // namespace

void CandidateList::makeDirectory() {
  constexpr std::size_t kPerRange = 4;
  directory_.clear();
  if (size() == 0) return;
  directoryShift_ = 0;
  while ((back().offset() >> directoryShift_) >= std::max<std::size_t>(1, size() / kPerRange)) ++directoryShift_;
  const auto ranges = static_cast<std::size_t>((back().offset() >> directoryShift_) + 1);
  directory_.reserve(ranges + 1);
  for (std::size_t i = 0; i < size(); ++i) {
    const std::uint64_t range = (*this)[i].offset() >> directoryShift_;
    while (directory_.size() <= range) directory_.push_back(static_cast<std::uint32_t>(i));
  }
  directory_.push_back(static_cast<std::uint32_t>(size()));
}

void CandidateList::narrow(std::uint64_t offset, std::size_t& low, std::size_t& high) const {
  const std::uint64_t range = offset >> directoryShift_;
  if (range + 1 >= directory_.size()) {
    low = high;
    return;
  }
  low = std::max<std::size_t>(low, directory_[static_cast<std::size_t>(range)]);
  high = std::max<std::size_t>(low, directory_[static_cast<std::size_t>(range) + 1]);
}

std::size_t CandidateList::firstAtOrAfter(std::uint64_t offset, std::size_t from, std::uint64_t& looks) const {
  const auto liesBefore = [&](std::size_t number) {
    ++looks;
    return (*this)[number].offset() < offset;
  };
  std::size_t low = from;
  std::size_t step = 1;
  std::size_t high = from;
  while (high < size() && liesBefore(high)) {
    low = high + 1;
    if (step > kNear && !directory_.empty()) {
      high = size();
      narrow(offset, low, high);
      break;
    }
    high = std::min(size(), high + step);
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
