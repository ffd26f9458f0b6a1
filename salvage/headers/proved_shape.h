/// Pictures whose payloads bear no mark, but whose build proves what they are, and how large: of the few sizes that fit
/// one is taken by decoding. Ut Video, and the zipped blocks that emulators record.
#pragma once

#include <optional>

#include "salvage/headers/stream_sample.h"
#include "salvage/headers/trial_shape.h"

namespace zelvo::salvage {

/// `known`: the size of pictures where a main header says it; it is only believed when it fits. Nothing when the stream
/// is of none of these codecs, or when several sizes fit as well.
/// Thread: any; seconds at the most.
[[nodiscard]] std::optional<TrialShape> provedShape(platform::TrialDecoder& decoder, const TrialChunks& chunks,
                                                    const StreamSample& sample, std::optional<PictureSize> known,
                                                    TrialBudget& budget);

}  // namespace zelvo::salvage
