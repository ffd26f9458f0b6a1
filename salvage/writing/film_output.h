/// The output of a salvage, written from front to back: what is appended gathers in large buffers, and a helper thread
/// writes those that are full while the next one fills. Another sends to the medium what is written, so that the flush
/// at the end has little to wait for. Offsets and sizes are in bytes.
#pragma once

#include <array>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <span>

#include "avi/byte_order.h"
#include "avi/fourcc.h"
#include "avi/write_failure.h"
#include "platform/files.h"
#include "platform/page_bytes.h"
#include "platform/relaxed.h"
#include "platform/workers.h"

namespace zelvo::salvage {

/// Without a second processor, or where there is no thread to be had, full buffers are written at once.
/// Thread: one.
class FilmOutput {
 public:
  /// The first byte appended goes to the file's beginning.
  FilmOutput(platform::WritableFile& file, platform::Workers& workers);
  FilmOutput(const FilmOutput&) = delete;
  FilmOutput& operator=(const FilmOutput&) = delete;
  ~FilmOutput();

  void append(std::span<const std::byte> bytes);
  void zeros(std::uint64_t count);

  // Fields of the format, in file order.
  void code(avi::FourCC code) { append(code.bytes()); }
  void number32(std::uint32_t value) {
    std::array<std::byte, 4> bytes{};
    avi::storeLittleEndian32(bytes, value);
    append(bytes);
  }
  void number64(std::uint64_t value) {
    std::array<std::byte, 8> bytes{};
    avi::storeLittleEndian64(bytes, value);
    append(bytes);
  }

  /// True once a write has failed; what is appended from then on is dropped.
  [[nodiscard]] bool failed() const { return hasFailed_; }
  /// Waits until all is written, and answers the first failure. Nothing may be appended afterwards.
  [[nodiscard]] std::optional<avi::WriteFailure> finish();

 private:
  static constexpr std::size_t kBuffer = std::size_t{1} << 19U;
  /// So many buffers are sent to the medium together.
  static constexpr std::uint64_t kSentTogether = 16;

  struct Buffer {
    platform::PageBytes bytes{kBuffer};
    std::size_t used = 0;
  };

  [[nodiscard]] Buffer& filling() { return buffers_[filled_ % buffers_.size()]; }
  void handOver();
  /// The helper's: writes what is handed over until the end.
  void serve();
  void write(const Buffer& buffer, std::uint64_t number);
  /// The sender's: sends to the medium what is written, until the end.
  void send();
  void noteFailure(std::uint64_t offset, std::error_code cause);

  platform::WritableFile& file_;
  std::array<Buffer, 3> buffers_;
  std::uint64_t filled_ = 0;  ///< buffers that were full, all told
  platform::Relaxed<bool> hasFailed_;
  std::shared_ptr<platform::Worker> helper_;
  std::shared_ptr<platform::Worker> sender_;

  std::mutex mutex_;
  std::condition_variable changed_;
  std::uint64_t handed_ = 0;   ///< buffers that wait or are written
  std::uint64_t written_ = 0;  ///< of these
  bool isEnded_ = false;
  std::optional<avi::WriteFailure> failure_;  ///< the first
};

}  // namespace zelvo::salvage
