/// Bits of a payload from the top of each byte down, as the codecs' headers are written.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace zelvo::salvage {

/// Behind the end all bits are zero, and `isPastEnd` says so. Thread: one.
class BitReader {
 public:
  explicit BitReader(std::span<const std::byte> bytes) : bytes_(bytes) {}

  /// The next `count` bits, 0 to 32, the first one highest.
  std::uint32_t read(unsigned count) {
    std::uint32_t value = 0;
    for (; count > 0; --count) value = value << 1U | bit();
    return value;
  }
  void skip(std::size_t count) { at_ += count; }
  [[nodiscard]] bool isPastEnd() const { return at_ > bytes_.size() * 8; }

 private:
  std::uint32_t bit() {
    const std::size_t byte = at_ / 8;
    const auto shift = static_cast<unsigned>(7 - at_ % 8);
    ++at_;
    return byte < bytes_.size() ? static_cast<std::uint32_t>(bytes_[byte]) >> shift & 1U : 0;
  }

  std::span<const std::byte> bytes_;
  std::size_t at_ = 0;
};

}  // namespace zelvo::salvage
