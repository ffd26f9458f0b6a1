/// What the sample scan sees of the input: a window of some dozen blocks, read in one go, that moves on with the
/// scan, and beyond it, for inputs dense with candidates, what a look-ahead finds wherever it can reach. Every answer
/// is what separate small reads at the same offsets would have given. Offsets and sizes are in bytes.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <utility>

#include "avi/input_file.h"
#include "engine/look_ahead_map.h"
#include "platform/page_bytes.h"

namespace zelvo::engine {

/// Thread: one.
class ScanWindow {
 public:
  static constexpr std::size_t kBlockSize = avi::InputFile::kBlockSize;
  /// One read for a block takes the block and this many bytes after it.
  static constexpr std::size_t kReadAhead = 2048;
  /// Blocks in a window. 256 KiB stays in the processor's nearer caches between the kernel's copy and the search, and
  /// most look-aheads end within it.
  static constexpr std::size_t kBlocks = 256;

  explicit ScanWindow(avi::InputFile& input);

  /// The bytes from block `number` on: the block and at least `CodeFinder::kMargin` bytes more, zero where the input
  /// has ended. `last` is the number of the input's last block; the window never needs to reach beyond it. `ownRead` is
  /// how many bytes a read for this block alone takes; it is done where reading the whole window fails.
  [[nodiscard]] std::span<const std::byte> block(std::uint32_t number, std::uint32_t last, std::size_t ownRead);

  /// How many of the bytes from block `number` on, which block() has answered, were read with the window and lie below
  /// 4 GiB.
  [[nodiscard]] std::size_t validFrom(std::uint32_t number) const {
    const std::uint64_t start = startOf(number);
    const std::uint64_t end = std::min(start_ + valid_, std::uint64_t{1} << 32U);
    return start >= start_ && start < end ? static_cast<std::size_t>(end - start) : 0;
  }

  /// The four bytes at `offset`; those that cannot be read are zero.
  /// Decision: scan, Missing size bytes count as zero
  [[nodiscard]] std::uint32_t numberAt(std::uint32_t offset);

  /// Overwrites the front of `into` with what can be read at `offset` and answers how many bytes that is.
  [[nodiscard]] std::size_t readLookAhead(std::uint32_t offset, std::span<std::byte, kLookAheadSize> into);

  /// What readLookAhead() would find at `offset`, where that is known without a read: beyond the window of an input
  /// that has proved dense. It is known only where all six bytes can be read.
  [[nodiscard]] std::optional<LookAheadFind> foundBeyond(std::uint32_t offset) {
    if (!dense_ || inWindow(offset, kLookAheadSize)) return std::nullopt;
    const std::optional<LookAheadFind> found = map_.at(offset);
    if (found) ++beyondWindow_;
    return found;
  }

  /// Naming the candidates of a block of a dense input beforehand saves waiting for memory.
  void expectLookAheads(std::uint32_t block, std::span<const std::uint16_t> positions) const;

  /// True when the `size` bytes from `offset` on, as far as the file holds them, are zero. Beyond the window is read
  /// only what follows zeros; where reads fail, nothing is claimed.
  [[nodiscard]] bool isAllZero(std::uint64_t offset, std::uint64_t size);

  /// True once a window had many look-aheads beyond its end.
  [[nodiscard]] bool isDense() const { return dense_; }

  /// The reads that failed since the last call, those of whole windows not counted: each is tried again block by block.
  [[nodiscard]] avi::ReadFailures takeFailures() { return std::exchange(failures_, {}); }

  /// Start of block `number`.
  /// Deliberate: computed in 32 bits, so the blocks beyond 4 GiB are the first ones again.
  /// Decision: scan, Scan offsets wrap at 32 bits
  [[nodiscard]] static std::uint32_t startOf(std::uint32_t number) {
    return (number - 1) * static_cast<std::uint32_t>(kBlockSize);
  }

 private:
  /// How far in front of the window a look-ahead can reach: the largest size accepted, the chunk header, six bytes.
  static constexpr std::size_t kReach = 10000000 + 8 + kLookAheadSize;
  static constexpr std::size_t kWindowSize = kBlocks * kBlockSize + kReadAhead;
  static_assert(kWindowSize + kReach <= LookAheadMap::kPositions - LookAheadMap::kPiece);
  /// A window with more look-aheads beyond its end than this is dense.
  static constexpr std::uint32_t kDense = 64;

  std::size_t read(std::uint64_t offset, std::span<std::byte> into);
  void moveTo(std::uint32_t number, std::uint32_t last);
  void readBlockAlone(std::uint32_t number, std::size_t ownRead);
  [[nodiscard]] bool inWindow(std::uint64_t offset, std::size_t size) const {
    return offset >= start_ && offset + size <= start_ + valid_;
  }

  avi::InputFile& input_;
  bool dense_ = false;
  platform::PageBytes bytes_;       ///< the window and its margin
  std::uint64_t start_ = 0;         ///< offset of the window's first byte
  std::size_t valid_ = 0;           ///< bytes of it that were read
  std::uint32_t firstBlock_ = 0;    ///< 0 before the first window
  std::uint32_t blocks_ = 0;        ///< blocks whose codes can be looked for in it
  bool readsFail_ = false;          ///< reading the window failed, so each block is read alone
  std::uint32_t beyondWindow_ = 0;  ///< look-aheads beyond this window so far
  LookAheadMap map_;                ///< unused until an input proves dense
  avi::ReadFailures failures_;
};

}  // namespace zelvo::engine
