// Cuts that something else speaks for are tried first. What the budget is not enough for is not begun. Then:
// 1. Without a cut, the decoder runs into the foreign bytes and stops. Where it does: as long a front of the payload
//    gives the same picture, and any shorter one another.
// 2. From there backwards every byte is tried as the cut, until some payload causes no complaint, is read to its end,
//    and is taken among its neighbours; then all around it, since a cut a few bytes off may do as well.
// 3. Of those the one wins that fits best, if it belongs there at all.
#include "salvage/payloads/cut_search.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <unordered_set>
#include <vector>

#include "platform/bytes.h"

namespace zelvo::salvage {

namespace {

using ByteView = std::span<const std::byte>;

/// Cuts on both sides of one without complaint that are tried as well.
constexpr std::uint32_t kAround = 96;
/// Decoders stop a little after what they read.
constexpr std::uint32_t kBeyond = 32;
/// A picture has at least so many blocks.
constexpr std::uint32_t kBlocks = 128;

struct TriedCut {
  std::uint32_t cut = 0;
  LoneTrial trial;
  bool isTaken = true;  ///< of one without complaint: to its end, and among its neighbours
};

class CutSearch {
 public:
  CutSearch(PayloadTrial& trial, ByteView bytes, std::uint32_t size)
      : trial_(trial), bytes_(bytes), size_(size), added_(bytes.size() - size) {}

  std::optional<std::uint32_t> run(std::span<const std::uint32_t> likely) {
    const bool isBackwardsHopeless = isHopeless();
    if (isBackwardsHopeless && likely.empty()) return std::nullopt;
    usual_ = trial_.usualComplaints().value_or(0);
    end_ = trial_.tellingEnd();
    tryLikely(likely);
    if (const auto found = fitting()) return found;
    tried_.clear();
    lastClean_.reset();
    if (isBackwardsHopeless || isHopeless()) return std::nullopt;
    const auto stop = whereItStops();
    if (!stop) return std::nullopt;
    tryBackwards(*stop);
    return fitting();
  }

 private:
  /// Of those that were tried without complaint the one that fits best, if it belongs there.
  [[nodiscard]] std::optional<std::uint32_t> fitting() {
    const std::vector<TriedCut> clean = distinctCuts();
    const std::size_t most = std::min(trial_.maxClean(), trial_.comparisonsLeft());
    const auto found = clean.size() == 1      ? std::optional(clean.front().cut)
                       : clean.size() <= most ? best(clean)
                                              : std::nullopt;
    return found && trial_.belongs(cutAt(*found), static_cast<double>(*found) / size_) ? found : std::nullopt;
  }
  /// Bytes behind the place where the decoder stops in which the cut may still be.
  [[nodiscard]] std::uint32_t beyond() const { return kBeyond + size_ / kBlocks; }
  /// Whether trials would end before half of those are tried: they would be in vain, and others are better off with
  /// them.
  [[nodiscard]] bool isHopeless() const {
    constexpr std::size_t kToFindTheStop = 64;
    return std::min(trial_.trialsLeft(size_), trial_.maxTrials() + kToFindTheStop) < kToFindTheStop + beyond() / 2;
  }

  [[nodiscard]] ByteView cutAt(std::uint32_t cut) {
    payload_.assign(bytes_.begin(), bytes_.begin() + cut);
    payload_.insert(payload_.end(), bytes_.begin() + static_cast<std::ptrdiff_t>(cut + added_), bytes_.end());
    return payload_;
  }

  /// How long a front must be so that it is decoded as far as all of it is; nothing when nothing can be tried.
  [[nodiscard]] std::optional<std::uint32_t> whereItStops() {
    constexpr std::uint32_t kHeaders = 1024;
    auto whole = trial_.alone(bytes_.first(size_));
    std::uint32_t end = size_;
    if (whole && !whole->hasPicture) {
      // What stands for a header in the foreign bytes may undo a picture that was decoded in part.
      const std::uint32_t length = shortest([](const LoneTrial& trial) { return !trial.hasPicture; }, size_);
      if (length < 2) return std::min(size_, kHeaders);
      end = length - 1;
      whole = trial_.alone(bytes_.first(end));
    }
    if (!whole) return std::nullopt;
    return shortest([&](const LoneTrial& trial) { return trial.looksLike(*whole); }, end);
  }

