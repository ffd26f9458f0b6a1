#include "engine/low32.h"

#include <gtest/gtest.h>

namespace zelvo::tests {
namespace {

using engine::low32;

TEST(Low32, DropsWhatLiesAbove) {
  EXPECT_EQ(low32(0xffffffffU), 0xffffffffU);
  EXPECT_EQ(low32(0x100000000U), 0U);
  EXPECT_EQ(low32(5000000000U), 705032704U);
}

}  // namespace
}  // namespace zelvo::tests
