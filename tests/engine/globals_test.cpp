#include "engine/globals.h"

#include <gtest/gtest.h>

namespace zelvo::tests {
namespace {

TEST(Globals, ResetMakesThemAsTheyAreWhenTheProgramStarts) {
  engine::path.set("/a");
  engine::inputfilesize = 5;
  engine::internalpath.set("/b");
  engine::stopflag = true;
  engine::validitycheck1 = true;
  engine::flag = true;
  engine::globalsectorforsample = 7;

  engine::resetGlobals();

  EXPECT_FALSE(engine::path.get().has_value());
  EXPECT_EQ(engine::inputfilesize, 0U);
  EXPECT_EQ(engine::internalpath.get(), "");
  EXPECT_FALSE(engine::stopflag);
  EXPECT_FALSE(engine::validitycheck1);
  EXPECT_FALSE(engine::flag);
  EXPECT_EQ(engine::globalsectorforsample, 0U);
}

}  // namespace
}  // namespace zelvo::tests