  /// The shortest front of which `holds` is true, as it is of that of `end` bytes.
  template <class Claim>
  [[nodiscard]] std::uint32_t shortest(const Claim& holds, std::uint32_t end) {
    const auto isEnough = [&](std::uint32_t length) {
      const auto trial = trial_.alone(bytes_.first(length));
      return !trial || holds(*trial);
    };
    std::uint32_t enough = end;
    std::uint32_t tooShort = 0;
    // Fronts that are too short for anything may come to as little as all of it does, so the longer ones are asked
    // first.
    for (std::uint32_t length = end - end / 8; length > 0; length -= std::max(1U, length / 4)) {
      if (!isEnough(length)) {
        tooShort = length;
        break;
      }
      enough = length;
    }
    while (tooShort != 0 && enough - tooShort > 1) {
      const std::uint32_t middle = tooShort + (enough - tooShort) / 2;
      (isEnough(middle) ? enough : tooShort) = middle;
    }
    return enough;
  }

  [[nodiscard]] bool isClean(const LoneTrial& trial) const { return trial.hasPicture && trial.complaints <= usual_; }
  [[nodiscard]] bool isClean(const TriedCut& one) const { return one.isTaken && isClean(one.trial); }

  /// Whether the picture takes all of the payload: bytes that are not in step make a whole picture sooner or later,
  /// too.
  [[nodiscard]] bool readsEnd(ByteView payload, const LoneTrial& whole) {
    if (!end_ || payload.size() <= *end_) return true;
    const auto shorter = trial_.alone(payload.first(payload.size() - *end_));
    return !shorter || !shorter->looksLike(whole);
  }

  /// False when nothing more can be tried. What speaks for a likely cut speaks for its end, too.
  bool tryCut(std::uint32_t cut, bool asksForEnd = true) {
    // The same byte on both sides: the same payload.
    const bool isLikeLast = !tried_.empty() && tried_.back().cut == cut + 1 && bytes_[cut] == bytes_[cut + added_];
    const auto trial = isLikeLast ? std::optional(tried_.back().trial) : trial_.alone(cutAt(cut));
    if (!trial) return false;
    tried_.push_back({cut, *trial});
    if (isClean(*trial) && !isLikeLast)
      tried_.back().isTaken = (!asksForEnd || readsEnd(cutAt(cut), *trial)) && trial_.isTaken(cutAt(cut));
    if (isLikeLast) tried_.back().isTaken = tried_[tried_.size() - 2].isTaken;
    if (isClean(tried_.back())) lastClean_ = cut;
    return true;
  }

  void tryLikely(std::span<const std::uint32_t> likely) {
    std::size_t clean = 0;
    for (const std::uint32_t cut : likely) {
      // Those without complaint are compared afterwards.
      if (trial_.comparisonsLeft() < clean + 3 || !tryCut(cut, false)) break;
      if (isClean(tried_.back())) ++clean;
    }
  }

  /// From `stop` down. A block that was begun is not seen, so that the foreign bytes may begin a little after it.
  void tryBackwards(std::uint32_t stop) {
    for (std::uint32_t cut = std::min(size_, stop + beyond()) + 1; cut > 0; --cut) {
      if (lastClean_ && cut - 1 + kAround < *lastClean_) break;
      if (tried_.size() >= trial_.maxTrials() || !tryCut(cut - 1)) break;
    }
  }

  /// Those without complaint, in the order in which they were tried. Cuts that come to the same pictures are as good as
  /// one.
  [[nodiscard]] std::vector<TriedCut> distinctCuts() const {
    std::vector<TriedCut> cuts;
    std::unordered_set<std::uint64_t> marks;
    std::ranges::copy_if(tried_, std::back_inserter(cuts),
                         [&](const TriedCut& one) { return isClean(one) && marks.insert(one.trial.mark).second; });
    return cuts;
  }

  /// That which fits best; nothing when there is none.
  [[nodiscard]] std::optional<std::uint32_t> best(const std::vector<TriedCut>& cuts) {
    std::optional<std::uint32_t> found;
    std::uint64_t least = std::numeric_limits<std::uint64_t>::max();
    for (const TriedCut& one : cuts) {
      const auto misfit = trial_.misfit(cutAt(one.cut));
      if (!misfit || (found && *misfit >= least)) continue;
      least = *misfit;
      found = one.cut;
    }
    return found;
  }

  PayloadTrial& trial_;
  const ByteView bytes_;
  const std::uint32_t size_;
  const std::size_t added_;
  std::uint32_t usual_ = 0;
  std::optional<std::uint32_t> end_;  ///< bytes at a payload's end that tell whether they were taken
  platform::Bytes payload_;
  std::vector<TriedCut> tried_;
  std::optional<std::uint32_t> lastClean_;
};

}  // namespace

std::optional<std::uint32_t> searchCut(PayloadTrial& trial, ByteView bytes, std::uint32_t size,
                                       std::span<const std::uint32_t> likely) {
  return CutSearch(trial, bytes, size).run(likely);
}

}  // namespace zelvo::salvage
