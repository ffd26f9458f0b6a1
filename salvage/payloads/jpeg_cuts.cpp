// The front is walked until a code breaks: the foreign bytes begin before that. Each cut from there backwards is walked
// from the last unit in front of it. Walks that fall in step are one from there on, so that each unit that a walk comes
// to is kept with how many more follow it, and nearly all walks are short.
#include "salvage/payloads/jpeg_cuts.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <limits>
#include <optional>
#include <unordered_map>

#include "salvage/payloads/jpeg_scan.h"

namespace zelvo::salvage {

namespace {

constexpr unsigned kMarkOfJpeg = 0xff;
constexpr std::uint32_t kMaxTried = 1U << 15U;
/// Units that are kept of the front, and of the walks behind cuts: of more than these nothing is told.
constexpr std::size_t kMaxKept = std::size_t{1} << 20U;
constexpr std::uint64_t kNever = std::numeric_limits<std::uint64_t>::max();

/// Where `marks` stand first in `bytes`; their end when nowhere.
std::size_t placeOf(std::span<const std::byte> marks, std::span<const std::byte> bytes) {
  return static_cast<std::size_t>(std::search(bytes.begin(), bytes.end(), marks.begin(), marks.end()) - bytes.begin());
}

class CutWalks {
 public:
  CutWalks(std::span<const std::byte> bytes, std::uint32_t size, std::uint64_t maxWalked)
      : bytes_(bytes), size_(size), added_(bytes.size() - size), maxWalked_(maxWalked) {}

  JpegCuts run() {
    JpegCuts found;
    std::size_t begin = 0;
    // A payload may hold two fields, each a picture of its own.
    while (begin < size_ && walkFront(begin)) begin = nextPicture();
    if (isBroken_) found.cuts = likelyCuts();
    if (isOver()) found.cuts.clear();
    found.walked = walked_;
    return found;
  }

 private:
  struct Rated {
    std::uint32_t cut = 0;
    std::uint64_t seam = 0;
  };

  /// True when the picture that begins there is whole; sets `isBroken_` when its scan is not.
  bool walkFront(std::size_t begin) {
    const auto scan = jpegScan(bytes_.subspan(begin, size_ - begin));
    if (!scan || scan->units >= kMaxKept) return false;
    scan_ = *scan;
    begin_ = begin + scan_.begin;
    places_.clear();
    const CutBytes front{bytes_, size_, added_};
    JpegPlace place{.next = begin_};
    places_.push_back(place);
    while (place.unit < scan_.units && read(front, place)) places_.push_back(place);
    isBroken_ = place.unit < scan_.units || !place.isBeforeEnd(front);
    stop_ = static_cast<std::uint32_t>(std::min<std::size_t>(size_, place.next + 2));
    return !isBroken_;
  }

  /// Where another picture begins after one that is whole.
  [[nodiscard]] std::size_t nextPicture() const {
    constexpr std::array kStart{std::byte{0xff}, std::byte{0xd8}};
    const auto rest = bytes_.first(size_).subspan(places_.back().next);
    return places_.back().next + placeOf(kStart, rest);
  }

  [[nodiscard]] bool isOver() const { return walked_ > maxWalked_ || follow_.size() > kMaxKept; }

  [[nodiscard]] bool read(const CutBytes& bytes, JpegPlace& place) {
    const std::size_t from = place.next;
    const bool isSound = !isOver() && readUnit(scan_, bytes, place);
    walked_ += place.next - from + 1;
    return isSound;
  }

  [[nodiscard]] CutBytes cutAt(std::uint32_t cut) const { return {bytes_, cut, added_}; }

  /// Cuts below it leave a mark in the scan that cannot be there.
  [[nodiscard]] std::uint32_t lowest() const {
    constexpr std::array kEndAndStart{std::byte{0xff}, std::byte{0xd9}, std::byte{0xff}, std::byte{0xd8}};
    const auto low = std::max(static_cast<std::uint32_t>(begin_), stop_ - std::min(stop_, kMaxTried));
    const auto rest = bytes_.subspan(low, std::min<std::size_t>(bytes_.size(), stop_ + added_) - low);
    const auto end = low + placeOf(kEndAndStart, rest);
    for (std::size_t i = std::min(end, bytes_.size() - 2); i > low + added_; --i) {
      const auto type = static_cast<unsigned>(bytes_[i]);
      const bool isRestart = scan_.restartUnits != 0 && type >= 0xd0 && type <= 0xd7;
      const bool isSound = type == 0 || isRestart || type == kMarkOfJpeg || type == 0xd9;
      if (bytes_[i - 1] == std::byte{0xff} && !isSound) return static_cast<std::uint32_t>(i - added_);
    }
    return low;
  }

