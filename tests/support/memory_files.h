/// Files that live in memory, can be larger than memory (sparse), and fail where a test wants them to.
/// Offsets and sizes are in bytes.
#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "platform/bytes.h"
#include "platform/file_manager.h"
#include "platform/files.h"

namespace zelvo::tests {

/// Content and faults of one file. Set faults before the file is used.
struct MemoryFile {
  platform::Bytes bytes;   ///< the content from offset 0 on
  std::uint64_t size = 0;  ///< may be larger: what lies after `bytes` is zero, but for islands
  std::map<std::uint64_t, platform::Bytes> islands;  ///< content by offset after `bytes`

  /// Reads that touch this range come short before it with `readError`.
  std::uint64_t badReadStart = std::numeric_limits<std::uint64_t>::max();
  std::uint64_t badReadEnd = 0;
  std::error_code readError;
  /// Called on the reading thread before a read touches this range, and before it takes the file's lock.
  std::function<void()> beforeBadRead;
  /// Writes come short at this offset with `writeError`.
  std::uint64_t badWriteFrom = std::numeric_limits<std::uint64_t>::max();
  std::error_code writeError;
  std::error_code reserveError = std::make_error_code(std::errc::operation_not_supported);
  std::error_code closeError;
  std::error_code sendError;  ///< of every sending to the medium

  std::uint64_t reads = 0;        ///< how often it was read
  std::uint64_t largestRead = 0;  ///< the most that one read asked for
  std::uint64_t sentUpTo = 0;     ///< so much was sent to the medium, part by part, none of it before it was written
  /// Told of every read before it is done: offset and size.
  std::function<void(std::uint64_t, std::size_t)> onRead;
  /// Told of every write before it is done: offset and size. Called on the thread that writes.
  std::function<void(std::uint64_t, std::size_t)> onWrite;
  mutable std::mutex mutex;
};

/// Thread: any.
class MemoryFiles final : public platform::Files, public platform::FileManager {
 public:
  /// Puts a file there; replaces one of that name.
  MemoryFile& put(const std::string& path, platform::Bytes bytes);
  /// A file of `size` bytes, all zero so far.
  MemoryFile& putSparse(const std::string& path, std::uint64_t size);
  [[nodiscard]] bool has(const std::string& path) const;
  [[nodiscard]] MemoryFile& at(const std::string& path);
  /// The whole content of a file that is not sparse.
  [[nodiscard]] platform::Bytes content(const std::string& path) const;
  /// Creating or opening this path fails.
  void refuse(const std::string& path, std::error_code error);
  /// What `freeSpace` answers.
  std::optional<std::uint64_t> space = std::uint64_t{1} << 40U;
  /// Told when a file is created or opened for writing.
  std::function<void(const std::string&)> onTouch;

  [[nodiscard]] platform::Opened<platform::ReadableFile> openForReading(const std::string& path) override;
  [[nodiscard]] platform::Opened<platform::WritableFile> openForWriting(const std::string& path) override;

  [[nodiscard]] std::optional<platform::FileAttributes> attributes(const std::string& path) override;
  [[nodiscard]] std::optional<platform::FileAttributes> attributesFollowingLinks(const std::string& path) override;
  [[nodiscard]] std::optional<std::uint64_t> freeSpace(const std::string& path) override;
  [[nodiscard]] bool exists(const std::string& path) override { return has(path); }
  [[nodiscard]] std::error_code createFile(const std::string& path) override;
  [[nodiscard]] std::error_code createFolder(const std::string& path) override;
  [[nodiscard]] std::error_code rename(const std::string& from, const std::string& to) override;
  [[nodiscard]] std::error_code remove(const std::string& path) override;
  [[nodiscard]] std::vector<std::string> list(const std::string& folder) override;
  [[nodiscard]] std::optional<std::string> linkTarget(const std::string&) override { return std::nullopt; }
  [[nodiscard]] bool isWritable(const std::string& path) override { return has(path); }
  [[nodiscard]] bool isDeletable(const std::string& path) override { return has(path); }

 private:
  [[nodiscard]] std::shared_ptr<MemoryFile> find(const std::string& path) const;
  [[nodiscard]] std::error_code refusal(const std::string& path) const;

  mutable std::mutex mutex_;
  std::map<std::string, std::shared_ptr<MemoryFile>> files_;
  std::map<std::string, std::error_code> refused_;
};

}  // namespace zelvo::tests
