// What comes of a film with an index under each kind of damage.
#include <map>

#include <gtest/gtest.h>

#include "tests/salvage/made_film.h"

namespace zelvo::tests {
namespace {

using salvage::LossCause;
using salvage::SlotState;
using Words = std::vector<std::string>;

Words planOfIndex(const MadeFilm& film) { return fates(PlannedFilm(film.bytes), film); }

TEST(IndexedFilmDamage, NothingKeepsEveryChunk) {
  const MadeFilm film;
  const PlannedFilm planned(film.bytes);
  EXPECT_EQ(fates(planned, film), allBut(80));
  EXPECT_TRUE(planned.plan.spans.empty());
  for (const auto& slot : planned.plan.slots) {
    EXPECT_EQ(slot.state, SlotState::whole);
    EXPECT_TRUE(slot.isIndexed);
    EXPECT_TRUE(slot.hasKeyFlag);
  }
}

TEST(IndexedFilmDamage, BytesMissingInsideAPictureTearThatPictureAlone) {
  MadeFilm film;
  film.remove(film.headers[20] + 100, 301);
  EXPECT_EQ(planOfIndex(film), allBut(80, {{20, "torn0"}}));
}

TEST(IndexedFilmDamage, TornPicturesThatBearTheirLengthKeepIt) {
  for (const std::string_view codec : {"cvid", "XVID"}) {
    AviBuilder builder;
    builder.videoHandler = builder.videoCompression = codec;
    for (std::uint32_t i = 0; i < 40; ++i) builder.chunks.push_back({"00dc", 2000 + 6 * i, std::byte{0x91}});
    platform::Bytes bytes = builder.build();
    const auto first = bytes.begin() + static_cast<std::ptrdiff_t>(payloadOffsets(builder)[0] + 300);
    bytes.erase(first, first + 900);
    const PlannedFilm planned(bytes);
    ASSERT_FALSE(planned.plan.slots.empty());
    EXPECT_EQ(planned.plan.slots[0].state, SlotState::torn);
    EXPECT_EQ(planned.plan.slots[0].size, codec == "cvid" ? 2000U : 1100U);
  }
}

TEST(IndexedFilmDamage, BytesMissingOverSeveralChunksKeepTheirTime) {
  MadeFilm film;
  film.remove(film.headers[20] + 100, film.headers[25] + 50 - film.headers[20] - 100);
  const PlannedFilm planned(film.bytes);
  EXPECT_EQ(fates(planned, film),
            allBut(80, {{20, "torn0"}, {21, "lost1"}, {22, "lost0"}, {23, "lost1"}, {24, "lost0"}, {25, "torn1"}}));
  EXPECT_EQ(planned.plan.slots[21].size, MadeFilm::kSound);
  EXPECT_EQ(planned.plan.slots[22].size, 0U);
}

TEST(IndexedFilmDamage, EndOfSoundWhoseHeaderIsMissingIsKept) {
  MadeFilm film;
  // A few bytes of the picture go, and of the sound after it the header and the first samples.
  const std::uint64_t begin = film.headers[21] - 10;
  film.remove(begin, 8 + 10 + 200);
  const PlannedFilm planned(film.bytes);
  EXPECT_EQ(fates(planned, film), allBut(80, {{20, "torn0"}, {21, "torn1"}}));
  const auto content = contentOf(planned, planned.plan.slots[21]);
  ASSERT_EQ(content.size(), MadeFilm::kSound);
  // What may still be the picture's is not taken for sound.
  constexpr std::size_t kDoubtful = 200 + 10;
  const auto& sound = film.payloads[21];
  EXPECT_TRUE(std::equal(content.begin() + kDoubtful + 2, content.end(), sound.begin() + kDoubtful + 2));
  EXPECT_TRUE(std::all_of(content.begin(), content.begin() + 200, [](std::byte byte) { return byte == std::byte{0}; }));
}

TEST(IndexedFilmDamage, ThreeDeletionsAreThreeDisplacements) {
  MadeFilm film;
  for (const std::size_t chunk : {60U, 40U, 20U}) film.remove(film.headers[chunk] + 77, 201);
  EXPECT_EQ(planOfIndex(film), allBut(80, {{20, "torn0"}, {40, "torn0"}, {60, "torn0"}}));
}

TEST(IndexedFilmDamage, BytesPutIntoSoundAreCutOut) {
  MadeFilm film;
  film.insert(film.headers[21] + 8 + 600, noise(777));
  EXPECT_EQ(planOfIndex(film), allBut(80));
}

TEST(IndexedFilmDamage, BytesPutIntoAPictureTearIt) {
  MadeFilm film;
  film.insert(film.headers[20] + 8 + 300, noise(777));
  const PlannedFilm planned(film.bytes);
  EXPECT_EQ(fates(planned, film), allBut(80, {{20, "torn0"}}));
  ASSERT_EQ(planned.plan.spans.size(), 1U);
  EXPECT_EQ(planned.plan.spans[0].cause, LossCause::inserted);
}

TEST(IndexedFilmDamage, DoubledSpanIsTakenOnce) {
  MadeFilm film;
  const std::uint64_t begin = film.headers[20] + 300;
  const std::uint64_t end = film.headers[27] + 300;
  film.insert(end, film.part(begin, end - begin));
  EXPECT_EQ(planOfIndex(film), allBut(80));
}

TEST(IndexedFilmDamage, ChunkInFrontOfADoubledSpanIsWhole) {
  MadeFilm film;
  const std::uint64_t begin = film.headers[20] + 300;
  const std::uint64_t end = film.headers[27] + 300;
  film.insert(end, film.part(begin, end - begin));
  // What the index's own place tells comes first now, so that it is the copy whose headers are taken.
  film.insert(film.headers[0], noise(64));
  const PlannedFilm planned(film.bytes);
  EXPECT_EQ(fates(planned, film), allBut(80));
  EXPECT_EQ(planned.plan.slots[20].state, SlotState::whole);
}

TEST(IndexedFilmDamage, DeadCodeIsReadByItsPlace) {
  MadeFilm film;
  film.fill(film.headers[20], 4);
  film.fill(film.headers[31], 4, std::byte{0xee});
  const PlannedFilm planned(film.bytes);
  EXPECT_EQ(fates(planned, film), allBut(80));
  EXPECT_EQ(planned.plan.slots[20].state, SlotState::codeMended);
  EXPECT_EQ(planned.plan.slots[31].state, SlotState::codeMended);
}

TEST(IndexedFilmDamage, WrongSizeIsMended) {
  MadeFilm film;
  overwriteNumber(film.bytes, static_cast<std::size_t>(film.headers[20]) + 4, 70'000);
  overwriteNumber(film.bytes, static_cast<std::size_t>(film.headers[30]) + 4, 0);
  overwriteNumber(film.bytes, static_cast<std::size_t>(film.headers[41]) + 4, 0xfffffff0);
  const PlannedFilm planned(film.bytes);
  EXPECT_EQ(fates(planned, film), allBut(80));
  EXPECT_EQ(planned.plan.slots[20].state, SlotState::sizeMended);
  EXPECT_EQ(planned.plan.slots[41].state, SlotState::sizeMended);
}

TEST(IndexedFilmDamage, OverwrittenHeaderLosesNothing) {
  MadeFilm film;
  film.fill(film.headers[20], 8, std::byte{0xee});
  const PlannedFilm planned(film.bytes);
  EXPECT_EQ(fates(planned, film), allBut(80));
}

TEST(IndexedFilmDamage, ZeroedStretchIsLostOrDamagedInItsPlace) {
  MadeFilm film;
  // From inside picture 20 into sound 25.
  film.fill(film.headers[20] + 200, film.headers[25] + 700 - film.headers[20] - 200);
  const PlannedFilm planned(film.bytes);
  const Words words = fates(planned, film);
  ASSERT_EQ(words.size(), 80U);
  for (std::size_t i = 0; i < 80; ++i) {
    if (i < 20 || i > 25) {
      EXPECT_EQ(words[i], std::to_string(i));
    }
  }
  EXPECT_EQ(words[20], "damaged0");
  EXPECT_EQ(words[22], "lost0");
  EXPECT_EQ(words[24], "lost0");
  ASSERT_FALSE(planned.plan.spans.empty());
  EXPECT_EQ(planned.plan.spans.front().cause, LossCause::zeroed);
  EXPECT_EQ(planned.plan.spans.front().originalBegin, film.headers[20]);
}

TEST(IndexedFilmDamage, ClustersOutOfOrderAreReadInTheirOrder) {
  MadeFilm film(80);
  constexpr std::uint64_t kUnit = 4096;
  const std::vector<std::uint64_t> places{3, 9, 14, 22, 30};
  const platform::Bytes before = film.bytes;
  for (std::size_t i = 0; i < places.size(); ++i) {
    const std::uint64_t from = places[(i + 2) % places.size()];
    std::copy_n(before.begin() + static_cast<std::ptrdiff_t>(from * kUnit), kUnit,
                film.bytes.begin() + static_cast<std::ptrdiff_t>(places[i] * kUnit));
  }
  EXPECT_EQ(planOfIndex(film), allBut(160));
}

TEST(IndexedFilmDamage, ClustersOutOfOrderAreNoChanceThoughTheyHoldFewSizesOfTheirOwn) {
  constexpr std::uint64_t kSize = 32'768;
  AviBuilder builder;
  for (std::uint32_t i = 0; i < 75; ++i) {
    builder.chunks.push_back({"00dc", 9700 + 4 * (i % 38), std::byte{0x91}});
    builder.chunks.push_back({"01wb", 1024, std::byte{0x31}});
  }
  platform::Bytes bytes = builder.build();
  const platform::Bytes before = bytes;
  const std::vector<std::uint64_t> places{1, 7, 9, 11, 13, 15, 16, 19};
  std::map<std::uint64_t, std::uint64_t> placeOf;
  for (std::size_t i = 0; i < places.size(); ++i) {
    const std::uint64_t from = places[(i + 1) % places.size()];
    placeOf[from] = places[i];
    std::copy_n(before.begin() + static_cast<std::ptrdiff_t>(from * kSize), kSize,
                bytes.begin() + static_cast<std::ptrdiff_t>(places[i] * kSize));
  }
  std::vector<std::uint64_t> expected = payloadOffsets(builder);
  for (std::uint64_t& offset : expected) {
    const auto moved = placeOf.find(offset / kSize);
    if (moved != placeOf.end()) offset += (moved->second - moved->first) * kSize;
  }
  EXPECT_EQ(PlannedFilm(bytes).sources(), expected);
}

TEST(IndexedFilmDamage, SecondHalfOfAnotherFilmOfTheSameLayoutIsLeftOut) {
  const auto filmOf = [](int pictures) {
    AviBuilder builder;
    for (int i = 0; i < pictures; ++i) {
      builder.chunks.push_back({"00dc", 1000, std::byte{0x91}});
      builder.chunks.push_back({"01wb", 400, std::byte{0x31}});
    }
    return builder;
  };
  const AviBuilder film = filmOf(100);
  const AviBuilder other = filmOf(60);
  const auto headers = chunkOffsets(film);
  platform::Bytes bytes = film.build();
  const platform::Bytes foreign = other.build();
  bytes.resize(headers[100] + 100);
  bytes.insert(bytes.end(), foreign.begin() + static_cast<std::ptrdiff_t>(chunkOffsets(other)[60] - 200),
               foreign.end());
  const auto sources = PlannedFilm(bytes).sources();
  const auto own = payloadOffsets(film);
  ASSERT_GE(sources.size(), 100U);
  EXPECT_TRUE(std::equal(own.begin(), own.begin() + 100, sources.begin()));
  // What is behind the seam is the other film's.
  const auto isForeign = [&](std::uint64_t source) { return source > own[100]; };
  EXPECT_EQ(std::ranges::count_if(sources, isForeign), 0) << testing::PrintToString(sources) << own[100];
}

TEST(IndexedFilmDamage, SecondHalfOfAnotherFilmIsLeftOut) {
  MadeFilm film(40);
  const MadeFilm other(90, 2);
  film.cut(film.headers[40] + 100);
  const std::uint64_t from = other.headers[90] - 200;
  const platform::Bytes half = other.part(from, other.bytes.size() - from);
  film.bytes.insert(film.bytes.end(), half.begin(), half.end());
  const PlannedFilm planned(film.bytes);
  Words words = fates(planned, film);
  ASSERT_GE(words.size(), 40U);
  const Words front(words.begin(), words.begin() + 40);
  EXPECT_EQ(front, allBut(40));
  EXPECT_LE(words.size(), 41U);
  EXPECT_TRUE(
      std::ranges::any_of(planned.plan.spans, [](const auto& span) { return span.cause == LossCause::foreign; }));
}

TEST(IndexedFilmDamage, ChunksThatAPartlyLostIndexLeavesOutAreFoundByTheirChain) {
  MadeFilm film;
  film.fill(film.indexBegin() + 16 * 30, 16 * 20, std::byte{0xee});
  EXPECT_EQ(planOfIndex(film), allBut(80));
}

TEST(IndexedFilmDamage, HalfOfAnotherFilmOfTheSameLengthIsLeftOut) {
  const MadeFilm other(40, 2);
  MadeFilm film;
  film.cut(film.headers[40] + 100);
  const platform::Bytes behind =
      other.part(other.headers[40] - 70, other.bytes.size() - static_cast<std::size_t>(other.headers[40]) + 70);
  film.bytes.insert(film.bytes.end(), behind.begin(), behind.end());
  const Words words = planOfIndex(film);
  ASSERT_GE(words.size(), 40U);
  EXPECT_LE(words.size(), 42U);
  EXPECT_EQ(Words(words.begin(), words.begin() + 40), allBut(40));
}

TEST(IndexedFilmDamage, FirstChunkAloneInItsPlaceStays) {
  MadeFilm film;
  film.remove(film.headers[1], 300);
  const Words words = planOfIndex(film);
  ASSERT_EQ(words.size(), 80U);
  EXPECT_EQ(words[0], "0");
  EXPECT_EQ(Words(words.begin() + 2, words.end()), [] {
    const Words all = allBut(80);
    return Words(all.begin() + 2, all.end());
  }());
}

TEST(IndexedFilmDamage, OwnIndexOfAShortFilmStaysItsOwnWhereMuchIsMissingInFront) {
  MadeFilm film(20);
  std::map<std::size_t, std::string> torn;
  for (const std::size_t chunk : {20U, 16U, 12U, 8U, 4U}) {
    film.remove(film.headers[chunk] + 77, 203);
    torn[chunk] = "torn0";
  }
  EXPECT_EQ(planOfIndex(film), allBut(40, torn));
}

TEST(IndexedFilmDamage, WhereMoreMovedThanAnIndexCanFollowTheChainTakesItsPlace) {
  MadeFilm film(2400);
  for (std::size_t pair = 2400; pair >= 2; pair -= 2) film.remove(film.headers[2 * pair - 1] + 100, 7);
  const PlannedFilm planned(film.bytes);
  EXPECT_EQ(planned.plan.indexedChunks, 0U);
  const auto whole = std::ranges::count(planned.plan.slots, salvage::SlotState::whole, &salvage::Slot::state);
  EXPECT_GE(whole, 3500);
  EXPECT_NEAR(static_cast<double>(planned.plan.slots.size()), 4800, 20);
}

}  // namespace
}  // namespace zelvo::tests
