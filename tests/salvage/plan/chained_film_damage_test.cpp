// What comes of a film without an index under each kind of damage.
#include <gtest/gtest.h>

#include "tests/salvage/made_film.h"

namespace zelvo::tests {
namespace {

using salvage::LossCause;
using salvage::SlotState;
using Words = std::vector<std::string>;

MadeFilm chained(int pairs = 40) { return MadeFilm(pairs, 1, false); }

Words planOfChain(const MadeFilm& film) { return fates(PlannedFilm(film.bytes), film); }

/// Seconds of each stream in front of the slot that has the payload of a chunk.
std::pair<double, double> clocksAt(const PlannedFilm& planned, const MadeFilm& film, std::size_t chunk) {
  double pictures = 0;
  double sound = 0;
  for (const auto& slot : planned.plan.slots) {
    if (slot.hasSource() && contentOf(planned, slot) == film.payloads[chunk]) return {pictures, sound};
    (slot.stream == 0 ? pictures : sound) += slot.stream == 0 ? 0.04 : slot.size / 32'000.0;
  }
  ADD_FAILURE() << "chunk " << chunk << " is not there";
  return {};
}

TEST(ChainedFilmDamage, LostIndexKeepsEveryChunk) {
  const MadeFilm film = chained();
  const PlannedFilm planned(film.bytes);
  EXPECT_EQ(fates(planned, film), allBut(80));
  EXPECT_TRUE(planned.plan.spans.empty());
}

TEST(ChainedFilmDamage, GarbageInsteadOfTheIndexKeepsEveryChunk) {
  MadeFilm film;
  std::ranges::copy(noise(80 * 16), film.bytes.begin() + static_cast<std::ptrdiff_t>(film.indexBegin()));
  EXPECT_EQ(planOfChain(film), allBut(80));
}

TEST(ChainedFilmDamage, DeadCodesAreFoundFromTheNextHeaderBackwards) {
  MadeFilm film = chained();
  film.fill(film.headers[20], 4);
  film.fill(film.headers[31], 4, std::byte{0xee});
  film.fill(film.headers[32], 4);
  const PlannedFilm planned(film.bytes);
  EXPECT_EQ(fates(planned, film), allBut(80));
  EXPECT_EQ(planned.plan.slots[31].state, SlotState::codeMended);
  EXPECT_EQ(planned.plan.slots[31].stream, 1);
  EXPECT_EQ(planned.plan.slots[32].stream, 0);
}

TEST(ChainedFilmDamage, WrongSizesAreMended) {
  MadeFilm film = chained();
  overwriteNumber(film.bytes, static_cast<std::size_t>(film.headers[20]) + 4, 70'000);
  overwriteNumber(film.bytes, static_cast<std::size_t>(film.headers[30]) + 4, 0);
  overwriteNumber(film.bytes, static_cast<std::size_t>(film.headers[41]) + 4, 640);
  const PlannedFilm planned(film.bytes);
  EXPECT_EQ(fates(planned, film), allBut(80));
  EXPECT_EQ(planned.plan.slots[20].state, SlotState::sizeMended);
  EXPECT_EQ(planned.plan.slots[30].state, SlotState::sizeMended);
  EXPECT_EQ(planned.plan.slots[41].state, SlotState::sizeMended);
}

TEST(ChainedFilmDamage, CutShortEndsWithTheLastWholePicture) {
  MadeFilm film = chained();
  film.cut(film.headers[40] + 200);
  const PlannedFilm planned(film.bytes);
  EXPECT_EQ(fates(planned, film), allBut(40));
  ASSERT_EQ(planned.plan.spans.size(), 1U);
  EXPECT_EQ(planned.plan.spans[0].cause, LossCause::cut);
  EXPECT_EQ(planned.plan.spans[0].originalBegin, film.headers[40]);
}

TEST(ChainedFilmDamage, CutShortKeepsWholeSamplesOfSound) {
  MadeFilm film = chained();
  film.cut(film.headers[41] + 8 + 203);
  const PlannedFilm planned(film.bytes);
  EXPECT_EQ(fates(planned, film), allBut(42, {{41, "cut1"}}));
  EXPECT_EQ(planned.plan.slots.back().size, 200U);
}

TEST(ChainedFilmDamage, LostChunksOfBothStreamsAreRefilled) {
  MadeFilm film = chained();
  // Two pairs, and a header on either side stays.
  film.fill(film.headers[20], film.headers[24] - film.headers[20], std::byte{0xee});
  const PlannedFilm planned(film.bytes);
  const Words words = fates(planned, film);
  ASSERT_EQ(words.size(), 80U);
  for (std::size_t i = 0; i < 80; ++i) {
    if (i < 20 || i >= 24) {
      EXPECT_EQ(words[i], std::to_string(i));
    }
  }
  for (std::size_t i = 20; i < 24; ++i) EXPECT_EQ(words[i].substr(0, 8), "refilled") << i;
}

TEST(ChainedFilmDamage, LostSoundAloneIsRefilledByTheLag) {
  MadeFilm film = chained();
  film.fill(film.headers[21], 8 + MadeFilm::kSound, std::byte{0xee});
  EXPECT_EQ(planOfChain(film), allBut(80, {{21, "refilled1"}}));
}

TEST(ChainedFilmDamage, MissingBytesKeepTheFilmInStep) {
  MadeFilm film = chained();
  // The end of picture 20, its sound, and the front of picture 22 are gone: one picture less than sound.
  film.remove(film.headers[20] + 100, film.headers[22] + 50 - film.headers[20] - 100);
  const PlannedFilm planned(film.bytes);
  const auto [pictures, sound] = clocksAt(planned, film, 60);
  EXPECT_NEAR(pictures, sound, 0.03);
}

TEST(ChainedFilmDamage, LongFirstSoundThatLacksSomeBytesIsNoUsualOne) {
  MadeFilm film = chained();
  constexpr std::uint32_t kLead = 4000;
  overwriteNumber(film.bytes, static_cast<std::size_t>(film.headers[1]) + 4, MadeFilm::kSound + kLead);
  film.insert(film.headers[1] + 8 + MadeFilm::kSound, noise(kLead));
  film.remove(film.headers[1] + 100, 8);
  const PlannedFilm planned(film.bytes);
  ASSERT_EQ(planned.plan.slots.size(), 80U);
  EXPECT_EQ(planned.plan.slots[1].size, MadeFilm::kSound + kLead - 8);
}

TEST(ChainedFilmDamage, FalseHeaderInsideAPayloadIsLeftOut) {
  MadeFilm film = chained();
  overwrite(film.bytes, static_cast<std::size_t>(film.headers[20]) + 100, std::string_view("01wb\x40\0\0\0", 8));
  film.payloads[20] = film.part(film.headers[20] + 8, film.payloads[20].size());
  EXPECT_EQ(planOfChain(film), allBut(80));
}

TEST(ChainedFilmDamage, DoubledSpanIsTakenOnce) {
  MadeFilm film = chained();
  const std::uint64_t begin = film.headers[20] + 300;
  const std::uint64_t end = film.headers[28] + 300;
  film.insert(end, film.part(begin, end - begin));
  EXPECT_EQ(planOfChain(film), allBut(80));
}

TEST(ChainedFilmDamage, DoubledSpanWithoutAWholeChunkIsTakenOnce) {
  for (const std::uint64_t back : {100U, 700U}) {
    MadeFilm film = chained();
    const std::uint64_t end = film.headers[20] + 600;
    film.insert(end, film.part(film.headers[20] - back, 600 + back));
    EXPECT_EQ(planOfChain(film), allBut(80)) << back;
  }
}

TEST(ChainedFilmDamage, ChunkThatIsLikeATornOneIsNoCopy) {
  MadeFilm film = chained();
  const std::uint64_t end = film.headers[20] + 600;
  platform::Bytes copy = film.part(film.headers[20] - 100, 700);
  copy[50] ^= std::byte{1};
  film.insert(end, copy);
  const PlannedFilm planned(film.bytes);
  EXPECT_GT(planned.plan.slots.size(), 80U);
}

TEST(ChainedFilmDamage, BytesOfAnotherPlaceAreAGap) {
  for (const std::size_t from : {4U, 50U}) {
    MadeFilm film = chained();
    const std::uint64_t size = film.headers[26] + 100 - film.headers[20] - 200;
    const platform::Bytes other = film.part(film.headers[from] + 300, size);
    std::ranges::copy(other, film.bytes.begin() + static_cast<std::ptrdiff_t>(film.headers[20] + 200));
    const PlannedFilm planned(film.bytes);
    const Words words = fates(planned, film);
    for (std::size_t i = 0; i < 80; ++i)
      EXPECT_EQ(std::ranges::count(words, std::to_string(i)), i >= 20 && i <= 26 ? 0 : 1) << i << " of " << from;
    const auto [pictures, sound] = clocksAt(planned, film, 60);
    EXPECT_NEAR(pictures, 1.2, 0.05);
    EXPECT_NEAR(sound, 1.2, 0.05);
  }
}

TEST(ChainedFilmDamage, ChainInsideAProvedPayloadIsLeftOut) {
  MadeFilm film = chained();
  const std::uint64_t at = film.headers[20] + 100;
  platform::Bytes inner;
  for (int i = 0; i < 10; ++i) appendChunk(inner, i % 2 == 0 ? "00dc" : "01wb", 20);
  std::ranges::copy(inner, film.bytes.begin() + static_cast<std::ptrdiff_t>(at));
  film.payloads[20] = film.part(film.headers[20] + 8, film.payloads[20].size());
  EXPECT_EQ(planOfChain(film), allBut(80));
}

TEST(ChainedFilmDamage, WrongSizeThatClosesHidesNoChunks) {
  MadeFilm film = chained();
  const std::uint64_t size = film.headers[27] - film.headers[20] - 8;
  overwriteNumber(film.bytes, static_cast<std::size_t>(film.headers[20]) + 4, static_cast<std::uint32_t>(size));
  const Words words = planOfChain(film);
  for (std::size_t i = 21; i < 80; ++i) EXPECT_EQ(std::ranges::count(words, std::to_string(i)), 1) << i;
}

TEST(ChainedFilmDamage, HostileDenseHeadersComeToAnEnd) {
  MadeFilm film = chained();
  platform::Bytes dense;
  for (int i = 0; i < 100'000; ++i) {
    appendText(dense, i % 2 == 0 ? "00dc" : "01wb");
    appendNumber(dense, static_cast<std::uint32_t>(i % 3 == 0 ? 1280 : 8 * (i % 1000)));
  }
  film.insert(film.headers[40], dense);
  const PlannedFilm planned(film.bytes);
  const Words words = fates(planned, film);
  EXPECT_EQ(Words(words.begin(), words.begin() + 40), allBut(40));
}

TEST(ChainedFilmDamage, ChunksWhoseWholeHeaderIsOverwrittenComeBack) {
  for (const std::size_t chunk : {20U, 21U}) {
    MadeFilm film(40, 1, false);
    film.fill(film.headers[chunk], 8, std::byte{0xee});
    const PlannedFilm planned(film.bytes);
    EXPECT_EQ(fates(planned, film), allBut(80)) << chunk;
    EXPECT_EQ(planned.plan.slots[chunk].state, SlotState::codeMended);
  }
}

TEST(ChainedFilmDamage, BytesThatAreNoChunksAreNotTakenForOne) {
  MadeFilm film(40, 1, false);
  film.insert(film.headers[30], noise(900));
  EXPECT_EQ(PlannedFilm(film.bytes).plan.slots.size(), 80U);
}

TEST(ChainedFilmDamage, WrongSizesInARowAreMended) {
  MadeFilm film(40, 1, false);
  for (const std::size_t chunk : {20U, 21U, 22U, 23U})
    overwriteNumber(film.bytes, static_cast<std::size_t>(film.headers[chunk]) + 4,
                    static_cast<std::uint32_t>(0x76543210 + 977 * chunk));
  const PlannedFilm planned(film.bytes);
  ASSERT_EQ(planned.plan.slots.size(), 80U);
  for (const std::size_t chunk : {20U, 21U, 22U, 23U}) {
    const salvage::Slot& slot = planned.plan.slots[chunk];
    EXPECT_EQ(slot.state, SlotState::sizeMended);
    EXPECT_EQ(slot.source, film.headers[chunk] + 8);
    // Of a picture, whose size may be odd, the pad byte may be taken in.
    EXPECT_EQ(slot.size + slot.size % 2, film.payloads[chunk].size() + film.payloads[chunk].size() % 2);
  }
}

}  // namespace
}  // namespace zelvo::tests
