// Which codec a stream's header names.
#include "salvage/payloads/codec.h"

#include <gtest/gtest.h>

#include "tests/salvage/codec_films.h"

namespace zelvo::tests {
namespace {

using salvage::Codec;

TEST(Codec, PicturesAreKnownByTheirCompressionInCapitalsOrNot) {
  EXPECT_EQ(codecOf(pictureStream("XVID")), Codec::mpeg4);
  EXPECT_EQ(codecOf(pictureStream("mjpg")), Codec::jpeg);
  EXPECT_EQ(codecOf(pictureStream("Div3")), Codec::msMpeg4);
  EXPECT_EQ(codecOf(pictureStream("????")), Codec::unknown);
}

TEST(Codec, CompressionOfNumbersIsRawOrRunLength) {
  using namespace std::string_view_literals;
  EXPECT_EQ(codecOf(pictureStream("\0\0\0\0"sv)), Codec::rawPicture);
  EXPECT_EQ(codecOf(pictureStream("\1\0\0\0"sv)), Codec::msRunLength);
  EXPECT_EQ(codecOf(pictureStream("\3\0\0\0"sv)), Codec::rawPicture);
}

TEST(Codec, HandlerCountsWhereTheCompressionSaysNothing) {
  auto stream = pictureStream("????");
  stream.handler = avi::FourCC{"cvid"};
  EXPECT_EQ(codecOf(stream), Codec::cinepak);
}

TEST(Codec, MicrosoftVideoDiffersByItsBits) {
  EXPECT_EQ(codecOf(pictureStream("CRAM", 160, 120, 8)), Codec::msVideo8);
  EXPECT_EQ(codecOf(pictureStream("MSVC", 160, 120, 16)), Codec::msVideo16);
}

TEST(Codec, SoundIsKnownByItsTag) {
  EXPECT_EQ(codecOf(soundStream(0x55, 2, 44100, 1, 0, 0)), Codec::mp3);
  EXPECT_EQ(codecOf(soundStream(0x2000, 2, 48000, 1, 0, 0)), Codec::ac3);
  EXPECT_EQ(codecOf(soundStream(0x1234, 2, 48000, 1, 0, 0)), Codec::unknown);
}

TEST(Codec, ExtensibleSoundIsKnownByItsSubFormat) {
  auto stream = soundStream(0xfffe, 2, 48000, 4, 16, 4);
  stream.format.resize(40);
  stream.format[24] = std::byte{1};
  EXPECT_EQ(codecOf(stream), Codec::pcm);
  stream.format.resize(25);
  EXPECT_EQ(codecOf(stream), Codec::unknown);
}

TEST(Codec, TopDownPicturesHaveTheSameHeight) {
  auto stream = pictureStream("XVID", 320, 240);
  EXPECT_EQ(pictureFormat(stream).height, 240U);
  auto turned = pictureStream("XVID", 320, 0xffffff10);
  EXPECT_EQ(pictureFormat(turned).height, 240U);
}

}  // namespace
}  // namespace zelvo::tests
