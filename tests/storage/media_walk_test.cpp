#include "storage/media_walk.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/recorded_system.h"
#include "tests/support/trees.h"

namespace zelvo::tests {
namespace {

using storage::Entries;
using storage::Entry;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

/// What the walk makes of `tree` when these volumes are mounted from these paths.
Entries walked(const PropertyValue& tree, const std::vector<const char*>& volumePaths = {},
               platform::PrintSink* printed = nullptr) {
  RecordedSystem system(tree);
  Entries volumes;
  for (const char* path : volumePaths) volumes.push_back(Entry{{"Volume Path", path}});
  Entries media;
  platform::NoPrintSink nowhere;
  EXPECT_EQ(storage::FindMediaMain(system, media, volumes, printed ? *printed : nowhere), 0);
  EXPECT_EQ(system.iteratorsHeld(), 0);
  return media;
}

Entry onlyEntry(const PropertyValue& tree, const std::vector<const char*>& volumePaths = {}) {
  const Entries media = walked(tree, volumePaths);
  EXPECT_EQ(media.size(), 1U);
  return media.empty() ? Entry{} : media.front();
}

TEST(FindMedia, OnlyWritableMediaAreFound) {
  const Entries media =
      walked(machine({medium({{"BSD Name", "disk0"}}), medium({{"BSD Name", "disk1"}, {"Writable", false}}),
                      PropertyDictionary{{"BSD Name", "disk2"}, {"Writable", true}}}));
  ASSERT_EQ(media.size(), 1U);
  EXPECT_EQ(*media[0].text("device path"), "/dev/rdisk0");
}

TEST(FindMedia, MissingDictionaryIsPrintedAndTheRegistryIsStillAskedWithoutOne) {
  RecordedSystem system(PropertyDictionary{{"NoMatching", true}});
  KeptPrint printed;
  std::unique_ptr<platform::RegistryIterator> found;
  EXPECT_EQ(storage::FindMedia(system, found, printed), 0xe00002c2U);
  EXPECT_EQ(found, nullptr);
  EXPECT_THAT(system.asked(), ElementsAre("serviceMatching IOMedia", "matchingServices without a dictionary"));
  EXPECT_EQ(printed.text,
            "IOServiceMatching returned a NULL dictionary.\n"
            "IOServiceGetMatchingServices returned 0xe00002c2\n");
}

TEST(FindMedia, BadStatusIsPrintedInEightHexadecimalDigits) {
  RecordedSystem system(PropertyDictionary{{"Status", std::uint64_t{5}}});
  KeptPrint printed;
  std::unique_ptr<platform::RegistryIterator> found;
  EXPECT_EQ(storage::FindMedia(system, found, printed), 5U);
  EXPECT_EQ(printed.text, "IOServiceGetMatchingServices returned 0x00000005\n");
}

TEST(FindMediaMain, FailedSearchLeavesTheArrayEmptyAndAnswersZero) {
  EXPECT_TRUE(walked(PropertyDictionary{{"NoMatching", true}}).empty());
  EXPECT_TRUE(walked(PropertyDictionary{{"Status", std::uint64_t{0xe00002bc}}}).empty());
}

TEST(MediaWalk, UnmountedWholeDiskIsADeviceAndNoVolume) {
  const Entry entry = onlyEntry(machine({medium({{"BSD Name", "disk0"}, {"Content", "Apple_HFS"}})}), {"/dev/disk1"});
  EXPECT_FALSE(entry.contains("WhetherVolume"));
  EXPECT_FALSE(entry.contains("Content"));
}

TEST(MediaWalk, MountedPartitionIsAVolumeWithoutAnyTextOfItsParents) {
  const auto tree = above(medium({{"BSD Name", "disk1s2"}, {"Content", "Apple_HFS"}, {"Size", std::uint64_t{1000}}}),
                          both(connectedBy("SATA"), characteristics({{"Model", "M"}})));
  EXPECT_EQ(onlyEntry(machine({tree}), {"/dev/disk1s2"}), (Entry{{"WhetherVolume", kOne},
                                                                 {"Content", "Apple_HFS"},
                                                                 {"device size", std::uint64_t{1000}},
                                                                 {"device path", "/dev/rdisk1s2"}}));
}

TEST(MediaWalk, WhetherVolumeIsA32BitNumber) {
  const Entry entry = onlyEntry(machine({medium({{"BSD Name", "disk1s2"}})}), {"/dev/disk1s2"});
  EXPECT_TRUE(std::holds_alternative<std::int32_t>(entry.find("WhetherVolume")->value));
}

TEST(MediaWalk, VolumeWithoutContentStoresNone) {
  EXPECT_FALSE(onlyEntry(machine({medium({{"BSD Name", "disk1s2"}})}), {"/dev/disk1s2"}).contains("Content"));
}

TEST(MediaWalk, UnknownContentIsVolumeContentNil) {
  const Entry entry = onlyEntry(machine({medium({{"BSD Name", "disk1s2"}, {"Content", "Linux"}})}), {"/dev/disk1s2"});
  EXPECT_EQ(*entry.text("Content"), "Volume Content NIL");
}

TEST(MediaWalk, ContentThatIsNoTextIsVolumeContentNil) {
  const Entry entry = onlyEntry(machine({medium({{"BSD Name", "disk1s2"}, {"Content", true}})}), {"/dev/disk1s2"});
  EXPECT_EQ(*entry.text("Content"), "Volume Content NIL");
}

TEST(MediaWalk, UnmountedPartitionIsADevice) {
  const auto tree = above(medium({{"BSD Name", "disk1s2"}}), characteristics({{"Model", "M"}}));
  const Entry entry = onlyEntry(machine({tree}));
  EXPECT_FALSE(entry.contains("WhetherVolume"));
  EXPECT_EQ(*entry.text("device model"), "M");
}

TEST(MediaWalk, WholeDiskMountedWithoutPartitionsIsListedAsADeviceAndAsAVolume) {
  const Entries media = walked(
      machine({above(medium({{"BSD Name", "disk2"}, {"Content", "Apple_HFS"}}), connectedBy("SATA"))}), {"/dev/disk2"});
  ASSERT_EQ(media.size(), 2U);
  EXPECT_FALSE(media[0].contains("WhetherVolume"));
  EXPECT_EQ(media[1], both(media[0], Entry{{"WhetherVolume", kOne}}));
  EXPECT_FALSE(media[1].contains("Content"));
}

TEST(MediaWalk, NameWithoutAnySIsNoWholeDisk) {
  const Entries media = walked(machine({medium({{"BSD Name", "vda"}})}), {"/dev/vda"});
  ASSERT_EQ(media.size(), 1U);
  EXPECT_TRUE(media[0].contains("WhetherVolume"));
}

TEST(MediaWalk, CardMountedWholeIsAUsbDeviceAndAVolumeThatIsNot) {
  const Entries media = walked(
      machine({above(medium({{"BSD Name", "disk3"}}), {{"IOClass", "AppleSDXCBlockStorageDevice"}})}), {"/dev/disk3"});
  ASSERT_EQ(media.size(), 2U);
  EXPECT_EQ(*media[0].find("WhetherCardReader"), kOne);
  EXPECT_EQ(*media[0].find("WhetherUSB"), kOne);
  EXPECT_FALSE(media[0].contains("WhetherVolume"));
  EXPECT_EQ(*media[1].find("WhetherVolume"), kOne);
  EXPECT_EQ(*media[1].find("WhetherCardReader"), kOne);
  EXPECT_FALSE(media[1].contains("WhetherUSB"));
}

TEST(MediaWalk, VolumeMountedTwiceMakesOneEntry) {
  EXPECT_EQ(walked(machine({medium({{"BSD Name", "disk1s2"}})}), {"/dev/disk1s2", "/dev/disk1s2"}).size(), 1U);
}

TEST(MediaWalk, VolumePathOfFiveCharactersOrFewerNamesNoMedium) {
  const Entry entry = onlyEntry(machine({medium({{"BSD Name", ""}})}), {"/dev/", "tmpfs", "none", ""});
  EXPECT_FALSE(entry.contains("WhetherVolume"));
}

TEST(MediaWalk, FiveCharactersAreCountedAsCharactersNotBytes) {
  EXPECT_TRUE(onlyEntry(machine({medium({{"BSD Name", "s0s"}})}), {"p\xC3\xB6"
                                                                   "ol/s0s"})
                  .contains("WhetherVolume"));
  EXPECT_FALSE(onlyEntry(machine({medium({{"BSD Name", "s0s"}})}), {"p\xC3\xB6"
                                                                    "ols0s"})
                   .contains("WhetherVolume"));
}

TEST(MediaWalk, VolumePathIsComparedWhole) {
  EXPECT_FALSE(onlyEntry(machine({medium({{"BSD Name", "disk1s1"}})}), {"/dev/disk1s10"}).contains("WhetherVolume"));
}

TEST(MediaWalk, MediumWithoutANameHasNoPathButIsListed) {
  EXPECT_FALSE(onlyEntry(machine({medium({{"Size", std::uint64_t{9}}})})).contains("device path"));
}

TEST(MediaWalk, NameThatFillsTheBufferKeepsItsPath) {
  const std::string name(1017, 'd');  // with "/dev/r" and the zero byte 1024
  EXPECT_EQ(*onlyEntry(machine({medium({{"BSD Name", name}})})).text("device path"), "/dev/r" + name);
}

TEST(MediaWalk, NameOneByteTooLongHasNoPathButIsListed) {
  const std::string name(1018, 'd');
  EXPECT_FALSE(onlyEntry(machine({medium({{"BSD Name", name}})})).contains("device path"));
}

TEST(MediaWalk, NameThatIsNoUtf8HasNoPath) {
  EXPECT_FALSE(onlyEntry(machine({medium({{"BSD Name", "disk\xFF"}})})).contains("device path"));
}

TEST(MediaWalk, LongNameBeforeDoesNotLeakIntoAShortOne) {
  const Entries media = walked(machine({medium({{"BSD Name", "disk10"}}), medium({{"BSD Name", "disk2"}})}));
  ASSERT_EQ(media.size(), 2U);
  EXPECT_EQ(*media[1].text("device path"), "/dev/rdisk2");
}

TEST(MediaWalk, SizeAndBlockSizeAreCopiedForDevicesAndVolumes) {
  const PropertyDictionary sizes{{"Size", std::uint64_t{4096000}}, {"Preferred Block Size", std::uint64_t{4096}}};
  const Entries media =
      walked(machine({medium(both({{"BSD Name", "disk0"}}, sizes)), medium(both({{"BSD Name", "disk0s1"}}, sizes))}),
             {"/dev/disk0s1"});
  ASSERT_EQ(media.size(), 2U);
  for (const Entry& entry : media) {
    EXPECT_EQ(entry.number("device size"), 4096000U);
    EXPECT_EQ(entry.number("Preferred Block Size"), 4096U);
  }
}

TEST(MediaWalk, PropertiesArePrintedUnderTheirHeaders) {
  const auto tree =
      above(above(above(above(above(medium({{"BSD Name", "disk0"}}), {{"level", 1}}), {{"level", 2}}), {{"level", 3}}),
                  {{"level", 4}}),
            {{"level", 5}});
  KeptPrint printed;
  walked(machine({tree}), {}, &printed);
  EXPECT_THAT(printed.text,
              ::testing::StartsWith("properties:\n********************\n{\n  \"BSD Name\" = \"disk0\"\n"));
  std::size_t last = 0;
  for (const char* part : {"properties:\n*", "parentIteratorProperties:\n{", "\"level\" = 1",
                           "parentIteratorProperties2:\n{", "\"level\" = 2", "parentIteratorProperties3:\n{",
                           "\"level\" = 3", "parentIteratorProperties4:\n{", "\"level\" = 4"}) {
    const std::size_t place = printed.text.find(part, last);
    ASSERT_NE(place, std::string::npos) << part;
    last = place;
  }
  EXPECT_THAT(printed.text, Not(HasSubstr("\"level\" = 5")));
}

TEST(MediaWalk, MountedPartitionPrintsItsOwnPropertiesOnly) {
  KeptPrint printed;
  walked(machine({above(medium({{"BSD Name", "disk1s2"}}), {{"level", 1}})}), {"/dev/disk1s2"}, &printed);
  EXPECT_THAT(printed.text, HasSubstr("properties:\n"));
  EXPECT_THAT(printed.text, Not(HasSubstr("parentIteratorProperties")));
}

TEST(MediaWalk, WithoutAnIteratorThereIsNothingToWalk) {
  std::array<char, storage::kBSDPathCapacity> path{};
  Entries media;
  platform::NoPrintSink nowhere;
  EXPECT_EQ(storage::GetBSDPath(nullptr, path, media, {}, nowhere), 0U);
  EXPECT_TRUE(media.empty());
}

}  // namespace
}  // namespace zelvo::tests
