#include "storage/volume_list.h"

#include <gtest/gtest.h>

#include <cerrno>

#include "tests/support/recorded_system.h"
#include "tests/support/trees.h"

namespace zelvo::tests {
namespace {

using storage::Entries;
using storage::Entry;

Entries listed(PropertyArray volumes, PropertyArray folder = {}, platform::PrintSink* printed = nullptr) {
  RecordedSystem system(PropertyDictionary{{"Volumes", std::move(volumes)}, {"VolumesFolder", std::move(folder)}});
  Entries entries;
  platform::NoPrintSink nowhere;
  storage::volumeList(system, entries, printed ? *printed : nowhere);
  return entries;
}

TEST(VolumeList, VolumeIsNamedAfterTheLastComponentOfItsMountPoint) {
  EXPECT_EQ(listed({mounted("/media/user/STICK", "/dev/disk1s2")}),
            (Entries{Entry{
                {"Mounted Path", "/media/user/STICK"}, {"Volume Name", "STICK"}, {"Volume Path", "/dev/disk1s2"}}}));
}

TEST(VolumeList, StartUpVolumeIsNamedAfterItsAliasNotAfterTheSlash) {
  const Entries entries =
      listed({mounted("/", "/dev/disk0s2")}, {PropertyDictionary{{"Name", "My Disk"}, {"Link Target", "/"}}});
  ASSERT_EQ(entries.size(), 1U);
  EXPECT_EQ(*entries[0].text("Symlink Name"), "/Volumes/My Disk");
  EXPECT_EQ(*entries[0].text("Volume Name"), "My Disk");
}

TEST(VolumeList, StartUpVolumeWithoutAnAliasHasAnEmptyName) {
  EXPECT_EQ(*listed({mounted("/", "/dev/disk0s2")})[0].text("Volume Name"), "");
}

TEST(VolumeList, FolderOfTheVolumesNameIsNoAlias) {
  const Entries entries = listed({mounted("/Volumes/STICK", "/dev/disk1s2")}, {PropertyDictionary{{"Name", "STICK"}}});
  EXPECT_FALSE(entries[0].contains("Symlink Name"));
}

TEST(VolumeList, LinkThatLeadsElsewhereIsNoAlias) {
  const Entries entries =
      listed({mounted("/", "/dev/disk0s2")}, {PropertyDictionary{{"Name", "a"}, {"Link Target", "/home"}}});
  EXPECT_FALSE(entries[0].contains("Symlink Name"));
}

TEST(VolumeList, LastOfSeveralAliasesStays) {
  const Entries entries =
      listed({mounted("/", "/dev/disk0s2")}, {PropertyDictionary{{"Name", "a"}, {"Link Target", "/"}},
                                              PropertyDictionary{{"Name", "b"}, {"Link Target", "/"}}});
  EXPECT_EQ(*entries[0].text("Volume Name"), "b");
}

TEST(VolumeList, FailedStatfsKeepsTheKeysAndGoesOnWithTheNextVolume) {
  KeptPrint printed;
  const Entries entries = listed(
      {PropertyDictionary{{"Mounted Path", "/"}, {"Mounted From Error", EACCES}}, mounted("/mnt/next", "/dev/disk1s1")},
      {PropertyDictionary{{"Name", "a"}, {"Link Target", "/"}}}, &printed);
  ASSERT_EQ(entries.size(), 2U);
  EXPECT_EQ(entries[0], (Entry{{"Mounted Path", "/"}, {"Symlink Name", "/Volumes/a"}}));
  EXPECT_EQ(*entries[1].text("Volume Name"), "next");
  EXPECT_EQ(printed.text, "statfs failed: Permission denied\n");
}

TEST(VolumeList, MountPointThatJustFitsIsNamed) {
  const std::string path = "/" + std::string(510, 'm');
  EXPECT_TRUE(listed({mounted(path.c_str(), "/dev/disk1s1")})[0].contains("Volume Name"));
}

TEST(VolumeList, MountPointOneByteTooLongIsSkippedSilently) {
  const std::string path = "/" + std::string(511, 'm');
  KeptPrint printed;
  const Entries entries = listed({mounted(path.c_str(), "/dev/disk1s1"), mounted("/b", "/dev/disk1s2")}, {}, &printed);
  EXPECT_EQ(entries[0], (Entry{{"Mounted Path", path}}));
  EXPECT_TRUE(entries[1].contains("Volume Name"));
  EXPECT_EQ(printed.text, "");
}

TEST(VolumeList, LimitCountsBytesOfUtf8) {
  std::string path = "/";
  while (path.size() < 512) path += "\xC3\xA4";
  EXPECT_FALSE(listed({mounted(path.c_str(), "/dev/disk1s1")})[0].contains("Volume Name"));
}

TEST(VolumeList, MountPointThatIsNoUtf8IsSkipped) {
  EXPECT_FALSE(listed({mounted("/mnt/\xFF", "/dev/disk1s1")})[0].contains("Volume Name"));
}

TEST(VolumeList, EntriesAreAppendedToWhatIsThere) {
  RecordedSystem system(PropertyDictionary{{"Volumes", PropertyArray{mounted("/b", "/dev/disk1s1")}}});
  Entries entries{Entry{}};
  platform::NoPrintSink nowhere;
  storage::volumeList(system, entries, nowhere);
  EXPECT_EQ(entries.size(), 2U);
}

}  // namespace
}  // namespace zelvo::tests
