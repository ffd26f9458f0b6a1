/// What zelvo-avi-player writes into its pipe: records of one size. Both sides are of one build and one machine, so
/// numbers are as the machine has them; the reading side believes none of them.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace zelvo::platform::linux_ {

enum class PlayerRecordKind : std::uint32_t {
  hello = 1,    ///< first: `a` kPlayerMagic, `b` kPlayerVersion, `flags` 1 when confined
  stream = 2,   ///< `a` PlayedKind, `b` width << 32 | height or rate << 32 | channels, `flags` 1: has a decoder, `text`
  packet = 3,   ///< `number`, `time`, `a` duration, `b` offset, `size`, `flags` 1: key, 2: decoded
  picture = 4,  ///< `number` of the packet, `a` PictureType, `flags` 1: key, 2: hurt
  sound = 5,    ///< `number`, `a` samples, `b` rate, `flags` 2: hurt
  fault = 6,    ///< `number`, `a` PlayFaultKind, `b` offset
  seek = 7,     ///< `time` target, `a` time where it landed, `b` offset there, `number` SeekEnd
  alive = 8,    ///< nothing new; the player works
  noFilm = 9,   ///< last, when no film is recognised
  end = 10,     ///< last, when all is done
};

inline constexpr std::uint64_t kPlayerMagic = 0x7a70'6c61'7972'3031;
inline constexpr std::uint64_t kPlayerVersion = 2;

struct PlayerRecord {
  static constexpr std::uint32_t kFlagOne = 1;
  static constexpr std::uint32_t kFlagTwo = 2;

  PlayerRecordKind kind = PlayerRecordKind::alive;
  std::uint32_t stream = 0;
  std::uint32_t flags = 0;
  std::uint32_t size = 0;
  std::uint64_t number = 0;
  std::int64_t time = 0;
  std::uint64_t a = 0;
  std::uint64_t b = 0;
  std::array<char, 16> text{};  ///< ended by its size or a zero
};

static_assert(sizeof(PlayerRecord) == 64 && std::is_trivially_copyable_v<PlayerRecord>);

}  // namespace zelvo::platform::linux_
