/// What a sound stream whose header is lost holds, by its payloads. Sizes are in bytes.
#pragma once

#include <cstdint>

#include "salvage/headers/stream_sample.h"
#include "salvage/payloads/codec.h"

namespace zelvo::salvage {

struct SoundShape {
  Codec codec = Codec::pcm;
  std::uint16_t channels = 1;
  std::uint16_t bits = 0;            ///< of a sample; 0 of compressed frames
  std::uint32_t block = 1;           ///< a whole sample of all channels, or a block of ADPCM
  std::uint32_t rate = 0;            ///< samples a second; 0 when the payloads do not say
  std::uint32_t samples = 1;         ///< that a block holds, or that a chunk of frames does
  bool isOfFrames = false;           ///< each chunk, an empty one too, lasts `samples`; otherwise bytes are counted
  std::uint32_t bytesPerSecond = 0;  ///< 0 when the payloads do not say

  /// Seconds that a chunk lasts; 0 unless frames tell.
  [[nodiscard]] double chunkSeconds() const;
};

/// Never fails: what is nothing else is taken for samples.
/// Thread: any.
[[nodiscard]] SoundShape soundShape(const StreamSample& sample);

/// So many samples a block of ADPCM holds; 0 where a block is too small for its own head.
[[nodiscard]] std::uint32_t samplesInBlock(Codec codec, std::uint32_t block, std::uint16_t channels);

}  // namespace zelvo::salvage
