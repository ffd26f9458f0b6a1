/// What the sample scan sees of the input: a window of some dozen blocks, read in one go, that moves on with the
/// scan, and beyond it, for inputs dense with candidates, everything that a look-ahead can reach. Every answer is what
/// separate small reads at the same offsets would have given. Offsets and sizes are in bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <utility>

#include "avi/input_file.h"
#include "platform/bytes.h"
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

  /// `farAhead` says whether it may keep what look-aheads can reach (10 MB) once the input proves dense.
  explicit ScanWindow(avi::InputFile& input, bool farAhead = true);

  /// The bytes from block `number` on: the block and at least `CodeFinder::kMargin` bytes more, zero where the input
  /// has ended. `last` is the number of the input's last block; the window never needs to reach beyond it. `ownRead` is
  /// how many bytes a read for this block alone takes; it is done where reading the whole window fails.
  [[nodiscard]] std::span<const std::byte> block(std::uint32_t number, std::uint32_t last, std::size_t ownRead);

  /// The four bytes at `offset`; those that cannot be read are zero.
  /// Decision: scan, Missing size bytes count as zero
  [[nodiscard]] std::uint32_t numberAt(std::uint32_t offset);

  /// Overwrites the front of `into` with what can be read at `offset` and answers how many bytes that is.
  [[nodiscard]] std::size_t readLookAhead(std::uint32_t offset, std::span<std::byte, 6> into);

  /// True when the `size` bytes from `offset` on, as far as the file holds them, are zero. Beyond the window is read
  /// only what follows zeros; where reads fail, nothing is claimed.
  [[nodiscard]] bool isAllZero(std::uint64_t offset, std::uint64_t size);

  /// True once a window had many look-aheads beyond its end.
  [[nodiscard]] bool isDense() const { return dense_; }
  /// Naming the candidates of a dense window beforehand saves waiting for memory far ahead.
  void expectLookAheadOf(std::uint32_t position) const;

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
  static constexpr std::size_t kReach = 10000000 + 8 + 6;
  static constexpr std::size_t kWindowSize = kBlocks * kBlockSize + kReadAhead;
  static constexpr std::size_t kRingSize = kReach + 2 * kWindowSize;
  /// A window with more look-aheads beyond its end than this is dense.
  static constexpr std::uint32_t kDense = 64;

  std::size_t read(std::uint64_t offset, std::span<std::byte> into);
  void moveTo(std::uint32_t number, std::uint32_t last);
  void readBlockAlone(std::uint32_t number, std::size_t ownRead);
  [[nodiscard]] bool inWindow(std::uint64_t offset, std::size_t size) const;
  void moveRing();
  [[nodiscard]] bool inRing(std::uint64_t offset, std::size_t size) const;

  avi::InputFile& input_;
  const bool farAhead_;
  bool dense_ = false;
  platform::PageBytes bytes_;       ///< the window and its margin
  std::uint64_t start_ = 0;         ///< offset of the window's first byte
  std::size_t valid_ = 0;           ///< bytes of it that were read
  std::uint32_t firstBlock_ = 0;    ///< 0 before the first window
  std::uint32_t blocks_ = 0;        ///< blocks whose codes can be looked for in it
  bool readsFail_ = false;          ///< reading the window failed, so each block is read alone
  std::uint32_t beyondWindow_ = 0;  ///< look-aheads beyond this window so far
  platform::Bytes ring_;            ///< empty until an input proves dense; byte `offset` lies at `offset` % kRingSize
  avi::ReadFailures failures_;
  std::uint64_t ringStart_ = 0;
  std::uint64_t ringEnd_ = 0;
};

}  // namespace zelvo::engine
