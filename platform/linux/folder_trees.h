/// Files and folders copied and removed with all they hold, on Linux.
/// Decision: update, Trees stay within their mount
#pragma once

#include "platform/folder_trees.h"

namespace zelvo::platform::linux_ {

class LinuxFolderTrees final : public FolderTrees {
 public:
  [[nodiscard]] std::error_code copy(const std::string& from, const std::string& to) override;
  [[nodiscard]] std::error_code remove(const std::string& path) override;
};

}  // namespace zelvo::platform::linux_
