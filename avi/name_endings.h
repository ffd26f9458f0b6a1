/// How the names of AVI films end.
#pragma once

#include <array>
#include <string_view>

namespace zelvo::avi {

/// Without the dot, in small letters; a name may have them in others.
inline constexpr std::array<std::string_view, 3> kNameEndings{"avi", "divx", "xvid"};

}  // namespace zelvo::avi
