// Kinds of damage that people meet, with the exact film that each must give: those that need neither an index nor its
// absence to be told apart.
#include <algorithm>
#include <random>

#include <gtest/gtest.h>

#include "tests/salvage/made_film.h"
#include "tests/salvage/salvage_bench.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;
using salvage::SlotState;

/// dwLength of both streams, dwTotalFrames, and the sizes of form and media: as a camera leaves them that was cut off.
void unset(MadeFilm& film) {
  for (const char* const type : {"vids", "auds"}) overwriteNumber(film.bytes, film.positionOf(type) + 32, 0);
  overwriteNumber(film.bytes, film.positionOf("avih") + 24, 0);
  overwriteNumber(film.bytes, 4, 0);
  overwriteNumber(film.bytes, film.positionOf("movi") - 4, 0);
}

TEST(DamageKinds, NeverFinalisedKeepsEveryChunk) {
  MadeFilm film(40, 1, false);
  unset(film);
  EXPECT_EQ(fates(PlannedFilm(film.bytes), film), allBut(80));
}

TEST(DamageKinds, NeverFinalisedWithAPreallocatedTailOfZerosEndsWithTheLastChunk) {
  MadeFilm film(40, 1, false);
  unset(film);
  film.bytes.resize(film.bytes.size() + 100'000);
  EXPECT_EQ(fates(PlannedFilm(film.bytes), film), allBut(80));
}

TEST(DamageKinds, IndexPartlyWrongCostsNoChunk) {
  MadeFilm film;
  const Bytes garbage = noise(10 * 16);
  std::ranges::copy(garbage, film.bytes.begin() + static_cast<std::ptrdiff_t>(film.indexBegin() + 20 * 16));
  for (const std::uint64_t entry : {40U, 41U, 50U})
    overwriteNumber(film.bytes, static_cast<std::size_t>(film.indexBegin() + entry * 16 + 12), 0x10'000);
  EXPECT_EQ(fates(PlannedFilm(film.bytes), film), allBut(80));
}

TEST(DamageKinds, FlippedBitsOfPayloadsStayAndThoseOfHeadersAreMended) {
  for (const bool withIndex : {true, false}) {
    MadeFilm film(40, 1, withIndex);
    film.at(film.headers[10] + 8 + 77) ^= std::byte{0x10};
    film.at(film.headers[20] + 2) ^= std::byte{0x40};  // of a code
    film.at(film.headers[30] + 6) ^= std::byte{0x01};  // of a size: 64 KiB more
    const PlannedFilm planned(film.bytes);
    EXPECT_EQ(fates(planned, film), allBut(80, {{10, "other0"}})) << withIndex;
    EXPECT_EQ(planned.plan.slots[10].state, SlotState::whole);
    EXPECT_EQ(planned.plan.slots[10].source, film.headers[10] + 8);
  }
}

TEST(DamageKinds, WildListSizesChangeNothing) {
  for (const std::uint32_t size : {0U, 3U, 1000U, 0x7fffffffU, 0xffffffffU}) {
    for (const bool withIndex : {true, false}) {
      MadeFilm film(40, 1, withIndex);
      overwriteNumber(film.bytes, 4, size);
      for (const char* const type : {"hdrl", "strl", "movi"})
        overwriteNumber(film.bytes, film.positionOf(type) - 4, size);
      EXPECT_EQ(fates(PlannedFilm(film.bytes), film), allBut(80)) << size << " " << withIndex;
    }
  }
}

TEST(DamageKinds, StretchOfRandomBytesCostsWhatItCovers) {
  MadeFilm film;
  std::ranges::copy(noise(static_cast<std::size_t>(film.headers[24] - film.headers[20])),
                    film.bytes.begin() + static_cast<std::ptrdiff_t>(film.headers[20]));
  const PlannedFilm planned(film.bytes);
  ASSERT_EQ(planned.plan.slots.size(), 80U);
  for (std::size_t i = 0; i < 80; ++i) {
    if (i >= 20 && i < 24) {
      EXPECT_NE(planned.plan.slots[i].state, SlotState::whole) << i;
    } else {
      EXPECT_EQ(contentOf(planned, planned.plan.slots[i]), film.payloads[i]) << i;
    }
  }
}

TEST(DamageKinds, ForeignClustersBetweenItsOwnTearOnlyWhatTheyPart) {
  MadeFilm film(80);
  for (const std::uint64_t cluster : {30U, 20U, 10U}) film.insert(cluster * 4096, noise(4096, 9));
  const PlannedFilm planned(film.bytes);
  ASSERT_EQ(planned.plan.slots.size(), 160U);
  std::size_t whole = 0;
  for (std::size_t i = 0; i < 160; ++i) {
    if (contentOf(planned, planned.plan.slots[i]) == film.payloads[i]) ++whole;
  }
  EXPECT_GE(whole, 157U);
}

TEST(DamageKinds, MediaInFrontOfTheRestGoneKeepsTheRest) {
  MadeFilm film;
  film.fill(film.headers[0], film.headers[20] - film.headers[0]);
  const auto words = fates(PlannedFilm(film.bytes), film);
  ASSERT_EQ(words.size(), 80U);
  for (std::size_t i = 20; i < 80; ++i) EXPECT_EQ(words[i], std::to_string(i));
}

TEST(DamageKinds, EverythingTogetherLosesNoMoreThanItMust) {
  MadeFilm film(100, 1, false);
  film.cut(film.headers[180] + 30);
  film.remove(film.headers[150] + 40, 501);
  film.fill(film.headers[120] + 200, 100);
  overwriteNumber(film.bytes, static_cast<std::size_t>(film.headers[100]) + 4, 70'000);
  film.fill(film.headers[80], 4, std::byte{0xee});
  film.fill(film.headers[60], film.headers[62] - film.headers[60], std::byte{0xee});
  overwriteNumber(film.bytes, 4, 0xffff);
  const PlannedFilm planned(film.bytes);
  ASSERT_GE(planned.plan.slots.size(), 180U);
  std::size_t same = 0;
  for (std::size_t i = 0; i < 180; ++i) {
    if (contentOf(planned, planned.plan.slots[i]) == film.payloads[i]) ++same;
  }
  EXPECT_GE(same, 180U - 4U);
}

}  // namespace
}  // namespace zelvo::tests
