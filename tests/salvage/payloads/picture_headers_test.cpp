// Picture sizes and rates in the pictures themselves, and the shapes of raw ones.
#include "salvage/payloads/picture_headers.h"

#include <gtest/gtest.h>

#include <random>

#include "salvage/payloads/raw_picture.h"
#include "tests/salvage/codec_films.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;
using salvage::PictureRate;
using salvage::PictureSize;

TEST(JpegHeader, SizeStandsInTheStartOfFrameBehindOtherSegments) {
  const auto found = salvage::jpegHeader(
      numbered({0xff, 0xd8, 0xff, 0xdb, 0, 4, 1, 2, 0xff, 0xff, 0xc0, 0, 17, 8, 0, 240, 1, 64, 3, 0, 0}));
  ASSERT_TRUE(found.has_value());
  EXPECT_EQ(found->size, (PictureSize{320, 240}));
}

TEST(JpegHeader, FieldsAreHalfAPicture) {
  const auto picture = [](unsigned field) {
    return numbered(
        {0xff, 0xd8, 0xff, 0xe0, 0, 7, 'A', 'V', 'I', '1', field, 0xff, 0xc0, 0, 17, 8, 0, 120, 1, 64, 3, 0, 0, 0, 0});
  };
  EXPECT_EQ(salvage::jpegHeader(picture(1))->size, (PictureSize{320, 240}));
  EXPECT_EQ(salvage::jpegHeader(picture(0))->size, (PictureSize{320, 120}));
}

TEST(JpegHeader, WhatIsNoPictureHasNone) {
  EXPECT_FALSE(salvage::jpegHeader(numbered({0xff, 0xd8, 0xff, 0xd9, 0, 0, 0, 0, 0, 0, 0, 0, 0})).has_value());
  EXPECT_FALSE(salvage::jpegHeader(numbered({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12})).has_value());
  EXPECT_FALSE(salvage::jpegHeader({}).has_value());
}

TEST(MpegVideoHeader, SizeAndRateFollowTheSequenceCode) {
  const auto found = salvage::mpegVideoHeader(numbered({0, 0, 1, 0xb3, 0x16, 0x00, 0xf0, 0x14, 0, 0}));
  ASSERT_TRUE(found.has_value());
  EXPECT_EQ(found->size, (PictureSize{352, 240}));
  EXPECT_EQ(found->rate, (PictureRate{30000, 1001}));
}

TEST(CinepakHeader, SizeStandsBehindTheLength) {
  EXPECT_EQ(salvage::cinepakHeader(numbered({0, 0, 0, 9, 0, 160, 0, 120, 0, 1}))->size, (PictureSize{160, 120}));
  EXPECT_FALSE(salvage::cinepakHeader(numbered({0, 0, 0, 9, 0, 0, 0, 120, 0, 1})).has_value());
}

TEST(DvHeader, LengthTellsTheSystem) {
  EXPECT_EQ(salvage::dvHeader(144000)->size, (PictureSize{720, 576}));
  EXPECT_EQ(salvage::dvHeader(120000)->rate, (PictureRate{30000, 1001}));
  EXPECT_FALSE(salvage::dvHeader(120001).has_value());
}

/// Writes the numbers of a parameter set.
class SetBits {
 public:
  SetBits& put(std::uint32_t value, unsigned count) {
    for (unsigned i = count; i > 0; --i) {
      if (used_ % 8 == 0) bytes_.push_back(std::byte{0});
      bytes_.back() |= static_cast<std::byte>((value >> (i - 1) & 1U) << (7 - used_ % 8));
      ++used_;
    }
    return *this;
  }
  SetBits& number(std::uint32_t value) {
    unsigned bits = 0;
    while ((value + 1) >> (bits + 1) != 0) ++bits;
    return put(0, bits).put(value + 1, bits + 1);
  }
  [[nodiscard]] Bytes unit() const {
    Bytes unit = numbered({0, 0, 0, 1, 0x67});
    unit.insert(unit.end(), bytes_.begin(), bytes_.end());
    return unit;
  }

 private:
  Bytes bytes_;
  unsigned used_ = 0;
};

/// A set of the main profile of 320x240 (20x15 macroblocks), up to its cropping.
SetBits mainSet() {
  SetBits set;
  set.put(77, 8).put(0, 8).put(13, 8).number(0).number(0).number(0).number(0).number(1).put(0, 1);
  return set.number(19).number(14).put(1, 1).put(1, 1);
}

TEST(H264Header, SizeComesFromTheParameterSet) {
  const auto found = salvage::h264Header(mainSet().put(0, 1).put(0, 1).put(0x80, 8).unit());
  ASSERT_TRUE(found.has_value());
  EXPECT_EQ(found->size, (PictureSize{320, 240}));
  EXPECT_FALSE(found->rate.has_value());
}

TEST(H264Header, CroppingTakesOffPixels) {
  const auto set = mainSet().put(1, 1).number(1).number(0).number(0).number(4).put(0, 1).put(0x80, 8);
  EXPECT_EQ(salvage::h264Header(set.unit())->size, (PictureSize{318, 232}));
}

TEST(H264Header, TimingTellsTheRate) {
  auto set = mainSet().put(0, 1).put(1, 1);
  set.put(0, 1).put(0, 1).put(0, 1).put(0, 1).put(1, 1).put(1001, 32).put(48000, 32).put(1, 1).put(0x80, 8);
  EXPECT_EQ(salvage::h264Header(set.unit())->rate, (PictureRate{24000, 1001}));
}

