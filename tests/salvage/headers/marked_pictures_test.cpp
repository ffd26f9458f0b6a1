// Codecs that mark their pictures, by payloads alone.
#include "salvage/headers/marked_pictures.h"

#include <gtest/gtest.h>

#include "tests/salvage/codec_films.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;
using salvage::Codec;
using salvage::MarkedPictures;
using salvage::PictureSize;
using salvage::StreamSample;

/// Thirty pictures, of which each tenth begins with `key` and the others with `other`.
StreamSample markedSample(const Bytes& key, const Bytes& other) {
  StreamSample sample;
  for (std::uint32_t i = 0; i < 30; ++i) {
    Bytes payload = i % 10 == 0 ? key : other;
    payload.resize(100 + i, static_cast<std::byte>(i + 2));
    const auto size = static_cast<std::uint32_t>(payload.size());
    sample.sizes.push_back(size);
    sample.payloads.push_back({size, payload});
  }
  return sample;
}

std::string marked(const Bytes& key, const Bytes& other) {
  const auto found = salvage::markedPictures(markedSample(key, other));
  if (!found) return "nothing";
  std::string text;
  for (const std::byte byte : found->compression.bytes()) text += static_cast<char>(byte);
  return text + " " + std::to_string(found->size.width) + "x" + std::to_string(found->size.height);
}

std::string marked(const Bytes& every) { return marked(every, every); }

TEST(MarkedPictures, CodecsThatMarkEveryPicture) {
  EXPECT_EQ(marked(numbered({0, 0,    0x3d, 0x57, 0x69, 0x63, 0x70, 0x66, 0,    0x94, 0,
                             0, 0x4c, 0x61, 0x76, 0x63, 0,    0xa0, 0,    0x78, 0x80})),
            "apcn 160x120");
  EXPECT_EQ(
      marked(numbered({0, 0, 2, 0x80, 1, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 4, 0x38, 7, 0x80})),
      "AVdn 1920x1080");
  EXPECT_EQ(marked(numbered(
                {0xff, 0x4f, 0xff, 0x51, 0, 0x2f, 0, 0, 0, 0, 1, 0x50, 0, 0, 0, 0x90, 0, 0, 0, 0x10, 0, 0, 0, 0})),
            "MJ2C 320x144");
  EXPECT_EQ(marked(numbered({0x89, 0x50, 0x4e, 0x47, 13, 10, 26, 10,   0, 0, 0, 13,
                             0x49, 0x48, 0x44, 0x52, 0,  0,  1,  0x40, 0, 0, 0, 0xf0})),
            "MPNG 320x240");
  EXPECT_EQ(marked(numbered(
                {0x4d, 0x41, 0x47, 0x59, 0x20, 0, 0, 0, 7, 0x69, 12, 0, 0, 0, 0x20, 0, 0xa0, 0, 0, 0, 0x78, 0, 0, 0})),
            "MAGY 160x120");
  EXPECT_EQ(marked(numbered({0, 0, 0x80, 2, 0x0c, 0x11})), "H263 352x288");
  EXPECT_EQ(marked(numbered({0, 0, 0x84, 2, 0x91, 0x9e})), "FLV1 320x240");
  EXPECT_EQ(marked(numbered({0, 0, 0x84, 0, 0x32, 0x3c, 0})), "FLV1 100x120");
}

TEST(MarkedPictures, CodecsThatMarkKeys) {
  const Bytes other = numbered({0xf1, 1, 0, 7, 7, 7});
  const Bytes key = numbered({0xf0, 1, 0, 0x9d, 1, 0x2a, 0x40, 0x41, 0xf0, 0});
  EXPECT_EQ(marked(key, other), "VP80 320x240");
  EXPECT_EQ(marked(other), "nothing");
  EXPECT_EQ(marked(key, numbered({0xf1, 0xff, 0xff})), "nothing");
  EXPECT_EQ(marked(numbered({0x82, 0x49, 0x83, 0x42, 0x00, 0x13, 0xf0, 0x0e, 0xf0}), numbered({0x86, 1, 2})),
            "VP90 320x240");
  // The type of the picture, 0 of a key, ends in the fourth byte.
  EXPECT_EQ(marked(numbered({0, 0, 0x80, 0, 0x16, 0x3f}), numbered({0, 0, 0x80, 1, 0x1f})), "SVQ1 320x240");
}

TEST(MarkedPictures, HevcIsKnownByItsParameterSet) {
  // Made by hand: no layers but the base, chroma 4:2:0, 320 by 248, of which the lowest 8 rows are not shown.
  const Bytes set = numbered({0, 0, 0, 1, 0x42, 1, 1,    1,    0x60, 0,    0,    3,    0,    0x90, 0,
                              0, 3, 0, 0, 3,    0, 0x3c, 0xa0, 0x0a, 0x08, 0x0f, 0x9f, 0x28, 0,    0});
  EXPECT_EQ(marked(set, numbered({0, 0, 0, 1, 2, 1, 0xd0})), "HEVC 320x240");
  // Units of H.264 are of types that HEVC has not.
  EXPECT_EQ(marked(numbered({0, 0, 0, 1, 0x67, 0x42}), numbered({0, 0, 0, 1, 0x41, 0x9a})), "nothing");
}

TEST(MarkedPictures, FewMarksAreNone) {
  const Bytes png = numbered(
      {0x89, 0x50, 0x4e, 0x47, 13, 10, 26, 10, 0, 0, 0, 13, 0x49, 0x48, 0x44, 0x52, 0, 0, 1, 0x40, 0, 0, 0, 0xf0});
  EXPECT_EQ(marked(png, numbered({0x12, 0x34, 0x56})), "nothing");
}

}  // namespace
}  // namespace zelvo::tests
