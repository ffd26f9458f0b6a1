// Films kept in step over gaps.
#include "salvage/plan/timeline.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "tests/salvage/codec_films.h"
#include "tests/salvage/made_film.h"
#include "tests/salvage/picture_groups.h"
#include "tests/salvage/planned_film.h"

namespace zelvo::tests {
namespace {

using salvage::FilmGap;
using salvage::Slot;
using salvage::SlotState;

/// A film of pictures and sound, planned by hand: each picture of 1000 bytes is followed by its sound of 40 ms.
struct Gapped {
  explicit Gapped(int pairs, std::uint32_t soundSize = 1280, std::uint32_t sampleSize = 4) : bytes(1'000'000) {
    salvage::FilmStream pictures;
    pictures.header = pictureStream("ZZZZ");
    salvage::FilmStream sound;
    sound.number = 1;
    sound.header = soundStream(1, 2, 8000, 4, 16, sampleSize);
    if (sampleSize == 0) {
      sound.header.scale = 1;
      sound.header.rate = 25;
    }
    header.streams = {pictures, sound};
    for (int i = 0; i < pairs; ++i) {
      add(0, 1000);
      add(1, soundSize);
    }
  }
  void add(std::uint8_t stream, std::uint32_t size) {
    Slot slot;
    slot.source = (1000 + plan.slots.size()) & salvage::Slot::kSourceMask;
    slot.size = size;
    slot.stream = stream;
    plan.slots.push_back(slot);
  }
  void lose(std::size_t first, std::size_t count) {
    const auto from = plan.slots.begin() + static_cast<std::ptrdiff_t>(first);
    plan.slots.erase(from, from + static_cast<std::ptrdiff_t>(count));
  }
  /// "p" and "s", large where they are refilled.
  std::string filled(const std::vector<FilmGap>& gaps, const salvage::WholeFilm& whole = {}) {
    ScannedFilm scanned(bytes);
    const salvage::IndexTemplate index;
    const salvage::Evidence evidence{*scanned.input, scanned.headers, header, scanned.codes,
                                     scanned.scan,   scanned.chain,   facts,  index};
    const salvage::FilmStreams streams(header);
    salvage::fillGaps(evidence, streams, gaps, whole, plan);
    std::string text;
    for (const Slot& slot : plan.slots) {
      const bool isRefilled = slot.state == SlotState::refilled;
      text += slot.stream == 0 ? (isRefilled ? 'P' : 'p') : (isRefilled ? 'S' : 's');
    }
    return text;
  }

