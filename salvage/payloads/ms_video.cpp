#include "salvage/payloads/ms_video.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <limits>

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

std::uint16_t numberAt(MsPayload bytes, std::size_t at, std::size_t count) {
  std::uint16_t value = 0;
  for (std::size_t i = 0; i < count; ++i)
    value = static_cast<std::uint16_t>(value | static_cast<unsigned>(bytes[at + i]) << 8U * i);
  return value;
}

/// How many colours follow an instruction of a block; 0 of one that is a colour itself. `colour`: bytes of one.
std::size_t coloursOf(std::uint16_t word, MsPayload behind, std::size_t colour) {
  constexpr std::size_t kMany = 8;
  if (colour == 1) return word < 0x8000 ? 2 : word >= 0x9000 ? kMany : 0;
  if (word >= 0x8000) return 0;
  const bool areMany = behind.size() >= 2 && (behind[1] & std::byte{0x80}) != std::byte{0};
  return areMany ? kMany : 2;
}

/// The block's edges as its instruction paints them.
BlockEdges paint(MsPayload instruction, std::size_t colour) {
  const std::uint16_t word = numberAt(instruction, 0, 2);
  const std::size_t count = (instruction.size() - 2) / colour;
  std::array<std::uint16_t, 8> colours{};
  for (std::size_t i = 0; i < count; ++i) colours[i] = numberAt(instruction, 2 + i * colour, colour);
  const auto pixel = [&](std::size_t x, std::size_t y) {
    if (count == 0) return static_cast<std::uint16_t>(colour == 1 ? word & 0xffU : word & 0x7fffU);
    const std::size_t quarter = count == 2 ? 0 : (y / 2 * 2 + x / 2) * 2;
    const bool isFirst = (static_cast<unsigned>(word) >> (y * kBlockSide + x) & 1U) != 0;
    return colours[quarter + (isFirst ? 0 : 1)];
  };
  BlockEdges block;
  block.isKnown = true;
  for (std::size_t x = 0; x < kBlockSide; ++x) {
    block.bottom[x] = pixel(x, 0);
    block.top[x] = pixel(x, kBlockSide - 1);
  }
  return block;
}

bool isSkip(std::uint16_t word) { return (word & 0xfc00U) == 0x8400; }

/// Calls `visit` with each instruction that is for blocks, and its bytes. False where the payload ends within an
/// instruction, or goes on after the last one.
template <class Visit>
bool walk(MsPayload payload, unsigned bits, const Visit& visit) {
  while (payload.size() >= 2) {
    const auto one = msVideoInstruction(payload, bits);
    if (!one) return false;
    if (one->isEnd) return payload.size() == 2;
    visit(*one, payload.first(one->size));
    payload = payload.subspan(one->size);
  }
  return payload.empty();
}

/// All blocks of a payload. \pre its blocks were counted.
std::vector<BlockEdges> edgesOf(MsPayload payload, unsigned bits, std::uint32_t count) {
  std::vector<BlockEdges> blocks;
  blocks.reserve(count);
  static_cast<void>(walk(payload, bits, [&](const MsVideoInstruction& one, MsPayload bytes) {
    if (isSkip(numberAt(bytes, 0, 2))) {
      blocks.resize(blocks.size() + one.blocks);
    } else {
      blocks.push_back(paint(bytes, bits / 8));
    }
  }));
  return blocks;
}

/// Calls `visit` with each pixel and the one below it, across the borders of blocks, in rows of so many blocks.
template <class Visit>
void eachPair(const std::vector<BlockEdges>& blocks, std::uint32_t width, const Visit& visit) {
  for (std::size_t i = width; i < blocks.size(); ++i) {
    if (!blocks[i].isKnown || !blocks[i - width].isKnown) continue;
    for (std::size_t x = 0; x < kBlockSide; ++x) visit(blocks[i].bottom[x], blocks[i - width].top[x]);
  }
}

/// Which share of the pixels are like the ones below them.
double likeBelow(const std::vector<BlockEdges>& blocks, std::uint32_t width) {
  std::size_t compared = 0;
  std::size_t alike = 0;
  eachPair(blocks, width, [&](std::uint16_t one, std::uint16_t other) {
    ++compared;
    alike += one == other ? 1U : 0U;
  });
  return compared == 0 ? 0 : static_cast<double>(alike) / static_cast<double>(compared);
}

/// Of 16 bits, five for each colour; the numbers of a palette tell nothing but whether they are the same.
std::uint64_t apart(std::uint16_t one, std::uint16_t other, unsigned bits) {
  if (bits == 8) return one == other ? 0 : 1;
  constexpr unsigned kColourBits = 5;
  constexpr int kColour = 31;
  std::uint64_t sum = 0;
  for (unsigned shift = 0; shift < 3 * kColourBits; shift += kColourBits)
    sum += static_cast<std::uint64_t>(std::abs((one >> shift & kColour) - (other >> shift & kColour)));
  return sum;
}

}  // namespace

std::optional<MsVideoInstruction> msVideoInstruction(std::span<const std::byte> bytes, unsigned bits) {
  if (bytes.size() < 2) return std::nullopt;
  const std::uint16_t word = numberAt(bytes, 0, 2);
  if (word == 0) return MsVideoInstruction{0, 2, true};
  if (isSkip(word)) return MsVideoInstruction{word & 0x3ffU, 2, false};
  const std::size_t colour = bits / 8;
  const std::size_t size = 2 + coloursOf(word, bytes.subspan(2), colour) * colour;
  if (size > bytes.size()) return std::nullopt;
  return MsVideoInstruction{1, static_cast<std::uint8_t>(size), false};
}

std::optional<MsVideoCount> msVideoCount(std::span<const std::byte> payload, unsigned bits) {
  std::uint64_t blocks = 0;
  std::uint64_t skipped = 0;
  const bool isWhole = walk(payload, bits, [&](const MsVideoInstruction& one, MsPayload bytes) {
    blocks += one.blocks;
    if (isSkip(numberAt(bytes, 0, 2))) skipped += one.blocks;
  });
  if (!isWhole || blocks == 0 || blocks > kMostBlocks) return std::nullopt;
  return MsVideoCount{static_cast<std::uint32_t>(blocks), static_cast<std::uint32_t>(skipped)};
}

std::uint64_t msVideoBlocks(PictureSize picture) {
  return std::uint64_t{picture.width / kBlockSide} * (picture.height / kBlockSide);
}

std::uint64_t msVideoRoughness(std::span<const std::byte> payload, unsigned bits, PictureSize picture) {
  const auto count = msVideoCount(payload, bits);
  if (!count) return std::numeric_limits<std::uint64_t>::max();
  const std::vector<BlockEdges> blocks = edgesOf(payload, bits, count->blocks);
  std::uint64_t sum = 0;
  eachPair(blocks, picture.width / kBlockSide,
           [&](std::uint16_t one, std::uint16_t other) { sum += apart(one, other, bits); });
  return sum;
}

std::optional<PictureSize> msVideoSize(std::span<const std::byte> payload, unsigned bits,
                                       std::optional<PictureSize> known) {
  const auto count = msVideoCount(payload, bits);
  if (!count) return std::nullopt;
  if (known && msVideoBlocks(*known) == count->blocks) return known;
  const std::vector<BlockEdges> blocks = edgesOf(payload, bits, count->blocks);
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
