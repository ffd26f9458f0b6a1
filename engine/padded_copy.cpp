#include "engine/padded_copy.h"

#include <algorithm>
#include <cstddef>
#include <span>

#include "platform/bytes.h"

namespace zelvo::engine {

namespace {

constexpr std::size_t kBlock = kPaddedBlockSize;
constexpr std::size_t kBlocksAtOnce = 8;

/// Reads what it can of the blocks; the rest is zero.
platform::IoResult readBlocks(platform::ReadableFile* from, std::uint64_t offset, std::span<std::byte> blocks) {
  std::fill(blocks.begin(), blocks.end(), std::byte{0});
  return from == nullptr ? platform::IoResult{} : from->readAt(offset, blocks);
}

/// Counts what a read at `offset` left out of the input's first `size` bytes.
void note(PaddedCopyEnd& end, const platform::IoResult& read, std::uint64_t offset, std::uint64_t wanted,
          std::uint64_t size) {
  if (read.error) end.readFailures.add({1, offset + read.count, read.error});
  const std::uint64_t ofInput = std::min(wanted, size - offset);
  if (read.count < ofInput) end.missing += ofInput - read.count;
}

}  // namespace

PaddedCopyEnd paddedCopy(platform::ReadableFile* from, platform::WritableFile& to, std::uint64_t size,
                         const std::function<bool(std::uint64_t)>& betweenBlocks) {
  const std::uint64_t rest = size % kBlock;
  const std::uint64_t blocks = size / kBlock + (rest > 0 ? 1 : 0);
  platform::Bytes buffer(kBlocksAtOnce * kBlock);
  PaddedCopyEnd result;
  std::uint64_t end = 0;  // where the last read stopped
  for (std::uint64_t block = 0; block < blocks;) {
    const auto together = static_cast<std::size_t>(std::min<std::uint64_t>(kBlocksAtOnce, blocks - block));
    const std::span<std::byte> bytes = std::span(buffer).first(together * kBlock);
    const std::uint64_t offset = block * kBlock;
    end = offset + readBlocks(from, offset, bytes).count;
    // After a read that came short each block is read alone: a later one may be readable.
    for (std::size_t i = 0; i < together && end < offset + bytes.size(); ++i) {
      const std::uint64_t blockOffset = offset + i * kBlock;
      const platform::IoResult read = readBlocks(from, blockOffset, bytes.subspan(i * kBlock, kBlock));
      note(result, read, blockOffset, kBlock, size);
      if (i + 1 == together) {
        end = blockOffset + read.count;
        break;
      }
    }
    const platform::IoResult written = to.writeAt(offset, bytes);
    if (written.error) {
      result.writeFailure = avi::WriteFailure{offset + written.count, written.error};
      return result;
    }
    block += together;
    if (betweenBlocks && !betweenBlocks(std::min(size, block * kBlock))) return result;
  }
  if (rest == 0) return result;
  // The front of the last block once more. Should the input have grown meanwhile, what follows is read over it.
  const std::size_t lastInBuffer = static_cast<std::size_t>((blocks - 1) % kBlocksAtOnce) * kBlock;
  const std::span<std::byte> tail = std::span(buffer).subspan(lastInBuffer, static_cast<std::size_t>(rest));
  if (from != nullptr) static_cast<void>(from->readAt(end, tail));
  const platform::IoResult written = to.writeAt(blocks * kBlock, tail);
  if (written.error) result.writeFailure = avi::WriteFailure{blocks * kBlock + written.count, written.error};
  return result;
}

}  // namespace zelvo::engine
