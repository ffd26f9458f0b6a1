#include "platform/linux/scratch_paths.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <fstream>
#include <utility>

#include "platform/paths.h"

namespace zelvo::platform::linux_ {

namespace {

constexpr std::array kNames = {"testfile1.avi", "testfile2.avi"};
constexpr const char* kPrivateFolder = "zelvo-avi-repair";
constexpr int kMaxSlots = 256;

ScratchPair pairIn(const std::string& holder, const std::string& known, bool isShared) {
  return {holder + "/" + kNames[0], holder + "/" + kNames[1], known, isShared};
}

/// Makes a folder of this user's, and those above it that are missing. False, with errno, when it is not there
/// afterwards.
bool makeFolders(const std::string& path) {
  if (::mkdir(path.c_str(), 0700) == 0) return true;
  if (errno == EEXIST) return true;  // whoever opens it finds out what it is
  if (errno != ENOENT || path.find('/', 1) == std::string::npos) return false;
  return makeFolders(folderOf(path)) && (::mkdir(path.c_str(), 0700) == 0 || errno == EEXIST);
}

/// A whole path, which the file holds in its first line; empty without one.
std::string firstLine(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::string line;
  return std::getline(file, line) && line.starts_with('/') ? line : std::string();
}

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
  /// True when the folder that `status` tells of is this one.
  [[nodiscard]] bool is(const struct stat& status) const {
    struct stat own {};
    return ::fstat(number_, &own) == 0 && own.st_dev == status.st_dev && own.st_ino == status.st_ino;
  }
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

/// Opens a folder that only this user may enter, and makes it when it is not there. Nothing, with errno, when a link or
/// another user's folder stands in its place. Where the user has chosen the disk, one on which only this user may write
/// is enough: many disks know no such modes.
std::unique_ptr<HeldFolder> openPrivateFolder(int parent, const char* name, bool isChosen) {
  if (::mkdirat(parent, name, 0700) != 0 && errno != EEXIST) return nullptr;
  auto folder = openFolder(parent, name, O_NOFOLLOW);
  struct stat status {};
  if (!folder->isOpen() || ::fstat(folder->number(), &status) != 0) return nullptr;
  if (status.st_uid != ::geteuid()) {
    errno = EPERM;
    return nullptr;
  }
  if ((status.st_mode & 07777U) == 0700 || ::fchmod(folder->number(), 0700) == 0) return folder;
  constexpr unsigned kOthersMayWrite = 022;
  return isChosen && (status.st_mode & kOthersMayWrite) == 0 ? std::move(folder) : nullptr;
}

}  // namespace

struct LinuxScratchPaths::Held {
  std::string path;
  std::unique_ptr<HeldFolder> folder;
};

LinuxScratchPaths::LinuxScratchPaths(std::string sharedFolder, std::string cacheFolder, std::string choiceFile)
    : sharedFolder_(std::move(sharedFolder)),
      cacheFolder_(std::move(cacheFolder)),
      choiceFile_(std::move(choiceFile)),
      chosenFolder_(choiceFile_.empty() ? std::string() : firstLine(choiceFile_)) {}

LinuxScratchPaths::~LinuxScratchPaths() = default;

std::optional<ScratchPair> LinuxScratchPaths::claim() {
  auto shared = openFolder(AT_FDCWD, sharedFolder_.c_str(), 0);
  if (shared->isOpen() && ::faccessat(AT_FDCWD, sharedFolder_.c_str(), W_OK | X_OK, AT_EACCESS) == 0 &&
      shared->lock()) {
    held_.push_back({sharedFolder_, std::move(shared)});
    return pairIn(sharedFolder_, sharedFolder_, true);
  }
  return claimAnother();
}

std::optional<ScratchPair> LinuxScratchPaths::claimAnother() {
  // The disk of a chosen folder may not be there today, so nothing is made in its place.
  if (!chosenFolder_.empty()) {
    if (auto pair = holdSlotBelow(chosenFolder_, true)) return pair;
  }
  if (!makeFolders(cacheFolder_)) return refused(cacheFolder_);
  return holdSlotBelow(cacheFolder_, false);
}

std::optional<ScratchPair> LinuxScratchPaths::moveTo(const std::string& folder) {
  auto pair = holdSlotBelow(folder, true);
  if (!pair) return std::nullopt;
  chosenFolder_ = folder;
  remember();
  return pair;
}

std::vector<std::string> LinuxScratchPaths::privateFolders() const {
  std::vector<std::string> folders;
  for (const std::string& base : {chosenFolder_, cacheFolder_}) {
    if (!base.empty()) folders.push_back(base + "/" + kPrivateFolder);
  }
  return folders;
}

std::nullopt_t LinuxScratchPaths::refused(const std::string& base) {
  obstacle_ = {base, std::error_code(errno, std::generic_category())};
  return std::nullopt;
}

std::optional<ScratchPair> LinuxScratchPaths::holdSlotBelow(const std::string& base, bool isChosen) {
  const auto above = openFolder(AT_FDCWD, base.c_str(), 0);
  if (!above->isOpen()) return refused(base);
  const auto folder = openPrivateFolder(above->number(), kPrivateFolder, isChosen);
  if (!folder) return refused(base);
  for (int number = 1; number <= kMaxSlots; ++number) {
    const std::string name = "slot" + std::to_string(number);
    auto slot = openPrivateFolder(folder->number(), name.c_str(), isChosen);
    if (!slot || !slot->lock()) continue;
    // What an instance left that was killed.
    for (const char* leftover : kNames) ::unlinkat(slot->number(), leftover, 0);
    const std::string path = base + "/" + kPrivateFolder + "/" + name;
    std::erase_if(held_, [&path](const Held& one) { return one.path == path; });  // one that vanished
    held_.push_back({path, std::move(slot)});
    return pairIn(path, base, false);
  }
  return refused(base);
}

void LinuxScratchPaths::remember() {
  if (choiceFile_.empty() || !makeFolders(folderOf(choiceFile_))) return;
  // A choice that cannot be kept holds for this time only.
  const std::string fresh = choiceFile_ + ".new";
  std::ofstream file(fresh, std::ios::binary | std::ios::trunc);
  file << chosenFolder_ << '\n';
  file.close();
  if (file) static_cast<void>(std::rename(fresh.c_str(), choiceFile_.c_str()));
}

bool LinuxScratchPaths::mayWrite(const std::string& path, const std::optional<std::string>& input) {
  const std::string folder = folderOf(path);
  struct stat above {};
  if (::stat(folder.c_str(), &above) != 0) return false;
  if (::faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) != 0) return false;
  for (const Held& one : held_) {
    // Removed and made again, it is perhaps held by another instance.
    if (one.path == folder && !one.folder->is(above)) return false;
  }
  struct stat there {};
  if (::lstat(path.c_str(), &there) != 0) return errno == ENOENT;
  if (!S_ISREG(there.st_mode) || there.st_uid != ::geteuid()) return false;
  struct stat wanted {};
  if (!input || ::stat(input->c_str(), &wanted) != 0) return true;
  return wanted.st_dev != there.st_dev || wanted.st_ino != there.st_ino;
}

}  // namespace zelvo::platform::linux_
