// From each place on it is known how many blocks the instructions up to the payload's end are for. So one walk over the
// cuts, with the instructions in front of them, shows those after which the blocks are all there. An instruction may
// itself be cut apart.
#include "salvage/payloads/ms_video_cuts.h"

#include <algorithm>
#include <array>
#include <bit>
#include <compare>
#include <limits>

#include "platform/bytes.h"
#include "salvage/payloads/ms_video.h"

namespace zelvo::salvage {

namespace {

/// Where more would do, nothing tells which it is.
constexpr std::size_t kMostCuts = std::size_t{1} << 16U;
/// Pictures are painted of so many cuts that surprise least.
constexpr std::uint64_t kMostPainted = 24;
constexpr std::uint64_t kOfUnlikePixel = 16;
/// What costs so much more than the cheapest is not looked at: ten bits.
constexpr std::uint64_t kDoubt = 160;
constexpr std::uint32_t kNever = std::numeric_limits<std::uint32_t>::max();

class CutWalk {
 public:
  CutWalk(std::span<const std::byte> bytes, std::uint32_t size, unsigned bits, std::uint32_t blocks)
      : bytes_(bytes), size_(size), added_(bytes.size() - size), bits_(bits), blocks_(blocks) {}

  [[nodiscard]] std::vector<std::uint32_t> cuts() {
    countToEnd();
    std::vector<std::uint32_t> found;
    for (std::uint32_t cut = 0; cut < size_ && goOnTo(cut); ++cut) {
      // The same byte on both sides: the same payload.
      if (cut > 0 && bytes_[cut - 1] == bytes_[cut - 1 + added_]) continue;
      if (!isWholeWith(cut)) continue;
      if (found.size() == kMostCuts) return {};
      found.push_back(cut);
    }
    const auto front = msVideoCount(bytes_.first(size_), bits_);
    if (front && front->blocks == blocks_) found.push_back(size_);
    return found;
  }

 private:
  void countToEnd() {
    toEnd_.assign(size_ + std::size_t{1}, kNever);
    toEnd_[size_] = 0;
    const auto back = bytes_.subspan(added_);
    for (std::size_t at = size_; at > 0; --at) {
      if (const auto one = msVideoInstruction(back.subspan(at - 1), bits_)) toEnd_[at - 1] = blocksFrom(at - 1, *one);
    }
  }

  /// Blocks of an instruction and all that follow on it; `kNever` where they are no picture's rest.
  [[nodiscard]] std::uint32_t blocksFrom(std::size_t at, const MsVideoInstruction& one) const {
    const std::size_t next = at + one.size;
    if (one.isEnd) return next == size_ ? 0 : kNever;
    if (next > size_ || toEnd_[next] == kNever) return kNever;
    const std::uint32_t blocks = toEnd_[next] + one.blocks;
    return blocks > blocks_ ? kNever : blocks;
  }

  /// Walks over the instructions that end in front of the cut. False where the picture has ended before.
  [[nodiscard]] bool goOnTo(std::uint32_t cut) {
    while (const auto one = msVideoInstruction(bytes_.first(cut).subspan(begin_), bits_)) {
      if (one->isEnd) return false;
      begin_ += one->size;
      before_ += one->blocks;
      if (before_ > blocks_) return false;
    }
    return true;
  }

  [[nodiscard]] bool isWholeWith(std::uint32_t cut) const {
    if (cut == begin_) return toEnd_[cut] != kNever && before_ + toEnd_[cut] == blocks_;
    std::array<std::byte, MsVideoInstruction::kMostBytes> joined{};
    const auto front = bytes_.first(cut).subspan(begin_);
    const auto back = bytes_.subspan(cut + added_);
    const std::size_t count = std::min(joined.size(), front.size() + back.size());
    std::ranges::copy(front, joined.begin());
    std::copy_n(back.begin(), count - front.size(), joined.begin() + static_cast<std::ptrdiff_t>(front.size()));
    const auto one = msVideoInstruction(std::span(joined).first(count), bits_);
    if (!one) return false;
    const std::uint32_t blocks = blocksFrom(begin_, *one);
    return blocks != kNever && before_ + blocks == blocks_;
  }

