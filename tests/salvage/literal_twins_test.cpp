// The chain and the displacements of many small films, against twins that try everything.
#include <gtest/gtest.h>

#include <random>

#include "salvage/chain/best_chain.h"
#include "salvage/chain/displacements.h"
#include "tests/support/literal_chain.h"
#include "tests/support/literal_cover.h"
#include "tests/support/small_films.h"

namespace zelvo::tests {
namespace {

constexpr unsigned kFilms = 1500;

SmallFilm randomFilm(unsigned seed) {
  std::mt19937 random(seed);
  return smallFilm([&](std::uint32_t below) { return static_cast<std::uint32_t>(random() % below); });
}

TEST(LiteralTwins, ChainIsTheSame) {
  std::size_t links = 0;
  for (unsigned seed = 0; seed < kFilms; ++seed) {
    const SmallFilm film = randomFilm(seed);
    const auto chain = salvage::linkChunks(film.candidates, film.ends, film.dataEnd);
    const auto facts = salvage::learnStreams(film.candidates, chain);
    const auto found = salvage::bestChain(film.candidates, chain, facts);
    links += found.size();
    ASSERT_EQ(found, literal::bestChain(film.candidates, film.dataEnd, film.ends, facts)) << "seed " << seed;
  }
  EXPECT_GT(links, kFilms * 10U);
}

TEST(LiteralTwins, ChainIsTheSameAmongManyFalseCodes) {
  for (unsigned seed = 0; seed < 60; ++seed) {
    std::mt19937 random(seed);
    salvage::CandidateList list;
    std::uint64_t at = 0;
    for (int i = 0; i < 400; ++i) {
      at += 8 + random() % 3 * 8;
      const auto size = static_cast<std::uint32_t>(random() % (seed % 2 == 0 ? 200 : 2000));
      list.add({at, salvage::CandidateKind::data, static_cast<std::uint8_t>(random() % 2), 0, size,
                static_cast<std::uint32_t>(random() % 2)});
    }
    const auto chain = salvage::linkChunks(list, {}, at + 100);
    const auto facts = salvage::learnStreams(list, chain);
    ASSERT_EQ(salvage::bestChain(list, chain, facts), literal::bestChain(list, at + 100, {}, facts)) << seed;
  }
}

TEST(LiteralTwins, DisplacementsAreTheSame) {
  std::size_t explained = 0;
  for (unsigned seed = 0; seed < kFilms; ++seed) {
    const SmallFilm film = randomFilm(seed);
    const auto found = salvage::coverEntries(film.entries, film.candidates, film.indexBegin, film.dataEnd);
    const auto expected = literal::Cover(film.entries, film.candidates, film.indexBegin, film.dataEnd).run();
    ASSERT_EQ(found.values, expected.values) << "seed " << seed;
    ASSERT_EQ(found.ofEntry, expected.ofEntry) << "seed " << seed;
    ASSERT_EQ(found.isClaimed, expected.isClaimed) << "seed " << seed;
    ASSERT_EQ(found.endShift, expected.endShift) << "seed " << seed;
    explained += static_cast<std::size_t>(
        std::ranges::count_if(found.ofEntry, [](auto number) { return number != salvage::DisplacementCover::kNone; }));
  }
  EXPECT_GT(explained, kFilms * 10U);
}

}  // namespace
}  // namespace zelvo::tests
