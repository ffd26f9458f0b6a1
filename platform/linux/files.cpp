#include "platform/linux/files.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/statfs.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <utility>

#include "platform/linux/descriptor.h"

namespace zelvo::platform::linux_ {

namespace {

/// The system takes at most this many bytes at a time.
constexpr std::size_t kLargestTransfer = 0x7ffff000;
/// Positions beyond this cannot be named to the system; a file ends long before.
constexpr std::uint64_t kLargestOffset = 0x7fffffffffffffff;

/// Repeats one positioned transfer until `size` bytes are done, it answers 0, or it fails.
template <class Transfer>
IoResult transferAll(std::uint64_t offset, std::size_t size, Transfer transfer) {
  IoResult result;
  while (result.count < size && offset <= kLargestOffset - result.count) {
    const std::size_t step = std::min(size - result.count, kLargestTransfer);
    const ssize_t done = transfer(result.count, step, static_cast<off_t>(offset + result.count));
    if (done > 0) {
      result.count += static_cast<std::size_t>(done);
    } else if (done == 0) {
      break;
    } else if (errno != EINTR) {
      result.error = lastError();
      break;
    }
  }
  return result;
}

/// Pieces of memory in the system's own form, some of them at a time.
class ScatteredPieces {
 public:
  explicit ScatteredPieces(std::span<const std::span<std::byte>> pieces) : pieces_(pieces) {}

  /// Bytes of all pieces together.
  [[nodiscard]] std::size_t size() const {
    std::size_t sum = 0;
    for (const std::span<std::byte> piece : pieces_) sum += piece.size();
    return sum;
  }

  /// What lies after the first `done` bytes, as much of it as one call takes. `done` must not fall from call to call.
  [[nodiscard]] std::span<const iovec> from(std::size_t done) {
    while (first_ < pieces_.size() && before_ + pieces_[first_].size() <= done) before_ += pieces_[first_++].size();
    std::size_t count = 0;
    std::size_t inPiece = done - before_;
    for (std::size_t i = first_; i < pieces_.size() && count < parts_.size(); ++i, inPiece = 0) {
      const std::span<std::byte> rest = pieces_[i].subspan(inPiece);
      parts_[count++] = {rest.data(), rest.size()};
    }
    return std::span(parts_).first(count);
  }

 private:
  const std::span<const std::span<std::byte>> pieces_;
  std::size_t first_ = 0;   ///< the first piece that is not full
  std::size_t before_ = 0;  ///< bytes of the pieces before it
  std::array<iovec, IOV_MAX> parts_;
};

/// Whether the file's system keeps it in memory, where no read has to wait for a disk or a server.
bool liesInMemory(const Descriptor& descriptor) {
  struct statfs status {};
  return ::fstatfs(descriptor.number(), &status) == 0 && (status.f_type == TMPFS_MAGIC || status.f_type == RAMFS_MAGIC);
}

class LinuxReadableFile final : public ReadableFile {
 public:
  explicit LinuxReadableFile(Descriptor descriptor)
      : descriptor_(std::move(descriptor)), atOnce_(liesInMemory(descriptor_) ? 0 : RWF_NOWAIT) {}

  IoResult readAt(std::uint64_t offset, std::span<std::byte> into) override {
    return transferAll(offset, into.size(), [&](std::size_t at, std::size_t count, off_t position) {
      return ::pread(descriptor_.number(), into.data() + at, count, position);
    });
  }

  std::size_t readAtOnce(std::uint64_t offset, std::span<std::byte> into) override {
    if (offset > kLargestOffset) return 0;
    const iovec piece{into.data(), std::min(into.size(), kLargestTransfer)};
    const ssize_t done = ::preadv2(descriptor_.number(), &piece, 1, static_cast<off_t>(offset), atOnce_);
    return done > 0 ? static_cast<std::size_t>(done) : 0;
  }

  IoResult readScattered(std::uint64_t offset, std::span<const std::span<std::byte>> pieces) override {
    ScatteredPieces left(pieces);
    return transferAll(offset, left.size(), [&](std::size_t at, std::size_t, off_t position) {
      const std::span<const iovec> next = left.from(at);
      return ::preadv(descriptor_.number(), next.data(), static_cast<int>(next.size()), position);
    });
  }

  std::uint64_t size() override {
    // Unlike a file's attributes, the end of a device tells its size too.
    const off_t end = ::lseek(descriptor_.number(), 0, SEEK_END);
    return end < 0 ? 0 : static_cast<std::uint64_t>(end);
  }

