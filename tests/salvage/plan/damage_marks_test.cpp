// Payloads that were overwritten inside.
#include "salvage/plan/damage_marks.h"

#include <gtest/gtest.h>

#include "tests/salvage/made_film.h"

namespace zelvo::tests {
namespace {

using salvage::ByteSpan;
using salvage::SlotState;

TEST(DamageMarks, SpansAreTouchedByAnyByte) {
  const std::vector<ByteSpan> spans{{100, 200}, {300, 400}};
  EXPECT_FALSE(salvage::touches(spans, 0, 100));
  EXPECT_TRUE(salvage::touches(spans, 0, 101));
  EXPECT_TRUE(salvage::touches(spans, 199, 201));
  EXPECT_FALSE(salvage::touches(spans, 200, 300));
  EXPECT_TRUE(salvage::touches(spans, 250, 1000));
  EXPECT_FALSE(salvage::touches(spans, 400, 1000));
  EXPECT_FALSE(salvage::touches({}, 0, 1000));
}

/// A film of large pictures, of which zeros fill some bytes.
struct Zeroed {
  explicit Zeroed(std::string_view code) {
    AviBuilder builder;
    builder.videoHandler = builder.videoCompression = code;
    for (std::uint32_t i = 0; i < 20; ++i) {
      builder.chunks.push_back({"00dc", 6000 + 2 * i, std::byte{0x91}});
      builder.chunks.push_back({"01wb", 400, std::byte{0x92}});
    }
    bytes = builder.build();
    offsets = payloadOffsets(builder);
  }
  void zero(std::uint64_t from, std::uint64_t to) {
    std::fill(bytes.begin() + static_cast<std::ptrdiff_t>(from), bytes.begin() + static_cast<std::ptrdiff_t>(to),
              std::byte{0});
  }
  [[nodiscard]] std::uint64_t sectorIn(std::size_t chunk) const { return (offsets[chunk] / 512 + 2) * 512; }

  platform::Bytes bytes;
  std::vector<std::uint64_t> offsets;
};

TEST(DamageMarks, ZeroSectorInACompressedPictureIsDamage) {
  Zeroed film("XVID");
  film.zero(film.sectorIn(10), film.sectorIn(10) + 1024);
  const PlannedFilm planned(film.bytes);
  ASSERT_EQ(planned.plan.slots.size(), 40U);
  for (std::size_t i = 0; i < 40; ++i)
    EXPECT_EQ(planned.plan.slots[i].state, i == 10 ? SlotState::damaged : SlotState::whole) << i;
}

TEST(DamageMarks, ZerosOfARawPictureAreItsOwnUnlessTheyEndWithSectors) {
  Zeroed film(std::string_view("\0\0\0\0", 4));
  film.zero(film.sectorIn(10) - 100, film.sectorIn(10) + 1024 + 77);
  film.zero(film.sectorIn(14), film.sectorIn(14) + 1024);
  const PlannedFilm planned(film.bytes);
  ASSERT_EQ(planned.plan.slots.size(), 40U);
  for (std::size_t i = 0; i < 40; ++i)
    EXPECT_EQ(planned.plan.slots[i].state, i == 14 ? SlotState::damaged : SlotState::whole) << i;
}

TEST(DamageMarks, SectorsThatCannotBeReadAreDamage) {
  const MadeFilm film;
  PlannedFilm planned(film.bytes);
  planned.scanned.scan.unreadable.push_back({film.headers[20] + 100, film.headers[20] + 200});
  salvage::markDamage(planned.evidence(), planned.plan);
  EXPECT_EQ(planned.plan.slots[20].state, SlotState::damaged);
  EXPECT_EQ(planned.plan.slots[21].state, SlotState::whole);
}

}  // namespace
}  // namespace zelvo::tests
