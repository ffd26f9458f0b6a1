#include "salvage/payloads/gap_share.h"

#include <algorithm>
#include <numeric>

namespace zelvo::salvage {

namespace {

/// Splits `total` in proportion to weights, which add up to more than 0; what does not come out even goes to the first.
std::vector<std::uint64_t> split(std::uint64_t total, const std::vector<std::uint64_t>& weights) {
  const double sum = static_cast<double>(std::accumulate(weights.begin(), weights.end(), std::uint64_t{0}));
  std::vector<std::uint64_t> parts;
  std::uint64_t left = total;
  for (const std::uint64_t weight : weights) {
    const auto part = static_cast<std::uint64_t>(static_cast<double>(total) * static_cast<double>(weight) / sum);
    parts.push_back(std::min(part, left));
    left -= parts.back();
  }
  for (std::size_t i = 0; left > 0; i = (i + 1) % parts.size()) {
    if (weights[i] == 0) continue;
    ++parts[i];
    --left;
  }
  return parts;
}

}  // namespace

bool shareOut(std::vector<GapEstimate>& gaps, std::uint64_t pictures, std::uint64_t mostMore) {
  std::uint64_t all = 0;
  std::uint64_t open = 0;
  for (const GapEstimate& gap : gaps) {
    all += gap.pictures;
    open += gap.isExact ? 0 : gap.pictures;
  }
  if (all == pictures || all - open > pictures) return false;
  const bool isTooFew = all < pictures;
  std::vector<std::uint64_t> weights;
  for (const GapEstimate& gap : gaps) {
    const std::uint64_t weightOfMore = mostMore > 0 ? 1 : gap.bytes;
    const std::uint64_t weight = isTooFew ? weightOfMore : gap.pictures;
    weights.push_back(gap.isExact ? 0 : weight);
  }
  const std::uint64_t limit = mostMore > 0 ? mostMore : (open + 1) / 2;
  const std::uint64_t total = isTooFew ? std::min(pictures - all, limit) : pictures - (all - open);
  if (std::ranges::all_of(weights, [](std::uint64_t weight) { return weight == 0; }) || (isTooFew && total == 0))
    return false;
  const std::vector<std::uint64_t> parts = split(total, weights);
  for (std::size_t i = 0; i < gaps.size(); ++i) {
    if (gaps[i].isExact) continue;
    gaps[i].pictures = static_cast<std::size_t>(isTooFew ? gaps[i].pictures + parts[i] : parts[i]);
  }
  return true;
}

}  // namespace zelvo::salvage
