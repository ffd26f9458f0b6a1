/// Builds AVI files in memory from a short description, and damages them. Offsets and sizes are in bytes.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/bytes.h"

namespace zelvo::tests {

/// Appends the four characters of a code, or any other text.
void appendText(platform::Bytes& out, std::string_view text);
/// Appends a little-endian number.
void appendNumber(platform::Bytes& out, std::uint32_t value);
void append16(platform::Bytes& out, std::uint16_t value);
/// Overwrites the bytes from `offset` on.
void overwrite(platform::Bytes& out, std::size_t offset, std::string_view text);
/// Appends a chunk: code, size field, `size` payload bytes that no code occurs in, a pad byte when `size` is odd.
void appendChunk(platform::Bytes& out, std::string_view code, std::uint32_t size, std::byte fill = std::byte{0x55});

/// `size` bytes without any code but an "AVI " at the start, which lets the validity check pass.
[[nodiscard]] platform::Bytes blank(std::size_t size);

struct AviChunk {
  std::string_view code;  ///< "00dc", "01wb", ...
  std::uint32_t size = 0;
  std::byte fill{0x55};
};

/// A classic AVI file: header lists for one video and one audio stream, a "movi" list, an "idx1" index.
class AviBuilder {
 public:
  std::string_view videoHandler{"XVID", 4};
  std::string_view audioHandler{"\x55\x00\x00\x00", 4};
  std::string_view videoCompression{"XVID", 4};
  std::uint32_t width = 320;
  std::uint32_t height = 240;
  std::uint32_t microSecPerFrame = 40000;
  std::uint32_t videoScale = 1;
  std::uint32_t videoRate = 25;
  std::uint32_t audioScale = 1;
  std::uint32_t audioRate = 8000;
  std::uint16_t audioFormatTag = 0x55;
  std::uint16_t audioBlockAlign = 1;
  std::optional<std::uint32_t> audioBytesPerSecond;  ///< `audioRate` unless it is set
  /// Size of the audio format; the four bytes at its offset 16 (cbSize and two more) are set so that they count.
  std::uint32_t audioFormatSize = 30;
  std::uint32_t avihSize = 56;
  std::optional<std::uint32_t> frames;  ///< what the headers count; all chunks unless it is set
  bool withMainHeader = true;
  bool withVideoStream = true;
  bool withAudioStream = true;
  bool withIndex = true;
  bool withTrailer = false;  ///< a "JUNK" chunk after the data, which a code after the last payload is
  std::vector<AviChunk> chunks;

  /// `count` video chunks, each followed by an audio chunk.
  AviBuilder& interleaved(int count, std::uint32_t videoSize, std::uint32_t audioSize,
                          std::string_view videoCode = "00dc");
  /// Fills up with video chunks of 4096 bytes until the file is at least `size` bytes long.
  AviBuilder& atLeast(std::uint64_t size);

  [[nodiscard]] platform::Bytes build() const;
  /// The header lists alone: form, "hdrl" with both streams.
  [[nodiscard]] platform::Bytes headers() const;

 private:
  void appendMainHeader(platform::Bytes& hdrl) const;
  void appendStream(platform::Bytes& hdrl, bool video) const;
};

}  // namespace zelvo::tests
