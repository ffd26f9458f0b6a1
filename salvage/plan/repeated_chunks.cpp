#include "salvage/plan/repeated_chunks.h"

#include <algorithm>
#include <map>
#include <optional>
#include <span>
#include <vector>

#include "avi/chunk_codes.h"
#include "salvage/scan/number_sort.h"

namespace zelvo::salvage {

namespace {

/// Smaller payloads may be alike by chance.
constexpr std::uint32_t kSmallestHashed = 32;
constexpr std::uint32_t kLargest = std::uint32_t{4} << 20U;
/// So many chunks of one size are compared with one after a gap.
constexpr std::size_t kMaxAlike = 16;
constexpr std::size_t kMaxComparisons = 65'536;
/// So many times the bytes of a chain are compared, and these in any case.
constexpr std::uint64_t kMaxCompared = 4;
constexpr std::uint64_t kComparedAnyway = 65'536;
constexpr std::size_t kHead = 16;

class Repeats {
 public:
  Repeats(avi::InputFile& input, ChainFilm& film) : input_(input), film_(film) {
    for (std::size_t i = 0; i < film.slots.size(); ++i) {
      if (film.slots[i].size >= kSmallestHashed)
        bySize_.push_back(keyOf(film.slots[i]) << kNumberBits | static_cast<std::uint64_t>(i));
    }
    sortNumbers(bySize_);
    for (const Slot& slot : film.slots) maxComparedBytes_ += kMaxCompared * slot.size;
    isDropped_.assign(film.slots.size(), false);
  }

  void run();

 private:
  /// A row of slots after a gap that is alike one in front of it.
  struct Run {
    std::size_t original = 0;
    std::size_t length = 0;
  };

  [[nodiscard]] bool areAlike(std::size_t one, std::size_t other, std::size_t most);
  [[nodiscard]] bool isTelling(std::size_t slot);
  [[nodiscard]] bool isDistinct(std::size_t slot, std::size_t length);
  [[nodiscard]] static std::uint64_t keyOf(const Slot& slot) { return std::uint64_t{slot.stream} << 32U | slot.size; }
  [[nodiscard]] std::span<const std::uint64_t> fewOfSize(std::size_t slot) const;
  [[nodiscard]] std::size_t lengthAt(std::size_t slot, std::size_t end, std::size_t original, std::size_t originalEnd);
  [[nodiscard]] std::optional<Run> runAt(std::size_t slot, std::size_t end);
  [[nodiscard]] bool drop(ChainGap& gap, std::size_t end, const Run& run);
  [[nodiscard]] std::optional<std::size_t> wholeOfTorn(const ChainGap& gap, std::size_t end);
  void close(const std::vector<bool>& isGapDropped);

  avi::InputFile& input_;
  ChainFilm& film_;
  static constexpr unsigned kNumberBits = 24;

