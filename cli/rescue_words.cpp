#include "cli/rescue_words.h"

#include <algorithm>

#include "cli/json_writer.h"
#include "cli/shown_text.h"

namespace zelvo::cli {

std::string rescueWords(const salvage::RescueReport& rescue) {
  if (rescue.places == 0) return "all of the film was rescued";
  std::string text = counted(rescue.places, "place") + " with " + shownSize(rescue.bytes) +
                     (rescue.places == 1 ? " was" : " were") + " not rescued";
  if (rescue.seconds < 0.005) return text;
  return text + ", which costs " + fixedPoint(rescue.seconds, 2) + " s of the film";
}

std::string wantedWords(const salvage::RescueReport& rescue) {
  if (rescue.wanted == 0) return {};
  std::uint64_t bytes = 0;
  for (std::size_t i = 0; i < rescue.wanted; ++i) bytes += rescue.gains[i].place.end - rescue.gains[i].place.begin;
  if (rescue.gains.front().seconds <= 0) return "every place, since nothing tells what they hold";
  return counted(rescue.wanted, "place") + " with " + shownSize(bytes) + " would bring nearly all of it back";
}

std::string gainWords(const salvage::RescueGain& gain) {
  std::string text = "bytes " + shownNumber(gain.place.begin) + " to " + shownNumber(gain.place.end) + " of the map: ";
  if (gain.holdsHeaders) text += "headers, on which all depends; ";
  if (gain.seconds <= 0) return text + "nothing that is known of";
  return text + fixedPoint(gain.seconds, 2) + " s, " + fixedPoint(gain.perMebibyte(), 2) + " s per MiB";
}

void writeRescue(JsonWriter& json, const std::optional<salvage::RescueReport>& rescue) {
  json.key("rescue");
  if (!rescue) {
    json.null();
    return;
  }
  json.beginObject();
  json.member("bytes", rescue->bytes);
  json.member("places", rescue->places);
  json.key("seconds");
  json.seconds(rescue->seconds);
  json.member("wanted_places", rescue->wanted);
  json.key("gains");
  json.beginArray();
  const std::size_t told = std::min(rescue->gains.size(), kMaxToldPlaces);
  for (std::size_t i = 0; i < told; ++i) {
    const salvage::RescueGain& gain = rescue->gains[i];
    json.beginObject();
    json.member("begin", gain.place.begin);
    json.member("end", gain.place.end);
    json.key("seconds");
    json.seconds(gain.seconds);
    json.key("seconds_per_mib");
    json.seconds(gain.perMebibyte());
    json.key("headers");
    json.boolean(gain.holdsHeaders);
    json.key("wanted");
    json.boolean(i < rescue->wanted);
    json.endObject();
  }
  json.endArray();
  json.member("gains_left_out", rescue->gains.size() - told);
  json.endObject();
}

}  // namespace zelvo::cli
