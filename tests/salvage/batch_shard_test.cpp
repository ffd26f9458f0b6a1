#include "salvage/batch_shard.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

#include "platform/linux/checksums.h"

namespace zelvo::salvage {
namespace {

TEST(BatchShard, IsReadFromItsText) {
  EXPECT_EQ(shardFrom("2/5")->number, 2U);
  EXPECT_EQ(shardFrom("2/5")->count, 5U);
  EXPECT_TRUE(shardFrom("1/1"));
  for (const char* text : {"", "1", "/", "0/4", "5/4", "1/0", "a/4", "1/4x", "-1/4", "1/1000001", "1/4/4", " 1/4"}) {
    EXPECT_FALSE(shardFrom(text)) << text;
  }
}

// SHA-256 of "1998/holiday.avi" begins with the bytes 2aab02b34118d70b, of the empty text with e3b0c44298fc1c14.
TEST(BatchShard, FollowsFromTheFirstEightBytesOfTheChecksum) {
  platform::linux_::LinuxChecksums checksums;
  EXPECT_EQ(shardOf("", 1000, checksums), 0xe3b0c44298fc1c14U % 1000 + 1);
  EXPECT_EQ(shardOf("1998/holiday.avi", 7, checksums), 0x2aab02b34118d70bU % 7 + 1);
  EXPECT_EQ(shardOf("anything", 1, checksums), 1U);
}

TEST(BatchShard, BytesCountAsTheyAre) {
  platform::linux_::LinuxChecksums checksums;
  EXPECT_EQ(shardOf(std::string("a\0\xff", 3), 1'000'000, checksums), 0x2d28501a66adef19U % 1'000'000 + 1);
}

TEST(BatchShard, EveryFilmIsInOneShardAndNoneIsEmpty) {
  platform::linux_::LinuxChecksums checksums;
  std::array<int, 4> films{};
  for (int i = 0; i < 400; ++i) {
    const auto shard = shardOf("film " + std::to_string(i) + ".avi", films.size(), checksums);
    ASSERT_TRUE(shard && *shard >= 1 && *shard <= films.size());
    ++films[*shard - 1];
  }
  for (const int one : films) EXPECT_GT(one, 60);
}

class NoChecksums final : public platform::Checksums {
 public:
  std::unique_ptr<platform::RunningChecksum> startSha256() override { return nullptr; }
};

TEST(BatchShard, IsUnknownWithoutChecksums) {
  NoChecksums none;
  EXPECT_FALSE(shardOf("a", 2, none));
}

}  // namespace
}  // namespace zelvo::salvage
