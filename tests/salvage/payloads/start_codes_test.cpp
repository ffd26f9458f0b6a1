// Start codes and units of a payload.
#include "salvage/payloads/start_codes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/salvage/codec_films.h"

namespace zelvo::tests {
namespace {

using testing::ElementsAre;

std::vector<std::size_t> placesIn(const platform::Bytes& bytes) {
  std::vector<std::size_t> places;
  for (salvage::StartCodes codes(bytes); const auto code = codes.next();) places.push_back(code->offset);
  return places;
}

std::vector<std::size_t> unitsIn(const platform::Bytes& bytes) {
  std::vector<std::size_t> sizes;
  for (salvage::Units units(bytes); const auto unit = units.next();) sizes.push_back(unit->size());
  return sizes;
}

TEST(StartCodes, AreFoundWhereverTheyBegin) {
  for (unsigned before = 0; before < 7; ++before) {
    platform::Bytes bytes(before, std::byte{5});
    for (const unsigned number : {0U, 0U, 1U, 0xb6U, 2U}) bytes.push_back(static_cast<std::byte>(number));
    EXPECT_THAT(placesIn(bytes), ElementsAre(before));
  }
}

TEST(StartCodes, ZerosInFrontBelongToNone) {
  EXPECT_THAT(placesIn(numbered({0, 0, 0, 0, 1, 9, 0, 0, 1, 8})), ElementsAre(2, 6));
}

TEST(StartCodes, OneWithoutATypeIsNone) {
  EXPECT_THAT(placesIn(numbered({0, 0, 1})), ElementsAre());
  EXPECT_THAT(placesIn({}), ElementsAre());
}

TEST(Units, LengthsLeadFromOneToTheNext) {
  EXPECT_THAT(unitsIn(numbered({0, 0, 0, 2, 6, 1, 0, 0, 0, 3, 5, 1, 2})), ElementsAre(2, 3));
}

TEST(Units, OneThatIsLongerThanThePayloadIsCut) { EXPECT_THAT(unitsIn(numbered({0, 0, 0, 99, 6, 1})), ElementsAre(2)); }

TEST(Units, LengthsWithoutSenseEndThem) {
  EXPECT_THAT(unitsIn(numbered({0, 0, 0, 0, 6, 1})), ElementsAre());
  EXPECT_THAT(unitsIn(numbered({0xf0, 0, 0, 0, 6, 1})), ElementsAre());
}

}  // namespace
}  // namespace zelvo::tests
