/// Headers of streams whose own are lost, put together from what the payloads tell, from how sound and pictures are
/// interleaved, and from what is usual.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/trial_decoder.h"
#include "salvage/headers/film_header.h"
#include "salvage/headers/stream_sample.h"
#include "salvage/scan/index_template.h"

namespace zelvo::salvage {

/// What the user knows better.
struct KnownRates {
  std::optional<double> pictures;        ///< a second; above 0
  std::optional<std::uint32_t> samples;  ///< a second; above 0
};

/// One field that had to be found.
struct FoundField {
  std::uint8_t stream = 0;  ///< its number in the damaged film
  std::string name;         ///< "codec", "size", "frame rate", "sample rate", "channels", "bits", "rate"
  std::string value;
  std::vector<std::string> alternatives;  ///< that fit nearly or just as well
};

struct LostHeaders {
  const std::vector<StreamSample>& streams;  ///< of streams without header
  const IndexTemplate& index;
  const CandidateList& candidates;
  const ChunkChain& chain;
  KnownRates known;
  avi::InputFile* input = nullptr;            ///< where the chunks lie; null when payloads are not to be tried
  platform::TrialDecoder* decoder = nullptr;  ///< what they are tried with; null without one
};

/// Adds to `header` each of the streams that can be recognised, and tells what was found. Pictures of an unknown codec
/// or size cannot.
/// Thread: any; seconds at the most where pictures must be tried.
std::vector<FoundField> synthesiseHeaders(FilmHeader& header, const LostHeaders& lost);

/// Sets the rates that the user knows better in headers that are there: of every stream of pictures, and of sound in
/// samples.
void applyKnownRates(FilmHeader& header, const KnownRates& known);

}  // namespace zelvo::salvage
