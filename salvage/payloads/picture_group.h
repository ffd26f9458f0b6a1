/// What MPEG-1 and MPEG-2 say of the place of a picture in its film.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

namespace zelvo::salvage {

/// The number of the first picture of a group, in the order in which pictures are stored, by the time_code of its
/// group_of_pictures_header: that of the one that is shown first, which is as many behind the stored one as pictures of
/// the group are shown before it. Below `groupTurn`; nothing when no group begins in `head`, or its time code is none.
/// `picturesPerSecond`: as time codes count, a whole number above zero.
/// Thread: any.
[[nodiscard]] std::optional<std::uint32_t> numberByGroup(std::span<const std::byte> head,
                                                         std::uint32_t picturesPerSecond);

/// How many pictures a day has: after these, time codes begin again.
[[nodiscard]] std::uint32_t groupTurn(std::uint32_t picturesPerSecond);

}  // namespace zelvo::salvage
