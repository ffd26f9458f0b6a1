/// Small reads of a file at any offset, served from a window that moves. Bytes that cannot be read are missing, never
/// invented. Offsets and sizes are in bytes.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "avi/fourcc.h"
#include "avi/read_failures.h"
#include "platform/bytes.h"
#include "platform/files.h"

namespace zelvo::avi {

/// The eight bytes that every chunk begins with.
struct ChunkHeader {
  FourCC id;               ///< ckID
  std::uint32_t size = 0;  ///< ckSize: of the payload that follows
};

/// Thread: one.
class FileView {
 public:
  /// `windowSize`: how much is read at a time; small for reads that are far apart.
  FileView(platform::ReadableFile& file, std::size_t windowSize) : file_(file), window_(windowSize) {}

  /// The bytes from `offset` on, at most `size` and at most a window of them; fewer at the end of the file or where it
  /// cannot be read. Valid until the next call.
  [[nodiscard]] std::span<const std::byte> bytes(std::uint64_t offset, std::size_t size);

  /// Whether the last answer is short because the file could not be read there, and not because it ends.
  [[nodiscard]] bool failedLast() const { return failedLast_; }

  /// Nothing where fewer than eight bytes are left.
  [[nodiscard]] std::optional<ChunkHeader> header(std::uint64_t offset);
  [[nodiscard]] std::optional<FourCC> code(std::uint64_t offset);

  [[nodiscard]] std::uint64_t fileSize() const { return file_.size(); }
  [[nodiscard]] const ReadFailures& failures() const { return failures_; }

 private:
  platform::ReadableFile& file_;
  platform::Bytes window_;
  std::uint64_t start_ = 0;
  std::size_t held_ = 0;
  bool isCut_ = false;  ///< the window ends where a read failed
  bool failedLast_ = false;
  ReadFailures failures_;
};

}  // namespace zelvo::avi
