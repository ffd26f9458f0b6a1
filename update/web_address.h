/// Web addresses as they are written in lists and texts.
#pragma once

#include <string>
#include <string_view>

namespace zelvo::update {

/// The address with "%20" for every space, and nothing else changed.
[[nodiscard]] std::string withSpacesEscaped(std::string_view address);

}  // namespace zelvo::update
