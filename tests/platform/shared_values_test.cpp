// Values that two threads see: Relaxed, Guarded and the cancel mark.
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <thread>

#include "platform/guarded.h"
#include "platform/relaxed.h"
#include "platform/workers.h"

namespace zelvo::tests {
namespace {

TEST(Relaxed, StandsForAPlainValue) {
  platform::Relaxed<double> percent;
  EXPECT_EQ(percent, 0.0);
  percent = 12.5;
  EXPECT_EQ(percent, 12.5);
  const double copy = percent = 25.0;
  EXPECT_EQ(copy, 25.0);
}

TEST(Relaxed, StartsWithAGivenValue) {
  const platform::Relaxed<int> number = 7;
  EXPECT_EQ(number, 7);
}

TEST(Relaxed, IsLockFreeForWhatIsSharedHere) {
  EXPECT_TRUE(std::atomic<double>::is_always_lock_free);
  EXPECT_TRUE(std::atomic<std::uint64_t>::is_always_lock_free);
}

TEST(Relaxed, LastStoreIsSeenOnceTheWriterIsJoined) {
  platform::Relaxed<int> number;
  std::thread([&] {
    for (int i = 1; i <= 1000; ++i) number = i;
  }).join();
  EXPECT_EQ(number, 1000);
}

TEST(Guarded, GivesACopyOfWhatWasSet) {
  platform::Guarded<std::optional<std::string>> text;
  EXPECT_FALSE(text.get().has_value());
  text.set("abc");
  EXPECT_EQ(text.get(), "abc");
  text.set(std::nullopt);
  EXPECT_FALSE(text.get().has_value());
}

TEST(Guarded, StartsWithAGivenValue) { EXPECT_EQ(platform::Guarded<std::string>("start").get(), "start"); }

TEST(Guarded, ValueIsNeverSeenHalfWritten) {
  platform::Guarded<std::string> text(std::string(100, 'a'));
  std::thread writer([&] {
    for (int i = 0; i < 5000; ++i) text.set(std::string(100, static_cast<char>('a' + i % 26)));
  });
  bool whole = true;
  for (int i = 0; i < 5000; ++i) {
    const std::string seen = text.get();
    whole = whole && seen == std::string(100, seen.front());
  }
  writer.join();
  EXPECT_TRUE(whole);
}

TEST(CancelMark, AbandonImpliesCancelButNotTheOtherWayRound) {
  platform::CancelMark cancelled;
  cancelled.cancel();
  EXPECT_TRUE(cancelled.cancelled());
  EXPECT_FALSE(cancelled.abandoned());

  platform::CancelMark abandoned;
  abandoned.abandon();
  EXPECT_TRUE(abandoned.cancelled());
  EXPECT_TRUE(abandoned.abandoned());
}

TEST(CancelMark, StartsUnset) {
  const platform::CancelMark mark;
  EXPECT_FALSE(mark.cancelled());
  EXPECT_FALSE(mark.abandoned());
}

}  // namespace
}  // namespace zelvo::tests
