/// Codecs that mark their pictures with a few bytes of their own, by the payloads of a stream whose header is lost.
#pragma once

#include <optional>

#include "avi/fourcc.h"
#include "salvage/headers/stream_sample.h"
#include "salvage/payloads/codec.h"
#include "salvage/payloads/picture_headers.h"

namespace zelvo::salvage {

struct MarkedPictures {
  Codec codec = Codec::unknown;
  avi::FourCC compression;  ///< biCompression
  PictureSize size;
};

/// Nothing when too few of the payloads bear the marks of one codec, or none tells its size.
/// Thread: any.
[[nodiscard]] std::optional<MarkedPictures> markedPictures(const StreamSample& sample);

}  // namespace zelvo::salvage
