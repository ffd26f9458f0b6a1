#include "cli/drives_command.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>

#include "tests/support/recorded_system.h"
#include "tests/support/trees.h"

namespace zelvo::tests {
namespace {

using cli::DrivesAnswer;
using cli::DrivesOptions;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

DrivesAnswer drives(const PropertyValue& tree, const DrivesOptions& options = {}) {
  RecordedSystem system(tree);
  return cli::listDrives(options, system, system);
}

PropertyDictionary node(PropertyDictionary properties, const char* path) {
  properties.set("Native Node", path);
  return medium(std::move(properties));
}

PropertyDictionary mountedWithSpace(const char* mountPoint, const char* from, std::uint64_t space) {
  return both(mounted(mountPoint, from), {{"Free Space", space}});
}

TEST(DrivesTable, ShowsEachMediumOnceWithItsVolume) {
  const DrivesAnswer answer = drives(recordedTree("desk.plist"));
  EXPECT_EQ(answer.exit, cli::Exit::done);
  EXPECT_EQ(
      answer.result,
      "DEVICE           KIND  MODEL                  SERIAL               SIZE       FREE  VOLUME  MOUNTED AT\n"
      "/dev/rdisk0      SATA  ST500LM012 HN-M500MBB  S2ZYJ9KF612345  500.11 GB\n"
      "  /dev/rdisk0s1                                                209.7 MB\n"
      "  /dev/rdisk0s2                                               498.88 GB  120.26 GB  Start   /\n"
      "/dev/rdisk1      USB   DataTraveler 3.0       60A44C3FAC04     15.50 GB\n"
      "  /dev/rdisk1s1                                                204.8 MB\n"
      "  /dev/rdisk1s2                                                15.30 GB    3.22 GB  STICK   /Volumes/STICK\n"
      "/dev/rdisk3      card  SU08G                  0x1a2b3c4d        7.95 GB   104.9 MB  CAMERA  /Volumes/CAMERA\n"
      "/dev/disk4                                                                 0 bytes  Disc    /Volumes/Disc\n");
  EXPECT_THAT(answer.errors, IsEmpty());
  EXPECT_EQ(answer.details, "");
}

TEST(DrivesTable, ShowsTheSystemsOwnNodes) {
  const DrivesAnswer answer = drives(machine({node({{"BSD Name", "disk0"}}, "/dev/sda")}));
  EXPECT_THAT(answer.result, HasSubstr("\n/dev/sda "));
  EXPECT_THAT(answer.result, Not(HasSubstr("disk0")));
}

TEST(DrivesTable, MediumMountedAtTwoPlacesHasTwoLines) {
  const DrivesAnswer answer =
      drives(machine({node({{"BSD Name", "disk0"}}, "/dev/sda")},
                     {mountedWithSpace("/a", "/dev/disk0", 1), mountedWithSpace("/b", "/dev/disk0", 2)}));
  EXPECT_THAT(answer.result, HasSubstr("1 byte  a       /a\n"));
  EXPECT_THAT(answer.result, HasSubstr("2 bytes  b       /b\n"));
}

TEST(DrivesTable, PartitionOfADiskThatIsNotWritableStandsForItself) {
  const DrivesAnswer answer =
      drives(machine({node({{"BSD Name", "disk0"}, {"Writable", false}}, "/dev/sda"),
                      above(node({{"BSD Name", "disk0s1"}}, "/dev/sda1"), characteristics({{"Model", "Disk"}}))}));
  EXPECT_THAT(answer.result, HasSubstr("\n/dev/sda1  -     Disk "));
}

TEST(DrivesTable, VolumeOnNoDeviceIsShownUnderItsSource) {
  const DrivesAnswer answer = drives(machine({}, {mountedWithSpace("/tank", "tank/data", 5'000'000)}));
  EXPECT_THAT(answer.result, HasSubstr("\ntank/data "));
  EXPECT_THAT(answer.result, HasSubstr("5.0 MB  tank    /tank\n"));
}

TEST(DrivesTable, ReadOnlyVolumesAreCountedInANote) {
  const DrivesAnswer answer = drives(machine({node({{"BSD Name", "disk0"}, {"Writable", false}}, "/dev/sr0")},
                                             {mountedWithSpace("/disc", "/dev/disk0", 0)}));
  EXPECT_EQ(answer.result, "No writable disks were found.\n");
  EXPECT_THAT(answer.notes, ElementsAre("1 read-only volume is not shown; --json lists all volumes."));
}

TEST(DrivesTable, SpaceThatOnlyRootMaySeeIsSaidToBe) {
  const DrivesAnswer answer =
      drives(machine({node({{"BSD Name", "disk0"}}, "/dev/sda")},
                     {both(mounted("/media/other/X", "/dev/disk0"), {{"Free Space Error", EACCES}})}));
  EXPECT_THAT(answer.result, HasSubstr("needs root  X"));
  EXPECT_THAT(answer.notes, ElementsAre("the free space at /media/other/X can be told to root only."));
  EXPECT_EQ(answer.exit, cli::Exit::done);
}

TEST(DrivesTable, SpaceThatCannotBeReadIsSaidWithTheReason) {
  const DrivesAnswer answer = drives(machine({node({{"BSD Name", "disk0"}}, "/dev/sda")},
                                             {both(mounted("/x", "/dev/disk0"), {{"Free Space Error", EIO}})}));
  EXPECT_THAT(answer.notes, ElementsAre("the free space at /x could not be read: Input/output error."));
}

PropertyDictionary dead(const char* mountPoint, const char* from) {
  return both(mounted(mountPoint, from), {{"Mounted From Error", ETIMEDOUT}, {"Free Space Error", ETIMEDOUT}});
}

TEST(DrivesTable, VolumeThatDoesNotAnswerKeepsItsRowAndSaysSo) {
  const DrivesAnswer answer =
      drives(machine({node({{"BSD Name", "disk0"}}, "/dev/sda")}, {dead("/mnt/gone", "/dev/disk0")}));
  EXPECT_THAT(answer.result, ::testing::ContainsRegex("\n/dev/sda .* not answering  gone    /mnt/gone\n"));
  EXPECT_THAT(answer.notes, ElementsAre("what is mounted at /mnt/gone is not answering."));
  EXPECT_EQ(answer.exit, cli::Exit::done);
}

TEST(DrivesTable, PoolThatDoesNotAnswerIsShownUnderItsSource) {
  const DrivesAnswer answer = drives(machine({}, {dead("/tank", "tank/data")}));
  EXPECT_THAT(answer.result, HasSubstr("\ntank/data "));
  EXPECT_THAT(answer.result, HasSubstr("not answering  tank    /tank\n"));
}

TEST(DrivesTable, ReadOnlyMountBearsAMark) {
  const auto tree = machine(
      {node({{"BSD Name", "disk0"}}, "/dev/sda")},
      {both(mountedWithSpace("/a", "/dev/disk0", 1), {{"Read Only", true}}), mountedWithSpace("/b", "/dev/disk0", 1)});
  const DrivesAnswer answer = drives(tree);
  EXPECT_THAT(answer.result, HasSubstr(" /a  (read-only)\n"));
  EXPECT_THAT(answer.result, HasSubstr(" /b\n"));
  EXPECT_THAT(drives(tree, {.tree = true}).result, HasSubstr("\"a\" at /a, read-only, 1 byte free\n"));
}

TEST(DrivesTable, ControlCharactersOfADeviceAreMadeVisible) {
  const DrivesAnswer answer =
      drives(machine({above(node({{"BSD Name", "disk0"}}, "/dev/sda"),
                            both(connectedBy("USB"), characteristics({{"Model", "a\x1b[2Jb"}})))}));
  EXPECT_THAT(answer.result, HasSubstr("a\\x1b[2Jb"));
}

TEST(DrivesTable, LabelsNeitherMoveTheCursorNorReorderALine) {
  const std::string label = "a\xC2\x9B\x9B\xE2\x80\xAE.";
  const auto tree = machine(
      {above(node({{"BSD Name", "disk0"}}, "/dev/sda"), both(connectedBy("USB"), characteristics({{"Model", label}})))},
      {mounted(("/m/" + label).c_str(), "/dev/disk0")});
  for (const cli::DrivesOptions options : {cli::DrivesOptions{}, cli::DrivesOptions{.tree = true}}) {
    EXPECT_THAT(drives(tree, options).result, HasSubstr("a\\u009b\\x9b\\u202e."));
    EXPECT_THAT(drives(tree, options).result, Not(::testing::AnyOf(HasSubstr("\x9B"), HasSubstr("\xE2\x80\xAE"))));
  }
  EXPECT_THAT(drives(tree, {.json = true}).result, HasSubstr("/m/a\\u009b\xEF\xBF\xBD\\u202e.\""));
}

TEST(DrivesTable, WideNamesKeepTheColumnsInLine) {
  const DrivesAnswer answer = drives(machine({node({{"BSD Name", "disk0"}}, "/dev/sda")},
                                             {mountedWithSpace("/m/\xC3\xA4\xC3\xB6\xC3\xBC", "/dev/disk0", 1)}));
  EXPECT_THAT(answer.result, HasSubstr("1 byte  \xC3\xA4\xC3\xB6\xC3\xBC     /m/"));
}

TEST(DrivesTable, LargeDisksAreShownInTerabytes) {
  const auto sized = [](std::uint64_t size) {
    return drives(machine({node({{"BSD Name", "disk0"}, {"Size", size}}, "/dev/sda")})).result;
  };
  EXPECT_THAT(sized(999'994'999'999), HasSubstr("999.99 GB\n"));
  EXPECT_THAT(sized(999'995'000'000), HasSubstr("1.00 TB\n"));
  EXPECT_THAT(sized(16'000'900'661'248), HasSubstr("16.00 TB\n"));
}

TEST(DrivesTree, ShowsDisksOverPartitionsOverVolumes) {
  const DrivesAnswer answer = drives(recordedTree("desk.plist"), {.tree = true});
  EXPECT_EQ(answer.result,
            "/dev/rdisk0  500.11 GB  SATA  ST500LM012 HN-M500MBB  (serial S2ZYJ9KF612345)\n"
            "├─ /dev/rdisk0s1  209.7 MB\n"
            "└─ /dev/rdisk0s2  498.88 GB\n"
            "   └─ \"Start\" at /, 120.26 GB free\n"
            "/dev/rdisk1  15.50 GB  USB  DataTraveler 3.0  (serial 60A44C3FAC04)\n"
            "├─ /dev/rdisk1s1  204.8 MB\n"
            "└─ /dev/rdisk1s2  15.30 GB\n"
            "   └─ \"STICK\" at /Volumes/STICK, 3.22 GB free\n"
            "/dev/rdisk3  7.95 GB  card  SU08G  (serial 0x1a2b3c4d)\n"
            "└─ \"CAMERA\" at /Volumes/CAMERA, 104.9 MB free\n"
            "/dev/disk4\n"
            "└─ \"Disc\" at /Volumes/Disc, 0 bytes free\n");
}

TEST(DrivesJson, HasBothArraysWithTheirKeysAndTheNativeNode) {
  const DrivesAnswer answer = drives(
      machine({above(node({{"BSD Name", "disk0"}, {"Size", std::uint64_t{1024}}}, "/dev/sdb"), connectedBy("USB"))},
              {both(mountedWithSpace("/m/STICK", "/dev/disk0", 5), {{"Capacity", std::uint64_t{9}}})}),
      {.json = true});
  EXPECT_EQ(
      answer.result,
      R"({"version":1,"command":"drives","responseFindMedia":[)"
      R"({"CFBundleIdentifier":"com.apple.iokit.IOStorageFamily","IOBundleResourceFile":"Removable.icns",)"
      R"("WhetherUSB":1,"device path":"/dev/rdisk0","device size":1024,"native node":"/dev/sdb","connection":"USB"},)"
      R"({"CFBundleIdentifier":"com.apple.iokit.IOStorageFamily","IOBundleResourceFile":"Removable.icns",)"
      R"("Mounted Path":"/m/STICK","Volume Name":"STICK","WhetherUSB":1,"WhetherVolume":1,)"
      R"("device path":"/dev/rdisk0","device size":1024,"native node":"/dev/sdb","connection":"USB"}],)"
      R"("finalArrayForVolumes":[{"Mounted Path":"/m/STICK","Volume Name":"STICK","Volume Path":"/dev/disk0",)"
      R"("native node":"/dev/sdb","read only":false,"free space":5,"capacity":9}]})"
      "\n");
}

TEST(DrivesJson, TellsReadOnlyMountsAndVolumesThatDoNotAnswer) {
  const DrivesAnswer answer =
      drives(machine({node({{"BSD Name", "disk0"}}, "/dev/sda")},
                     {dead("/gone", "/dev/disk0"), both(mounted("/x", "tank"), {{"Read Only", true}}),
                      both(mounted("/y", "tank"), {{"Free Space Error", EACCES}})}),
             {.json = true});
  EXPECT_THAT(answer.result, HasSubstr(R"({"Mounted Path":"/gone","native node":"/dev/sda","read only":false,)"
                                       R"("free space":null,"capacity":null,"space error":"not answering"})"));
  EXPECT_THAT(answer.result, HasSubstr(R"("read only":true,"free space":0)"));
  EXPECT_THAT(answer.result, HasSubstr(R"("space error":"needs root")"));
  EXPECT_THAT(answer.result, HasSubstr(R"("connection":null)"));
}

TEST(DrivesJson, TellsTheBytesOfAMountPointThatIsNotUtf8) {
  const DrivesAnswer answer =
      drives(machine({node({{"BSD Name", "disk0"}}, "/dev/sda")}, {mounted("/m/\xFF", "/dev/disk0")}), {.json = true});
  EXPECT_THAT(answer.result, HasSubstr(R"("native node":"/dev/sda","path_hex":"2f6d2fff","read only":false)"));
}

TEST(DrivesTable, MountPointThatIsNotUtf8KeepsItsRow) {
  const DrivesAnswer answer =
      drives(machine({node({{"BSD Name", "disk0"}}, "/dev/sda")}, {mounted("/m/\xFF", "/dev/disk0")}));
  EXPECT_THAT(answer.result, ::testing::ContainsRegex("\n/dev/sda .* 0 bytes .* /m/"));
  EXPECT_EQ(std::ranges::count(answer.result, '\n'), 2);
}

TEST(DrivesCommand, VolumesThatCannotBeListedAreAnError) {
  const DrivesAnswer answer = drives(PropertyDictionary{{"Volumes Error", ENOENT}});
  EXPECT_EQ(answer.exit, cli::Exit::ioFailed);
  EXPECT_THAT(answer.errors, ElementsAre("the mounted volumes could not be listed: No such file or directory."));
}

TEST(DrivesCommand, NothingInListsThatCanBeReadIsNoError) {
  const DrivesAnswer answer = drives(machine({}));
  EXPECT_EQ(answer.exit, cli::Exit::done);
  EXPECT_EQ(answer.result, "No writable disks were found.\n");
  EXPECT_THAT(answer.errors, IsEmpty());
}

TEST(DrivesCommand, DumpsAreTakenOnlyWhenVerbose) {
  const auto tree = machine({node({{"BSD Name", "disk0"}}, "/dev/sda")});
  EXPECT_EQ(drives(tree).details, "");
  const DrivesAnswer answer = drives(tree, {.verbose = true});
  EXPECT_THAT(answer.details, HasSubstr("properties:\n****"));
  EXPECT_THAT(answer.result, Not(HasSubstr("properties:")));
}

TEST(DrivesCommand, FailedRegistryIsAnErrorAndItsLinesAreDetails) {
  const auto tree = PropertyDictionary{{"NoMatching", true}};
  const DrivesAnswer answer = drives(tree);
  EXPECT_EQ(answer.exit, cli::Exit::ioFailed);
  EXPECT_THAT(answer.errors,
              ElementsAre("the system's disks could not be listed (status 0xe00002c2); is /sys mounted?"));
  EXPECT_EQ(answer.details, "");
  EXPECT_EQ(drives(tree, {.verbose = true}).details,
            "IOServiceMatching returned a NULL dictionary.\nIOServiceGetMatchingServices returned 0xe00002c2\n");
}

TEST(DrivesCommand, FailedStatfsIsADetailOnly) {
  const auto tree = machine({}, {PropertyDictionary{{"Mounted Path", "/x"}, {"Mounted From Error", EACCES}}});
  EXPECT_EQ(drives(tree).details, "");
  EXPECT_EQ(drives(tree).exit, cli::Exit::done);
  EXPECT_EQ(drives(tree, {.verbose = true}).details, "statfs failed: Permission denied\n");
}

}  // namespace
}  // namespace zelvo::tests
