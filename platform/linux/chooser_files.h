/// What a chooser of files asks of Linux.
#pragma once

#include "platform/chooser_files.h"

namespace zelvo::platform::linux_ {

class LinuxChooserFiles final : public ChooserFiles {
 public:
  [[nodiscard]] PathKind kindOf(const std::string& path) override;
  [[nodiscard]] bool mayRead(const std::string& path) override;
  [[nodiscard]] bool mayMakeEntriesIn(const std::string& folder) override;
  [[nodiscard]] std::error_code makeFolder(const std::string& path) override;
  [[nodiscard]] FolderListing read(const std::string& folder, const FileFilter& filter,
                                   const std::atomic<bool>& abandoned) override;
};

}  // namespace zelvo::platform::linux_
