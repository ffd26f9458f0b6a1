// Payloads overwritten inside by what their codec cannot have made.
#include "salvage/plan/content_marks.h"

#include <algorithm>
#include <random>
#include <span>
#include <vector>

#include <gtest/gtest.h>

#include "tests/salvage/made_film.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;
using salvage::SlotState;

Bytes randomBytes(std::size_t size, unsigned seed = 3) {
  std::mt19937 random(seed);
  Bytes bytes(size);
  for (std::byte& byte : bytes) byte = static_cast<std::byte>(random() & 0xffU);
  return bytes;
}

TEST(ContentMarks, NoiseIsMeasuredAgainstRandomBytes) {
  const Bytes noise = randomBytes(4096);
  EXPECT_NEAR(salvage::noiseOf(noise, 0, {3, false}), 1000, 100);
  EXPECT_NEAR(salvage::noiseOf(noise, 0, {4, true}), 1000, 150);
  EXPECT_EQ(salvage::noiseOf(Bytes(4096, std::byte{0x91}), 0, {1, false}), 0U);
}

TEST(ContentMarks, OnlyWholeSectorsOfTheFileAreMeasured) {
  Bytes payload(1500, std::byte{0x80});
  const Bytes noise = randomBytes(512);
  std::ranges::copy(noise, payload.begin() + 412);
  EXPECT_NEAR(salvage::noiseOf(payload, 100, {1, false}), 1000, 100);
  EXPECT_LT(salvage::noiseOf(payload, 356, {1, false}), 700U);
  EXPECT_EQ(salvage::noiseOf(noise, 100, {1, false}), 0U);
  // A sector may begin within a sample.
  EXPECT_NEAR(salvage::noiseOf(randomBytes(2048), 511, {2, true}), 1000, 150);
}

/// The states of all slots but those of the chunk whose header is overwritten so that the film is known to be damaged.
std::vector<std::size_t> damagedIn(const Bytes& bytes) {
  const PlannedFilm planned(bytes);
  std::vector<std::size_t> damaged;
  for (std::size_t i = 0; i < planned.plan.slots.size(); ++i) {
    if (planned.plan.slots[i].state == SlotState::damaged) damaged.push_back(i);
  }
  return damaged;
}

/// Fills the first whole sector of a chunk's payload with noise.
void spoil(MadeFilm& film, std::size_t chunk) {
  const std::uint64_t sector = (film.headers[chunk] + 8 + 511) / 512 * 512;
  ASSERT_LE(sector + 512, film.headers[chunk] + 8 + film.payloads[chunk].size());
  std::ranges::copy(randomBytes(512), film.bytes.begin() + static_cast<std::ptrdiff_t>(sector));
}

TEST(ContentMarks, RandomSectorInSoundIsFoundInADamagedFilm) {
  MadeFilm film;
  spoil(film, 21);
  EXPECT_TRUE(damagedIn(film.bytes).empty());
  film.fill(film.headers[30], 4);
  EXPECT_EQ(damagedIn(film.bytes), std::vector<std::size_t>{21});
}

/// Counts how often reading goes back to an earlier place.
class TurnsBack final : public platform::ReadableFile {
 public:
  explicit TurnsBack(const Bytes& bytes) : bytes_(bytes) {}
  [[nodiscard]] platform::IoResult readAt(std::uint64_t offset, std::span<std::byte> into) override {
    if (offset < last_) ++turns;
    last_ = offset;
    const std::size_t count =
        std::min<std::size_t>(into.size(), bytes_.size() - std::min<std::size_t>(bytes_.size(), offset));
    std::copy_n(bytes_.begin() + static_cast<std::ptrdiff_t>(offset), count, into.begin());
    return {count, {}};
  }
  [[nodiscard]] std::uint64_t size() override { return bytes_.size(); }

  std::size_t turns = 0;

 private:
  const Bytes& bytes_;
  std::uint64_t last_ = 0;
};

