/// Files in memory with folders and links, whose changes are written into the list of events.
#pragma once

#include <map>
#include <set>
#include <string>

#include "platform/headless/events.h"
#include "tests/support/memory_files.h"

namespace zelvo::tests {

/// Thread: any, once `links` and `refusedFolders` are set.
class RecordingFileManager final : public platform::FileManager {
 public:
  RecordingFileManager(MemoryFiles& files, platform::headless::Events& events) : files_(files), events_(events) {}

  /// Symbolic links with their targets.
  std::map<std::string, std::string> links;
  /// Folders that cannot be made.
  std::set<std::string> refusedFolders;
  [[nodiscard]] bool hasFolder(const std::string& path) const {
    const std::lock_guard lock(mutex_);
    return folders_.contains(path);
  }

  std::optional<platform::FileAttributes> attributes(const std::string& path) override {
    if (const auto link = links.find(path); link != links.end()) {
      return platform::FileAttributes{platform::FileAttributes::Kind::symbolicLink, link->second.size(), 1, 1};
    }
    if (hasFolder(path)) return platform::FileAttributes{platform::FileAttributes::Kind::folder, 4096, 1, 2};
    return files_.attributes(path);
  }
  std::optional<platform::FileAttributes> attributesFollowingLinks(const std::string& path) override {
    const auto link = links.find(path);
    return attributes(link == links.end() ? path : link->second);
  }
  std::optional<std::uint64_t> freeSpace(const std::string& path) override {
    if (refusedFolders.contains(path)) return std::nullopt;
    return files_.freeSpace(path);
  }
  bool exists(const std::string& path) override { return attributesFollowingLinks(path).has_value(); }
  std::error_code createFile(const std::string& path) override {
    events_.add("createFile(" + path + ")");
    return files_.createFile(path);
  }
  std::error_code createFolder(const std::string& path) override {
    events_.add("createFolder(" + path + ")");
    if (refusedFolders.contains(path)) return std::make_error_code(std::errc::permission_denied);
    const std::lock_guard lock(mutex_);
    folders_.insert(path);
    return {};
  }
  std::error_code rename(const std::string& from, const std::string& to) override { return files_.rename(from, to); }
  std::error_code remove(const std::string& path) override {
    events_.add("remove(" + path + ")");
    return files_.remove(path);
  }
  std::vector<std::string> list(const std::string& folder) override { return files_.list(folder); }
  std::optional<std::string> linkTarget(const std::string&) override { return std::nullopt; }
  bool isWritable(const std::string& path) override { return files_.isWritable(path); }
  bool isDeletable(const std::string& path) override { return files_.isDeletable(path); }

 private:
  MemoryFiles& files_;
  platform::headless::Events& events_;
  mutable std::mutex mutex_;
  std::set<std::string> folders_;
};

}  // namespace zelvo::tests
