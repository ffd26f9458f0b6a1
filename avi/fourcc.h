/// Four-character codes (FOURCC): the identifiers of the chunks, lists and forms of an AVI file, and of its codecs.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "avi/byte_order.h"

namespace zelvo::avi {

/// Four bytes in file order, compared as one value.
struct FourCC {
  std::uint32_t value = 0;  ///< the four bytes read as a little-endian number

  constexpr FourCC() = default;
  /// From a literal of exactly four characters: FourCC("00dc").
  constexpr FourCC(const char (&text)[5])  // NOLINT: stands for a literal
      : value(loadLittleEndian32(std::array{static_cast<std::byte>(text[0]), static_cast<std::byte>(text[1]),
                                            static_cast<std::byte>(text[2]), static_cast<std::byte>(text[3])})) {}
  /// From the first four of `bytes`, which must hold four.
  static constexpr FourCC at(std::span<const std::byte> bytes) {
    FourCC code;
    code.value = loadLittleEndian32(bytes.first<4>());
    return code;
  }
  [[nodiscard]] constexpr std::array<std::byte, 4> bytes() const {
    std::array<std::byte, 4> out{};
    storeLittleEndian32(out, value);
    return out;
  }
  friend constexpr bool operator==(FourCC, FourCC) = default;
};

inline constexpr FourCC kRiff{"RIFF"};
inline constexpr FourCC kAvi{"AVI "};
inline constexpr FourCC kList{"LIST"};
inline constexpr FourCC kHdrl{"hdrl"};
inline constexpr FourCC kAvih{"avih"};
inline constexpr FourCC kStrl{"strl"};
inline constexpr FourCC kStrh{"strh"};
inline constexpr FourCC kStrf{"strf"};
inline constexpr FourCC kIndx{"indx"};
inline constexpr FourCC kMovi{"movi"};
inline constexpr FourCC kIx00{"ix00"};
inline constexpr FourCC kIx01{"ix01"};
inline constexpr FourCC kVids{"vids"};
inline constexpr FourCC kAuds{"auds"};
inline constexpr FourCC kJunk{"JUNK"};
inline constexpr FourCC k00db{"00db"};
inline constexpr FourCC k00dc{"00dc"};
inline constexpr FourCC k00wb{"00wb"};
inline constexpr FourCC k01wb{"01wb"};

}  // namespace zelvo::avi
