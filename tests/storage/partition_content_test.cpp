#include "storage/partition_content.h"

#include <gtest/gtest.h>

#include <utility>

namespace zelvo::tests {
namespace {

using Pair = std::pair<const char*, const char*>;

class PartitionContent : public ::testing::TestWithParam<Pair> {};

TEST_P(PartitionContent, IsStoredUnderItsName) {
  EXPECT_EQ(storage::normalisedContent(GetParam().first), GetParam().second);
}

INSTANTIATE_TEST_SUITE_P(
    Table, PartitionContent,
    ::testing::Values(Pair{"Apple_HFS", "Apple_HFS"}, Pair{"48465300-0000-11AA-AA11-00306543ECAC", "Apple_HFS"},
                      Pair{"Apple_HFSX", "Apple_HFSX"}, Pair{"FAT32", "FAT32"}, Pair{"Windows_FAT_32", "FAT32"},
                      Pair{"DOS_FAT_32", "DOS_FAT_32"}, Pair{"FAT16", "FAT16"}, Pair{"Windows_FAT_16", "FAT16"},
                      Pair{"DOS_FAT_16", "DOS_FAT_16"},
                      Pair{"EBD0A0A2-B9E5-4433-87C0-68B6B72699C7", "EBD0A0A2-B9E5-4433-87C0-68B6B72699C7"},
                      Pair{"ebd0a0a2-b9e5-4433-87c0-68b6b72699c7", "Volume Content NIL"},
                      Pair{"Windows_NTFS", "Volume Content NIL"}, Pair{"", "Volume Content NIL"}));

}  // namespace
}  // namespace zelvo::tests
