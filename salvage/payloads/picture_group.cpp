#include "salvage/payloads/picture_group.h"

#include "salvage/payloads/bit_reader.h"
#include "salvage/payloads/start_codes.h"

namespace zelvo::salvage {

namespace {

constexpr std::uint32_t kSecondsADay = 24 * 3600;

/// time_code in pictures; nothing when it is none.
std::optional<std::uint32_t> timeCode(std::span<const std::byte> group, std::uint32_t picturesPerSecond) {
  BitReader bits(group);
  const bool dropsNumbers = bits.read(1) != 0;
  const std::uint32_t hours = bits.read(5);
  const std::uint32_t minutes = bits.read(6);
  const bool hasMarker = bits.read(1) != 0;
  const std::uint32_t seconds = bits.read(6);
  const std::uint32_t pictures = bits.read(6);
  if (bits.isPastEnd() || !hasMarker || hours > 23 || minutes > 59 || seconds > 59 || pictures >= picturesPerSecond)
    return std::nullopt;
  const std::uint32_t allMinutes = hours * 60 + minutes;
  const std::uint32_t number = (allMinutes * 60 + seconds) * picturesPerSecond + pictures;
  // Two numbers are left out at the beginning of each minute that is no tenth.
  return dropsNumbers ? number - 2 * (allMinutes - allMinutes / 10) : number;
}

}  // namespace

std::uint32_t groupTurn(std::uint32_t picturesPerSecond) { return kSecondsADay * picturesPerSecond; }

std::optional<std::uint32_t> numberByGroup(std::span<const std::byte> head, std::uint32_t picturesPerSecond) {
  constexpr unsigned kGroup = 0xb8;
  constexpr unsigned kPicture = 0x00;
  for (StartCodes codes(head); const auto code = codes.next();) {
    if (code->type == kPicture) break;
    if (code->type == kGroup) return timeCode(code->rest, picturesPerSecond);
  }
  return std::nullopt;
}

}  // namespace zelvo::salvage
