/// A file whose small reads are answered from memory when what lies near was read a short while ago: weighing a damaged
/// film looks at a few bytes here and there, mostly at one place after the other. Offsets and sizes are in bytes.
#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <mutex>
#include <span>

#include "platform/bytes.h"
#include "platform/files.h"

namespace zelvo::salvage {

/// Holds a MiB at the most. What becomes of bytes that were read once is not noticed.
/// Thread: any, several at once.
class RecentReads final : public platform::ReadableFile {
 public:
  explicit RecentReads(platform::ReadableFile& file) : file_(file) {}

  /// Reads of more than a block go straight to the file, and so do those that a failure touches.
  [[nodiscard]] platform::IoResult readAt(std::uint64_t offset, std::span<std::byte> into) override;
  [[nodiscard]] platform::IoResult readScattered(std::uint64_t offset,
                                                 std::span<const std::span<std::byte>> pieces) override {
    return file_.readScattered(offset, pieces);
  }
  [[nodiscard]] std::uint64_t size() override { return file_.size(); }

 private:
  static constexpr std::size_t kBlock = std::size_t{1} << 12U;
  static constexpr std::uint64_t kNone = std::numeric_limits<std::uint64_t>::max();

  struct Block {
    std::uint64_t number = kNone;  ///< the file is cut into blocks
    platform::Bytes bytes;
  };

  [[nodiscard]] const Block* block(std::uint64_t number);

  platform::ReadableFile& file_;
  std::mutex mutex_;
  std::array<Block, 256> blocks_;  ///< each number has one place
};

}  // namespace zelvo::salvage
