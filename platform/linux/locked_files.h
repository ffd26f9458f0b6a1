/// Locks of whole files (flock). They belong to the open file, so a program that was given its descriptor holds them
/// too.
#pragma once

#include "platform/linux/descriptor.h"
#include "platform/locked_files.h"

namespace zelvo::platform::linux_ {

class LinuxFileLock final : public FileLock {
 public:
  explicit LinuxFileLock(Descriptor file) : file_(std::move(file)) {}
  [[nodiscard]] int number() const { return file_.number(); }

 private:
  Descriptor file_;
};

class LinuxLockedFiles final : public LockedFiles {
 public:
  [[nodiscard]] OpenedText openText(const std::string& path, std::chrono::milliseconds most,
                                    const std::function<bool()>& goesOn) override;
  [[nodiscard]] std::unique_ptr<FileLock> lockFile(const std::string& path) override;
};

}  // namespace zelvo::platform::linux_
