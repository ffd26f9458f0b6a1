/// Paths on Linux: attributes, free space, creating, renaming, removing, listing.
#pragma once

#include "platform/file_manager.h"

namespace zelvo::platform::linux_ {

class LinuxFileManager final : public FileManager {
 public:
  [[nodiscard]] std::optional<FileAttributes> attributes(const std::string& path) override;
  [[nodiscard]] std::optional<FileAttributes> attributesFollowingLinks(const std::string& path) override;
  [[nodiscard]] std::optional<std::uint64_t> freeSpace(const std::string& path) override;
  [[nodiscard]] bool exists(const std::string& path) override;
  [[nodiscard]] std::error_code createFile(const std::string& path) override;
  [[nodiscard]] std::error_code createFolder(const std::string& path) override;
  [[nodiscard]] std::error_code rename(const std::string& from, const std::string& to) override;
  [[nodiscard]] std::error_code remove(const std::string& path) override;
  [[nodiscard]] std::vector<std::string> list(const std::string& folder) override;
  [[nodiscard]] std::optional<std::vector<std::string>> listReadable(const std::string& folder) override;
  [[nodiscard]] std::optional<std::string> linkTarget(const std::string& path) override;
  [[nodiscard]] bool isWritable(const std::string& path) override;
  [[nodiscard]] bool isDeletable(const std::string& path) override;
};

}  // namespace zelvo::platform::linux_
