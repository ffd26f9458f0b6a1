#include "platform/linux/locked_files.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <thread>
#include <utility>

namespace zelvo::platform::linux_ {

namespace {

int openAgain(const std::string& path, int flags) {
  for (;;) {
    const int number = ::open(path.c_str(), flags | O_CLOEXEC | O_NOCTTY | O_NONBLOCK, 0666);
    if (number >= 0 || errno != EINTR) return number;
  }
}

bool isRegular(int number, struct stat& status) { return ::fstat(number, &status) == 0 && S_ISREG(status.st_mode); }

/// Whether the path still names the open file: somebody else may have removed or replaced it.
bool isStillAt(const std::string& path, const struct stat& file) {
  struct stat there {};
  return ::stat(path.c_str(), &there) == 0 && there.st_dev == file.st_dev && there.st_ino == file.st_ino;
}

class LinuxLockedText final : public LockedText {
 public:
  explicit LinuxLockedText(Descriptor file) : lock_(std::move(file)) {}

  std::uint64_t size() override {
    struct stat status {};
    return ::fstat(lock_.number(), &status) == 0 ? static_cast<std::uint64_t>(status.st_size) : 0;
  }

  IoResult readAt(std::uint64_t offset, std::span<std::byte> into) override {
    IoResult result;
    while (result.count < into.size()) {
      const ssize_t count = ::pread(lock_.number(), into.data() + result.count, into.size() - result.count,
                                    static_cast<off_t>(offset + result.count));
      if (count == 0) break;
      if (count > 0) {
        result.count += static_cast<std::size_t>(count);
      } else if (errno != EINTR) {
        result.error = lastError();
        break;
      }
    }
    return result;
  }

  std::error_code append(std::string_view text) override {
    const std::uint64_t begin = size();
    std::uint64_t at = begin;
    while (!text.empty()) {
      const ssize_t count = ::pwrite(lock_.number(), text.data(), text.size(), static_cast<off_t>(at));
      if (count < 0 && errno == EINTR) continue;
      if (count <= 0) {
        const std::error_code error = count < 0 ? lastError() : std::make_error_code(std::errc::io_error);
        static_cast<void>(cutTo(begin));
        return error;
      }
      at += static_cast<std::uint64_t>(count);
      text.remove_prefix(static_cast<std::size_t>(count));
    }
    while (::fdatasync(lock_.number()) != 0) {
      if (errno == EINVAL) return {};  // a file system that cannot do it
      if (errno != EINTR) return lastError();
    }
    return {};
  }

  std::error_code cutTo(std::uint64_t length) override {
    if (length >= size()) return {};
    return ::ftruncate(lock_.number(), static_cast<off_t>(length)) == 0 ? std::error_code{} : lastError();
  }

  const FileLock& lock() const override { return lock_; }

 private:
  LinuxFileLock lock_;
};

}  // namespace

LockedFiles::OpenedText LinuxLockedFiles::openText(const std::string& path, std::chrono::milliseconds most,
                                                   const std::function<bool()>& goesOn) {
  using Clock = std::chrono::steady_clock;
  const auto latest = Clock::now() + most;
  for (;;) {
    Descriptor file(openAgain(path, O_RDWR | O_CREAT));
    if (!file.isOpen()) return {nullptr, lastError()};
    struct stat status {};
    if (!isRegular(file.number(), status)) return {nullptr, std::make_error_code(std::errc::invalid_argument)};
    if (::flock(file.number(), LOCK_EX | LOCK_NB) == 0) {
      if (isStillAt(path, status)) return {std::make_unique<LinuxLockedText>(std::move(file)), {}};
      continue;
    }
    if (errno != EWOULDBLOCK && errno != EINTR) return {nullptr, lastError()};
    if (Clock::now() >= latest || !goesOn()) return {nullptr, std::make_error_code(std::errc::timed_out)};
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
}

std::unique_ptr<FileLock> LinuxLockedFiles::lockFile(const std::string& path) {
  // Where files are locked over a network, an exclusive lock wants a file that is open for writing.
  Descriptor file(openAgain(path, O_RDWR | O_NOFOLLOW));
  struct stat status {};
  if (!file.isOpen() || !isRegular(file.number(), status)) return nullptr;
  if (::flock(file.number(), LOCK_EX | LOCK_NB) != 0 || !isStillAt(path, status)) return nullptr;
  return std::make_unique<LinuxFileLock>(std::move(file));
}

}  // namespace zelvo::platform::linux_
