// A sound track's usual lag behind the pictures.
#include "salvage/plan/sound_track.h"

#include <optional>
#include <span>
#include <vector>

#include <gtest/gtest.h>

namespace zelvo::tests {
namespace {

using salvage::SoundTrack;

TEST(SoundTrack, MedianIsTheUpperOfTwoInTheMiddle) {
  std::vector<double> values{4, 1, 3, 2};
  EXPECT_EQ(salvage::medianOf(values), 3);
  EXPECT_EQ(salvage::medianOf(std::span(values).first(1)), 1);
}

TEST(SoundTrack, NothingIsUsualBeforeAnythingWasNoted) {
  SoundTrack track(1, 0.04, 400);
  EXPECT_EQ(track.usualLag(), std::nullopt);
  EXPECT_EQ(track.lags(), 0U);
  track.learn(0.5);
  EXPECT_EQ(track.usualLag(), 0.5);
}

TEST(SoundTrack, OnlyTheLastTwelveCount) {
  SoundTrack track(1, 0.04, 400);
  for (int i = 0; i < 30; ++i) track.learn(9);
  for (int i = 0; i < 6; ++i) track.learn(1 + 0.1 * i);
  EXPECT_EQ(track.usualLag(), 9);  // the upper one in the middle of six and six
  track.learn(2);
  EXPECT_EQ(track.usualLag(), 2);
  for (int i = 0; i < 12; ++i) track.learn(i);
  EXPECT_EQ(track.usualLag(), 6);
  EXPECT_EQ(track.lags(), 49U);
}

/// A track whose chunks play for `time` while a picture of a second is shown, `count` times; something was lost in
/// front of every chunk of those in `cuts`.
SoundTrack compared(double time, int count, int cuts = 1000) {
  SoundTrack track(1, time, 400);
  for (int i = 0; i < count; ++i) track.compare(static_cast<std::size_t>(i / cuts), i, time);
  track.setPace();
  return track;
}

TEST(SoundTrack, ClockThatCannotBeTrueGoesByThePictures) {
  const SoundTrack slow = compared(0.125, 100);
  EXPECT_EQ(slow.pace(), 8);
  EXPECT_EQ(slow.chunkTime, 1);
  EXPECT_EQ(compared(4, 100).pace(), 0.25);
}

TEST(SoundTrack, ClockThatIsNotFarOffIsKept) {
  EXPECT_EQ(compared(0.5, 100).pace(), 1);
  EXPECT_EQ(compared(2, 100).pace(), 1);
  EXPECT_EQ(compared(0.5, 100).chunkTime, 0.5);
}

TEST(SoundTrack, FewChunksAndThoseBesideGapsTellNothing) {
  EXPECT_EQ(compared(0.125, 64).pace(), 1);
  EXPECT_EQ(compared(0.125, 65).pace(), 8);
  EXPECT_EQ(compared(0.125, 1000, 1).pace(), 1);
  EXPECT_EQ(compared(0.125, 1000, 2).pace(), 8);
}

TEST(SoundTrack, ChunksThatPlayNowForThisShareAndNowForThatTellNothing) {
  SoundTrack track(1, 0.125, 400);
  double pictures = 0;
  for (int i = 0; i < 400; ++i) track.compare(0, pictures += 1 + i % 4, 0.125);
  track.setPace();
  EXPECT_EQ(track.pace(), 1);
}

TEST(SoundTrack, FilledChunksAreWholeBlocksOfWhatIsLost) {
  const SoundTrack track(1, 0.1, 4000);
  EXPECT_EQ(track.sizeFor(0.3, 3, 4), 4000U);
  EXPECT_EQ(track.sizeFor(0.31, 3, 4), 4000U);
  EXPECT_EQ(track.sizeFor(0.345, 3, 4), 4600U);
  EXPECT_EQ(track.sizeFor(0.345, 3, 1000), 5000U);
  EXPECT_EQ(track.sizeFor(0.255, 3, 1000), 3000U);
}

TEST(SoundTrack, ChunksOfOneBlockStayThat) {
  const SoundTrack track(1, 0.1, 743);
  EXPECT_EQ(track.sizeFor(0.26, 3, 743), 743U);
  EXPECT_EQ(track.sizeFor(0.34, 3, 743), 743U);
}

}  // namespace
}  // namespace zelvo::tests
