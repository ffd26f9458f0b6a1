#include "platform/checksums.h"

#include <string_view>

namespace zelvo::platform {

std::string hexOf(const Sha256& checksum) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string hex;
  for (const std::uint8_t byte : checksum) {
    hex += kDigits[byte >> 4U];
    hex += kDigits[byte & 15U];
  }
  return hex;
}

}  // namespace zelvo::platform
