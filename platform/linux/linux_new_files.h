/// Files under new names on Linux.
#pragma once

#include "platform/new_files.h"

namespace zelvo::platform::linux_ {

class LinuxNewFiles final : public NewFiles {
 public:
  [[nodiscard]] std::error_code createNewFile(const std::string& path) override;
  [[nodiscard]] std::error_code renameToNew(const std::string& from, const std::string& to) override;
};

}  // namespace zelvo::platform::linux_
