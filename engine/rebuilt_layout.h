/// Every size and position of the rebuilt file, computed before its first byte is written. All in bytes, all 64-bit;
/// the file itself holds their low 32 bits. docs/avi_layout.md draws the file.
#pragma once

#include <cstdint>
#include <span>

namespace zelvo::engine {

/// What the layout is computed from.
struct LayoutInput {
  std::uint64_t videosamplecount = 0;
  std::uint64_t audiosamplecount = 0;
  std::uint64_t videostrfsize = 0;
  std::uint64_t audiostrfsize = 0;
  std::span<const std::uint64_t> videosamplesizearray;  ///< one-based; entry 0 counts too, and is 0
  std::span<const std::uint64_t> audiosamplesizearray;
};

struct RebuiltLayout {
  std::uint64_t ix00size = 0;            ///< payload of the video standard index
  std::uint64_t ix01size = 0;            ///< payload of the audio standard index
  std::uint64_t audiodatasize = 0;       ///< all audio payloads together
  std::uint64_t videodatasize = 0;       ///< all video payloads together
  std::uint64_t audioindxsize = 0;       ///< payload of the audio super index
  std::uint64_t videoindxsize = 0;       ///< payload of the video super index
  std::uint64_t ix00location = 0;        ///< first byte after the "ix00" chunk's 8-byte header
  std::uint64_t ix01location = 0;        ///< the "ix01" chunk's header
  std::uint64_t audiostrlListsize = 0;   ///< size field of the audio stream list
  std::uint64_t videostrlListsize = 0;   ///< size field of the video stream list
  std::uint64_t AVILISTsize = 0;         ///< size field of the header list "hdrl"
  std::uint64_t baseoffsetforvideo = 0;  ///< header of the first video chunk
  std::uint64_t movisize = 0;            ///< size field of the "movi" list
  std::uint64_t RIFFLISTsize = 0;        ///< size field of the form: length of the file less 8
  std::uint64_t baseoffsetforaudio = 0;  ///< header of the first audio chunk

  [[nodiscard]] static RebuiltLayout of(const LayoutInput& input);
  friend bool operator==(const RebuiltLayout&, const RebuiltLayout&) = default;
};

}  // namespace zelvo::engine
