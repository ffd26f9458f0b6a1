/// Files by position on Linux. Offsets and sizes are in bytes.
#pragma once

#include "platform/files.h"

namespace zelvo::platform::linux_ {

class LinuxFiles final : public Files {
 public:
  [[nodiscard]] Opened<ReadableFile> openForReading(const std::string& path) override;
  [[nodiscard]] Opened<WritableFile> openForWriting(const std::string& path) override;
};

}  // namespace zelvo::platform::linux_
