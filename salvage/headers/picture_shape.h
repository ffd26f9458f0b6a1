/// What a stream of pictures whose header is lost holds, by its payloads. Sizes of pictures are in pixels.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "salvage/headers/stream_sample.h"
#include "salvage/payloads/codec.h"
#include "salvage/payloads/picture_headers.h"
#include "salvage/payloads/raw_picture.h"

namespace zelvo::salvage {

struct PictureShape {
  Codec codec = Codec::unknown;
  avi::FourCC compression;  ///< biCompression; 0 of raw RGB
  PictureSize size;         ///< zeros when nothing tells it
  std::uint16_t bits = 24;  ///< biBitCount
  bool isTopDown = false;   ///< of raw RGB: biHeight is negative
  platform::Bytes extra;    ///< that follows the BITMAPINFOHEADER
  std::optional<PictureRate> rate;
  std::vector<RawShape> others;  ///< of raw pictures: shapes that fit less well
};

/// `known`: the picture's size where a main header says it. Codec::unknown when nothing is recognised.
/// Thread: any.
[[nodiscard]] PictureShape pictureShape(const StreamSample& sample, std::optional<PictureSize> known);

/// Of pictures whose payloads bear no marks, what they may be by the first bits of each: FFV1, WMV 8, MS-MPEG4 or a
/// relative, or else `intra`, such as HuffYUV. Nothing of pictures that bear marks or have all one size.
/// Thread: any.
[[nodiscard]] std::optional<Codec> codecWithoutMarks(const StreamSample& sample);

}  // namespace zelvo::salvage
