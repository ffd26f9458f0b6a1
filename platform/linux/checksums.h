/// SHA-256 by OpenSSL.
#pragma once

#include "platform/checksums.h"

namespace zelvo::platform::linux_ {

class LinuxChecksums final : public Checksums {
 public:
  [[nodiscard]] std::unique_ptr<RunningChecksum> startSha256() override;
};

}  // namespace zelvo::platform::linux_
