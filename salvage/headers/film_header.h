/// The streams of the repaired film: what the damaged film's headers still say, filled up from a donor or from what the
/// payloads tell.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "salvage/scan/seen_streams.h"
#include "salvage/scan/surviving_headers.h"

namespace zelvo::salvage {

/// Where a stream's header comes from.
enum class HeaderOrigin : std::uint8_t {
  own,          ///< the damaged film's
  donor,        ///< another film's, of the same camera
  synthesised,  ///< put together from what the payloads tell
};

struct FilmStream {
  std::uint8_t number = 0;  ///< in the codes of the damaged film's chunks: 0 to 99
  avi::FourCC code;         ///< of its chunks in the damaged film, as most of them have it, such as "01wb"
  SurvivingStream header;
  HeaderOrigin origin = HeaderOrigin::own;
};

struct FilmHeader {
  std::optional<SurvivingMainHeader> main;
  std::vector<FilmStream> streams;  ///< in the order of the repaired film; a slot's stream is an index in here
  platform::Bytes information;      ///< what the list "INFO" holds
};

/// What the damaged film's own headers give. Where all survive, they are in the order of the chunks' numbers. Where
/// some are lost, those that are left are the last, since the front of a file is what gets overwritten, unless a super
/// index or the chunks' types say otherwise; `seen` tells how many there were.
/// Thread: any.
[[nodiscard]] FilmHeader filmHeader(const SurvivingHeaders& headers, const std::vector<SeenStream>& seen);

/// Those streams that `header` does not have.
[[nodiscard]] std::vector<SeenStream> streamsWithoutHeader(const FilmHeader& header,
                                                           const std::vector<SeenStream>& seen);

/// Puts a stream in its place by number.
void addStream(FilmHeader& header, FilmStream stream);

}  // namespace zelvo::salvage
