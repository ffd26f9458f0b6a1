/// A file on a failing disk: what cannot be read is tried once more in small pieces, and then never again, since every
/// try takes seconds and wears the disk. Offsets and sizes are in bytes.
#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <span>
#include <system_error>

#include "platform/files.h"

namespace zelvo::salvage {

/// Thread: any, several at once.
class RetriedReads final : public platform::ReadableFile {
 public:
  /// More stretches than this are not remembered; what fails after them is tried whenever it is asked for.
  static constexpr std::size_t kMaxFailed = 65'536;

  explicit RetriedReads(platform::ReadableFile& file) : file_(file) {}

  /// Where a read fails, what was wanted from there on is read in pieces of 32 KiB, and those that fail in pages of
  /// 4096; the first page that fails then ends it.
  [[nodiscard]] platform::IoResult readAt(std::uint64_t offset, std::span<std::byte> into) override;
  [[nodiscard]] std::uint64_t size() override { return file_.size(); }

 private:
  struct Failed {
    std::uint64_t end = 0;
    std::error_code cause;
  };

  [[nodiscard]] platform::IoResult retry(std::uint64_t offset, std::span<std::byte> into);
  void remember(std::uint64_t begin, std::uint64_t end, std::error_code cause);

  platform::ReadableFile& file_;
  std::mutex mutex_;
  std::map<std::uint64_t, Failed> failed_;  ///< by where each stretch begins; apart
};

}  // namespace zelvo::salvage
