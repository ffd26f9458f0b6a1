/// Reachability by a look-up in the kernel's routes. No packet is sent; it takes a few milliseconds.
/// Decision: update, Reachability is a route look-up
#pragma once

#include "platform/reachability.h"

namespace zelvo::platform::linux_ {

class LinuxReachability final : public Reachability {
 public:
  [[nodiscard]] std::unique_ptr<ReachabilityReference> createWithAddress(const SocketAddress& address) override;
};

}  // namespace zelvo::platform::linux_