  platform::Bytes bytes;
  salvage::FilmHeader header;
  std::vector<salvage::StreamFacts> facts;
  salvage::FilmPlan plan;
};

std::string pairsOf(int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += "ps";
  return text;
}

TEST(Timeline, WithoutGapsNothingIsFilled) { EXPECT_EQ(Gapped(20).filled({}), pairsOf(20)); }

TEST(Timeline, WhatIsOutOfStepAfterAFilledGapIsMeasured) {
  Gapped filled(30);
  filled.lose(20, 6);
  (void)filled.filled({{20, 3 * (1008 + 1288), 0, 0, false}});
  EXPECT_NEAR(filled.plan.drift, 0, 1e-9);
  // A third of a picture's time of sound is missing, for which no chunk is long enough.
  Gapped odd(30);
  odd.plan.slots[21].size -= 428;
  (void)odd.filled({{22, 0, 0, 0, true}});
  EXPECT_NEAR(odd.plan.drift, 428 / 32000.0, 1e-6);
}

TEST(Timeline, BytesTellHowManyPairsAreLost) {
  Gapped film(30);
  film.lose(20, 6);
  EXPECT_EQ(film.filled({{20, 3 * (1008 + 1288), 0, 0, false}}), pairsOf(10) + "PSPSPS" + pairsOf(17));
}

TEST(Timeline, WhatWasNotOverwrittenAtTheEndOfAGapIsOneChunk) {
  Gapped film(30);
  film.lose(20, 2);
  // A pair is lost: nearly all of its sound, and the header of a picture that was ten times as large.
  FilmGap gap{20, 1000 + 10'008, 0, 0, false, 10'000};
  EXPECT_EQ(film.filled({gap}), pairsOf(10) + "PS" + pairsOf(19));
  Gapped unknown(30);
  unknown.lose(20, 2);
  gap.tail = 0;
  EXPECT_EQ(unknown.filled({gap}), pairsOf(10) + pairsOf(5).replace(0, 10, "PSPSPSPSPS") + pairsOf(19));
}

TEST(Timeline, LagTellsThatSoundAloneIsLost) {
  Gapped film(30);
  film.lose(21, 1);
  EXPECT_EQ(film.filled({{21, 1288, 0, 0, false}}), pairsOf(10) + "pS" + pairsOf(19));
  EXPECT_EQ(film.plan.slots[21].size, 1280U);
}

TEST(Timeline, LagTellsThatAPictureAloneIsLost) {
  Gapped film(30);
  film.lose(20, 1);
  EXPECT_EQ(film.filled({{20, 1008, 0, 0, false}}), pairsOf(10) + "Ps" + pairsOf(19));
  EXPECT_EQ(film.plan.slots[20].size, 0U);
}

TEST(Timeline, MissingBytesAreFilledByTheLag) {
  Gapped film(30);
  film.lose(20, 1);
  film.lose(20, 2);
  film.lose(21, 1);
  // Of two pairs and a picture, one sound is left: two of its pictures come back.
  const std::string text = film.filled({{20, 0, 0, 0, true}});
  EXPECT_EQ(std::ranges::count(text, 'p') + std::ranges::count(text, 'P'),
            std::ranges::count(text, 's') + std::ranges::count(text, 'S'));
}

TEST(Timeline, GapAtTheEndIsLeftAsItIs) {
  Gapped film(20);
  EXPECT_EQ(film.filled({{40, 5000, 0, 0, false}}), pairsOf(20));
}

TEST(Timeline, GapsWithoutSoundBetweenAreFilledTogether) {
  Gapped film(30);
  // p s p [s] p [s] p s: the sound between two gaps is lost, too.
  film.lose(21, 1);
  film.lose(22, 1);
  const std::string text = film.filled({{21, 1288, 0, 0, false}, {22, 1288, 0, 0, false}});
  EXPECT_EQ(std::ranges::count(text, 'S'), 2);
  EXPECT_EQ(std::ranges::count(text, 'P'), 0);
}

TEST(Timeline, SlotTakesTheBytesBehindItWhenNothingIsMissing) {
  Gapped film(30);
  film.plan.slots[20].size = 400;
  EXPECT_EQ(film.filled({{21, 600, 1000, 0, false}}), pairsOf(30));
  EXPECT_EQ(film.plan.slots[20].size, 1000U);
  EXPECT_EQ(film.plan.slots[20].state, SlotState::sizeMended);
}

TEST(Timeline, SlotKeepsItsSizeWhenSomethingIsMissing) {
  Gapped film(30);
  film.lose(21, 1);
  EXPECT_EQ(film.filled({{21, 1288, 2288, 0, false}}), pairsOf(10) + "pS" + pairsOf(19));
  EXPECT_EQ(film.plan.slots[20].size, 1000U);
}

TEST(Timeline, ChunksThatAreFramesAreCounted) {
  Gapped film(30, 417, 0);
  film.lose(20, 4);
  EXPECT_EQ(film.filled({{20, 2 * (1008 + 425), 0, 0, false}}), pairsOf(10) + "PSPS" + pairsOf(18));
}

TEST(Timeline, TheHeadersCountTellsThatNothingIsLost) {
  Gapped film(30);
  EXPECT_EQ(film.filled({{20, 8000, 0, 0, false}}, {30, 0}), pairsOf(30));
}

TEST(Timeline, TheHeadersCountTellsHowMuchIsMissing) {
  Gapped film(30);
  film.lose(20, 8);
  EXPECT_EQ(film.filled({{20, 0, 0, 0, true}}, {30, 9000}), pairsOf(10) + "PSPSPSPS" + pairsOf(16));
}

/// A film of MPEG-2 whose groups have four pictures, of which eight pairs are lost behind the tenth.
struct Grouped : Gapped {
  static constexpr std::size_t kPlace = 20;

