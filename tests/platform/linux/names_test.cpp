#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/linux/storage_devices.h"
#include "platform/linux/storage_registry.h"

namespace zelvo::tests {
namespace {

using platform::linux_::BlockDevice;
using platform::linux_::decodedUdevText;
using platform::linux_::giveBsdNames;
using platform::linux_::partitionContent;

BlockDevice device(const char* name, std::uint64_t sequence, std::uint64_t number, std::uint64_t partition = 0,
                   const char* disk = "") {
  BlockDevice made;
  made.systemName = name;
  made.sequence = sequence;
  made.number = number;
  made.partition = partition;
  made.wholeDisk = disk;
  return made;
}

std::vector<std::string> named(std::vector<BlockDevice> devices) {
  giveBsdNames(devices);
  std::vector<std::string> names;
  for (const BlockDevice& one : devices) names.push_back(one.systemName + "=" + one.bsdName);
  return names;
}

TEST(BsdNames, CountOfTheKernelGoesBeforeTheDeviceNumber) {
  EXPECT_THAT(named({device("sda", 9, 1), device("sdb", 2, 5)}), ::testing::ElementsAre("sdb=disk0", "sda=disk1"));
}

TEST(BsdNames, PartitionsFollowTheirDiskInTheOrderOfTheirNumbers) {
  EXPECT_THAT(named({device("sda10", 0, 3, 10, "sda"), device("sda", 1, 1), device("sda2", 0, 4, 2, "sda"),
                     device("sdb", 2, 2)}),
              ::testing::ElementsAre("sda=disk0", "sda2=disk0s2", "sda10=disk0s10", "sdb=disk1"));
}

TEST(BsdNames, PartitionOfADiskThatIsNotThereIsDropped) {
  EXPECT_THAT(named({device("sdx1", 0, 3, 1, "sdx")}), ::testing::IsEmpty());
}

TEST(BsdNames, PartitionHasTheBlockSizeOfItsDisk) {
  std::vector<BlockDevice> devices{device("sda1", 0, 2, 1, "sda"), device("sda", 1, 1)};
  devices[1].blockSize = 4096;
  giveBsdNames(devices);
  EXPECT_EQ(devices[1].bsdName, "disk0s1");
  EXPECT_EQ(devices[1].blockSize, 4096U);
}

TEST(BsdNames, PartitionIsRemovableWithItsDisk) {
  std::vector<BlockDevice> devices{device("sda1", 0, 2, 1, "sda"), device("sda", 1, 1), device("sdb", 2, 3)};
  devices[1].removable = true;
  giveBsdNames(devices);
  EXPECT_TRUE(devices[1].removable);
  EXPECT_FALSE(devices[2].removable);
}

TEST(BsdNames, DiskAndPartitionKeepTheirOwnSizes) {
  std::vector<BlockDevice> devices{device("sda1", 0, 2, 1, "sda"), device("sda", 1, 1)};
  devices[0].size = 5;
  devices[1].size = 9;
  giveBsdNames(devices);
  EXPECT_EQ(devices[0].size, 9U);
  EXPECT_EQ(devices[1].size, 5U);
}

TEST(UdevText, EscapesAreDecodedAndWhatIsNoneStays) {
  EXPECT_EQ(decodedUdevText("A\\x20B\\x20"), "A B ");
  EXPECT_EQ(decodedUdevText("\\x2"), "\\x2");
  EXPECT_EQ(decodedUdevText("\\xzz\\x4"), "\\xzz\\x4");
  EXPECT_EQ(decodedUdevText("a\\"), "a\\");
}

TEST(LinuxPartitionContent, GuidIsInUpperCaseAndOtherTypesAreNot) {
  EXPECT_EQ(partitionContent("gpt", "ebd0a0a2-b9e5-4433-87c0-68b6b72699c7"), "EBD0A0A2-B9E5-4433-87C0-68B6B72699C7");
  EXPECT_EQ(partitionContent("mac", "Apple_HFSX"), "Apple_HFSX");
  EXPECT_EQ(partitionContent("", ""), "");
}

TEST(LinuxPartitionContent, OnlySmallLettersOfAGuidAreRaised) {
  EXPECT_EQ(partitionContent("gpt", "@AZ[`az{-09"), "@AZ[`AZ{-09");
}

TEST(LinuxPartitionContent, EveryDosTypeHasItsName) {
  const std::vector<std::pair<const char*, const char*>> types{
      {"0x1", "DOS_FAT_12"},           {"0x4", "DOS_FAT_16_S"}, {"0x5", "DOS_Extended"},   {"0x6", "DOS_FAT_16"},
      {"0x7", "Windows_NTFS"},         {"0xb", "DOS_FAT_32"},   {"0xc", "Windows_FAT_32"}, {"0xe", "Windows_FAT_16"},
      {"0xf", "Windows_FAT_Extended"}, {"0x82", "Linux_Swap"},  {"0x83", "Linux"},         {"0xaf", "Apple_HFS"}};
  for (const auto& [type, name] : types) EXPECT_EQ(partitionContent("dos", type), name) << type;
}

TEST(LinuxPartitionContent, DosTypeMayHaveALeadingZeroAndNoPrefix) {
  EXPECT_EQ(partitionContent("dos", "0x0c"), "Windows_FAT_32");
  EXPECT_EQ(partitionContent("dos", "0C"), "Windows_FAT_32");
}

TEST(LinuxPartitionContent, OtherDosTypesAreShownInTwoDigits) {
  EXPECT_EQ(partitionContent("dos", "0xa5"), "0xA5");
  EXPECT_EQ(partitionContent("dos", "0x2"), "0x02");
}

TEST(LinuxPartitionContent, DosTypeThatIsNoNumberIsNotKnown) {
  EXPECT_EQ(partitionContent("dos", ""), "");
  EXPECT_EQ(partitionContent("dos", "0x"), "");
  EXPECT_EQ(partitionContent("dos", "fat"), "");
  EXPECT_EQ(partitionContent("dos", "0xcx"), "");
}

}  // namespace
}  // namespace zelvo::tests
