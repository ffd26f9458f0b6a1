/// What the first bytes of a picture say of its size, of codecs that mark all pictures or all keys with a few bytes of
/// their own. Nothing for pictures of other codecs, or without a size.
#pragma once

#include <cstddef>
#include <optional>
#include <span>

#include "salvage/payloads/picture_headers.h"

namespace zelvo::salvage {

/// Sorenson's H.263 of Flash: its picture header, which every picture has.
[[nodiscard]] std::optional<PictureHeader> flv1Header(std::span<const std::byte> payload);
/// H.263 of one of its five sizes: its picture header, which every picture has.
[[nodiscard]] std::optional<PictureHeader> h263Header(std::span<const std::byte> payload);
/// Sorenson Video 1: the picture header of a key.
[[nodiscard]] std::optional<PictureHeader> svq1Header(std::span<const std::byte> payload);
/// VP8: the frame header of a key.
[[nodiscard]] std::optional<PictureHeader> vp8Header(std::span<const std::byte> payload);
/// VP9: the uncompressed header of a key of profile 0.
[[nodiscard]] std::optional<PictureHeader> vp9Header(std::span<const std::byte> payload);
/// ProRes: its frame header.
[[nodiscard]] std::optional<PictureHeader> proResHeader(std::span<const std::byte> payload);
/// DNxHD: its frame header.
[[nodiscard]] std::optional<PictureHeader> dnxhdHeader(std::span<const std::byte> payload);
/// JPEG 2000, as a file or as a codestream: its first marker of sizes.
[[nodiscard]] std::optional<PictureHeader> jpeg2000Header(std::span<const std::byte> payload);
/// PNG: its first chunk.
[[nodiscard]] std::optional<PictureHeader> pngHeader(std::span<const std::byte> payload);
/// MagicYUV: its frame header.
[[nodiscard]] std::optional<PictureHeader> magicYuvHeader(std::span<const std::byte> payload);

}  // namespace zelvo::salvage
