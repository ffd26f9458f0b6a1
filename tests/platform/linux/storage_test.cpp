#include "platform/linux/storage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/linux/property_lists.h"
#include "storage/drive_inventory.h"
#include "storage/system_record.h"
#include "tests/platform/linux/mock_machine.h"
#include "tests/support/recorded_system.h"
#include "tests/support/trees.h"

namespace zelvo::tests {
namespace {

using platform::linux_::LinuxStorageSnapshot;
using storage::Entry;
using ::testing::ElementsAre;

using LinuxStorage = MockMachine;

TEST_F(LinuxStorage, WholeDisksAreNumberedInTheOrderInWhichTheyCame) {
  plug("stick");
  plug("nvme");
  plug("sata");
  EXPECT_THAT(names(), ElementsAre("disk0=/dev/sda", "disk0s1=/dev/sda1", "disk0s2=/dev/sda2", "disk0s3=/dev/sda3",
                                   "disk0s4=/dev/sda4", "disk1=/dev/nvme0n1", "disk1s1=/dev/nvme0n1p1",
                                   "disk2=/dev/sdb", "disk2s1=/dev/sdb1"));
}

TEST_F(LinuxStorage, DeviceNumbersDecideWhereDisksAreNotCounted) {
  plug("undescribed_ata");
  plug("loop");
  umockdev_testbed_set_attribute(testbed_, devicePath("virtual/block/loop0").c_str(), "diskseq", "0");
  EXPECT_THAT(names(), ElementsAre("disk0=/dev/loop0", "disk1=/dev/sdg", "disk1s1=/dev/sdg1"));
}

TEST_F(LinuxStorage, UnknownNameHasNoNode) {
  plug("sata");
  EXPECT_EQ(snapshot().nativeNode("disk9"), std::nullopt);
}

TEST_F(LinuxStorage, SataDiskTellsItsTextsAndSizes) {
  plug("sata");
  const Entry disk = inventory().at("disk0");
  EXPECT_TRUE(disk.contains("WhetherSATA"));
  EXPECT_FALSE(disk.contains("WhetherUSB"));
  EXPECT_EQ(*disk.text("device model"), "Field Disk 5000 500GB");
  EXPECT_EQ(*disk.text("device serial"), "FD5-000123");
  EXPECT_EQ(*disk.text("device revision"), "1A01");
  EXPECT_EQ(*disk.text("IOBundleResourceFile"), "Internal.icns");
  EXPECT_EQ(disk.number("device size"), 500107862016U);  // counted in 512 bytes, although the blocks are larger
  EXPECT_EQ(disk.number("Preferred Block Size"), 4096U);
}

TEST_F(LinuxStorage, ModelTextsKeepTheirPadding) {
  plug("sata");
  const auto record = [this] {
    LinuxStorageSnapshot system = snapshot();
    return storage::recordedSystem(system, system);
  }();
  platform::linux_::LinuxPropertyLists lists;
  EXPECT_THAT(lists.format(record), ::testing::HasSubstr("<string>Field Disk 5000 500GB    </string>"));
}

TEST_F(LinuxStorage, PartitionsOfAGuidTableHaveTheirContent) {
  plug("sata");
  mount({"8:1 / /boot/efi rw - vfat /dev/sda1 rw", "8:2 / / rw - ext4 /dev/sda2 rw",
         "8:3 / /mnt/mac rw - hfsplus /dev/sda3 rw", "8:4 / /mnt/data rw - ntfs3 /dev/sda4 rw"});
  const Arrays arrays = inventory();
  EXPECT_EQ(*arrays.at("disk0s1", true).text("Content"), "Volume Content NIL");
  EXPECT_EQ(*arrays.at("disk0s2", true).text("Content"), "Volume Content NIL");
  EXPECT_EQ(*arrays.at("disk0s3", true).text("Content"), "Apple_HFS");
  EXPECT_EQ(*arrays.at("disk0s4", true).text("Content"), "EBD0A0A2-B9E5-4433-87C0-68B6B72699C7");
  EXPECT_EQ(arrays.at("disk0s3", true).number("Preferred Block Size"), 4096U);
  EXPECT_FALSE(arrays.at("disk0").contains("WhetherVolume"));
}

TEST_F(LinuxStorage, StartUpVolumeIsNamedAfterItsLabel) {
  plug("sata");
  mount({"8:2 / / rw - ext4 /dev/sda2 rw"});
  const Entry volume = inventory().at("disk0s2", true);
  EXPECT_EQ(*volume.text("Volume Name"), "Root Disk");
  EXPECT_EQ(*volume.text("Mounted Path"), "/");
}

TEST_F(LinuxStorage, StartUpVolumeWithoutALabelIsNamedRoot) {
  plug("virtio");
  mount({"252:1 / / rw - ext4 /dev/vda1 rw"});
  const Entry volume = inventory().at("disk0s1", true);
  EXPECT_EQ(*volume.text("Volume Name"), "Root");
}

TEST_F(LinuxStorage, LabelThatIsASlashDoesNotMakeTheNameEmpty) {
  plug("virtio");
  umockdev_testbed_set_property(testbed_, devicePath("pci0000:1e/0000:1e:00.0/virtio1/block/vda/vda1").c_str(),
                                "ID_FS_LABEL_ENC", "/");
  mount({"252:1 / / rw - ext4 /dev/vda1 rw"});
  EXPECT_EQ(*inventory().at("disk0s1", true).text("Volume Name"), "Root");
}

TEST_F(LinuxStorage, VolumesFolderThatExistsIsRead) {
  plug("sata");
  mount({"8:2 / / rw - ext4 /dev/sda2 rw"});
  std::filesystem::create_directory(places_.volumesFolder);
  std::filesystem::create_directory_symlink("/", places_.volumesFolder + "/Start");
  std::filesystem::create_directory(places_.volumesFolder + "/folder");
  LinuxStorageSnapshot system = snapshot();
  const auto entries = system.volumesFolder();
  ASSERT_EQ(entries.size(), 2U);
  EXPECT_EQ(entries[0].name, "Start");
  EXPECT_EQ(entries[0].linkTarget, "/");
  EXPECT_EQ(entries[1].linkTarget, std::nullopt);
  EXPECT_EQ(*inventory().at("disk0s2", true).text("Volume Name"), "Start");
}

TEST_F(LinuxStorage, FileInThePlaceOfTheVolumesFolderIsNoFolder) {
  plug("sata");
  mount({"8:2 / / rw - ext4 /dev/sda2 rw"});
  std::ofstream(places_.volumesFolder) << "file";
  const auto entries = snapshot().volumesFolder();
  ASSERT_EQ(entries.size(), 1U);
  EXPECT_EQ(entries[0].name, "Root Disk");
  EXPECT_EQ(entries[0].linkTarget, "/");
}

TEST_F(LinuxStorage, LabelOfAnotherVolumeIsNotTheStartUpVolumes) {
  plug("sata");
  plug("virtio");
  mount({"8:2 / /mnt rw - ext4 /dev/sda2 rw", "252:1 / / rw - ext4 /dev/vda1 rw"});
  EXPECT_EQ(snapshot().volumesFolder()[0].name, "Root");
}

TEST_F(LinuxStorage, UsbStickKeepsItsTextsAndItsDosType) {
  plug("stick");
  mount({"8:17 / /media/user/STICK rw - vfat /dev/sdb1 rw"});
  const Arrays arrays = inventory();
  const Entry stick = arrays.at("disk0");
  EXPECT_TRUE(stick.contains("WhetherUSB"));
  EXPECT_FALSE(stick.contains("WhetherSATA"));
  EXPECT_EQ(*stick.text("device model"), "Pen Drive 3.0   ");
  EXPECT_EQ(*stick.text("Vendor Identification"), "Pocket  ");
  EXPECT_EQ(*stick.text("Product Identification"), "Pen Drive 3.0   ");
  EXPECT_EQ(*stick.text("Product Revision Level"), "PMAP");
  EXPECT_EQ(*stick.text("IOBundleResourceFile"), "Removable.icns");
  const Entry volume = arrays.at("disk0s1", true);
  EXPECT_EQ(*volume.text("Content"), "FAT32");
  EXPECT_EQ(*volume.text("Volume Name"), "STICK");
}

TEST_F(LinuxStorage, SataDiskInAUsbEnclosureIsOnUsbOnly) {
  plug("enclosure");
  const Entry disk = inventory().at("disk0");
  EXPECT_TRUE(disk.contains("WhetherUSB"));
  EXPECT_FALSE(disk.contains("WhetherSATA"));
  EXPECT_EQ(*disk.text("IOBundleResourceFile"), "External.icns");
}

TEST_F(LinuxStorage, EmptyReaderAndMemoryAreNoMedia) {
  plug("reader");
  plug("memory");
  EXPECT_TRUE(names().empty());
}

TEST_F(LinuxStorage, CardMountedWholeIsListedTwice) {
  plug("card_whole");
  mount({"179:0 / /media/user/My\\040Card rw - vfat /dev/mmcblk0 rw"});
  const Arrays arrays = inventory();
  ASSERT_EQ(arrays.media.size(), 2U);
  const Entry device = arrays.at("disk0");
  EXPECT_TRUE(device.contains("WhetherCardReader"));
  EXPECT_TRUE(device.contains("WhetherUSB"));
  EXPECT_EQ(*device.text("device model"), "SU08G");
  EXPECT_EQ(*device.text("device serial"), "0x1a2b3c4d");
  EXPECT_EQ(*device.text("Vendor Identification"), "0x000003");
  EXPECT_EQ(*device.text("Product Identification"), "SU08G");
  EXPECT_EQ(*device.text("Product Revision Level"), "0x8");
  EXPECT_EQ(*device.text("IOBundleResourceFile"), "SD.icns");
  const Entry volume = arrays.at("disk0", true);
  EXPECT_FALSE(volume.contains("WhetherUSB"));
  EXPECT_EQ(*volume.text("Volume Name"), "My Card");
}

TEST_F(LinuxStorage, CardsPartitionIsAVolumeOnce) {
  plug("card_partitioned");
  mount({"179:33 / /media/user/CAM rw - vfat /dev/mmcblk1p1 rw"});
  const Arrays arrays = inventory();
  ASSERT_EQ(arrays.media.size(), 2U);
  EXPECT_TRUE(arrays.at("disk0").contains("WhetherCardReader"));
  EXPECT_EQ(*arrays.at("disk0s1", true).text("Content"), "DOS_FAT_32");
}

TEST_F(LinuxStorage, SolderedFlashIsNoCardReaderAndItsBootAreasAreNotWritable) {
  plug("emmc");
  EXPECT_THAT(names(), ElementsAre("disk0=/dev/mmcblk2", "disk0s1=/dev/mmcblk2p1", "disk1=/dev/mmcblk2boot0",
                                   "disk2=/dev/mmcblk2boot1"));
  const Arrays arrays = inventory();
  ASSERT_EQ(arrays.media.size(), 2U);
  EXPECT_FALSE(arrays.at("disk0").contains("WhetherCardReader"));
  EXPECT_FALSE(arrays.at("disk0").contains("WhetherUSB"));
  EXPECT_EQ(*arrays.at("disk0").text("device model"), "DF4032");
}

TEST_F(LinuxStorage, NvmeDiskTellsItsTextsAndItsHiddenPathIsNoMedium) {
  plug("nvme");
  const Arrays arrays = inventory();
  ASSERT_EQ(arrays.media.size(), 2U);
  const Entry disk = arrays.at("disk0");
  EXPECT_EQ(*disk.text("device model"), "Rapid SSD 1TB");
  EXPECT_EQ(*disk.text("device serial"), "RS1-777");
  EXPECT_EQ(*disk.text("device revision"), "5B2Q");
  EXPECT_FALSE(disk.contains("WhetherSATA"));
}

TEST_F(LinuxStorage, UnmountedPartitionTellsItsDisksTexts) {
  plug("nvme");
  const Entry partition = inventory().at("disk0s1");
  EXPECT_EQ(*partition.text("device model"), "Rapid SSD 1TB");
}

TEST_F(LinuxStorage, FireWireDiskIsFiledUnderUsbAndKeepsTheTypesOfItsMap) {
  plug("firewire");
  mount({"8:67 / /mnt/a rw - hfsplus /dev/sde3 rw", "8:68 / /mnt/b rw - hfs /dev/sde4 rw"});
  const Arrays arrays = inventory();
  EXPECT_TRUE(arrays.at("disk0").contains("WhetherUSB"));
  EXPECT_EQ(*arrays.at("disk0s3", true).text("Content"), "Apple_HFSX");
  EXPECT_EQ(*arrays.at("disk0s4", true).text("Content"), "Apple_HFS");
}

TEST_F(LinuxStorage, DiscIsAMediumButNotAWritableOne) {
  plug("disc");
  EXPECT_THAT(names(), ElementsAre("disk0=/dev/sr0"));
  EXPECT_TRUE(inventory().media.empty());
}

TEST_F(LinuxStorage, DvdRamIsWritableInItsOwnBlocks) {
  plug("dvd_ram");
  const Entry disc = inventory().at("disk0");
  EXPECT_EQ(disc.number("Preferred Block Size"), 2048U);
  EXPECT_EQ(disc.number("device size"), std::uint64_t{8946816} * 512);
}

TEST_F(LinuxStorage, DiskThatNoDaemonHasDescribedTellsWhatTheKernelKnows) {
  plug("undescribed_ata");
  plug("plain_scsi");
  const Arrays arrays = inventory();
  const Entry ata = arrays.at("disk0");
  EXPECT_TRUE(ata.contains("WhetherSATA"));
  EXPECT_EQ(*ata.text("device model"), "Field Disk 5000");
  EXPECT_EQ(*ata.text("device serial"), "-");
  const Entry scsi = arrays.at("disk1");
  EXPECT_FALSE(scsi.contains("WhetherSATA"));
  EXPECT_EQ(*scsi.text("Vendor Identification"), "Array   ");
}

TEST_F(LinuxStorage, ParallelAtaIsNotSata) {
  plug("pata");
  EXPECT_FALSE(inventory().at("disk0").contains("WhetherSATA"));
}

TEST_F(LinuxStorage, VirtualDevicesTellWhatTheyStandFor) {
  plug("mapper");
  plug("loop");
  plug("virtio");
  const Arrays arrays = inventory();
  EXPECT_EQ(*arrays.at("disk0").text("device model"), "vault");
  EXPECT_EQ(*arrays.at("disk1").text("device model"), "/home/user/disk.img");
  EXPECT_EQ(*arrays.at("disk2").text("device serial"), "vm-disk-1");
}

TEST_F(LinuxStorage, MappedVolumeIsFoundByItsNumber) {
  plug("mapper");
  mount({"254:0 / /home rw - ext4 /dev/mapper/vault rw"});
  EXPECT_EQ(*inventory().at("disk0", true).text("Mounted Path"), "/home");
}

TEST_F(LinuxStorage, ReadOnlyDiskIsNoWritableMedium) {
  plug("stick");
  umockdev_testbed_set_attribute(
      testbed_, devicePath("pci0000:11/0000:11:00.0/usb1/1-1/1-1:1.0/host6/target6:0:0/6:0:0:0/block/sdb").c_str(),
      "ro", "1");
  const Arrays arrays = inventory();
  ASSERT_EQ(arrays.media.size(), 1U);
  EXPECT_EQ(*arrays.media[0].text("device path"), "/dev/rdisk0s1");
}

TEST_F(LinuxStorage, SnapshotStaysAsItWasWhenADiskIsPluggedIn) {
  plug("sata");
  LinuxStorageSnapshot before = snapshot();
  plug("stick");
  EXPECT_EQ(before.nativeNode("disk1"), std::nullopt);
  EXPECT_EQ(snapshot().nativeNode("disk1"), "/dev/sdb");
}

TEST_F(LinuxStorage, DiskThatIsPulledOutIsGoneInTheNextSnapshot) {
  plug("sata");
  plug("stick");
  const std::string disk = devicePath("pci0000:11/0000:11:00.0/usb1/1-1/1-1:1.0/host6/target6:0:0/6:0:0:0/block/sdb");
  umockdev_testbed_remove_device(testbed_, (disk + "/sdb1").c_str());
  umockdev_testbed_remove_device(testbed_, disk.c_str());
  EXPECT_EQ(snapshot().nativeNode("disk1"), std::nullopt);
  EXPECT_EQ(inventory().media.size(), 5U);
}

TEST_F(LinuxStorage, RecordGivesTheSameInventory) {
  for (const char* hardware : {"sata", "stick", "card_whole", "nvme", "disc", "firewire"}) plug(hardware);
  mount({"8:2 / / rw - ext4 /dev/sda2 rw", "179:0 / /media/user/CARD rw - vfat /dev/mmcblk0 rw"});
  LinuxStorageSnapshot system = snapshot();
  platform::linux_::LinuxPropertyLists lists;
  const std::string xml = lists.format(storage::recordedSystem(system, system));
  RecordedSystem recorded(*lists.parse(std::as_bytes(std::span(xml)), xml.size()));
  Arrays again;
  platform::NoPrintSink nowhere;
  storage::initialDriveList(recorded, recorded, again.media, again.volumes, nowhere);
  const Arrays arrays = inventory();
  EXPECT_EQ(again.media, arrays.media);
  EXPECT_EQ(again.volumes, arrays.volumes);
  EXPECT_EQ(recorded.nativeNode("disk0s2"), "/dev/sda2");
}

TEST_F(LinuxStorage, FourLevelsStandAboveAPartition) {
  plug("sata");
  LinuxStorageSnapshot system = snapshot();
  const auto all = system.serviceMatching("IOMedia");
  std::unique_ptr<platform::RegistryIterator> media;
  ASSERT_EQ(system.matchingServices(&*all, media), 0U);
  auto object = media->next();
  while (object && *object->properties().text("BSD Name") != "disk0s2") object = media->next();
  std::vector<std::string> classes;
  while (object) {
    classes.push_back(object->className());
    object = object->parentIterator("IOService")->next();
  }
  EXPECT_THAT(classes, ElementsAre("IOMedia", "IOGUIDPartitionScheme", "IOMedia", "IOBlockStorageDriver",
                                   "IOBlockStorageDevice", "IOPCIDevice"));
}

TEST_F(LinuxStorage, DiskThatGoesAwayWhileItIsReadIsLeftOutWhole) {
  plug("sata");
  plug("going");
  EXPECT_THAT(names(), ElementsAre("disk0=/dev/sda", "disk0s1=/dev/sda1", "disk0s2=/dev/sda2", "disk0s3=/dev/sda3",
                                   "disk0s4=/dev/sda4"));
}

TEST_F(LinuxStorage, PartitionThatGoesAwayIsNoDiskAndIsLeftOut) {
  plug("going_partitions");
  EXPECT_THAT(names(), ElementsAre("disk0=/dev/sdx"));
}

TEST_F(LinuxStorage, DevicesThatCannotBeListedAreAnError) {
  plug("sata");
  places_.blockDevices = (folder_ / "none").string();
  LinuxStorageSnapshot system = snapshot();
  const auto all = system.serviceMatching("IOMedia");
  std::unique_ptr<platform::RegistryIterator> media;
  EXPECT_EQ(system.matchingServices(&*all, media), platform::kRegistryError);
  EXPECT_EQ(media, nullptr);
}

TEST_F(LinuxStorage, NoDevicesInAListThatCanBeReadAreNoError) {
  places_.blockDevices = folder_.string();
  EXPECT_TRUE(names().empty());
}

TEST_F(LinuxStorage, OnlyObjectsOfTheClassWithThePropertiesMatch) {
  plug("disc");
  plug("stick");
  LinuxStorageSnapshot system = snapshot();
  const auto matches = [&system](const platform::MatchingDictionary& wanted) {
    std::unique_ptr<platform::RegistryIterator> found;
    EXPECT_EQ(system.matchingServices(&wanted, found), 0U);
    std::string names;
    while (const auto object = found->next()) names += *object->properties().text("BSD Name") + " ";
    return names;
  };
  EXPECT_EQ(matches({"IOMedia", {}}), "disk0 disk1 disk1s1 ");
  EXPECT_EQ(matches({"IOMedia", {{"Writable", false}}}), "disk0 ");
  EXPECT_EQ(matches({"IOMedia", {{"Writable", true}, {"Whole", true}}}), "disk1 ");
  EXPECT_EQ(matches({"IOMedia", {{"No Such Key", true}}}), "");
  EXPECT_EQ(matches({"IOBlockStorageDevice", {}}), "");
}

TEST_F(LinuxStorage, WithoutADictionaryTheSearchIsABadArgument) {
  LinuxStorageSnapshot system = snapshot();
  std::unique_ptr<platform::RegistryIterator> media;
  EXPECT_EQ(system.matchingServices(nullptr, media), 0xe00002c2U);
  EXPECT_EQ(media, nullptr);
}

}  // namespace
}  // namespace zelvo::tests
