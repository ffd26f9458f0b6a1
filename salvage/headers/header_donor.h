/// Headers of lost streams from another film of the same camera.
#pragma once

#include <vector>

#include "salvage/headers/film_header.h"
#include "salvage/headers/stream_sample.h"

namespace zelvo::salvage {

/// Adds to `header` the donor's stream in the place of each lost one, when it is of the same type and the payloads can
/// be its: they begin as its codec's do, and where they tell their size, it is the same. The main header comes from
/// the donor too where it is lost, once any stream does. A donor with another number of streams gives nothing.
/// \return how many streams came from it
/// Thread: any.
std::size_t takeFromDonor(FilmHeader& header, const SurvivingHeaders& donor, const std::vector<StreamSample>& lost);

/// Whether the sampled payloads can be of a stream with this header.
[[nodiscard]] bool mayBeOf(const SurvivingStream& stream, const StreamSample& sample);

}  // namespace zelvo::salvage