 private:
  Descriptor descriptor_;
  const int atOnce_;  ///< how a read that must not wait is asked for: file systems in memory refuse RWF_NOWAIT
};

class LinuxWritableFile final : public WritableFile {
 public:
  explicit LinuxWritableFile(Descriptor descriptor) : descriptor_(std::move(descriptor)) {}

  IoResult writeAt(std::uint64_t offset, std::span<const std::byte> from) override {
    IoResult result = transferAll(offset, from.size(), [&](std::size_t at, std::size_t count, off_t position) {
      return ::pwrite(descriptor_.number(), from.data() + at, count, position);
    });
    if (result.count < from.size() && !result.error) result.error = std::make_error_code(std::errc::io_error);
    return result;
  }

  std::error_code reserve(std::uint64_t size) override {
    if (size == 0) return {};
    if (size > kLargestOffset) return std::make_error_code(std::errc::file_too_large);
    if (reservingWritesZeros()) return std::make_error_code(std::errc::operation_not_supported);
    while (::fallocate(descriptor_.number(), 0, 0, static_cast<off_t>(size)) != 0) {
      if (errno == EOPNOTSUPP || errno == ENOSYS) return std::make_error_code(std::errc::operation_not_supported);
      if (errno != EINTR) return lastError();
    }
    return {};
  }

  std::error_code truncate(std::uint64_t size) override {
    if (size > kLargestOffset) return std::make_error_code(std::errc::file_too_large);
    while (::ftruncate(descriptor_.number(), static_cast<off_t>(size)) != 0) {
      if (errno != EINTR) return lastError();
    }
    return {};
  }

  std::error_code writeOut(std::uint64_t offset, std::uint64_t size) override {
    return syncRange(offset, size, SYNC_FILE_RANGE_WAIT_BEFORE | SYNC_FILE_RANGE_WRITE | SYNC_FILE_RANGE_WAIT_AFTER);
  }

  std::error_code beginWriteOut(std::uint64_t offset, std::uint64_t size) override {
    return syncRange(offset, size, SYNC_FILE_RANGE_WRITE);
  }

  std::error_code flush() override {
    while (::fdatasync(descriptor_.number()) != 0) {
      if (errno == EINVAL || errno == EROFS) return {};  // a pipe or device has nothing to wait for
      if (errno != EINTR) return lastError();
    }
    return {};
  }

  std::error_code close() override { return descriptor_.close(); }

 private:
  [[nodiscard]] std::error_code syncRange(std::uint64_t offset, std::uint64_t size, unsigned steps) const {
    if (size == 0) return {};
    if (offset > kLargestOffset || size > kLargestOffset - offset)
      return std::make_error_code(std::errc::file_too_large);
    while (::sync_file_range(descriptor_.number(), static_cast<off_t>(offset), static_cast<off_t>(size), steps) != 0) {
      if (errno == ESPIPE || errno == EINVAL || errno == ENOSYS) return {};  // a pipe or device has nothing to wait for
      if (errno != EINTR) return lastError();
    }
    return {};
  }

  /// FAT knows no room without content: it would fill all of it with zeros, and everything would be written twice.
  [[nodiscard]] bool reservingWritesZeros() const {
    struct statfs status {};
    return ::fstatfs(descriptor_.number(), &status) == 0 && status.f_type == MSDOS_SUPER_MAGIC;
  }

  Descriptor descriptor_;
};

int openRetrying(const std::string& path, int flags) {
  int number = -1;
  do {
    number = ::open(path.c_str(), flags | O_CLOEXEC | O_NOCTTY);
  } while (number < 0 && errno == EINTR);
  return number;
}

}  // namespace

Opened<ReadableFile> LinuxFiles::openForReading(const std::string& path) {
  // O_NONBLOCK: opening a pipe must not wait for a writer. It changes nothing for a regular file.
  Descriptor descriptor(openRetrying(path, O_RDONLY | O_NONBLOCK));
  if (!descriptor.isOpen()) return {nullptr, lastError()};
  struct stat status {};
  if (::fstat(descriptor.number(), &status) != 0) return {nullptr, lastError()};
  if (S_ISDIR(status.st_mode)) return {nullptr, std::make_error_code(std::errc::is_a_directory)};
  return {std::make_unique<LinuxReadableFile>(std::move(descriptor)), {}};
}

Opened<WritableFile> LinuxFiles::openForWriting(const std::string& path) {
  const int number = openRetrying(path, O_WRONLY);
  if (number < 0) return {nullptr, lastError()};
  return {adoptForWriting(number), {}};
}

std::unique_ptr<WritableFile> adoptForWriting(int descriptor) {
  return std::make_unique<LinuxWritableFile>(Descriptor(descriptor));
}

}  // namespace zelvo::platform::linux_
