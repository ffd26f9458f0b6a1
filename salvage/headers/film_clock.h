/// How fast a film without headers plays: by how its sound and pictures are interleaved, and by what is usual.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "salvage/payloads/picture_headers.h"
#include "salvage/scan/candidate.h"
#include "salvage/scan/chunk_chain.h"
#include "salvage/scan/index_template.h"

namespace zelvo::salvage {

/// What comes with one picture of another stream, in the mean.
struct SoundShare {
  double bytes = 0;
  double chunks = 0;
};

/// By the film's own index where it has one, else by the chunks whose ends are proved. Nothing of a film with too
/// little of either stream. What runs ahead, at the film's beginning, does not count.
/// Thread: any.
[[nodiscard]] std::optional<SoundShare> soundShare(const IndexTemplate& index, const CandidateList& candidates,
                                                   const ChunkChain& chain, std::uint8_t pictures, std::uint8_t sound);

/// The usual picture rate nearest to this one, when it lies within half a per cent; otherwise the rate itself.
[[nodiscard]] PictureRate usualPictureRate(double perSecond);

/// The usual sample rate nearest to this one, when it lies within two per cent; otherwise the number itself.
[[nodiscard]] std::uint32_t usualSampleRate(double perSecond);

/// Both, when only samples a picture are known. The likeliest pair first, at most four; many pairs have one ratio.
/// `prefersSlow`: small films with sound of one channel or of few bits are mostly recorded at lower rates.
struct RatePair {
  PictureRate pictures;
  std::uint32_t samples = 0;  ///< a second
};
[[nodiscard]] std::vector<RatePair> usualPairs(double samplesPerPicture, bool prefersSlow);

}  // namespace zelvo::salvage
