/// What MPEG-1 and MPEG-2 say of the place of a picture in its film.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

namespace zelvo::salvage {

/// The number of the picture in display order by the time_code of the group_of_pictures_header in front of it and its
/// temporal_reference, below `groupTurn`; nothing when no group begins in `head`, or its time code is none.
/// `picturesPerSecond`: as time codes count, a whole number above zero.
/// Thread: any.
[[nodiscard]] std::optional<std::uint32_t> numberByGroup(std::span<const std::byte> head,
                                                         std::uint32_t picturesPerSecond);

/// How many pictures a day has: after these, time codes begin again.
[[nodiscard]] std::uint32_t groupTurn(std::uint32_t picturesPerSecond);

}  // namespace zelvo::salvage
