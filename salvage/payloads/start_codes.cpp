#include "salvage/payloads/start_codes.h"

#include <algorithm>

#include "salvage/payloads/bit_reader.h"

namespace zelvo::salvage {

std::optional<StartCodes::Code> StartCodes::next() {
  while (bytes_.size() - at_ >= 4) {
    // The third byte tells how far the next code can be: only after a zero or a one it may be near.
    const std::byte third = bytes_[at_ + 2];
    if (third > std::byte{1}) {
      at_ += 3;
    } else if (third == std::byte{1} && bytes_[at_] == std::byte{0} && bytes_[at_ + 1] == std::byte{0}) {
      const Code code{static_cast<unsigned>(bytes_[at_ + 3]), at_, bytes_.subspan(at_ + 4)};
      at_ += 4;
      return code;
    } else {
      ++at_;
    }
  }
  at_ = bytes_.size();
  return std::nullopt;
}

Units::Units(std::span<const std::byte> bytes) : bytes_(bytes), codes_(bytes) {
  if (bytes.size() < 4) return;
  const std::uint32_t first = BitReader(bytes).read(32);
  hasCodes_ = first == 1 || first >> 8U == 1;
}

std::optional<std::span<const std::byte>> Units::next() {
  if (hasCodes_) {
    const auto code = codes_.next();
    if (!code) return std::nullopt;
    return bytes_.subspan(code->offset + 3);
  }
  if (bytes_.size() - at_ < 5) return std::nullopt;
  const std::uint32_t size = BitReader(bytes_.subspan(at_)).read(32);
  const std::span<const std::byte> rest = bytes_.subspan(at_ + 4);
  // Longer than any picture: no length.
  if (size == 0 || size >= 1U << 28U) return std::nullopt;
  const std::size_t held = std::min<std::size_t>(size, rest.size());
  at_ += 4 + held;
  return rest.first(held);
}

}  // namespace zelvo::salvage
