#include "deep/scratch_folder.h"

#include "platform/paths.h"

namespace zelvo::deep {

namespace {

constexpr std::string_view kBeginning = "deep-";
constexpr std::string_view kLock = "lock";
/// Entering, reading and writing by the owner alone.
constexpr std::uint32_t kOwnerOnly = 0700;
/// A program has one folder, and a second when somebody has taken the first one's lock away.
constexpr int kMaxTries = 16;
/// From this try on a folder is taken without its lock: the file system knows none.
constexpr int kUnlockedFrom = 4;

/// Makes a folder and those above it that are missing.
std::error_code makeFolders(platform::FileManager& fileManager, const std::string& folder) {
  if (fileManager.exists(folder)) return {};
  const std::string above = platform::folderOf(folder);
  if (above != folder) {
    if (const std::error_code error = makeFolders(fileManager, above)) return error;
  }
  return fileManager.createFolder(folder);
}

/// Locks a folder that nobody holds; null when somebody does.
std::unique_ptr<platform::FileLock> takeOver(const DeepServices& services, const std::string& folder) {
  const std::string path = platform::pathIn(folder, kLock);
  if (services.fileManager.exists(path)) return services.lockedFiles.lockFile(path);
  // Whoever made it did not live to lock it. One that lives yet sees the file, and takes another folder.
  if (!services.newFiles.createNewFile(path).file) return nullptr;
  return services.newFiles.lockNewFile(path);
}

}  // namespace

ScratchFolder::~ScratchFolder() {
  if (!own_.empty()) static_cast<void>(services_.fileManager.remove(own_));
}

std::error_code ScratchFolder::makeOwnIn(const std::string& base, bool makesAbove) {
  if (!services_.pathProbe.answers({base})) return std::make_error_code(std::errc::timed_out);
  if (!services_.fileManager.exists(base)) {
    const std::error_code error =
        makesAbove ? makeFolders(services_.fileManager, base) : services_.fileManager.createFolder(base);
    if (error) return error;
    static_cast<void>(services_.newFiles.setPermissions(base, kOwnerOnly));
  }
  std::error_code error = std::make_error_code(std::errc::file_exists);
  for (int number = 1; number <= kMaxTries; ++number) {
    const std::string folder = platform::pathIn(
        base, std::string(kBeginning) + std::to_string(services_.process) + "-" + std::to_string(number));
    if (services_.fileManager.exists(folder)) continue;
    if ((error = services_.fileManager.createFolder(folder))) return error;
    static_cast<void>(services_.newFiles.setPermissions(folder, kOwnerOnly));
    const std::string path = platform::pathIn(folder, kLock);
    error = services_.newFiles.createNewFile(path).error;
    if (!error) {
      lock_ = services_.newFiles.lockNewFile(path);
      // Whoever removes what is left behind may have taken it for that before it was locked.
      if (lock_ || number >= kUnlockedFrom) {
        own_ = folder;
        return {};
      }
    }
    if (error && error != std::errc::file_exists && error != std::errc::no_such_file_or_directory) return error;
  }
  return error;
}

ScratchFolder::Made ScratchFolder::makeFolder() {
  Made made;
  // Its disk may be gone by now, or somebody may have tidied up.
  if (!own_.empty() && !(services_.pathProbe.answers({own_}) && services_.fileManager.exists(own_))) {
    own_.clear();
    lock_.reset();
  }
  if (own_.empty()) {
    const std::vector<std::string> bases = services_.scratchFolders();
    for (const std::string& base : bases) {
      made.tried = base;
      // The disk of a chosen folder may not be there today, so nothing is made in its place.
      if (!(made.error = makeOwnIn(base, base == bases.back()))) break;
    }
  }
  if (own_.empty()) {
    if (!made.error) made.error = std::make_error_code(std::errc::no_such_file_or_directory);
    return made;
  }
  made.tried = platform::pathIn(own_, std::to_string(++made_));
  made.error = services_.fileManager.createFolder(made.tried);
  if (!made.error) made.path = made.tried;
  return made;
}

void ScratchFolder::remove(const std::string& folder) {
  if (folder.empty()) return;
  // What cannot be removed now, goes with the folder around it. A large film takes a while to go.
  const auto removing = [&fileManager = services_.fileManager, folder] {
    static_cast<void>(fileManager.remove(folder));
  };
  if (!services_.workers.start(std::make_shared<platform::CancelMark>(), removing)) removing();
}

bool ScratchFolder::removeLeftovers(const DeepServices& services, const std::vector<std::string>& bases) {
  bool isClean = true;
  for (const std::string& base : bases) {
    if (!services.pathProbe.answers({base})) continue;
    for (const std::string& name : services.fileManager.list(base)) {
      if (!name.starts_with(kBeginning)) continue;
      const std::string folder = platform::pathIn(base, name);
      const auto there = services.fileManager.attributes(folder);
      if (!there || there->kind != platform::FileAttributes::Kind::folder) continue;
      // The lock is kept until the folder is gone, so nobody else takes it for a living one.
      if (const auto lock = takeOver(services, folder)) {
        static_cast<void>(services.fileManager.remove(folder));
      } else {
        isClean = false;
      }
    }
  }
  return isClean;
}

}  // namespace zelvo::deep
