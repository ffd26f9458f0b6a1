/// Locks on files, which go away with the last program that holds them, and texts that grow by whole lines under one.
/// Sizes and offsets are in bytes.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>

#include "platform/files.h"

namespace zelvo::platform {

/// Held until it goes.
class FileLock {
 public:
  virtual ~FileLock() = default;
};

/// A file of lines that this program alone may add to.
/// Thread: one.
class LockedText {
 public:
  virtual ~LockedText() = default;
  [[nodiscard]] virtual std::uint64_t size() = 0;
  [[nodiscard]] virtual IoResult readAt(std::uint64_t offset, std::span<std::byte> into) = 0;
  /// Adds the text at the end and waits until it lies on the medium. After a failure nothing of it is left where that
  /// can be done.
  [[nodiscard]] virtual std::error_code append(std::string_view text) = 0;
  /// Makes the file that long; it never grows by it.
  [[nodiscard]] virtual std::error_code cutTo(std::uint64_t size) = 0;
  [[nodiscard]] virtual const FileLock& lock() const = 0;
};

/// Thread: any.
class LockedFiles {
 public:
  virtual ~LockedFiles() = default;
  struct OpenedText {
    std::unique_ptr<LockedText> text;
    std::error_code error;  ///< `timed_out` when another program held the lock all the time
  };
  /// Opens the file, creates it when it is missing, and locks it; waits at most so long for another program to let go
  /// of it, and no longer than `goesOn` answers true. Only a regular file is opened.
  [[nodiscard]] virtual OpenedText openText(const std::string& path, std::chrono::milliseconds most,
                                            const std::function<bool()>& goesOn) = 0;
  /// Locks an existing regular file without waiting. Null when somebody holds the lock, when the file is gone
  /// meanwhile, and where the file system knows no locks.
  [[nodiscard]] virtual std::unique_ptr<FileLock> lockFile(const std::string& path) = 0;
};

}  // namespace zelvo::platform
