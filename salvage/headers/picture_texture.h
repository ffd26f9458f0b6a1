/// How smooth decoded pictures are: a wrong width shears a picture, which makes neighbouring rows as different as
/// distant ones.
#pragma once

#include <vector>

#include "platform/trial_decoder.h"

namespace zelvo::salvage {

using Planes = std::vector<platform::PicturePlane>;

struct Texture {
  /// How much neighbours differ against samples that are far apart: far below 1 in pictures, about 1 in noise.
  double roughness = 1;
  /// By how much samples differ that are far apart.
  double contrast = 0;
};

/// Of all planes; the contrast is that of the first.
/// \pre there is a plane.
[[nodiscard]] Texture textureOf(const Planes& planes);

/// Whether it is no picture, or one of another width.
[[nodiscard]] bool isRough(const Texture& texture);

/// Whether it shows nothing but noise, as a flash or a dark moment does: at any width it would be as rough.
[[nodiscard]] bool isPlain(const Texture& texture);

/// Whether most rows are like the ones above them: what a decoder makes of a picture for which it has no bytes.
[[nodiscard]] bool isMostlyFlat(const platform::PicturePlane& plane);

}  // namespace zelvo::salvage
