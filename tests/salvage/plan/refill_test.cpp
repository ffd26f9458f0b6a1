// Slots for what is missing, in turn.
#include "salvage/plan/refill.h"

#include <string>

#include <gtest/gtest.h>

namespace zelvo::tests {
namespace {

using salvage::Refill;

std::string turns(const std::vector<Refill>& missing, std::size_t most = 100) {
  std::string text;
  for (const salvage::Slot& slot : salvage::refillInTurn(missing, most)) {
    EXPECT_EQ(slot.state, salvage::SlotState::refilled);
    EXPECT_EQ(slot.size, slot.stream * 100U);
    text += std::to_string(slot.stream);
  }
  return text;
}

TEST(Refill, StreamsTakeTurns) {
  EXPECT_EQ(turns({{0, 3, 0}, {1, 3, 100}}), "010101");
  EXPECT_EQ(turns({{0, 4, 0}, {1, 2, 100}}), "010010");
  EXPECT_EQ(turns({{0, 1, 0}, {1, 2, 100}, {2, 1, 200}}), "0121");
}

TEST(Refill, NothingMissingIsNothing) {
  EXPECT_EQ(turns({}), "");
  EXPECT_EQ(turns({{0, 0, 0}, {1, 1, 100}}), "1");
}

TEST(Refill, NoMoreThanThereMayBe) { EXPECT_EQ(turns({{0, 1'000'000, 0}}, 5), "00000"); }

}  // namespace
}  // namespace zelvo::tests
