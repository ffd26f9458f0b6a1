#include "engine/repeated_entries.h"

#include <gtest/gtest.h>

#include <vector>

namespace zelvo::tests {
namespace {

using engine::repeatedEntries;

TEST(RepeatedEntries, CountsThoseAnEarlierOneHolds) {
  const std::vector<std::uint64_t> offsets{0, 5, 7, 9, 5, 7, 5, 0};
  EXPECT_EQ(repeatedEntries(offsets, 0), 0U);
  EXPECT_EQ(repeatedEntries(offsets, 3), 0U);
  EXPECT_EQ(repeatedEntries(offsets, 4), 1U);
  EXPECT_EQ(repeatedEntries(offsets, 5), 2U);
  EXPECT_EQ(repeatedEntries(offsets, 6), 3U);
  EXPECT_EQ(repeatedEntries(offsets, 7), 3U) << "entry 0 is no chunk";
}

}  // namespace
}  // namespace zelvo::tests