  explicit Grouped(std::uint32_t step = 1, std::uint32_t setAnewTo = 0) : Gapped(40) {
    header.streams[0].header = pictureStream("MPG2");
    for (std::size_t i = 0; i < plan.slots.size(); ++i) {
      plan.slots[i].source = (1000 + i * 2000) & salvage::Slot::kSourceMask;
      const auto number = static_cast<std::uint32_t>(i / 2);
      if (i % 8 != 0) continue;
      const std::uint32_t shown = number * step + (i > kPlace ? setAnewTo : 0);
      std::ranges::copy(groupPicture({0, shown / 1500, shown / 25 % 60, shown % 25}, 0),
                        bytes.begin() + 1000 + static_cast<std::ptrdiff_t>(i) * 2000);
    }
    lose(kPlace, 16);
  }
  /// How many pictures are filled in where bytes tell of `pairs`.
  std::ptrdiff_t refilled(std::uint64_t pairs) {
    return std::ranges::count(filled({{kPlace, pairs * (1008 + 1288), 0, 0, false}}), 'P');
  }
};

TEST(Timeline, TimeCodesOfGroupsTellHowManyAreLost) {
  EXPECT_EQ(Grouped().refilled(3), 8);
  EXPECT_EQ(Grouped().refilled(20), 8);
}

TEST(Timeline, TimeCodesThatDoNotCountPicturesTellNothing) {
  EXPECT_EQ(Grouped(0).refilled(3), 3);
  EXPECT_EQ(Grouped(2).refilled(3), 3);
}

TEST(Timeline, TimeCodesThatWereSetAnewTellNothing) {
  EXPECT_EQ(Grouped(1, 1500).refilled(3), 3);
  EXPECT_EQ(Grouped(1, 100).refilled(3), 108);
}

TEST(Timeline, HostileGapIsFilledUpToABound) {
  Gapped film(30);
  film.lose(20, 2);
  film.filled({{20, std::uint64_t{1} << 40U, 0, false}});
  EXPECT_LE(film.plan.slots.size(), 2 * 60U + 4096U);
}

TEST(Timeline, SoundThatComesInLongChunksNowAndThenIsNotMissed) {
  Gapped film(0);
  for (const int pictures : {3, 5, 8, 3, 6, 4}) {
    for (int i = 0; i < pictures; ++i) film.add(0, 1000);
    film.add(1, 6680);  // as long as 5.2 pictures
  }
  const std::string text = film.filled({{12, 0, 0, 300, true}});
  EXPECT_EQ(text, "pppspppppsppppppppspppsppppppspppps");
}

TEST(Timeline, GapBehindTheLastSoundIsFilledThoughTheFilmIsCut) {
  Gapped film(20);
  for (int i = 0; i < 6; ++i) film.add(0, 1000);
  const std::size_t end = film.plan.slots.size();
  const std::string text = film.filled({{end - 3, 2 * (1008 + 1288), 0, 0, false}, {end, 0, 0, 0, true}});
  EXPECT_EQ(std::count(text.begin(), text.end(), 'P'), 2);
}

TEST(Timeline, ChunksOfOneSizeThatFillAGapToTheByteAreWhatWasThere) {
  // Eight pictures, then their sound: the clocks are no better than that.
  const auto filmOfEights = [] {
    Gapped film(0);
    for (int i = 0; i < 12; ++i) {
      for (int picture = 0; picture < 8; ++picture) film.add(0, 1000 + static_cast<std::uint32_t>(picture));
      for (int sound = 0; sound < 8; ++sound) film.add(1, 1280);
    }
    film.facts.resize(2);
    film.facts[1].fixedSize = 1280;
    return film;
  };
  const std::string eight = "ppppppppssssssss";
  std::string expected;
  for (int i = 0; i < 12; ++i) expected += eight;
  for (const std::size_t lost : {1U, 2U, 3U}) {
    Gapped film = filmOfEights();
    film.lose(4 * 16 + 8 + 8 - lost, lost);
    std::string whole = expected;
    std::fill_n(whole.begin() + 4 * 16 + 8 + 8 - static_cast<std::ptrdiff_t>(lost), lost, 'S');
    EXPECT_EQ(film.filled({{4 * 16 + 8 + 8 - lost, lost * 1288, 0}}), whole) << lost;
  }
}

TEST(Timeline, SoundWhoseClockCannotBeTrueFillsNoMoreThanIsMissing) {
  MadeFilm film(400, 1, false);
  overwriteNumber(film.bytes, film.positionOf("auds") + 24, 320'000);  // dwRate, ten times too fast
  for (std::size_t pair = 400; pair >= 20; pair -= 10) film.remove(film.headers[2 * pair - 1] + 100, 7);
  const PlannedFilm planned(film.bytes);
  const auto& slots = planned.plan.slots;
  EXPECT_LE(std::ranges::count(slots, salvage::SlotState::refilled, &salvage::Slot::state), 20);
  EXPECT_NEAR(static_cast<double>(slots.size()), 800, 20);
}

}  // namespace
}  // namespace zelvo::tests
