/// Payloads of MPEG-1 or MPEG-2 that begin a group of pictures.
#pragma once

#include <cstdint>
#include <initializer_list>

#include "platform/bytes.h"

namespace zelvo::tests {

/// time_code of a group_of_pictures_header.
struct GroupTime {
  std::uint32_t hours = 0;
  std::uint32_t minutes = 0;
  std::uint32_t seconds = 0;
  std::uint32_t pictures = 0;
  bool hasMarker = true;
};

/// `reference`: temporal_reference of the picture that follows the group's header.
inline platform::Bytes groupPicture(const GroupTime& time, std::uint32_t reference, bool dropsNumbers = false) {
  const std::uint32_t group = (dropsNumbers ? 1U : 0U) << 31U | time.hours << 26U | time.minutes << 20U |
                              (time.hasMarker ? 1U : 0U) << 19U | time.seconds << 13U | time.pictures << 7U;
  platform::Bytes payload;
  for (const std::uint32_t value : {0x000001b8U, group, 0x00000100U, reference << 22U}) {
    for (const unsigned shift : {24U, 16U, 8U, 0U}) payload.push_back(static_cast<std::byte>(value >> shift & 0xffU));
  }
  return payload;
}

}  // namespace zelvo::tests
