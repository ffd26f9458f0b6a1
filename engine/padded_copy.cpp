#include "engine/padded_copy.h"

#include <algorithm>
#include <cstddef>
#include <span>

#include "platform/bytes.h"

namespace zelvo::engine {

namespace {

constexpr std::size_t kBlock = kPaddedBlockSize;
constexpr std::size_t kBlocksAtOnce = 8;

/// Reads what it can of one block; the rest is zero. Answers how many bytes were read.
std::size_t readBlock(platform::ReadableFile* from, std::uint64_t offset, std::span<std::byte> block) {
  std::fill(block.begin(), block.end(), std::byte{0});
  return from == nullptr ? 0 : from->readAt(offset, block).count;
}

}  // namespace

std::optional<WriteFailure> paddedCopy(platform::ReadableFile* from, platform::WritableFile& to, std::uint64_t size,
                                       const std::function<bool(std::uint64_t)>& betweenBlocks) {
  const std::uint64_t rest = size % kBlock;
  const std::uint64_t blocks = size / kBlock + (rest > 0 ? 1 : 0);
  platform::Bytes buffer(kBlocksAtOnce * kBlock);
  std::uint64_t end = 0;  // where the last read stopped
  for (std::uint64_t block = 0; block < blocks;) {
    const auto together = static_cast<std::size_t>(std::min<std::uint64_t>(kBlocksAtOnce, blocks - block));
    const std::span<std::byte> bytes = std::span(buffer).first(together * kBlock);
    const std::uint64_t offset = block * kBlock;
    end = offset + readBlock(from, offset, bytes);
    // After a read that came short each block is read alone: a later one may be readable.
    for (std::size_t i = 0; i < together && end < offset + bytes.size(); ++i) {
      const std::uint64_t blockOffset = offset + i * kBlock;
      const std::uint64_t blockEnd = blockOffset + readBlock(from, blockOffset, bytes.subspan(i * kBlock, kBlock));
      if (i + 1 == together) {
        end = blockEnd;
        break;
      }
    }
    const platform::IoResult written = to.writeAt(offset, bytes);
    if (written.error) return WriteFailure{offset + written.count, written.error};
    block += together;
    if (betweenBlocks && !betweenBlocks(std::min(size, block * kBlock))) return std::nullopt;
  }
  if (rest == 0) return std::nullopt;
  // The front of the last block once more. Should the input have grown meanwhile, what follows is read over it.
  const std::size_t lastInBuffer = static_cast<std::size_t>((blocks - 1) % kBlocksAtOnce) * kBlock;
  const std::span<std::byte> tail = std::span(buffer).subspan(lastInBuffer, static_cast<std::size_t>(rest));
  if (from != nullptr) static_cast<void>(from->readAt(end, tail));
  const platform::IoResult written = to.writeAt(blocks * kBlock, tail);
  if (written.error) return WriteFailure{blocks * kBlock + written.count, written.error};
  return std::nullopt;
}

}  // namespace zelvo::engine
