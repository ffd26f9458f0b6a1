#include "avi/codec_names.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

namespace zelvo::tests {
namespace {

using avi::audioFormatName;
using avi::videoCodecName;

std::vector<std::byte> bytesOf(std::string_view text) {
  std::vector<std::byte> bytes;
  for (const char one : text) bytes.push_back(static_cast<std::byte>(one));
  return bytes;
}

/// A WAVEFORMATEXTENSIBLE whose SubFormat begins with `tag`.
std::vector<std::byte> extensible(unsigned tag) {
  std::vector<std::byte> bytes(40);
  bytes[0] = std::byte{0xfe};
  bytes[1] = std::byte{0xff};
  bytes[24] = static_cast<std::byte>(tag & 0xffU);
  bytes[25] = static_cast<std::byte>(tag >> 8U);
  return bytes;
}

TEST(VideoCodecName, IsWhatPeopleCallTheCode) {
  EXPECT_EQ(videoCodecName(bytesOf("FMP4")), "MPEG-4");
  EXPECT_EQ(videoCodecName(bytesOf("MJPG")), "Motion JPEG");
  EXPECT_EQ(videoCodecName(bytesOf("DIB ")), "uncompressed");
}

TEST(VideoCodecName, TakesSmallLettersToo) {
  EXPECT_EQ(videoCodecName(bytesOf("xvid")), "MPEG-4 (Xvid)");
  EXPECT_EQ(videoCodecName(bytesOf("dvsd")), "DV");
}

TEST(VideoCodecName, IsEmptyForWhatIsNotKnown) {
  EXPECT_EQ(videoCodecName(bytesOf("QQQQ")), "");
  EXPECT_EQ(videoCodecName(bytesOf(std::string_view("\0\0\0\0", 4))), "");
  EXPECT_EQ(videoCodecName(bytesOf("MP4")), "");
  EXPECT_EQ(videoCodecName({}), "");
}

TEST(AudioFormatName, IsThatOfTheTag) {
  EXPECT_EQ(audioFormatName(0x0055U), "MP3");
  EXPECT_EQ(audioFormatName(bytesOf(std::string_view("\x01\x00\x02\x00", 4))), "PCM");
  EXPECT_EQ(audioFormatName(bytesOf(std::string_view("\x00\x20", 2))), "AC-3");
}

TEST(AudioFormatName, OfAnExtensibleFormatIsThatOfItsSubFormat) {
  EXPECT_EQ(audioFormatName(extensible(0x0001)), "PCM");
  EXPECT_EQ(audioFormatName(extensible(0x0003)), "IEEE float PCM");
  std::vector<std::byte> cut = extensible(0x0001);
  cut.resize(25);
  EXPECT_EQ(audioFormatName(cut), "");
}

TEST(AudioFormatName, IsEmptyForWhatIsNotKnownOrCutShort) {
  EXPECT_EQ(audioFormatName(0x7777U), "");
  EXPECT_EQ(audioFormatName(bytesOf("\x01")), "");
}

}  // namespace
}  // namespace zelvo::tests
