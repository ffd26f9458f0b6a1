#include "salvage/payloads/ms_video.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "avi/byte_order.h"

namespace zelvo::salvage {

namespace {

using MsPayload = std::span<const std::byte>;

constexpr std::uint32_t kBlockSide = 4;
constexpr std::uint32_t kMostBlocks = 1U << 20U;

/// The lowest row of a block and its highest one, as colours; nothing is known of one that is skipped.
struct BlockEdges {
  std::array<std::uint16_t, kBlockSide> bottom{};
  std::array<std::uint16_t, kBlockSide> top{};
  bool isKnown = false;
};

class Instructions {
 public:
  Instructions(MsPayload payload, unsigned bits) : payload_(payload), colour_(bits / 8) {}

  /// Calls `visit` with each block, and `skip` with the number of those that are skipped together. False where the
  /// payload ends within an instruction, or goes on after the last one.
  template <class Visit, class Skip>
  bool walk(const Visit& visit, const Skip& skip) {
    while (at_ + 2 <= payload_.size()) {
      const std::uint16_t word = take(2);
      const unsigned high = word >> 8U;
      if (word == 0) return at_ == payload_.size();
      if ((high & 0xfcU) == 0x84) {
        skip((high - 0x84U) << 8U | (word & 0xffU));
      } else if (!take(word, visit)) {
        return false;
      }
    }
    return at_ == payload_.size();
  }

 private:
  [[nodiscard]] std::uint16_t take(std::size_t bytes) {
    std::uint16_t value = 0;
    for (std::size_t i = 0; i < bytes; ++i)
      value = static_cast<std::uint16_t>(value | static_cast<unsigned>(payload_[at_ + i]) << 8U * i);
    at_ += bytes;
    return value;
  }

  /// How many colours follow an instruction of a block; 0 of one that is a colour itself.
  [[nodiscard]] std::size_t coloursOf(std::uint16_t word) const {
    constexpr std::size_t kMany = 8;
    if (colour_ == 1) return word < 0x8000 ? 2 : word >= 0x9000 ? kMany : 0;
    if (word >= 0x8000) return 0;
    const bool areMany = at_ + 2 <= payload_.size() && (payload_[at_ + 1] & std::byte{0x80}) != std::byte{0};
    return areMany ? kMany : 2;
  }

  template <class Visit>
  bool take(std::uint16_t word, const Visit& visit) {
    const std::size_t count = coloursOf(word);
    if (at_ + count * colour_ > payload_.size()) return false;
    std::array<std::uint16_t, 8> colours{};
    for (std::size_t i = 0; i < count; ++i) colours[i] = take(colour_);
    BlockEdges block;
    block.isKnown = true;
    const auto pixel = [&](std::size_t x, std::size_t y) {
      if (count == 0) return static_cast<std::uint16_t>(colour_ == 1 ? word & 0xffU : word & 0x7fffU);
      const std::size_t quarter = count == 2 ? 0 : (y / 2 * 2 + x / 2) * 2;
      const bool isFirst = (static_cast<unsigned>(word) >> (y * kBlockSide + x) & 1U) != 0;
      return colours[quarter + (isFirst ? 0 : 1)];
    };
    for (std::size_t x = 0; x < kBlockSide; ++x) {
      block.bottom[x] = pixel(x, 0);
      block.top[x] = pixel(x, kBlockSide - 1);
    }
    visit(block);
    return true;
  }

  MsPayload payload_;
  std::size_t colour_;  ///< bytes of one
  std::size_t at_ = 0;
};

/// Which share of the pixels are like the ones below them, across the borders of blocks, in rows of so many blocks.
double likeBelow(const std::vector<BlockEdges>& blocks, std::uint32_t width) {
  std::size_t compared = 0;
  std::size_t alike = 0;
  for (std::size_t i = width; i < blocks.size(); ++i) {
    if (!blocks[i].isKnown || !blocks[i - width].isKnown) continue;
    for (std::size_t x = 0; x < kBlockSide; ++x) {
      ++compared;
      alike += blocks[i].bottom[x] == blocks[i - width].top[x] ? 1U : 0U;
    }
  }
  return compared == 0 ? 0 : static_cast<double>(alike) / static_cast<double>(compared);
}

}  // namespace

std::optional<MsVideoCount> msVideoCount(std::span<const std::byte> payload, unsigned bits) {
  std::uint64_t blocks = 0;
  std::uint64_t skipped = 0;
  const bool isWhole = Instructions(payload, bits)
                           .walk([&](const BlockEdges&) { ++blocks; }, [&](std::uint32_t count) { skipped += count; });
  blocks += skipped;
  if (!isWhole || blocks == 0 || blocks > kMostBlocks) return std::nullopt;
  return MsVideoCount{static_cast<std::uint32_t>(blocks), static_cast<std::uint32_t>(skipped)};
}

std::optional<PictureSize> msVideoSize(std::span<const std::byte> payload, unsigned bits,
                                       std::optional<PictureSize> known) {
  const auto count = msVideoCount(payload, bits);
  if (!count) return std::nullopt;
  if (known && std::uint64_t{known->width / kBlockSide} * (known->height / kBlockSide) == count->blocks) return known;
  std::vector<BlockEdges> blocks;
  blocks.reserve(count->blocks);
  static_cast<void>(Instructions(payload, bits)
                        .walk([&](const BlockEdges& block) { blocks.push_back(block); },
                              [&](std::uint32_t skipped) { blocks.resize(blocks.size() + skipped); }));
  std::optional<PictureSize> best;
  double most = 0;
  double second = 0;
  for (std::uint32_t width = 4; width <= count->blocks / 4; ++width) {
    if (count->blocks % width != 0) continue;
    const std::uint32_t height = count->blocks / width;
    if (width > 4 * height || height > 3 * width) continue;
    const double alike = likeBelow(blocks, width);
    if (alike > most) {
      second = most;
      most = alike;
      best = PictureSize{width * kBlockSide, height * kBlockSide};
    } else {
      second = std::max(second, alike);
    }
  }
  constexpr double kClearly = 1.1;
  return best && most > 0 && most >= second * kClearly ? best : std::nullopt;
}

}  // namespace zelvo::salvage
