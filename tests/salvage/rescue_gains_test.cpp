// What the rescue of each place would bring, on films planned by hand.
#include "salvage/rescue_gains.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/salvage/written_film.h"

namespace zelvo::tests {
namespace {

using salvage::ByteSpan;
using salvage::LossCause;
using salvage::RescueReport;
using salvage::Slot;
using salvage::SlotState;
using testing::ElementsAre;

/// Forty pictures of 1000 bytes at 25 a second, chunk after chunk from byte 1000 on; every tenth is a key.
struct GainsBench {
  GainsBench() {
    film.with(pictureStream("ZZZZ"), "00dc");
    for (int i = 0; i < 40; ++i) {
      Slot& slot = film.add(0, platform::Bytes(1000));
      slot.source = (1000 + 1008U * static_cast<unsigned>(i) + 8) & Slot::kSourceMask;
      slot.isIndexed = true;
      slot.hasKeyFlag = i % 10 == 0;
    }
  }
  /// The picture and its place as an unrescued span.
  void lose(std::uint32_t picture, std::uint32_t count = 1) {
    for (std::uint32_t i = picture; i < picture + count; ++i) film.plan.slots[i].state = SlotState::damaged;
    salvage::PlanSpan span;
    span.begin = 1000 + 1008ULL * picture;
    span.end = span.begin + 1008ULL * count;
    span.firstSlot = picture;
    span.slots = count;
    span.cause = LossCause::unrescued;
    film.plan.spans.push_back(span);
  }
  RescueReport weigh(std::vector<ByteSpan> lost, bool areHeadersHurt = false) {
    film.files.put("/in.avi", film.input);
    avi::InputFile input(film.files.openForReading("/in.avi").file);
    return salvage::weighRescue({input, film.plan, film.header, lost, lost, 1000, areHeadersHurt});
  }

  WrittenFilmBench film;
};

TEST(RescueGains, APictureCountsWithThoseThatNeedIt) {
  GainsBench bench;
  bench.lose(3);
  bench.lose(19);
  const RescueReport report = bench.weigh({{4100, 4200}, {20'200, 20'300}});
  ASSERT_EQ(report.gains.size(), 2U);
  EXPECT_EQ(report.gains[0].place, (ByteSpan{4100, 4200})) << "seven pictures up to the next key";
  EXPECT_NEAR(report.gains[0].seconds, 7 * 0.04, 1e-6);
  EXPECT_NEAR(report.gains[1].seconds, 0.04, 1e-6);
  EXPECT_NEAR(report.seconds, 8 * 0.04, 1e-6);
}

TEST(RescueGains, OrderIsBySecondsForAByte) {
  GainsBench bench;
  bench.lose(9);
  bench.lose(15, 2);
  bench.lose(29);
  const RescueReport report = bench.weigh({{10'100, 10'110}, {16'200, 18'000}, {30'300, 30'400}});
  ASSERT_EQ(report.gains.size(), 3U);
  EXPECT_EQ(report.gains[0].place.begin, 10'100U);
  EXPECT_EQ(report.gains[1].place.begin, 30'300U);
  EXPECT_EQ(report.gains[2].place.begin, 16'200U);
  EXPECT_NEAR(report.gains[0].perMebibyte(), 0.04 * 1048576 / 10, 1e-6);
}

TEST(RescueGains, PlacesOfOneLossShareItByTheirBytes) {
  GainsBench bench;
  bench.lose(5, 5);
  const RescueReport report = bench.weigh({{6100, 6200}, {7000, 7300}, {8000, 8600}});
  EXPECT_NEAR(report.gains[0].seconds + report.gains[1].seconds + report.gains[2].seconds, 0.2, 1e-6);
  for (const auto& gain : report.gains)
    EXPECT_NEAR(gain.seconds, 0.2 * static_cast<double>(gain.place.end - gain.place.begin) / 1000, 1e-6);
}

TEST(RescueGains, WhatBringsNothingIsNotWanted) {
  GainsBench bench;
  bench.lose(9);
  const RescueReport report = bench.weigh({{10'100, 10'200}, {100'000, 200'000}});
  EXPECT_EQ(report.wanted, 1U);
  EXPECT_THAT(salvage::wantedPlaces(report), ElementsAre(ByteSpan{10'100, 10'200}));
  EXPECT_EQ(report.bytes, 100'100U);
}

TEST(RescueGains, WantedPlacesRise) {
  GainsBench bench;
  bench.lose(9);
  bench.lose(19);
  const RescueReport report = bench.weigh({{10'100, 10'900}, {20'200, 20'300}});
  EXPECT_EQ(report.gains[0].place.begin, 20'200U);
  EXPECT_THAT(salvage::wantedPlaces(report), ElementsAre(ByteSpan{10'100, 10'900}, ByteSpan{20'200, 20'300}));
}

TEST(RescueGains, HeadersThatHadToBeMadeAgainComeFirst) {
  GainsBench bench;
  bench.lose(9);
  const std::vector<ByteSpan> lost{{0, 512}, {10'100, 10'612}};
  RescueReport report = bench.weigh(lost, true);
  EXPECT_TRUE(report.gains[0].holdsHeaders);
  EXPECT_NEAR(report.gains[0].seconds, 1.6, 1e-6);
  EXPECT_FALSE(report.gains[1].holdsHeaders);
  report = bench.weigh(lost, false);
  EXPECT_EQ(report.gains[0].place.begin, 10'100U);
  EXPECT_EQ(report.wanted, 1U);
}

TEST(RescueGains, OtherCausesCountForNothing) {
  GainsBench bench;
  bench.lose(9);
  bench.film.plan.spans[0].cause = LossCause::overwritten;
  const RescueReport report = bench.weigh({{10'100, 10'200}});
  EXPECT_EQ(report.seconds, 0);
  EXPECT_EQ(report.wanted, 0U);
}

}  // namespace
}  // namespace zelvo::tests
