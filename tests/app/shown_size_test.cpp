#include "app/shown_size.h"

#include <gtest/gtest.h>

namespace zelvo::tests {
namespace {

TEST(ShownSize, IsInBytesBelowATenthOfAMegabyteRounded) {
  EXPECT_EQ(app::shownSize(0), "0 bytes");
  EXPECT_EQ(app::shownSize(1), "1 byte");
  EXPECT_EQ(app::shownSize(2), "2 bytes");
  EXPECT_EQ(app::shownSize(49999), "49999 bytes");
  EXPECT_EQ(app::shownSize(50000), "0.1 MB");
}

TEST(ShownSize, IsInGigabytesFromTenOn) {
  EXPECT_EQ(app::shownSize(1234567), "1.2 MB");
  EXPECT_EQ(app::shownSize(9'999'900'000), "9999.9 MB");
  EXPECT_EQ(app::shownSize(9'999'999'999), "10000.0 MB");
  EXPECT_EQ(app::shownSize(10'000'000'000), "10.0 GB");
}

}  // namespace
}  // namespace zelvo::tests