  const std::span<const std::byte> bytes_;
  const std::uint32_t size_;
  const std::size_t added_;
  const unsigned bits_;
  const std::uint32_t blocks_;
  std::vector<std::uint32_t> toEnd_;  ///< by place in the payload, blocks from there on behind the foreign bytes
  std::size_t begin_ = 0;             ///< of the first instruction that does not end in front of the cut
  std::uint32_t before_ = 0;          ///< blocks of those before
};

/// 16 times the logarithm to base 2, from one power of it to the next along a line.
std::uint64_t log16(std::uint64_t number) {
  const auto power = static_cast<unsigned>(std::bit_width(number)) - 1;
  return 16 * std::uint64_t{power} + (number * 16 >> power) - 16;
}

struct RankedCut {
  std::uint64_t cost = 0;  ///< in sixteenths of a bit
  std::uint32_t cut = 0;

  auto operator<=>(const RankedCut&) const = default;
};

/// How much bytes are a surprise beside those around the cuts, which are the payload's own. Foreign ones are as likely
/// to have one value as any other.
class Surprise {
 public:
  void add(std::span<const std::byte> bytes) {
    for (const std::byte byte : bytes) counts_[static_cast<std::size_t>(byte)] += 2;
    all_ += 2 * bytes.size();
  }
  /// As if each value had been there half a time more.
  [[nodiscard]] std::uint64_t of(std::byte byte) const {
    return log16(all_ + counts_.size()) - log16(counts_[static_cast<std::size_t>(byte)] + 1);
  }

 private:
  std::array<std::uint64_t, 256> counts_{};
  std::uint64_t all_ = 0;
};

/// The cuts, and what the bytes from the first to the last of them surprise: those in front of a cut come from in front
/// of the foreign bytes, the others from behind them.
std::vector<RankedCut> surprises(std::span<const std::byte> bytes, std::uint32_t size,
                                 std::span<const std::uint32_t> cuts) {
  constexpr std::uint32_t kAround = 512;
  const std::size_t added = bytes.size() - size;
  const std::uint32_t first = cuts.front();
  const std::uint32_t last = cuts.back();
  Surprise surprise;
  surprise.add(bytes.first(first).last(std::min(first, kAround)));
  surprise.add(bytes.last(size - last).first(std::min(size - last, kAround)));
  std::uint64_t cost = 0;
  for (std::size_t i = first; i < last; ++i) cost += surprise.of(bytes[i + added]);
  std::vector<RankedCut> ranked;
  std::size_t at = first;
  for (const std::uint32_t cut : cuts) {
    for (; at < cut; ++at) {
      cost += surprise.of(bytes[at]);
      cost -= surprise.of(bytes[at + added]);
    }
    ranked.push_back({cost, cut});
  }
  return ranked;
}

}  // namespace

MsVideoCuts msVideoCuts(std::span<const std::byte> bytes, std::uint32_t size, unsigned bits, PictureSize picture,
                        std::uint64_t maxWalked) {
  MsVideoCuts found;
  const std::uint64_t blocks = msVideoBlocks(picture);
  found.walked = 3 * bytes.size();
  if (blocks == 0 || blocks >= kNever || found.walked > maxWalked) return found;
  const std::vector<std::uint32_t> cuts = CutWalk(bytes, size, bits, static_cast<std::uint32_t>(blocks)).cuts();
  if (cuts.empty()) return found;
  std::vector<RankedCut> ranked = surprises(bytes, size, cuts);
  std::ranges::sort(ranked);
  const std::uint64_t painted = std::min<std::uint64_t>(kMostPainted, (maxWalked - found.walked) / size);
  ranked.resize(std::min<std::uint64_t>(ranked.size(), painted));
  found.walked += ranked.size() * std::uint64_t{size};
  platform::Bytes payload;
  for (RankedCut& one : ranked) {
    payload.assign(bytes.begin(), bytes.begin() + one.cut);
    payload.insert(payload.end(), bytes.end() - (size - one.cut), bytes.end());
    one.cost += kOfUnlikePixel * msVideoRoughness(payload, bits, picture);
  }
  std::ranges::sort(ranked);
  for (const RankedCut& one : ranked) {
    if (one.cost <= ranked.front().cost + kDoubt) found.cuts.push_back(one.cut);
  }
  return found;
}

}  // namespace zelvo::salvage
