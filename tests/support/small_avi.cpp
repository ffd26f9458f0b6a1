#include "tests/support/small_avi.h"

#include "tests/support/avi_builder.h"
#include "tests/support/byte_text.h"

namespace zelvo::tests {

std::string le16(std::uint64_t number) {
  return {static_cast<char>(number & 0xffU), static_cast<char>(number >> 8U & 0xffU)};
}

std::string le32(std::uint64_t number) { return le16(number) + le16(number >> 16U); }

std::string chunk(std::string_view id, std::string_view payload) {
  std::string bytes = std::string(id) + le32(payload.size()) + std::string(payload);
  if (payload.size() % 2 != 0) bytes += '\0';
  return bytes;
}

std::string list(std::string_view id, std::string_view type, std::string_view content) {
  return std::string(id) + le32(content.size() + 4) + std::string(type) + std::string(content);
}

std::string SmallAvi::bytes() const {
  AviBuilder avi;
  avi.withMainHeader = hasMainHeader;
  avi.withVideoStream = hasVideoHeader;
  avi.withAudioStream = hasAudioHeader;
  avi.withIndex = hasIndex;
  avi.withTrailer = true;  // otherwise the last chunk would be followed by no code that keeps it
  avi.videoHandler = videoHandler;
  avi.videoCompression = hasVideoCompression ? "MJPG" : std::string_view("\0\0\0\0", 4);
  avi.audioHandler = {"\0\0\0\0", 4};
  avi.audioRate = 44100;
  avi.audioFormatTag = 1;
  avi.audioBlockAlign = 4;
  avi.audioBytesPerSecond = 176400;
  avi.audioFormatSize = 18;
  avi.frames = static_cast<std::uint32_t>(frames);
  for (std::size_t i = 0; i < frames; ++i) {
    const auto letter = static_cast<std::uint8_t>(i % 26);
    avi.chunks.push_back({"00dc", static_cast<std::uint32_t>(frameSize), static_cast<std::byte>('a' + letter)});
    avi.chunks.push_back({"01wb", static_cast<std::uint32_t>(soundSize), static_cast<std::byte>('A' + letter)});
  }
  const platform::Bytes built = avi.build();
  return textAt(built, 0, built.size());
}

std::string overlappingAvi(std::size_t chunks) {
  constexpr std::size_t kSize = 5000000;
  const platform::Bytes headers = AviBuilder().headers();
  std::string bytes = list("RIFF", "AVI ", textAt(headers, 12, headers.size()));
  for (std::size_t i = 0; i < chunks; ++i) bytes += "00dc" + le32(kSize);
  bytes.append(kSize - 8 * (chunks - 1), '\0');
  // What follows each of them: a code of its own, whose size of zero keeps it from being recorded.
  for (std::size_t i = 0; i < chunks; ++i) bytes += "00dc" + le32(0);
  return bytes;
}

}  // namespace zelvo::tests
