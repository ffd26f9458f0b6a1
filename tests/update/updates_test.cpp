#include "update/updates.h"

#include <gtest/gtest.h>

#include "tests/update/fakes.h"

namespace zelvo::tests {
namespace {

using update::UpdateMeans;

class Updates : public testing::Test, protected UpdateBench {};

TEST_F(Updates, WithAnAddressAndAnUpdaterEveryRequestComesToSomething) {
  for (const char* updater :
       {"/Applications/.autoUpd.app", "/Applications/Zelvo AVI Repair/.autoUpd.app/Contents/MacOS/Auto Updator.app"}) {
    files.put(updater, bytesOf("x"));
    EXPECT_EQ(updates.means(), UpdateMeans::all) << updater;
    ASSERT_FALSE(files.remove(updater));
  }
}

TEST_F(Updates, WithoutAnUpdaterNothingCanBeStarted) { EXPECT_EQ(updates.means(), UpdateMeans::noUpdater); }

TEST_F(Updates, WithoutAnAddressNothingCanBeAsked) {
  files.put("/Applications/.autoUpd.app", bytesOf("x"));
  for (const std::string& list :
       {listOf({{"CFBundleShortVersionString", "2.0"}}), listOf({{"cloudPlistUrl", ""}}), std::string("no list")}) {
    putOwnList(list);
    EXPECT_EQ(updates.means(), UpdateMeans::noAddress) << list;
  }
}

TEST_F(Updates, LookingForTheMeansAsksNothingOfTheNetwork) {
  static_cast<void>(updates.means());
  EXPECT_TRUE(web.asked.empty());
  EXPECT_EQ(reachability.asked, 0);
}

}  // namespace
}  // namespace zelvo::tests
