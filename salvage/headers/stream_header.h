/// The bytes of "strh" and "strf" for a stream that has none.
#pragma once

#include "salvage/headers/picture_shape.h"
#include "salvage/headers/sound_shape.h"
#include "salvage/scan/surviving_headers.h"

namespace zelvo::salvage {

[[nodiscard]] SurvivingStream makePictureHeader(const PictureShape& shape, PictureRate rate);
/// \pre `shape.rate` is above 0.
[[nodiscard]] SurvivingStream makeSoundHeader(const SoundShape& shape, std::uint32_t largestChunk);

/// Of a stream of text with so many chunks a second.
[[nodiscard]] SurvivingStream makeTextHeader(PictureRate rate);

/// Sets dwScale and dwRate, in the fields and in the bytes of "strh".
void setClock(SurvivingStream& stream, std::uint32_t scale, std::uint32_t rate);

/// Has a stream of sound play at another rate: nSamplesPerSec, nAvgBytesPerSec and dwRate change alike.
/// \pre its format tells a rate above 0.
void setSampleRate(SurvivingStream& stream, std::uint32_t rate);

}  // namespace zelvo::salvage