TEST(H264Header, HighProfileHasChromaAndScaling) {
  SetBits set;
  set.put(100, 8).put(0, 8).put(30, 8).number(0).number(1).number(0).number(0).put(0, 1).put(1, 1);
  set.put(1, 1).number(1).number(2);  // a list: its first value, then one that ends it at 0 by default
  for (int i = 0; i < 14; ++i) set.number(0);
  set.put(0, 7);
  set.number(0).number(2).number(1).put(0, 1).number(19).number(14).put(1, 1).put(1, 1).put(0, 1).put(0, 1).put(0x80,
                                                                                                                8);
  EXPECT_EQ(salvage::h264Header(set.unit())->size, (PictureSize{320, 240}));
}

TEST(H264Header, ASetThatIsCutIsNone) {
  Bytes unit = mainSet().put(0, 1).put(0, 1).unit();
  unit.resize(9);
  EXPECT_FALSE(salvage::h264Header(unit).has_value());
}

/// A picture whose pixels change slowly in both directions.
Bytes gradient(std::uint32_t width, std::uint32_t height, std::uint32_t channels, std::uint32_t row) {
  std::mt19937 random(1);
  Bytes bytes(std::size_t{row} * height);
  for (std::uint32_t y = 0; y < height; ++y) {
    for (std::uint32_t x = 0; x < width; ++x) {
      for (std::uint32_t c = 0; c < channels; ++c) {
        const std::uint32_t value = x * 255 / width / 2 + y * 100 / height + c * 60 + random() % 4;
        bytes[std::size_t{y} * row + x * channels + c] = static_cast<std::byte>(value & 0xffU);
      }
    }
  }
  return bytes;
}

TEST(RawPicture, ShapeIsTheOneInWhichNeighboursAreAlike) {
  const Bytes picture = gradient(160, 120, 3, 480);
  const auto shapes = salvage::rawShapes(160 * 120 * 3, {picture}, std::nullopt);
  ASSERT_FALSE(shapes.empty());
  EXPECT_EQ(shapes.front(), (salvage::RawShape{{160, 120}, 24, salvage::PixelLayout::rgb}));
}

TEST(RawPicture, RowsArePaddedToFourBytes) {
  const Bytes picture = gradient(90, 70, 3, 272);
  EXPECT_EQ(salvage::rawShapes(272 * 70, {picture}, std::nullopt).front().size, (PictureSize{90, 70}));
}

TEST(RawPicture, PackedYuvIsToldByItsPhases) {
  Bytes uyvy;
  Bytes yuy2;
  for (std::uint32_t y = 0; y < 120; ++y) {
    for (std::uint32_t x = 0; x < 80; ++x) {
      const unsigned luma = x + y / 2;
      for (const unsigned value : {40 + x / 8, luma, 200 - y / 8, luma + 1})
        uyvy.push_back(static_cast<std::byte>(value));
      for (const unsigned value : {luma, 40 + x / 8, luma + 1, 200 - y / 8})
        yuy2.push_back(static_cast<std::byte>(value));
    }
  }
  const auto size = static_cast<std::uint32_t>(uyvy.size());
  EXPECT_EQ(salvage::rawShapes(size, {uyvy}, std::nullopt).front(),
            (salvage::RawShape{{160, 120}, 16, salvage::PixelLayout::uyvy}));
  EXPECT_EQ(salvage::rawShapes(size, {yuy2}, std::nullopt).front(),
            (salvage::RawShape{{160, 120}, 16, salvage::PixelLayout::yuy2}));
}

TEST(RawPicture, PlanesOfHalfTheSizeAreTold) {
  for (const PictureSize size : {PictureSize{176, 144}, PictureSize{320, 240}, PictureSize{640, 360}}) {
    Bytes picture = gradient(size.width, size.height, 1, size.width);
    for (int plane = 0; plane < 2; ++plane) {
      const Bytes chroma = gradient(size.width / 2, size.height / 2, 1, size.width / 2);
      picture.insert(picture.end(), chroma.begin(), chroma.end());
    }
    const auto bytes = static_cast<std::uint32_t>(picture.size());
    EXPECT_EQ(salvage::rawShapes(bytes, {picture}, std::nullopt).front(),
              (salvage::RawShape{size, 12, salvage::PixelLayout::planar}));
  }
}

TEST(RawPicture, PicturesOfEightBitsAreNoPlanes) {
  for (const PictureSize size : {PictureSize{160, 120}, PictureSize{320, 240}}) {
    const std::uint32_t bytes = size.width * size.height;
    const salvage::RawShape wrong{{size.width, size.height / 3 * 2}, 12, salvage::PixelLayout::planar};
    for (const Bytes& picture : {gradient(size.width, size.height, 1, size.width), Bytes(bytes, std::byte{16})}) {
      const auto shapes = salvage::rawShapes(bytes, {picture}, std::nullopt);
      EXPECT_EQ(std::ranges::find(shapes, wrong), shapes.end()) << size.width;
    }
  }
}

TEST(RawPicture, AKnownSizeDecides) {
  const Bytes picture = gradient(160, 120, 3, 480);
  const auto shapes = salvage::rawShapes(160 * 120 * 3, {picture}, PictureSize{120, 160});
  ASSERT_EQ(shapes.size(), 1U);
  EXPECT_EQ(shapes.front().size, (PictureSize{120, 160}));
  EXPECT_TRUE(salvage::rawShapes(160 * 120 * 3, {picture}, PictureSize{77, 99}).empty());
}

TEST(RawPicture, NothingFitsAPrimeLength) { EXPECT_TRUE(salvage::rawShapes(57601, {}, std::nullopt).empty()); }

}  // namespace
}  // namespace zelvo::tests
