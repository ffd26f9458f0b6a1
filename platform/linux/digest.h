/// MD5 by OpenSSL.
#pragma once

#include "platform/digest.h"

namespace zelvo::platform::linux_ {

class LinuxDigest final : public Digest {
 public:
  [[nodiscard]] std::unique_ptr<RunningDigest> startMd5() override;
};

}  // namespace zelvo::platform::linux_
