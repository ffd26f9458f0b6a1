/// Streams and payloads of some codecs, as small as tests need them.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <random>
#include <string_view>
#include <vector>

#include "salvage/scan/surviving_headers.h"
#include "tests/support/avi_builder.h"

namespace zelvo::tests {

/// Bytes by their numbers.
[[nodiscard]] inline platform::Bytes numbered(std::initializer_list<unsigned> numbers) {
  platform::Bytes bytes;
  for (const unsigned number : numbers) bytes.push_back(static_cast<std::byte>(number));
  return bytes;
}

/// A picture of Microsoft Video 1 with 8 bits a pixel, in blocks of one colour and of two: columns go on from row to
/// row, but for one in five.
[[nodiscard]] inline platform::Bytes msVideoPicture(std::uint32_t blocksAcross, std::uint32_t blocksDown,
                                                    unsigned seed = 5) {
  std::mt19937 random(seed);
  std::vector<unsigned> colours(blocksAcross);
  for (unsigned& colour : colours) colour = static_cast<unsigned>(random() % 120 + 1);
  platform::Bytes bytes;
  for (std::uint32_t row = 0; row < blocksDown; ++row) {
    for (unsigned& colour : colours) {
      if (random() % 5 == 0) colour = static_cast<unsigned>(random() % 120 + 1);
      if (random() % 3 == 0) {
        const auto two = numbered({0x33, 0x33, colour, colour + 1});
        bytes.insert(bytes.end(), two.begin(), two.end());
      } else {
        const auto one = numbered({colour, 0x80});
        bytes.insert(bytes.end(), one.begin(), one.end());
      }
    }
  }
  const auto end = numbered({0, 0});
  bytes.insert(bytes.end(), end.begin(), end.end());
  return bytes;
}

/// A stream of pictures whose biCompression and fccHandler are `code`.
[[nodiscard]] inline salvage::SurvivingStream pictureStream(std::string_view code, std::uint32_t width = 320,
                                                            std::uint32_t height = 240, std::uint16_t bits = 24) {
  salvage::SurvivingStream stream;
  platform::Bytes letters;
  appendText(letters, code);
  stream.type = avi::kVids;
  stream.handler = avi::FourCC::at(letters);
  stream.scale = 1;
  stream.rate = 25;
  appendNumber(stream.format, 40);
  appendNumber(stream.format, width);
  appendNumber(stream.format, height);
  append16(stream.format, 1);
  append16(stream.format, bits);
  appendText(stream.format, code);
  stream.format.resize(40);
  appendText(stream.header, "vids");
  appendText(stream.header, code);
  stream.header.resize(20);
  appendNumber(stream.header, stream.scale);
  appendNumber(stream.header, stream.rate);
  stream.header.resize(56);
  return stream;
}

/// A stream of sound with this wFormatTag; `sampleSize` 0 for chunks of frames.
[[nodiscard]] inline salvage::SurvivingStream soundStream(std::uint16_t tag, std::uint16_t channels, std::uint32_t rate,
                                                          std::uint16_t block, std::uint16_t bits,
                                                          std::uint32_t sampleSize) {
  salvage::SurvivingStream stream;
  stream.type = avi::kAuds;
  stream.scale = block;
  stream.rate = rate * block;
  stream.sampleSize = sampleSize;
  append16(stream.format, tag);
  append16(stream.format, channels);
  appendNumber(stream.format, rate);
  appendNumber(stream.format, rate * block);
  append16(stream.format, block);
  append16(stream.format, bits);
  append16(stream.format, 0);
  appendText(stream.header, "auds");
  stream.header.resize(20);
  appendNumber(stream.header, stream.scale);
  appendNumber(stream.header, stream.rate);
  stream.header.resize(44);
  appendNumber(stream.header, sampleSize);
  stream.header.resize(56);
  return stream;
}

}  // namespace zelvo::tests
