/// What a disk did not give of a film, and what of it should be rescued first: in words and as JSON.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "salvage/rescue_gains.h"

namespace zelvo::cli {

class JsonWriter;

/// More places are not told one by one.
inline constexpr std::size_t kMaxToldPlaces = 10'000;

/// "12 places with 1.2 MB were not rescued, which costs 3.1 s of the film".
[[nodiscard]] std::string rescueWords(const salvage::RescueReport& rescue);
/// "5 places with 0.4 MB would bring nearly all of it back"; nothing when no rescue would bring anything.
[[nodiscard]] std::string wantedWords(const salvage::RescueReport& rescue);
/// One place: where in the map, and what it would bring.
[[nodiscard]] std::string gainWords(const salvage::RescueGain& gain);

/// The member "rescue": null without one.
void writeRescue(JsonWriter& json, const std::optional<salvage::RescueReport>& rescue);

}  // namespace zelvo::cli
