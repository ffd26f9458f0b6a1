#include "salvage/payloads/dv_cuts.h"

#include <algorithm>
#include <cstddef>

namespace zelvo::salvage {

namespace {

constexpr std::size_t kDvBlock = 80;
constexpr std::size_t kBlocksOfSequence = 150;

struct DvName {
  unsigned section = 0;
  unsigned number = 0;
};

/// What the block at this place of a sequence is: header, subcode, auxiliary, then each block of sound with 15 of
/// pictures behind it.
DvName nameAt(std::size_t place) {
  constexpr unsigned kHeader = 0;
  constexpr unsigned kSubcode = 1;
  constexpr unsigned kAuxiliary = 2;
  constexpr unsigned kSound = 3;
  constexpr unsigned kPicture = 4;
  constexpr std::size_t kFirstSound = 6;
  constexpr std::size_t kGroup = 16;
  if (place == 0) return {kHeader, 0};
  if (place < 3) return {kSubcode, static_cast<unsigned>(place - 1)};
  if (place < kFirstSound) return {kAuxiliary, static_cast<unsigned>(place - 3)};
  const std::size_t group = (place - kFirstSound) / kGroup;
  const std::size_t inGroup = (place - kFirstSound) % kGroup;
  if (inGroup == 0) return {kSound, static_cast<unsigned>(group)};
  return {kPicture, static_cast<unsigned>(group * (kGroup - 1) + inGroup - 1)};
}

/// Sequences of a picture, or of each of its channels; those with 50 fields a second have 12.
std::size_t sequencesOf(std::uint32_t size) {
  constexpr std::size_t kSequence = kDvBlock * kBlocksOfSequence;
  return size % (12 * kSequence) == 0 ? 12 : 10;
}

/// Whether the bytes at `at` can be the first ones of block number `block` of a picture.
bool isInPlace(std::span<const std::byte> bytes, std::size_t at, std::size_t block, std::size_t sequences) {
  const DvName name = nameAt(block % kBlocksOfSequence);
  const std::size_t sequence = block / kBlocksOfSequence % sequences;
  return static_cast<unsigned>(bytes[at]) >> 5U == name.section &&
         static_cast<unsigned>(bytes[at + 1]) >> 4U == sequence && static_cast<unsigned>(bytes[at + 2]) == name.number;
}

}  // namespace

std::vector<std::uint32_t> dvCuts(std::span<const std::byte> bytes, std::uint32_t size) {
  constexpr std::size_t kName = 3;
  const std::size_t added = bytes.size() - size;
  const std::size_t blocks = size / kDvBlock;
  const std::size_t sequences = sequencesOf(size);
  if (blocks == 0 || size % kDvBlock != 0) return {};
  // How many blocks in front of each stand where they belong, and how many from each on do so behind foreign bytes.
  std::size_t front = 0;
  while (front < blocks && isInPlace(bytes, front * kDvBlock, front, sequences)) ++front;
  std::size_t back = blocks;
  while (back > 0 && isInPlace(bytes, (back - 1) * kDvBlock + added, back - 1, sequences)) --back;
  // Foreign bytes within a block leave its name in front, or tear it.
  if (front == 0 || back > front + 1) return {};
  const std::size_t first = back == 0 ? 0 : (back - 1) * kDvBlock;
  const std::size_t last = std::min<std::size_t>(size, front * kDvBlock + kName - 1);
  if (first > last || last - first > 2 * kDvBlock) return {};
  std::vector<std::uint32_t> cuts;
  for (std::size_t cut = last + 1; cut > first; --cut) cuts.push_back(static_cast<std::uint32_t>(cut - 1));
  return cuts;
}

}  // namespace zelvo::salvage
