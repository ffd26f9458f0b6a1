#include "storage/drive_inventory.h"

#include <gtest/gtest.h>

#include "tests/support/recorded_system.h"
#include "tests/support/trees.h"

namespace zelvo::tests {
namespace {

using storage::Entries;
using storage::Entry;

struct Inventory {
  Entries media;
  Entries volumes;
  std::string printed;

  /// The device (or the volume) of that path; an empty entry when there is none.
  [[nodiscard]] Entry at(const std::string& devicePath, bool volume) const {
    for (const Entry& entry : media) {
      const std::string* path = entry.text("device path");
      if (path && *path == devicePath && entry.contains("WhetherVolume") == volume) return entry;
    }
    return {};
  }
};

Inventory inventoryOf(const PropertyValue& tree) {
  RecordedSystem system(tree);
  Inventory inventory{{Entry{{"left over", true}}}, {Entry{{"left over", true}}}, {}};
  KeptPrint printed;
  storage::initialDriveList(system, system, inventory.media, inventory.volumes, printed);
  inventory.printed = printed.text;
  return inventory;
}

/// A desktop machine: a SATA disk it starts from, a USB stick, a card mounted whole, and a disc.
Inventory desk() { return inventoryOf(recordedTree("desk.plist")); }

TEST(DriveInventory, BothArraysAreEmptiedFirst) {
  const Inventory inventory = inventoryOf(machine({}));
  EXPECT_TRUE(inventory.media.empty());
  EXPECT_TRUE(inventory.volumes.empty());
}

TEST(DriveInventory, EveryWritableMediumIsListedAndTheCardTwice) {
  std::vector<std::string> paths;
  for (const Entry& entry : desk().media) paths.push_back(*entry.text("device path"));
  EXPECT_EQ(paths, (std::vector<std::string>{"/dev/rdisk0", "/dev/rdisk0s1", "/dev/rdisk0s2", "/dev/rdisk1",
                                             "/dev/rdisk1s1", "/dev/rdisk1s2", "/dev/rdisk3", "/dev/rdisk3"}));
}

TEST(DriveInventory, WholeDiskThatIsNotMountedHasNoVolumeKeys) {
  const Entry disk = desk().at("/dev/rdisk0", false);
  EXPECT_EQ(disk.number("device size"), 500107862016U);
  EXPECT_FALSE(disk.contains("WhetherVolume"));
  EXPECT_FALSE(disk.contains("Volume Name"));
  EXPECT_FALSE(disk.contains("Mounted Path"));
}

TEST(DriveInventory, CardMountedWithoutPartitionsIsListedTwice) {
  const Inventory inventory = desk();
  const Entry device = inventory.at("/dev/rdisk3", false);
  EXPECT_TRUE(device.contains("WhetherCardReader"));
  EXPECT_TRUE(device.contains("WhetherUSB"));
  EXPECT_FALSE(device.contains("Volume Name"));
  const Entry volume = inventory.at("/dev/rdisk3", true);
  EXPECT_TRUE(volume.contains("WhetherCardReader"));
  EXPECT_FALSE(volume.contains("WhetherUSB"));
  EXPECT_EQ(*volume.text("Volume Name"), "CAMERA");
  EXPECT_EQ(*volume.text("Mounted Path"), "/Volumes/CAMERA");
  EXPECT_EQ(*volume.text("Product Revision Level"), "8.0");
  EXPECT_EQ(*volume.text("IOBundleResourceFile"), "SD.icns");
}

TEST(DriveInventory, PartitionReceivesItsVolumesNameAndMountPoint) {
  const Entry partition = desk().at("/dev/rdisk1s2", true);
  EXPECT_EQ(*partition.text("Volume Name"), "STICK");
  EXPECT_EQ(*partition.text("Mounted Path"), "/Volumes/STICK");
  EXPECT_EQ(*partition.text("Content"), "FAT32");
}

TEST(DriveInventory, UsbStickKeepsItsTextsUntrimmedAndWithoutPlaceholders) {
  const Entry stick = desk().at("/dev/rdisk1", false);
  EXPECT_EQ(*stick.text("device model"), "DataTraveler 3.0  ");
  EXPECT_EQ(*stick.text("device serial"), " 60A44C3FAC04");
  EXPECT_FALSE(stick.contains("device revision"));
  EXPECT_EQ(*stick.text("IOBundleResourceFile"), "Removable.icns");
}

TEST(DriveInventory, SataDiskIsTidied) {
  const Entry disk = desk().at("/dev/rdisk0", false);
  EXPECT_EQ(*disk.text("device model"), "ST500LM012 HN-M500MBB");
  EXPECT_EQ(*disk.text("device serial"), "S2ZYJ9KF612345");
  EXPECT_EQ(*disk.text("device revision"), "2AR10002");
}

TEST(DriveInventory, StartUpVolumeIsNamedAfterItsAlias) {
  const Entry volume = desk().at("/dev/rdisk0s2", true);
  EXPECT_EQ(*volume.text("Volume Name"), "Start");
  EXPECT_EQ(*volume.text("Mounted Path"), "/");
  EXPECT_EQ(*volume.text("Content"), "Apple_HFS");
}

TEST(DriveInventory, RegistryDumpOnItsOwnLoadsAsItIs) {
  const PropertyValue tree = recordedTree("desk.plist");
  const Inventory inventory = inventoryOf(*tree.dictionary()->find("Registry"));
  EXPECT_EQ(inventory.media.size(), 7U);
  EXPECT_TRUE(inventory.volumes.empty());
}

TEST(DriveInventory, BothRegistryFailuresArePrintedAndLeaveTheMediaEmpty) {
  const Inventory inventory = inventoryOf(
      PropertyDictionary{{"NoMatching", true}, {"Volumes", PropertyArray{mounted("/mnt/a", "/dev/disk1")}}});
  EXPECT_TRUE(inventory.media.empty());
  EXPECT_EQ(inventory.volumes.size(), 1U);
  EXPECT_EQ(inventory.printed,
            "IOServiceMatching returned a NULL dictionary.\nIOServiceGetMatchingServices returned 0xe00002c2\n");
}

Entry joined(const char* devicePath, Entries volumes, bool whetherVolume = true) {
  Entries media{Entry{{"device path", devicePath}}};
  if (whetherVolume) media[0].set("WhetherVolume", std::int32_t{1});
  storage::joinVolumesToMedia(volumes, media);
  return media[0];
}

Entry volumeFrom(const char* path, const char* name = "N") {
  return {{"Volume Path", path}, {"Volume Name", name}, {"Mounted Path", "/m"}};
}

TEST(VolumeJoin, InsertsTheRAtIndexFive) {
  EXPECT_EQ(*joined("/dev/rdisk1s2", {volumeFrom("/dev/disk1s2")}).text("Volume Name"), "N");
  EXPECT_EQ(*joined("tankpr/data", {volumeFrom("tankp/data")}).text("Volume Name"), "N");
}

TEST(VolumeJoin, EntryWithoutWhetherVolumeIsLeftAlone) {
  EXPECT_FALSE(joined("/dev/rdisk1s2", {volumeFrom("/dev/disk1s2")}, false).contains("Volume Name"));
}

TEST(VolumeJoin, PathOfFiveCharactersHasAnIndexFiveAndAShorterOneHasNot) {
  EXPECT_TRUE(joined("tmpfsr", {volumeFrom("tmpfs")}).contains("Volume Name"));
  EXPECT_FALSE(joined("noner", {volumeFrom("none")}).contains("Volume Name"));
  EXPECT_FALSE(joined("r", {volumeFrom("")}).contains("Volume Name"));
}

TEST(VolumeJoin, LastVolumeOfOneDeviceStays) {
  const Entry entry = joined("/dev/rdisk1", {volumeFrom("/dev/disk1", "a"), volumeFrom("/dev/disk1", "b")});
  EXPECT_EQ(*entry.text("Volume Name"), "b");
}

TEST(VolumeJoin, VolumeWithoutAPathOrMediumWithoutOneIsPassedOver) {
  EXPECT_FALSE(joined("/dev/rdisk1", {Entry{{"Volume Name", "N"}}}).contains("Volume Name"));
  Entries media{Entry{{"WhetherVolume", std::int32_t{1}}}};
  storage::joinVolumesToMedia({volumeFrom("/dev/disk1")}, media);
  EXPECT_FALSE(media[0].contains("Volume Name"));
}

Entry tidied(Entry entry) {
  Entries media{std::move(entry)};
  storage::truncateDriveModelNumber(media);
  return media[0];
}

TEST(TruncateDriveModelNumber, MissingTextsBecomeDashes) {
  EXPECT_EQ(tidied({}), (Entry{{"device model", "-"}, {"device serial", "-"}, {"device revision", "-"}}));
}

TEST(TruncateDriveModelNumber, WhiteSpaceIsTrimmedOffBothEndsOnly) {
  const Entry entry = tidied({{"device model", " \tBig  Disk \n"}, {"device serial", "  "}});
  EXPECT_EQ(*entry.text("device model"), "Big  Disk");
  EXPECT_EQ(*entry.text("device serial"), "");
}

TEST(TruncateDriveModelNumber, EveryKindOfWhiteSpaceIsTrimmed) {
  for (const char* blank : {" ", "\t", "\n", "\v", "\f", "\r"}) {
    const std::string text = std::string(blank) + "a" + blank + "b" + blank;
    EXPECT_EQ(*tidied({{"device revision", text}}).text("device revision"), std::string("a") + blank + "b");
  }
}

TEST(TruncateDriveModelNumber, WhatIsNoWhiteSpaceStays) {
  EXPECT_EQ(*tidied({{"device serial", "\x01\xC2\xA0s\x7F"}}).text("device serial"), "\x01\xC2\xA0s\x7F");
}

TEST(TruncateDriveModelNumber, NothingIsShortened) {
  const std::string model(300, 'M');
  EXPECT_EQ(*tidied({{"device model", model}}).text("device model"), model);
}

TEST(TruncateDriveModelNumber, VolumesAreLeftAlone) {
  const Entry volume{{"WhetherVolume", kOne}, {"device model", " M "}};
  EXPECT_EQ(tidied(volume), volume);
}

TEST(TruncateDriveModelNumber, UsbWithoutSataIsLeftAlone) {
  const Entry stick{{"WhetherUSB", kOne}, {"device model", " M "}};
  EXPECT_EQ(tidied(stick), stick);
}

TEST(TruncateDriveModelNumber, UsbWithSataIsTidied) {
  const Entry entry = tidied({{"WhetherUSB", kOne}, {"WhetherSATA", kOne}, {"device model", " M "}});
  EXPECT_EQ(*entry.text("device model"), "M");
  EXPECT_EQ(*entry.text("device serial"), "-");
}

}  // namespace
}  // namespace zelvo::tests
