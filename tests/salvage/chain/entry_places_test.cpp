// Where each chunk that the index names lies, when neighbours disagree.
#include "salvage/chain/entry_places.h"

#include <gtest/gtest.h>

#include "tests/salvage/made_film.h"

namespace zelvo::tests {
namespace {

using salvage::EntryPlaces;
using salvage::Support;

struct Placed {
  explicit Placed(const MadeFilm& film) : planned(film.bytes) {
    const auto& entries = planned.index.entries;
    const auto& candidates = planned.scanned.scan.candidates;
    const auto cover = salvage::coverEntries(entries, candidates, 0, planned.scanned.scan.end);
    places = salvage::placeEntries(*planned.scanned.input, entries, candidates, planned.facts, cover);
  }
  [[nodiscard]] std::int64_t moved(std::size_t entry) const {
    return places.displacements[places.places[entry].displacement];
  }

  PlannedFilm planned;
  EntryPlaces places;
};

TEST(EntryPlaces, OfAWholeFilmAllAreExact) {
  const Placed placed{MadeFilm()};
  ASSERT_EQ(placed.places.places.size(), 80U);
  for (std::size_t i = 0; i < 80; ++i) {
    EXPECT_EQ(placed.moved(i), 0) << i;
    EXPECT_EQ(placed.places.places[i].support, Support::exact) << i;
  }
}

TEST(EntryPlaces, DamagedHeadersTellByWhatIsLeftOfThem) {
  MadeFilm film;
  film.fill(film.headers[20], 4, std::byte{0xee});
  overwriteNumber(film.bytes, static_cast<std::size_t>(film.headers[30]) + 4, 77);
  film.fill(film.headers[41], 8, std::byte{0xee});
  const Placed placed(film);
  EXPECT_EQ(placed.places.places[20].support, Support::size);
  EXPECT_EQ(placed.places.places[30].support, Support::code);
  EXPECT_EQ(placed.places.places[41].support, Support::none);
  for (const std::size_t entry : {20U, 30U, 41U}) EXPECT_EQ(placed.moved(entry), 0) << entry;
}

TEST(EntryPlaces, LostHeaderBesideADeletionGoesWithTheSideThatItsRestSpeaksFor) {
  MadeFilm film;
  film.fill(film.headers[41], 4, std::byte{0xee});
  film.remove(film.headers[39] + 100, 301);
  const Placed placed(film);
  EXPECT_EQ(placed.moved(39), 0);
  EXPECT_EQ(placed.moved(40), -301);
  EXPECT_EQ(placed.moved(41), -301);
  EXPECT_EQ(placed.places.places[41].support, Support::size);
}

TEST(EntryPlaces, WithoutAnyHeaderThereAreNone) {
  MadeFilm film;
  film.fill(film.headers.front(), film.indexBegin() - 8 - film.headers.front(), std::byte{0xee});
  EXPECT_TRUE(Placed(film).places.places.empty());
}

}  // namespace
}  // namespace zelvo::tests
