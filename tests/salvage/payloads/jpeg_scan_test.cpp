#include "salvage/payloads/jpeg_scan.h"

#include <gtest/gtest.h>

#include "tests/salvage/made_jpeg.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;
using salvage::CutBytes;
using salvage::JpegPlace;
using salvage::jpegScan;

/// How many units are read until one breaks or the scan ends; nothing without a scan.
std::optional<std::uint64_t> unitsIn(const Bytes& picture) {
  const auto scan = jpegScan(picture);
  if (!scan) return std::nullopt;
  const CutBytes bytes{picture, picture.size(), 0};
  JpegPlace place{.next = scan->begin};
  while (place.unit < scan->units && readUnit(*scan, bytes, place)) {
  }
  if (place.unit == scan->units && !place.isBeforeEnd(bytes)) return std::nullopt;
  return place.unit;
}

TEST(JpegScanTest, AllUnitsAreReadOfEverySampling) {
  EXPECT_EQ(unitsIn(MadeJpeg{.sampling = 0x22}.bytes()), 20U * 10);
  EXPECT_EQ(unitsIn(MadeJpeg{.sampling = 0x21}.bytes()), 20U * 20);
  EXPECT_EQ(unitsIn(MadeJpeg{.sampling = 0x11}.bytes()), 40U * 20);
  EXPECT_EQ(unitsIn(MadeJpeg{.components = 1}.bytes()), 40U * 20);
  EXPECT_EQ(unitsIn(MadeJpeg{.width = 313, .height = 149}.bytes()), 20U * 10);
}

TEST(JpegScanTest, RestartsAreRead) {
  EXPECT_EQ(unitsIn(MadeJpeg{.restartUnits = 7}.bytes()), 200U);
  Bytes bytes = MadeJpeg{.restartUnits = 7}.bytes();
  for (std::size_t i = 400; i + 1 < bytes.size(); ++i) {
    if (bytes[i] == std::byte{0xff} && bytes[i + 1] == std::byte{0xd2}) bytes[i + 1] = std::byte{0xd3};
  }
  EXPECT_EQ(unitsIn(bytes), 3U * 7);
}

TEST(JpegScanTest, WalkEndsAtAMarkThatNoScanHas) {
  Bytes bytes = MadeJpeg{}.bytes();
  const std::size_t middle = bytes.size() / 2;
  bytes[middle] = std::byte{0xff};
  bytes[middle + 1] = std::byte{0x33};
  EXPECT_LT(unitsIn(bytes), 130U);
  EXPECT_GT(unitsIn(bytes), 70U);
}

TEST(JpegScanTest, ForeignBytesAreLeftOut) {
  const Bytes whole = MadeJpeg{}.bytes();
  Bytes bytes = whole;
  bytes.insert(bytes.begin() + 2000, 333, std::byte{0xff});
  const auto scan = jpegScan(bytes);
  const CutBytes cut{bytes, 2000, 333};
  EXPECT_EQ(cut.size(), whole.size());
  JpegPlace place{.next = scan->begin};
  while (readUnit(*scan, cut, place)) {
  }
  EXPECT_EQ(place.unit, 200U);
}

TEST(JpegScanTest, TornHeadersTellNothing) {
  const Bytes whole = MadeJpeg{}.bytes();
  const std::size_t begin = jpegScan(whole)->begin;
  for (std::size_t size = 0; size < begin; ++size) EXPECT_FALSE(jpegScan(std::span(whole).first(size))) << size;
  for (std::size_t place = 0; place < begin; ++place) {
    for (const unsigned value : {0U, 1U, 0x7fU, 0xffU}) {
      Bytes torn = whole;
      torn[place] = static_cast<std::byte>(value);
      static_cast<void>(unitsIn(torn));  // no crash
    }
  }
}

TEST(JpegScanTest, OtherKindsOfJpegAreLeftAlone) {
  Bytes bytes = MadeJpeg{}.bytes();
  const std::size_t frame = jpegScan(bytes)->begin - 14 - 19;
  ASSERT_EQ(bytes[frame + 1], std::byte{0xc0});
  bytes[frame + 1] = std::byte{0xc2};  // progressive
  EXPECT_FALSE(jpegScan(bytes));
  bytes[frame + 1] = std::byte{0xc1};
  EXPECT_TRUE(jpegScan(bytes));
}

}  // namespace
}  // namespace zelvo::tests
