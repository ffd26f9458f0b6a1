// How fast a film plays, by its interleaving.
#include "salvage/headers/film_clock.h"

#include <gtest/gtest.h>

#include "tests/salvage/scanned_film.h"

namespace zelvo::tests {
namespace {

using salvage::PictureRate;

std::optional<salvage::SoundShare> shareIn(const std::vector<AviChunk>& chunks) {
  AviBuilder film;
  film.chunks = chunks;
  film.withIndex = false;
  ScannedFilm scanned(film.build());
  scanned.run();
  return salvage::soundShare({}, scanned.scan.candidates, scanned.chain, 0, 1);
}

TEST(FilmClock, EachPictureComesWithItsShareOfSound) {
  std::vector<AviChunk> chunks;
  for (int i = 0; i < 20; ++i) chunks.insert(chunks.end(), {{"00dc", 50}, {"01wb", 640}});
  const auto share = shareIn(chunks);
  ASSERT_TRUE(share.has_value());
  EXPECT_NEAR(share->bytes, 640, 1e-6);
  EXPECT_NEAR(share->chunks, 1, 1e-6);
}

TEST(FilmClock, WhatRunsAheadOrOnDoesNotCount) {
  std::vector<AviChunk> chunks{{"01wb", 5000}};
  for (int i = 0; i < 20; ++i) chunks.insert(chunks.end(), {{"00dc", 50}, {"01wb", 640}});
  for (int i = 0; i < 30; ++i) chunks.push_back({"01wb", 640});
  EXPECT_NEAR(shareIn(chunks)->bytes, 640, 1e-6);
}

TEST(FilmClock, LongBlocksHaveTheSameShare) {
  std::vector<AviChunk> chunks;
  for (int i = 0; i < 120; ++i) {
    if (i % 12 == 0) chunks.push_back({"01wb", 12 * 100});
    chunks.push_back({"00dc", 50});
  }
  EXPECT_NEAR(shareIn(chunks)->bytes, 100, 1e-6);
}

TEST(FilmClock, AnIndexKnowsMoreThanTheChain) {
  salvage::IndexTemplate index;
  for (std::uint32_t i = 0; i < 10; ++i) {
    index.entries.push_back({.offset = i * 1000U, .size = 50, .stream = 0});
    index.entries.push_back({.offset = i * 1000U + 100, .size = 300, .stream = 1});
  }
  EXPECT_NEAR(salvage::soundShare(index, {}, {}, 0, 1)->bytes, 300, 1e-6);
  for (auto& entry : index.entries) entry.isForeign = true;
  EXPECT_FALSE(salvage::soundShare(index, {}, {}, 0, 1).has_value());
}

TEST(FilmClock, AFewLongBlocksCountAsAWhole) {
  std::vector<AviChunk> chunks(20, {"00dc", 50});
  chunks.insert(chunks.begin() + 10, 2, {"01wb", 3000});
  EXPECT_NEAR(shareIn(chunks)->bytes, 300, 1e-6);
}

TEST(FilmClock, TooLittleIsNoShare) {
  EXPECT_FALSE(shareIn({{"00dc", 50}, {"01wb", 640}, {"00dc", 50}, {"01wb", 640}}).has_value());
}

TEST(FilmClock, RatesSnapToUsualOnes) {
  EXPECT_EQ(salvage::usualPictureRate(25.05), (PictureRate{25, 1}));
  EXPECT_EQ(salvage::usualPictureRate(29.97), (PictureRate{30000, 1001}));
  EXPECT_EQ(salvage::usualPictureRate(29.999), (PictureRate{30, 1}));
  EXPECT_EQ(salvage::usualPictureRate(69.981), (PictureRate{70, 1}));
  EXPECT_EQ(salvage::usualPictureRate(22), (PictureRate{22000, 1000}));
  EXPECT_EQ(salvage::usualSampleRate(43900), 44100U);
  EXPECT_EQ(salvage::usualSampleRate(40000), 40000U);
}

TEST(FilmClock, OneRatioHasManyPairs) {
  const auto pairs = salvage::usualPairs(1764, false);
  ASSERT_GT(pairs.size(), 1U);
  EXPECT_EQ(pairs[0].pictures, (PictureRate{25, 1}));
  EXPECT_EQ(pairs[0].samples, 44100U);
  const auto slow = salvage::usualPairs(882, true);
  EXPECT_EQ(slow[0].pictures, (PictureRate{25, 1}));
  EXPECT_EQ(slow[0].samples, 22050U);
  EXPECT_TRUE(salvage::usualPairs(3, false).empty());
  const auto rough = salvage::usualPairs(1480, true);
  ASSERT_FALSE(rough.empty());
  EXPECT_EQ(rough[0].pictures, (PictureRate{15, 1}));
  EXPECT_EQ(rough[0].samples, 22050U);
}

}  // namespace
}  // namespace zelvo::tests
