// Payloads whose headers do not tell what they are.
#include "salvage/plan/headless_payload.h"

#include <gtest/gtest.h>

#include "tests/salvage/made_film.h"

namespace zelvo::tests {
namespace {

using salvage::HeadlessPayloads;
using salvage::Slot;

/// A film whose pictures begin with 32 bits alike and whose sound has one size.
struct Asked {
  explicit Asked(const MadeFilm& film) : planned(film.bytes), evidence(planned.evidence()), streams(planned.header) {
    for (const auto& stream : planned.header.streams) shapes.emplace_back(stream.header);
  }
  [[nodiscard]] HeadlessPayloads payloads() const { return {evidence, streams, shapes}; }

  PlannedFilm planned;
  salvage::Evidence evidence;
  salvage::FilmStreams streams;
  std::vector<salvage::PayloadShape> shapes;
};

TEST(HeadlessPayloads, OneSizeOrManyBitsSayWhatMayFillARoom) {
  const Asked asked(MadeFilm{});
  const HeadlessPayloads payloads = asked.payloads();
  EXPECT_TRUE(payloads.mayFill(1, MadeFilm::kSound));
  EXPECT_TRUE(payloads.mayFill(1, MadeFilm::kSound + 1));
  EXPECT_FALSE(payloads.mayFill(1, MadeFilm::kSound - 4));
  EXPECT_TRUE(payloads.mayFill(0, 1200));
  EXPECT_FALSE(payloads.mayFill(0, 200));
  EXPECT_FALSE(payloads.mayFill(0, 20'000));
}

TEST(HeadlessPayloads, PicturesAreKnownByTheirFirstBits) {
  const MadeFilm film;
  const Asked asked(film);
  const auto size = static_cast<std::uint32_t>(film.payloads[20].size());
  EXPECT_TRUE(asked.payloads().isSurely(0, film.headers[20] + 8, size, {}));
  EXPECT_FALSE(asked.payloads().isSurely(0, film.headers[20] + 9, size, {}));
}

TEST(HeadlessPayloads, SoundIsAsRoughAsTheLast) {
  MadeFilm film;
  std::mt19937 random(5);
  for (std::uint32_t i = 0; i < MadeFilm::kSound; ++i) film.at(film.headers[31] + 8 + i) = std::byte(random() & 0xffU);
  film.fill(film.headers[33] + 8, MadeFilm::kSound, std::byte{0xee});
  const Asked asked(film);
  const std::vector<Slot> before{asked.planned.plan.slots[19]};
  EXPECT_TRUE(asked.payloads().isSurely(1, film.headers[21] + 8, MadeFilm::kSound, before));
  EXPECT_FALSE(asked.payloads().isSurely(1, film.headers[31] + 8, MadeFilm::kSound, before));
  EXPECT_FALSE(asked.payloads().isSurely(1, film.headers[33] + 8, MadeFilm::kSound, before));
  EXPECT_FALSE(asked.payloads().isSurely(1, film.headers[21] + 8, MadeFilm::kSound - 4, before));
}

}  // namespace
}  // namespace zelvo::tests
