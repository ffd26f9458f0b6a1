/// What the first bytes of a picture say of its size and rate. Sizes of pictures are in pixels.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace zelvo::salvage {

struct PictureSize {
  std::uint32_t width = 0;
  std::uint32_t height = 0;

  friend bool operator==(const PictureSize&, const PictureSize&) = default;
};

/// Pictures a second as dwRate / dwScale.
struct PictureRate {
  std::uint32_t rate = 0;
  std::uint32_t scale = 1;

  [[nodiscard]] double perSecond() const { return scale == 0 ? 0 : static_cast<double>(rate) / scale; }
  friend bool operator==(const PictureRate&, const PictureRate&) = default;
};

/// Whether a picture may be so large.
[[nodiscard]] bool isPlausible(PictureSize size);

struct PictureHeader {
  PictureSize size;
  std::optional<PictureRate> rate;
};

/// JPEG: its start of frame. A picture of two fields has twice the height that each field says.
[[nodiscard]] std::optional<PictureHeader> jpegHeader(std::span<const std::byte> payload);
/// MPEG-1 or MPEG-2: its sequence header.
[[nodiscard]] std::optional<PictureHeader> mpegVideoHeader(std::span<const std::byte> payload);
/// H.264: its sequence parameter set, with start codes or lengths.
[[nodiscard]] std::optional<PictureHeader> h264Header(std::span<const std::byte> payload);
/// Cinepak: its frame header.
[[nodiscard]] std::optional<PictureHeader> cinepakHeader(std::span<const std::byte> payload);
/// HEVC: its sequence parameter set, with start codes or lengths.
[[nodiscard]] std::optional<PictureHeader> hevcHeader(std::span<const std::byte> payload);
/// Digital video, by the length of its pictures.
[[nodiscard]] std::optional<PictureHeader> dvHeader(std::uint32_t size);

}  // namespace zelvo::salvage
