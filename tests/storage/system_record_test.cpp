#include "storage/system_record.h"

#include <gtest/gtest.h>

#include <cerrno>

#include "platform/linux/property_lists.h"
#include "storage/drive_inventory.h"
#include "tests/support/recorded_system.h"
#include "tests/support/trees.h"

namespace zelvo::tests {
namespace {

struct Arrays {
  storage::Entries media;
  storage::Entries volumes;
  std::string printed;
  bool operator==(const Arrays&) const = default;
};

Arrays inventoryOf(RecordedSystem& system) {
  Arrays arrays;
  KeptPrint printed;
  storage::initialDriveList(system, system, arrays.media, arrays.volumes, printed);
  return arrays;
}

/// The record of a system, written to a property list and read back.
PropertyValue throughAPropertyList(const PropertyDictionary& record) {
  platform::linux_::LinuxPropertyLists lists;
  const std::string xml = lists.format(record);
  auto read = lists.parse(std::as_bytes(std::span(xml)), xml.size());
  EXPECT_TRUE(read.has_value());
  return read ? *read : PropertyValue(PropertyDictionary{});
}

TEST(SystemRecord, RecordOfASystemGivesTheSameInventory) {
  RecordedSystem original(recordedTree("desk.plist"));
  RecordedSystem recorded(throughAPropertyList(storage::recordedSystem(original, original)));
  EXPECT_EQ(inventoryOf(recorded), inventoryOf(original));
}

TEST(SystemRecord, MediaThatAreNotWritableAreRecordedToo) {
  RecordedSystem original(machine({medium({{"BSD Name", "disk0"}, {"Writable", false}})}));
  const auto record = storage::recordedSystem(original, original);
  ASSERT_EQ(record.array("Registry")->size(), 1U);
  EXPECT_EQ(*record.array("Registry")->front().dictionary()->text("BSD Name"), "disk0");
}

TEST(SystemRecord, ParentSharedByTwoPartitionsIsRecordedOnce) {
  auto disk = medium({{"BSD Name", "disk0"}});
  disk.set("IORegistryEntryChildren",
           PropertyArray{medium({{"BSD Name", "disk0s1"}}), medium({{"BSD Name", "disk0s2"}})});
  RecordedSystem original(machine({disk}));
  const auto record = storage::recordedSystem(original, original);
  ASSERT_EQ(record.array("Registry")->size(), 1U);
  EXPECT_EQ(record.array("Registry")->front().dictionary()->array("IORegistryEntryChildren")->size(), 2U);
}

TEST(SystemRecord, ObjectWithTwoParentsKeepsBoth) {
  auto shared = medium({{"BSD Name", "disk0"}});
  shared.set("IORegistryEntryID", std::uint64_t{7});
  RecordedSystem original(machine({above(shared, connectedBy("SATA")), above(shared, connectedBy("USB"))}));
  RecordedSystem recorded(throughAPropertyList(storage::recordedSystem(original, original)));
  const Arrays arrays = inventoryOf(recorded);
  ASSERT_EQ(arrays.media.size(), 1U);
  EXPECT_TRUE(arrays.media[0].contains("WhetherSATA"));
  EXPECT_TRUE(arrays.media[0].contains("WhetherUSB"));
}

TEST(SystemRecord, FailuresAreRecorded) {
  RecordedSystem original(PropertyDictionary{
      {"NoMatching", true},
      {"Volumes", PropertyArray{PropertyDictionary{
                      {"Mounted Path", "/x"}, {"Mounted From Error", EACCES}, {"Free Space Error", EIO}}}}});
  RecordedSystem recorded(throughAPropertyList(storage::recordedSystem(original, original)));
  KeptPrint printed;
  storage::Entries media;
  storage::Entries volumes;
  storage::initialDriveList(recorded, recorded, media, volumes, printed);
  EXPECT_EQ(printed.text,
            "statfs failed: Permission denied\nIOServiceMatching returned a NULL dictionary.\n"
            "IOServiceGetMatchingServices returned 0xe00002c2\n");
  EXPECT_EQ(recorded.space("/x").error.value(), EIO);
}

TEST(SystemRecord, NativeNodesAndFreeSpaceAreRecorded) {
  RecordedSystem original(PropertyDictionary{
      {"Registry", PropertyArray{medium({{"BSD Name", "disk0"}, {"Native Node", "/dev/sda"}})}},
      {"Volumes", PropertyArray{PropertyDictionary{
                      {"Mounted Path", "/x"}, {"Mounted From", "/dev/disk0"}, {"Free Space", std::uint64_t{77}}}}}});
  RecordedSystem recorded(throughAPropertyList(storage::recordedSystem(original, original)));
  EXPECT_EQ(recorded.nativeNode("disk0"), "/dev/sda");
  EXPECT_EQ(recorded.space("/x").free, 77U);
}

TEST(SystemRecord, MountsAreRecordedWithCapacityAndMark) {
  const auto mountedAt = [](const char* path, PropertyDictionary more) {
    return both(mounted(path, "/dev/disk0"), std::move(more));
  };
  RecordedSystem original(PropertyDictionary{
      {"Volumes", PropertyArray{mountedAt("/a", {{"Free Space", std::uint64_t{7}}, {"Capacity", std::uint64_t{9}}}),
                                mountedAt("/b", {{"Read Only", true}})}}});
  RecordedSystem recorded(throughAPropertyList(storage::recordedSystem(original, original)));
  EXPECT_EQ(recorded.space("/a").capacity, 9U);
  EXPECT_FALSE(recorded.mountFacts("/a").readOnly);
  EXPECT_TRUE(recorded.mountFacts("/b").readOnly);
}

TEST(SystemRecord, VolumeThatDoesNotAnswerKeepsWhatTheMountTableHas) {
  RecordedSystem original(PropertyDictionary{
      {"Volumes", PropertyArray{both(mounted("/dead", "/dev/disk0"),
                                     {{"Mounted From Error", ETIMEDOUT}, {"Free Space Error", ETIMEDOUT}})}}});
  RecordedSystem recorded(throughAPropertyList(storage::recordedSystem(original, original)));
  EXPECT_EQ(recorded.mountedFromName("/dead").error, std::errc::timed_out);
  EXPECT_EQ(recorded.mountFacts("/dead").mountedFrom, "/dev/disk0");
}

TEST(SystemRecord, MountPointThatIsNotUtf8IsRecordedByteByByte) {
  const std::string path = "/mnt/\xFF\xC3";
  RecordedSystem original(machine({}, {mounted(path.c_str(), "/dev/disk0")}));
  const auto record = storage::recordedSystem(original, original);
  EXPECT_EQ(*record.array("Volumes")->front().dictionary()->text("path_hex"), "2f6d6e742fffc3");
  RecordedSystem recorded(throughAPropertyList(record));
  EXPECT_EQ(recorded.mountedLocalVolumePaths(), std::vector<std::string>{path});
}

TEST(SystemRecord, OtherMountPointsHaveNoBytesBeside) {
  RecordedSystem original(machine({}, {mounted("/mnt/\xC3\xA4", "/dev/disk0")}));
  const auto record = storage::recordedSystem(original, original);
  EXPECT_FALSE(record.array("Volumes")->front().dictionary()->contains("path_hex"));
}

TEST(SystemRecord, VolumesThatCannotBeListedAreRecordedAsThat) {
  RecordedSystem original(PropertyDictionary{{"Volumes Error", ENOENT}});
  RecordedSystem recorded(throughAPropertyList(storage::recordedSystem(original, original)));
  EXPECT_EQ(recorded.mountTableError(), std::errc::no_such_file_or_directory);
}

}  // namespace
}  // namespace zelvo::tests
