/// Undoes a transfer that took a film for text: every byte 0A became the two bytes 0D 0A. Offsets and sizes are in
/// bytes.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

#include "platform/bytes.h"
#include "platform/files.h"
#include "salvage/scan/byte_span.h"

namespace zelvo::salvage {

/// The file as it was before: each 0D in front of a 0A is left out.
/// Thread: any, several at once.
class TextTransfer final : public platform::ReadableFile {
 public:
  /// Nothing unless there are many 0A and nearly all of them stand after a 0D. Of other films only the front is read,
  /// at most 1 MiB; of such a film all. `isEnding` is asked between reads and ends the search without an answer.
  /// Failure: what cannot be read holds no such bytes.
  /// \pre `file` outlives the answer.
  [[nodiscard]] static std::unique_ptr<TextTransfer> find(platform::ReadableFile& file,
                                                          const std::function<bool()>& isEnding);

  /// Moves spans of the file, rising and apart, to where they stand in the original. What lies beyond the end of the
  /// file lies as far beyond the end of the original.
  void moveToOriginal(std::vector<ByteSpan>& spans);

  platform::IoResult readAt(std::uint64_t offset, std::span<std::byte> into) override;
  std::uint64_t size() override { return size_; }

 private:
  explicit TextTransfer(platform::ReadableFile& file) : file_(file) {}
  bool readAll(const std::function<bool()>& isEnding);
  /// Of the original, the bytes that block `number` of the file holds; with the lock held.
  const platform::Bytes& blockOf(std::size_t number, std::error_code& error);

  platform::ReadableFile& file_;
  std::uint64_t size_ = 0;
  std::vector<std::uint64_t> begins_;  ///< in the original: where each block of the file begins, and the end
  std::mutex mutex_;
  std::size_t held_ = static_cast<std::size_t>(-1);  ///< the block in `bytes_`
  platform::Bytes bytes_;
  std::error_code heldError_;
};

}  // namespace zelvo::salvage
