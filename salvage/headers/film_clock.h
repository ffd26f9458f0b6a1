/// How fast a film without headers plays: by how its sound and pictures are interleaved, and by what is usual.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
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
  double error = 0;  ///< how far off both may be, as a share of them
};

/// By the film's own index where it has one, else by the chunks whose ends are proved. Nothing of a film with too
/// little of either stream. What runs ahead, at the film's beginning, does not count, nor what is missing between
/// chunks.
/// Thread: any.
[[nodiscard]] std::optional<SoundShare> soundShare(const IndexTemplate& index, const CandidateList& candidates,
                                                   const ChunkChain& chain, std::uint8_t pictures, std::uint8_t sound);

/// The usual picture rate nearest to this one, when it lies within half a per cent; otherwise the rate itself. Of a
/// rate that may be further off, the most usual one that it can be. `error`: a share of it.
[[nodiscard]] PictureRate usualPictureRate(double perSecond, double error = 0);

/// The usual sample rate nearest to this one, when it lies within two per cent; otherwise the number itself.
[[nodiscard]] std::uint32_t usualSampleRate(double perSecond);

struct RatePair {
  PictureRate pictures;
  std::uint32_t samples = 0;  ///< a second
};

/// What is known of two rates beside their ratio.
struct PairsWanted {
  bool prefersSlow = false;  ///< small films with sound of one channel or of few bits are mostly of lower rates
  bool isOfTapes = false;    ///< the sound's rate comes of 44100
  double error = 0;          ///< how far the ratio may be off, as a share of it
};

/// Both rates, when only samples a picture are known. The likeliest pair first, at most four; many pairs have one
/// ratio.
[[nodiscard]] std::vector<RatePair> usualPairs(double samplesPerPicture, const PairsWanted& wanted);

/// Whether most chunks of these sizes last some thirds of a hundredth of a second at 44100 samples a second, as those
/// of rates that come of it often do and no others. `block`: bytes of a sample of all channels.
[[nodiscard]] bool isOfTapes(std::span<const std::uint32_t> sizes, std::uint32_t block);

}  // namespace zelvo::salvage
