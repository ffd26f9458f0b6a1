/// An output whose writes are done by a helper thread, so that reading goes on meanwhile. Offsets and sizes are in bytes.
#pragma once

#include <array>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>

#include "avi/write_failure.h"
#include "platform/files.h"
#include "platform/page_bytes.h"
#include "platform/workers.h"

namespace zelvo::salvage {

/// Takes writes in rising order, each where the one before ended, gathers them and hands them on. Without a second
/// processor, or where there is no thread to be had, they are done at once.
/// Thread: one.
class WriteBehind final : public platform::WritableFile {
 public:
  WriteBehind(platform::WritableFile& file, platform::Workers& workers);
  WriteBehind(const WriteBehind&) = delete;
  WriteBehind& operator=(const WriteBehind&) = delete;
  ~WriteBehind() override;

  /// Answers the failure of an earlier write too; nothing is written after one.
  platform::IoResult writeAt(std::uint64_t offset, std::span<const std::byte> from) override;
  /// Waits until all is written, and answers the first failure. Nothing may be written afterwards.
  [[nodiscard]] std::optional<avi::WriteFailure> finish();

  // Of the file itself, once `finish` has returned.
  std::error_code reserve(std::uint64_t size) override { return file_.reserve(size); }
  std::error_code truncate(std::uint64_t size) override { return file_.truncate(size); }
  std::error_code flush() override { return file_.flush(); }
  std::error_code close() override { return file_.close(); }

 private:
  static constexpr std::size_t kBuffer = std::size_t{1} << 19U;

  struct Buffer {
    platform::PageBytes bytes{kBuffer};
    std::uint64_t offset = 0;
    std::size_t used = 0;
  };

  /// The helper's: writes what is handed over until the end.
  void serve();
  void handOver();
  void write(const Buffer& buffer);
  [[nodiscard]] std::optional<avi::WriteFailure> failure();

  platform::WritableFile& file_;
  std::array<Buffer, 3> buffers_;
  std::size_t filling_ = 0;  ///< handed over so far: the number of the buffer that is being filled
  std::shared_ptr<platform::Worker> helper_;

  std::mutex mutex_;
  std::condition_variable changed_;
  std::size_t handed_ = 0;   ///< buffers, all told
  std::size_t written_ = 0;  ///< of these
  bool isEnded_ = false;
  std::optional<avi::WriteFailure> failure_;
};

}  // namespace zelvo::salvage
