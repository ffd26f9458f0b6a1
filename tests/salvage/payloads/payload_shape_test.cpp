// Whether bytes look like a payload of a stream.
#include "salvage/payloads/payload_shape.h"

#include <gtest/gtest.h>

#include "tests/salvage/codec_films.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;
using salvage::Fit;
using salvage::PayloadShape;
using namespace std::string_view_literals;

TEST(PayloadShape, PicturesBeginAsTheirCodecHasThem) {
  EXPECT_EQ(PayloadShape(pictureStream("MJPG")).begins(numbered({0xff, 0xd8, 0xff})), Fit::fits);
  EXPECT_EQ(PayloadShape(pictureStream("MJPG")).begins(numbered({0xff, 0xd9, 0xff})), Fit::contradicts);
  EXPECT_EQ(PayloadShape(pictureStream("XVID")).begins(numbered({0, 0, 1, 0xb6})), Fit::fits);
  EXPECT_EQ(PayloadShape(pictureStream("XVID")).begins(numbered({0, 0, 1, 0xb7})), Fit::contradicts);
  EXPECT_EQ(PayloadShape(pictureStream("H264")).begins(numbered({0, 0, 0, 1, 9})), Fit::fits);
  EXPECT_EQ(PayloadShape(pictureStream("H264")).begins(numbered({0, 0, 5, 1, 9})), Fit::unknown);
  EXPECT_EQ(PayloadShape(pictureStream("H264")).begins(numbered({7, 0, 5, 1, 9})), Fit::contradicts);
  EXPECT_EQ(PayloadShape(pictureStream("????")).begins(numbered({7, 0, 5, 1, 9})), Fit::unknown);
}

TEST(PayloadShape, SoundBeginsWithAFrame) {
  const PayloadShape shape(soundStream(0x55, 2, 44100, 1, 0, 0));
  EXPECT_EQ(shape.begins(numbered({0xff, 0xfb, 0x90, 0})), Fit::fits);
  EXPECT_EQ(shape.begins(numbered({0xff, 0xfb, 0xf0, 0})), Fit::contradicts);
}

TEST(PayloadShape, JpegEndsWithItsMarkAndALittleFill) {
  const PayloadShape shape(pictureStream("MJPG"));
  const Bytes head = numbered({0xff, 0xd8});
  Bytes tail = numbered({1, 2, 0xff, 0xd9});
  EXPECT_EQ(shape.isComplete(head, tail, 1000), Fit::fits);
  tail.resize(tail.size() + 16);
  EXPECT_EQ(shape.isComplete(head, tail, 1000), Fit::fits);
  tail.resize(tail.size() + 1);
  EXPECT_EQ(shape.isComplete(head, tail, 1000), Fit::contradicts);
}

TEST(PayloadShape, RawPicturesHaveOneSizeWithRowsOfFours) {
  const PayloadShape shape(pictureStream("\0\0\0\0"sv, 3, 5, 24));
  EXPECT_EQ(shape.fixedSize(), 60U);
  EXPECT_EQ(shape.isComplete({}, {}, 60), Fit::fits);
  EXPECT_EQ(shape.isComplete({}, {}, 59), Fit::contradicts);
  EXPECT_EQ(PayloadShape(pictureStream("I420", 6, 4, 12)).fixedSize(), 36U);
  EXPECT_FALSE(PayloadShape(pictureStream("\0\0\0\0"sv, 70000, 5, 24)).fixedSize().has_value());
  EXPECT_FALSE(PayloadShape(pictureStream("XVID", 3, 5, 24)).fixedSize().has_value());
}

TEST(PayloadShape, FramesMustComeOutEven) {
  const PayloadShape shape(soundStream(0x55, 2, 44100, 1, 0, 0));
  Bytes frame = numbered({0xff, 0xfb, 0x90, 0});
  frame.resize(417);
  EXPECT_EQ(shape.isComplete(frame, {}, 417), Fit::fits);
  frame.resize(418);
  EXPECT_EQ(shape.isComplete(frame, {}, 418), Fit::contradicts);
  frame.resize(64);
  EXPECT_EQ(shape.isComplete(frame, {}, 417), Fit::fits);
  EXPECT_EQ(shape.isComplete(frame, {}, 900), Fit::unknown);
}

TEST(PayloadShape, BlocksMustComeOutEven) {
  const PayloadShape shape(soundStream(1, 2, 44100, 4, 16, 4));
  EXPECT_EQ(shape.block(), 4U);
  EXPECT_EQ(shape.isComplete({}, {}, 400), Fit::unknown);
  EXPECT_EQ(shape.isComplete({}, {}, 401), Fit::contradicts);
}

TEST(PayloadShape, CinepakNamesItsLength) {
  const PayloadShape shape(pictureStream("cvid"));
  const Bytes head = numbered({0, 0, 0, 100, 0, 0, 0, 0, 0, 1, 0x11, 0});
  EXPECT_EQ(shape.begins(head), Fit::fits);
  EXPECT_EQ(shape.isComplete(head, {}, 102), Fit::fits);
  EXPECT_EQ(shape.isComplete(head, {}, 103), Fit::contradicts);
  EXPECT_EQ(shape.isComplete(head, {}, 99), Fit::contradicts);
}

}  // namespace
}  // namespace zelvo::tests
