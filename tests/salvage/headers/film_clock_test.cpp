// How fast a film plays, by its interleaving.
#include "salvage/headers/film_clock.h"

#include <gtest/gtest.h>

#include "tests/salvage/scanned_film.h"

namespace zelvo::tests {
namespace {

using salvage::PictureRate;

/// The headers of chunks `lost` are gone.
std::optional<salvage::SoundShare> shareIn(const std::vector<AviChunk>& chunks,
                                           const std::vector<std::size_t>& lost = {}) {
  AviBuilder film;
  film.chunks = chunks;
  film.withIndex = false;
  platform::Bytes bytes = film.build();
  const auto offsets = chunkOffsets(film);
  for (const std::size_t number : lost)
    std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(offsets[number]), 8, std::byte{});
  ScannedFilm scanned(std::move(bytes));
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

TEST(FilmClock, WhatIsMissingDoesNotCount) {
  std::vector<AviChunk> chunks;
  for (int i = 0; i < 40; ++i) chunks.insert(chunks.end(), {{"00dc", 50}, {"01wb", 640}});
  // Sound with two pictures, and pictures with one sound: without them, others are still apart by their own share.
  const auto share = shareIn(chunks, {21, 22, 23, 50, 51, 52});
  ASSERT_TRUE(share.has_value());
  EXPECT_NEAR(share->bytes, 640, 1e-6);
  EXPECT_NEAR(share->error, 0, 1e-6);
}

TEST(FilmClock, PicturesThatAreMissingAmongFewBlocksCountAsManyAsTheirBytes) {
  std::vector<AviChunk> chunks;
  for (int i = 0; i < 90; ++i) {
    if (i % 30 == 0) chunks.push_back({"01wb", 8820});
    chunks.push_back({"00dc", 1000});
  }
  const auto share = shareIn(chunks, {40, 41, 45});
  ASSERT_TRUE(share.has_value());
  EXPECT_NEAR(share->bytes, 294, 1e-6);
  EXPECT_GT(share->error, 0.01);
  EXPECT_LT(share->error, 0.1);
}

TEST(FilmClock, TwoBlocksTellByThePicturesBetweenThem) {
  std::vector<AviChunk> chunks(5, {"00dc", 50});
  chunks.push_back({"01wb", 8820});
  chunks.insert(chunks.end(), 30, {"00dc", 50});
  chunks.push_back({"01wb", 5292});
  chunks.insert(chunks.end(), 18, {"00dc", 50});
  const auto share = shareIn(chunks);
  ASSERT_TRUE(share.has_value());
  EXPECT_NEAR(share->bytes, 294, 1e-6);
  EXPECT_NEAR(share->error, 1.0 / 30, 1e-6);
}

TEST(FilmClock, UnevenInterleavingMayBeFurtherOff) {
  std::vector<AviChunk> chunks;
  for (const int pictures : {3, 5, 8, 3, 6, 4, 5, 7}) {
    chunks.insert(chunks.end(), static_cast<std::size_t>(pictures), {"00dc", 50});
    chunks.push_back({"01wb", 1536});
  }
  const auto share = shareIn(chunks);
  ASSERT_TRUE(share.has_value());
  EXPECT_GT(share->error, 0.01);
  EXPECT_LT(share->error, 0.1);
  EXPECT_NEAR(share->bytes, 1536 / 5.17, 1536 / 5.17 * 2 * share->error);
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

TEST(FilmClock, OfRoughRatesTheMostUsualIsTaken) {
  EXPECT_EQ(salvage::usualPictureRate(26.4, 0.001), (PictureRate{26400, 1000}));
  EXPECT_EQ(salvage::usualPictureRate(26.4, 0.05), (PictureRate{25, 1}));
  EXPECT_EQ(salvage::usualPictureRate(15.7, 0.03), (PictureRate{15, 1}));
  EXPECT_EQ(salvage::usualPictureRate(40, 0.9), (PictureRate{40000, 1000}))
      << "no estimate is trusted to be as far off";
}

TEST(FilmClock, OfRoughRatiosTheMostUsualPairIsTaken) {
  const auto exact = salvage::usualPairs(1500, {.prefersSlow = true});
  ASSERT_FALSE(exact.empty());
  EXPECT_EQ(exact[0].samples, 24000U);
  const auto rough = salvage::usualPairs(1500, {.prefersSlow = true, .error = 0.03});
  ASSERT_FALSE(rough.empty());
  EXPECT_EQ(rough[0].pictures, (PictureRate{15, 1}));
  EXPECT_EQ(rough[0].samples, 22050U);
}

TEST(FilmClock, SoundOfTapesHasTheirRates) {
  EXPECT_EQ(salvage::usualPairs(1600, {.error = 0.05})[0].samples, 48000U);
  EXPECT_EQ(salvage::usualPairs(1600, {.isOfTapes = true, .error = 0.05})[0].samples % 11025, 0U);

  EXPECT_TRUE(salvage::isOfTapes(std::vector<std::uint32_t>{88200, 88200, 52920}, 2));
  EXPECT_TRUE(salvage::isOfTapes(std::vector<std::uint32_t>{7000, 7056, 7056}, 4));
  EXPECT_FALSE(salvage::isOfTapes(std::vector<std::uint32_t>{7000, 7000, 7056}, 4));
  EXPECT_FALSE(salvage::isOfTapes(std::vector<std::uint32_t>{15360, 15360}, 2));
  EXPECT_FALSE(salvage::isOfTapes(std::vector<std::uint32_t>{}, 2));
  EXPECT_FALSE(salvage::isOfTapes(std::vector<std::uint32_t>{0, 0}, 0));
}

TEST(FilmClock, OneRatioHasManyPairs) {
  const auto pairs = salvage::usualPairs(1764, {});
  ASSERT_GT(pairs.size(), 1U);
  EXPECT_EQ(pairs[0].pictures, (PictureRate{25, 1}));
  EXPECT_EQ(pairs[0].samples, 44100U);
  const auto slow = salvage::usualPairs(882, {.prefersSlow = true});
  EXPECT_EQ(slow[0].pictures, (PictureRate{25, 1}));
  EXPECT_EQ(slow[0].samples, 22050U);
  EXPECT_TRUE(salvage::usualPairs(3, {}).empty());
  const auto rough = salvage::usualPairs(1480, {.prefersSlow = true});
  ASSERT_FALSE(rough.empty());
  EXPECT_EQ(rough[0].pictures, (PictureRate{15, 1}));
  EXPECT_EQ(rough[0].samples, 22050U);
}

}  // namespace
}  // namespace zelvo::tests
