/// Files by position on Linux. Offsets and sizes are in bytes.
#pragma once

#include <memory>

#include "platform/files.h"

namespace zelvo::platform::linux_ {

class LinuxFiles final : public Files {
 public:
  [[nodiscard]] Opened<ReadableFile> openForReading(const std::string& path) override;
  [[nodiscard]] Opened<WritableFile> openForWriting(const std::string& path) override;
};

/// A file that the system has opened for writing, as one of ours, which closes it.
[[nodiscard]] std::unique_ptr<WritableFile> adoptForWriting(int descriptor);

}  // namespace zelvo::platform::linux_
