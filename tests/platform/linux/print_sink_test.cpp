#include <gtest/gtest.h>

#include "platform/linux/print_sink.h"
#include "storage/media_walk.h"
#include "tests/support/recorded_system.h"
#include "tests/support/trees.h"

namespace zelvo::tests {
namespace {

TEST(StandardOutputSink, RegistryFailuresAppearOnStandardOutput) {
  RecordedSystem system(PropertyDictionary{{"NoMatching", true}});
  platform::linux_::StandardOutputSink sink;
  storage::Entries media;
  ::testing::internal::CaptureStdout();
  storage::FindMediaMain(system, media, {}, sink);
  EXPECT_EQ(::testing::internal::GetCapturedStdout(),
            "IOServiceMatching returned a NULL dictionary.\nIOServiceGetMatchingServices returned 0xe00002c2\n");
}

TEST(NoPrintSink, SaysThatNobodyReads) { EXPECT_FALSE(platform::NoPrintSink().isRead()); }

}  // namespace
}  // namespace zelvo::tests
