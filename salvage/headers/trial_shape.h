/// Pictures of codecs whose payloads bear neither a mark nor a size: decoded as each of these codecs at each usual
/// size, until they look like pictures.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "avi/fourcc.h"
#include "avi/input_file.h"
#include "platform/trial_decoder.h"
#include "salvage/payloads/codec.h"
#include "salvage/payloads/picture_headers.h"
#include "salvage/payloads/trial_budget.h"
#include "salvage/scan/candidate.h"
#include "salvage/scan/chunk_chain.h"

namespace zelvo::salvage {

struct TrialShape {
  Codec codec = Codec::unknown;
  avi::FourCC compression;  ///< biCompression
  PictureSize size;
  std::uint16_t bits = 24;  ///< biBitCount
  platform::Bytes extra;    ///< what follows the BITMAPINFOHEADER

  friend bool operator==(const TrialShape&, const TrialShape&) = default;
};

/// What a decoder is told of a stream of such a shape.
[[nodiscard]] platform::TrialStream streamOf(const TrialShape& shape);

/// Chunks of one stream, whose ends are proved.
struct TrialChunks {
  avi::InputFile& input;
  const CandidateList& candidates;
  const ChunkChain& chain;  ///< that of `candidates`
  std::uint8_t stream = 0;  ///< its number
};

/// The commonest first.
[[nodiscard]] std::span<const PictureSize> usualSizes();

/// `known`: the size of pictures where a main header says it; then no other is tried unless that one fails. Nothing
/// when the stream's pictures are of none of the codecs, of no usual size, or need what a header alone held.
/// Thread: any; seconds at the most.
[[nodiscard]] std::optional<TrialShape> tryShapes(platform::TrialDecoder& decoder, const TrialChunks& chunks,
                                                  Codec likely, std::optional<PictureSize> known, TrialBudget& budget);

}  // namespace zelvo::salvage