  std::vector<std::uint64_t>
      bySize_;  ///< slots that are not small by stream and size: these and, in the low bits, its number
  std::vector<bool> isDropped_;
  std::size_t comparisons_ = 0;
  std::uint64_t comparedBytes_ = 0;  ///< of both sides together
  std::uint64_t maxComparedBytes_ = kComparedAnyway;
};

/// Whether both have the same first `most` bytes.
bool Repeats::areAlike(std::size_t one, std::size_t other, std::size_t most) {
  const Slot& first = film_.slots[one];
  const Slot& second = film_.slots[other];
  const std::size_t size = std::min<std::size_t>(most, std::min(first.size, second.size));
  if (first.stream != second.stream || ++comparisons_ > kMaxComparisons || comparedBytes_ > maxComparedBytes_)
    return false;
  comparedBytes_ += 2 * std::uint64_t{size};
  const platform::Bytes bytes = input_.readBytes(first.source, size);
  return bytes.size() == size && bytes == input_.readBytes(second.source, size);
}

/// Whether a payload is more than silence or a black picture.
bool Repeats::isTelling(std::size_t slot) {
  const Slot& chosen = film_.slots[slot];
  if (chosen.size < kSmallestHashed) return false;
  const platform::Bytes bytes = input_.readBytes(chosen.source, std::min<std::size_t>(chosen.size, 4096));
  return std::ranges::any_of(bytes, [&](std::byte byte) { return byte != bytes.front(); });
}

/// The slots of the stream and size of one, that one among them, as they stand in `bySize_`; none where they are more
/// than `kMaxAlike`.
std::span<const std::uint64_t> Repeats::fewOfSize(std::size_t slot) const {
  const auto sizeOf = [](std::uint64_t value) { return value >> kNumberBits; };
  const std::uint64_t key = keyOf(film_.slots[slot]);
  const auto first = std::ranges::lower_bound(bySize_, key, {}, sizeOf);
  auto last = first;
  while (last != bySize_.end() && sizeOf(*last) == key) {
    if (static_cast<std::size_t>(++last - first) > kMaxAlike) return {};
  }
  return {first, last};
}

/// How many slots from `slot` on are alike those from `original` on.
std::size_t Repeats::lengthAt(std::size_t slot, std::size_t end, std::size_t original, std::size_t originalEnd) {
  std::size_t length = 0;
  while (slot + length < end && original + length < originalEnd &&
         film_.slots[slot + length].size == film_.slots[original + length].size &&
         film_.slots[slot + length].size <= kLargest && areAlike(original + length, slot + length, kLargest))
    ++length;
  return length;
}

std::optional<Repeats::Run> Repeats::runAt(std::size_t slot, std::size_t end) {
  // Sizes that are rare among all say where to look.
  constexpr std::size_t kAnchors = 12;
  Run best;
  for (std::size_t anchor = slot; anchor < std::min(end, slot + kAnchors); ++anchor) {
    if (film_.slots[anchor].size < kSmallestHashed) continue;
    for (const std::uint64_t value : fewOfSize(anchor)) {
      const auto other = static_cast<std::size_t>(value & ((std::uint64_t{1} << kNumberBits) - 1));
      if (other < anchor - slot) continue;
      const std::size_t original = other - (anchor - slot);
      // What is after may have been copied to here, but then nothing else stands before the next gap.
      const bool isBehind = original >= end;
      if (original >= slot && !isBehind) continue;
      const std::size_t length = lengthAt(slot, end, original, isBehind ? film_.slots.size() : slot);
      if (length > best.length && (!isBehind || slot + length + 1 >= end)) best = {original, length};
    }
    if (best.length > anchor - slot) break;
  }
  return isDistinct(slot, best.length) ? std::optional(best) : std::nullopt;
}

/// Whether some slots of a row are more than silence, and none is as the one of its stream before it: films that stand
/// still repeat themselves.
bool Repeats::isDistinct(std::size_t slot, std::size_t length) {
  std::map<std::uint8_t, std::size_t> last;
  bool isFound = false;
  for (std::size_t i = slot; i < slot + length; ++i) {
    if (!isTelling(i)) continue;
    isFound = true;
    const auto [before, isFirst] = last.emplace(film_.slots[i].stream, i);
    if (!isFirst && film_.slots[before->second].size == film_.slots[i].size && areAlike(before->second, i, kLargest))
      return false;
    before->second = i;
  }
  if (!isFound) return false;
  // The one in front of the row may be a still picture's first.
  for (const auto& [stream, number] : last) {
    if (slot > 0 && film_.slots[slot - 1].stream == stream && film_.slots[slot - 1].size == film_.slots[slot].size &&
        areAlike(slot - 1, slot, kLargest))
      return false;
  }
  return true;
}

/// True when nothing is missing in the gap.
bool Repeats::drop(ChainGap& gap, std::size_t end, const Run& run) {
  const std::size_t first = gap.before;
  std::size_t behind = first + run.length;
  for (std::size_t i = first; i < behind; ++i) isDropped_[i] = true;
  const std::size_t torn = run.original + run.length;
  const bool goesOn = behind < end && torn < film_.slots.size() && areAlike(torn, behind, kHead);
  if (goesOn && torn + 1 == first) {
    isDropped_[torn] = true;
    return true;
  }
  // The last chunk of the copy may reach beyond its end.
  if (goesOn && behind + 1 == end) isDropped_[behind++] = true;
  const Slot& lastSlot = film_.slots[behind - 1];
  gap.end = std::max(gap.end, lastSlot.source + lastSlot.size);
  gap.begin = std::min(gap.begin, film_.slots[first].source - std::min(film_.slots[first].source, avi::kChunkHeader));
  gap.isTorn = false;
  gap.longer = 0;
  return false;
}

/// The first slot of its stream after a gap if it is the one that the gap tore, and all between both headers is that
/// slot's front and a copy of what stands in front of it. That needs no slots of rare sizes in between, or none at all.
std::optional<std::size_t> Repeats::wholeOfTorn(const ChainGap& gap, std::size_t end) {
  constexpr std::size_t kNear = 32;
  const Slot& torn = film_.slots[gap.before - 1];
  std::size_t whole = gap.before;
  const std::size_t last = std::min(end, gap.before + kNear);
  while (whole < last && film_.slots[whole].stream != torn.stream) ++whole;
  if (whole == last) return std::nullopt;
  const Slot& next = film_.slots[whole];
  const bool isTorn = torn.state == SlotState::torn;
  const std::uint64_t claimed = isTorn ? torn.size + gap.missing : torn.size + torn.size % 2;
  if (claimed != next.size + next.size % 2 || next.source < torn.source) return std::nullopt;
  const std::uint64_t size = next.source - avi::kChunkHeader - torn.source;
  if (size < kSmallestHashed || size > kLargest || torn.source < avi::kChunkHeader + size) return std::nullopt;
  if (++comparisons_ > kMaxComparisons || comparedBytes_ > maxComparedBytes_) return std::nullopt;
  comparedBytes_ += 3 * size;
  const auto length = static_cast<std::size_t>(size);
  const platform::Bytes bytes = input_.readBytes(torn.source, length);
  const platform::Bytes same = input_.readBytes(next.source, std::min<std::size_t>(length, next.size));
  const platform::Bytes inFront = input_.readBytes(torn.source - avi::kChunkHeader - size, length);
  if (bytes.size() != size || inFront.size() != size) return std::nullopt;
  const auto front = std::ranges::mismatch(bytes, same).in1 - bytes.begin();
  const auto rest = std::mismatch(bytes.rbegin(), bytes.rend(), inFront.rbegin()).first - bytes.rbegin();
  return static_cast<std::uint64_t>(front + rest) >= size ? std::optional(whole) : std::nullopt;
}

/// Takes out what was dropped.
void Repeats::close(const std::vector<bool>& isGapDropped) {
  std::vector<std::size_t> before(film_.slots.size() + 1, 0);
  std::size_t kept = 0;
  for (std::size_t i = 0; i < film_.slots.size(); ++i) {
    before[i] = kept;
    if (!isDropped_[i]) film_.slots[kept++] = film_.slots[i];
  }
  before[film_.slots.size()] = kept;
  std::size_t keptGaps = 0;
  for (std::size_t g = 0; g < film_.gaps.size(); ++g) {
    if (isGapDropped[g]) continue;
    film_.gaps[keptGaps] = film_.gaps[g];
    film_.gaps[keptGaps++].before = before[film_.gaps[g].before];
  }
  film_.slots.resize(kept);
  film_.gaps.resize(keptGaps);
}

void Repeats::run() {
  std::vector<bool> isGapDropped(film_.gaps.size(), false);
  for (std::size_t g = 0; g < film_.gaps.size(); ++g) {
    ChainGap& gap = film_.gaps[g];
    const std::size_t end = g + 1 < film_.gaps.size() ? film_.gaps[g + 1].before : film_.slots.size();
    if (gap.before == 0 || gap.before >= end) continue;
    if (const auto run = runAt(gap.before, end)) {
      isGapDropped[g] = drop(gap, end, *run);
    } else if (const auto whole = wholeOfTorn(gap, end)) {
      for (std::size_t i = gap.before - 1; i < *whole; ++i) isDropped_[i] = true;
      isGapDropped[g] = true;
    }
  }
  close(isGapDropped);
}

}  // namespace

void dropRepeated(avi::InputFile& input, ChainFilm& film) {
  if (!film.gaps.empty()) Repeats(input, film).run();
}

}  // namespace zelvo::salvage
