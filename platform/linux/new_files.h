/// Files under new names on Linux.
#pragma once

#include "platform/new_files.h"

namespace zelvo::platform::linux_ {

class LinuxNewFiles final : public NewFiles {
 public:
  [[nodiscard]] Opened<WritableFile> createNewFile(const std::string& path) override;
  [[nodiscard]] std::unique_ptr<FileLock> lockNewFile(const std::string& path) override;
  [[nodiscard]] std::error_code renameToNew(const std::string& from, const std::string& to) override;
  [[nodiscard]] std::error_code setPermissions(const std::string& path, std::uint32_t permissions) override;
  [[nodiscard]] std::error_code flushFolder(const std::string& folder) override;
};

}  // namespace zelvo::platform::linux_
