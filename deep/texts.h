/// What the deep repair's flow says. Each text is shown through a translator, and named by itself.
#pragma once

#include <string_view>

namespace zelvo::deep::texts {

// ---- Offers ----
inline constexpr std::string_view kRefusedOffer = "A deep repair may still bring %1 back.";
inline constexpr std::string_view kPartlyOffer = "A deep repair may bring back more of this film.";

}  // namespace zelvo::deep::texts