  /// The last unit of the front that ends before the cut.
  [[nodiscard]] JpegPlace before(std::uint32_t cut) const {
    const auto after = std::ranges::upper_bound(places_, cut, {}, &JpegPlace::next);
    return after == places_.begin() ? places_.front() : *(after - 1);
  }

  /// Two walks that stand alike go on alike.
  [[nodiscard]] std::uint64_t keyOf(const JpegPlace& place) const {
    const std::uint64_t turn = scan_.restartUnits == 0 ? 0 : place.unit % (std::uint64_t{8} * scan_.restartUnits);
    // Neither a payload of 2^27 bytes nor more than 2^19 units in such a turn can be told apart from others.
    return (turn << 36U ^ std::uint64_t{place.next} << 4U) | place.left;
  }

  /// How many units the picture comes to at this cut; `kNever` when it breaks.
  [[nodiscard]] std::uint64_t unitsAt(std::uint32_t cut) {
    const CutBytes bytes = cutAt(cut);
    JpegPlace place = before(cut);
    std::uint64_t after = kNever;
    visited_.clear();
    while (true) {
      // What the codes are made of is behind the cut from here on.
      if (place.next >= std::size_t{cut} + 2) {
        const auto [known, isNew] = follow_.try_emplace(keyOf(place), kNever);
        if (!isNew) {
          after = known->second;
          break;
        }
        visited_.push_back({known->first, place.unit});
      }
      // The last bits of the last byte are no unit.
      JpegPlace further = place;
      if (!read(bytes, further)) {
        if (place.isBeforeEnd(bytes) && !isOver()) after = 0;
        break;
      }
      place = further;
    }
    if (after == kNever) return kNever;
    for (const Visit& visit : visited_) follow_[visit.key] = place.unit - visit.unit + after;
    return place.unit + after;
  }

  /// How far the units in the row after the cut are from those above them.
  [[nodiscard]] std::uint64_t seamOf(std::uint32_t cut) {
    const CutBytes bytes = cutAt(cut);
    JpegPlace place = before(cut);
    const std::uint64_t first = place.unit;
    std::vector<JpegPlace> own;
    const std::uint64_t end = std::min(scan_.units, std::max<std::uint64_t>(first, 1) + scan_.unitsPerRow);
    std::uint64_t seam = 0;
    while (place.unit < end && read(bytes, place)) {
      own.push_back(place);
      const std::uint64_t number = place.unit;
      if (number <= scan_.unitsPerRow) continue;
      const std::uint64_t above = number - scan_.unitsPerRow;
      const auto& levels = above <= first ? places_[above].levels : own[above - first - 1].levels;
      for (std::size_t i = 0; i < levels.size(); ++i)
        seam += static_cast<std::uint64_t>(std::abs(place.levels[i] - levels[i]));
    }
    return seam;
  }

  [[nodiscard]] std::vector<std::uint32_t> likelyCuts() {
    std::vector<Rated> rated;
    const std::uint32_t last = lowest();
    for (std::uint32_t cut = stop_ + 1; cut > last && !isOver(); --cut) {
      const std::uint32_t one = cut - 1;
      if (one > size_) continue;
      // The same byte on both sides: the same payload.
      if (one < size_ && one < stop_ && bytes_[one] == bytes_[one + added_]) continue;
      if (unitsAt(one) == scan_.units) rated.push_back({one, seamOf(one)});
    }
    std::ranges::stable_sort(rated, {}, &Rated::seam);
    std::vector<std::uint32_t> cuts;
    for (const Rated& one : rated) cuts.push_back(one.cut);
    return cuts;
  }

  struct Visit {
    std::uint64_t key = 0;
    std::uint64_t unit = 0;
  };

  const std::span<const std::byte> bytes_;
  const std::uint32_t size_;
  const std::size_t added_;
  const std::uint64_t maxWalked_;
  std::uint64_t walked_ = 0;
  JpegScan scan_;
  std::size_t begin_ = 0;   ///< of the scan's codes
  std::uint32_t stop_ = 0;  ///< the front's codes break before it
  bool isBroken_ = false;
  std::vector<JpegPlace> places_;                            ///< of the front, by units
  std::unordered_map<std::uint64_t, std::uint64_t> follow_;  ///< units to the end, by `keyOf`
  std::vector<Visit> visited_;                               ///< of one walk
};

}  // namespace

JpegCuts jpegCuts(std::span<const std::byte> bytes, std::uint32_t size, std::uint64_t maxWalked) {
  return CutWalks(bytes, size, maxWalked).run();
}

}  // namespace zelvo::salvage
