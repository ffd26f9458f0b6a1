#include "platform/linux/linux_scratch_paths.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <utility>

namespace zelvo::platform::linux_ {

namespace {

constexpr std::array kNames = {"testfile1.avi", "testfile2.avi"};
constexpr const char* kPrivateFolder = "zelvo-avi-repair";
constexpr int kMostSlots = 256;

ScratchPair pairIn(const std::string& folder) { return {folder + "/" + kNames[0], folder + "/" + kNames[1]}; }

}  // namespace

class HeldFolder {
 public:
  explicit HeldFolder(int number) : number_(number) {}
  ~HeldFolder() {
    if (number_ >= 0) ::close(number_);
  }
  HeldFolder(const HeldFolder&) = delete;
  HeldFolder& operator=(const HeldFolder&) = delete;

  [[nodiscard]] int number() const { return number_; }
  [[nodiscard]] bool isOpen() const { return number_ >= 0; }
  /// False when another process holds it, or the file system has no such locks.
  [[nodiscard]] bool lock() const {
    while (::flock(number_, LOCK_EX | LOCK_NB) != 0) {
      if (errno != EINTR) return false;
    }
    return true;
  }

 private:
  int number_;
};

namespace {

std::unique_ptr<HeldFolder> openFolder(int parent, const char* name, int flags) {
  return std::make_unique<HeldFolder>(::openat(parent, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC | flags));
}

/// Opens a folder that only this user may enter, and makes it when it is not there. Nothing when a link or another
/// user's folder stands in its place.
std::unique_ptr<HeldFolder> openPrivateFolder(int parent, const char* name) {
  if (::mkdirat(parent, name, 0700) != 0 && errno != EEXIST) return nullptr;
  auto folder = openFolder(parent, name, O_NOFOLLOW);
  struct stat status {};
  if (!folder->isOpen() || ::fstat(folder->number(), &status) != 0) return nullptr;
  if (status.st_uid != ::geteuid()) return nullptr;
  if ((status.st_mode & 07777U) != 0700 && ::fchmod(folder->number(), 0700) != 0) return nullptr;
  return folder;
}

}  // namespace

LinuxScratchPaths::LinuxScratchPaths(std::string sharedFolder, std::string cacheFolder)
    : sharedFolder_(std::move(sharedFolder)), cacheFolder_(std::move(cacheFolder)) {}

LinuxScratchPaths::~LinuxScratchPaths() = default;

std::optional<ScratchPair> LinuxScratchPaths::claim() {
  auto shared = openFolder(AT_FDCWD, sharedFolder_.c_str(), 0);
  if (shared->isOpen() && ::faccessat(AT_FDCWD, sharedFolder_.c_str(), W_OK | X_OK, AT_EACCESS) == 0 &&
      shared->lock()) {
    held_.push_back(std::move(shared));
    return pairIn(sharedFolder_);
  }
  return claimAnother();
}

std::optional<ScratchPair> LinuxScratchPaths::claimAnother() {
  if (::mkdir(cacheFolder_.c_str(), 0700) != 0 && errno != EEXIST) return std::nullopt;
  const auto cache = openFolder(AT_FDCWD, cacheFolder_.c_str(), 0);
  if (!cache->isOpen()) return std::nullopt;
  const auto folder = openPrivateFolder(cache->number(), kPrivateFolder);
  if (!folder) return std::nullopt;
  for (int number = 1; number <= kMostSlots; ++number) {
    const std::string name = "slot" + std::to_string(number);
    auto slot = openPrivateFolder(folder->number(), name.c_str());
    if (!slot || !slot->lock()) continue;
    // What an instance left that was killed.
    for (const char* leftover : kNames) ::unlinkat(slot->number(), leftover, 0);
    held_.push_back(std::move(slot));
    return pairIn(cacheFolder_ + "/" + kPrivateFolder + "/" + name);
  }
  return std::nullopt;
}

bool LinuxScratchPaths::mayWrite(const std::string& path, const std::optional<std::string>& input) {
  struct stat there {};
  if (::lstat(path.c_str(), &there) != 0) return errno == ENOENT;
  if (!S_ISREG(there.st_mode) || there.st_uid != ::geteuid()) return false;
  struct stat wanted {};
  if (!input || ::stat(input->c_str(), &wanted) != 0) return true;
  return wanted.st_dev != there.st_dev || wanted.st_ino != there.st_ino;
}

}  // namespace zelvo::platform::linux_
