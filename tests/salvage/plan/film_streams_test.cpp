// The streams of the repaired film by the numbers of the damaged film's codes.
#include "salvage/plan/film_streams.h"

#include <gtest/gtest.h>

#include "tests/salvage/codec_films.h"

namespace zelvo::tests {
namespace {

using salvage::FilmHeader;
using salvage::FilmStream;
using salvage::FilmStreams;

FilmHeader header() {
  FilmHeader made;
  FilmStream pictures;
  pictures.number = 3;
  pictures.header = pictureStream("XVID");
  FilmStream sound;
  sound.number = 1;
  sound.header = soundStream(1, 2, 8000, 4, 16, 4);
  FilmStream frames;
  frames.number = 7;
  frames.header = soundStream(0x55, 2, 44100, 1, 0, 0);
  frames.header.scale = 1152;
  made.streams = {pictures, sound, frames};
  return made;
}

TEST(FilmStreams, AreFoundByTheirNumbers) {
  const FilmStreams streams(header());
  EXPECT_EQ(streams.count(), 3U);
  EXPECT_EQ(streams.indexOf(3), 0);
  EXPECT_EQ(streams.indexOf(1), 1);
  EXPECT_EQ(streams.indexOf(7), 2);
  EXPECT_EQ(streams.indexOf(0), FilmStreams::kNone);
  EXPECT_EQ(streams.indexOf(200), FilmStreams::kNone);
  EXPECT_EQ(streams.numberOf(2), 7);
}

TEST(FilmStreams, TheFirstOfTwoWithOneNumberHasIt) {
  FilmHeader twice = header();
  twice.streams[1].number = 3;
  const FilmStreams streams(twice);
  EXPECT_EQ(streams.indexOf(3), 0);
  EXPECT_EQ(streams.indexOf(7), 2);
}

TEST(FilmStreams, ChunksPlayByTheirBytesOrEachForItself) {
  const FilmStreams streams(header());
  EXPECT_EQ(streams.duration(0, 12345), 40'000'000);
  EXPECT_EQ(streams.duration(1, 3200), 100'000'000);
  EXPECT_EQ(streams.duration(2, 417), 26'122'448);
  EXPECT_TRUE(streams.countsBytes(1));
  EXPECT_FALSE(streams.countsBytes(2));
  EXPECT_EQ(streams.blockOf(1), 4U);
  EXPECT_EQ(streams.blockOf(2), 1U);
}

TEST(FilmStreams, WithoutARateThereIsNoTime) {
  FilmHeader lost = header();
  lost.streams[0].header.rate = 0;
  lost.streams[1].header.rate = 1;
  lost.streams[1].header.scale = 0xffffffff;
  const FilmStreams streams(lost);
  EXPECT_EQ(streams.duration(0, 100), 0);
  EXPECT_GT(streams.duration(1, 0xffffffff), 0);
}

}  // namespace
}  // namespace zelvo::tests