TEST(ContentMarks, FilmIsReadOnceHoweverManyItsStreams) {
  constexpr std::uint8_t kTracks = 4;
  MadeFilm film;
  for (const std::size_t chunk : {21U, 23U}) spoil(film, chunk);
  film.fill(film.headers[30], 4);
  PlannedFilm planned(film.bytes);
  salvage::FilmPlan plan = planned.plan;
  std::uint8_t track = 0;
  for (salvage::Slot& slot : plan.slots) {
    if (slot.state == SlotState::damaged) slot.state = SlotState::whole;
    if (slot.stream == 1) slot.stream = static_cast<std::uint8_t>(1 + track++ % kTracks);
  }
  for (std::uint8_t i = 1; i < kTracks; ++i) planned.header.streams.push_back(planned.header.streams[1]);
  TurnsBack file(film.bytes);
  avi::InputFile input(file);
  salvage::markContent({input, planned.scanned.headers, planned.header, planned.scanned.codes, planned.scanned.scan,
                        planned.scanned.chain, planned.facts, planned.index, nullptr},
                       plan);
  EXPECT_EQ(file.turns, 0U);
  EXPECT_EQ(plan.slots[21].state, SlotState::damaged);
  EXPECT_EQ(plan.slots[23].state, SlotState::damaged);
  EXPECT_EQ(std::ranges::count(plan.slots, SlotState::damaged, &salvage::Slot::state), 2);
}

TEST(ContentMarks, SoundThatIsAllNoiseIsItsOwn) {
  MadeFilm film;
  for (std::size_t i = 1; i < film.headers.size(); i += 2) spoil(film, i);
  film.fill(film.headers[30], 4);
  EXPECT_TRUE(damagedIn(film.bytes).empty());
}

/// A film of pictures that are JPEG as far as markers go.
MadeFilm jpegFilm() {
  MadeFilm film(40, 1, false);
  for (const char* const list : {"vids", "strf"}) {
    const std::size_t at = film.positionOf(list);
    const Bytes code{std::byte{'M'}, std::byte{'J'}, std::byte{'P'}, std::byte{'G'}};
    std::ranges::copy(code, film.bytes.begin() + static_cast<std::ptrdiff_t>(at + (*list == 'v' ? 4 : 24)));
  }
  for (std::size_t i = 0; i < film.headers.size(); i += 2) {
    const std::uint64_t begin = film.headers[i] + 8;
    const std::uint64_t end = begin + film.payloads[i].size();
    for (std::uint64_t at = begin; at < end; ++at) film.at(at) &= std::byte{0x7f};
    overwriteNumber(film.bytes, static_cast<std::size_t>(begin), 0xdaffd8ff);
    film.at(begin + 4) = std::byte{0};
    film.at(begin + 5) = std::byte{2};
    film.at(end - 2) = std::byte{0xff};
    film.at(end - 1) = std::byte{0xd9};
  }
  return film;
}

TEST(ContentMarks, PictureWhoseMarkersBreakOffIsDamaged) {
  MadeFilm film = jpegFilm();
  film.fill(film.headers[30], 4);
  EXPECT_TRUE(damagedIn(film.bytes).empty());
  film.at(film.headers[20] + 400) = std::byte{0xff};
  film.at(film.headers[20] + 401) = std::byte{0x11};
  EXPECT_EQ(damagedIn(film.bytes), std::vector<std::size_t>{20});
}

TEST(ContentMarks, WhatMostPicturesHaveIsTheirWritersOwn) {
  MadeFilm film = jpegFilm();
  film.fill(film.headers[30], 4);
  for (std::size_t i = 0; i < film.headers.size(); i += 4) {
    film.at(film.headers[i] + 400) = std::byte{0xff};
    film.at(film.headers[i] + 401) = std::byte{0x11};
  }
  EXPECT_TRUE(damagedIn(film.bytes).empty());
}

TEST(ContentMarks, PictureGluedFromTwoIsTornAndTheirTimeStays) {
  MadeFilm film = jpegFilm();
  const std::uint64_t begin = film.headers[20] + 300;
  const std::uint64_t end = film.headers[24] + 8 + film.payloads[24].size() - 700;
  std::ranges::copy(noise(static_cast<std::size_t>(end - begin)),
                    film.bytes.begin() + static_cast<std::ptrdiff_t>(begin));
  const PlannedFilm planned(film.bytes);
  EXPECT_EQ(planned.plan.slots.size(), 80U);
  EXPECT_EQ(planned.plan.slots[30].source, film.headers[30] + 8);
}

}  // namespace
}  // namespace zelvo::tests
