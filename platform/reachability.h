/// Whether an address of the network can be reached from here, as the system's routes tell it. Nothing is sent.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

namespace zelvo::platform {

inline constexpr std::uint8_t kSocketAddressLength = 16;
inline constexpr std::uint8_t kFamilyInternet = 2;

/// An IPv4 socket address.
struct SocketAddress {
  std::uint8_t length = 0;  ///< of this structure, in bytes
  std::uint8_t family = 0;
  std::uint16_t port = 0;
  std::array<std::uint8_t, 4> address{};
  std::array<std::uint8_t, 8> zero{};
};

/// Bits of the flag word.
inline constexpr std::uint32_t kReachable = 0x2;
inline constexpr std::uint32_t kConnectionRequired = 0x4;

/// One address that can be asked about.
class ReachabilityReference {
 public:
  virtual ~ReachabilityReference() = default;
  /// The flag word as it is now; nothing when it cannot be told.
  [[nodiscard]] virtual std::optional<std::uint32_t> flags() = 0;
};

/// Thread: any.
class Reachability {
 public:
  virtual ~Reachability() = default;
  /// The zero address stands for the network as a whole. Null when no reference can be made for the address.
  [[nodiscard]] virtual std::unique_ptr<ReachabilityReference> createWithAddress(const SocketAddress& address) = 0;
};

}  // namespace zelvo::platform
