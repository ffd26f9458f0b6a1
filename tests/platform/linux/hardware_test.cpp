// What the registry tells about each kind of hardware: how it is connected, its texts, its icon, its names.
#include <gtest/gtest.h>

#include <set>

#include "tests/platform/linux/mock_machine.h"
#include "tests/support/trees.h"

namespace zelvo::tests {
namespace {

using platform::RegistryObject;
using platform::linux_::LinuxStorageSnapshot;
using storage::Entry;

class LinuxHardware : public MockMachine {
 protected:
  /// The medium of that name; null when there is none.
  [[nodiscard]] std::shared_ptr<const RegistryObject> medium(const std::string& bsdName) const {
    LinuxStorageSnapshot system = snapshot();
    std::unique_ptr<platform::RegistryIterator> media;
    const auto all = system.serviceMatching("IOMedia");
    EXPECT_EQ(system.matchingServices(&*all, media), 0U);
    auto object = media->next();
    while (object && *object->properties().text("BSD Name") != bsdName) object = media->next();
    return object;
  }
  /// The object of a class that stands above the medium of that name; null when there is none.
  [[nodiscard]] std::shared_ptr<const RegistryObject> above(const std::string& bsdName, const char* className) const {
    auto object = medium(bsdName);
    while (object && object->className() != className) object = object->parentIterator("IOService")->next();
    return object;
  }
  /// "CONNECTION, LOCATION" of the only hardware.
  [[nodiscard]] std::string connection() const {
    const auto device = above("disk0", "IOBlockStorageDevice");
    if (!device) return "no device";
    const PropertyDictionary* protocol = device->properties().dictionary("Protocol Characteristics");
    return *protocol->text("Physical Interconnect") + ", " + *protocol->text("Physical Interconnect Location");
  }
};

struct Connected {
  const char* hardware;
  const char* connection;
  /// The cases' names must not hold addresses.
  friend void PrintTo(const Connected& one, std::ostream* out) { *out << one.hardware; }
};

class LinuxConnections : public LinuxHardware, public ::testing::WithParamInterface<Connected> {};

TEST_P(LinuxConnections, AreToldInTheRegistrysWords) {
  plug(GetParam().hardware);
  EXPECT_EQ(connection(), GetParam().connection);
}

INSTANTIATE_TEST_SUITE_P(
    Hardware, LinuxConnections,
    ::testing::Values(Connected{"sata", "SATA, Internal"}, Connected{"undescribed_ata", "SATA, Internal"},
                      Connected{"pata", "ATA, Internal"}, Connected{"stick", "USB, External"},
                      Connected{"enclosure", "USB, External"}, Connected{"firewire", "FireWire, External"},
                      Connected{"firewire_by_number", "FireWire, External"},
                      Connected{"card_whole", "Secure Digital, Internal"}, Connected{"emmc", "MMC, Internal"},
                      Connected{"nvme", "PCI-Express, Internal"}, Connected{"nvme_shared", "PCI-Express, Internal"},
                      Connected{"plain_scsi", "SCSI, Internal"}, Connected{"virtio", "Virtual Interface, Internal"},
                      Connected{"virtio_scsi", "Virtual Interface, Internal"},
                      Connected{"mapper", "Virtual Interface, Internal"},
                      Connected{"loop", "Virtual Interface, Internal"}),
    [](const auto& one) { return std::string(one.param.hardware); });

TEST_F(LinuxHardware, NvmeDiskOfSeveralControllersTellsItsTexts) {
  plug("nvme_shared");
  const Entry disk = inventory().at("disk0");
  EXPECT_EQ(*disk.text("device model"), "Shared SSD 2TB");
  EXPECT_EQ(*disk.text("device serial"), "SH2-1");
  EXPECT_EQ(*disk.text("device revision"), "9Z");
}

TEST_F(LinuxHardware, VirtualDiskHasNoVendor) {
  plug("virtio_scsi");
  const Entry disk = inventory().at("disk0");
  EXPECT_EQ(*disk.text("device model"), "QEMU HARDDISK");
  EXPECT_FALSE(disk.contains("Vendor Identification"));
  EXPECT_FALSE(disk.contains("WhetherUSB"));
}

TEST_F(LinuxHardware, FireWireDiskHasAVendorAndTheIconOfWhatLiesOutside) {
  plug("firewire_by_number");
  const Entry disk = inventory().at("disk0");
  EXPECT_EQ(*disk.text("Vendor Identification"), "Wire    ");
  EXPECT_EQ(*disk.text("IOBundleResourceFile"), "External.icns");
  EXPECT_EQ(*disk.text("CFBundleIdentifier"), "com.apple.iokit.IOStorageFamily");
}

TEST_F(LinuxHardware, TwentyDisksAreNumberedInTheOrderInWhichTheyCame) {
  plug("twenty");
  std::vector<std::string> expected;
  for (int place = 0; place < 20; ++place) {
    const std::string number = std::to_string(place);
    expected.push_back("disk" + number + "=/dev/sdz" + number);
    expected.push_back("disk" + number + "s1=/dev/sdz" + number + "p1");
  }
  EXPECT_EQ(names(), expected);
}

TEST_F(LinuxHardware, EachOfTwentyDisksReceivesItsOwnVolume) {
  plug("twenty");
  std::vector<std::string> lines;
  for (int place = 0; place < 20; ++place) {
    lines.push_back("65:" + std::to_string(place * 8 + 1) + " / /mnt/v" + std::to_string(place) +
                    " rw - ext4 /dev/sdz" + std::to_string(place) + "p1 rw");
  }
  mount(lines);
  const Arrays arrays = inventory();
  EXPECT_EQ(arrays.media.size(), 40U);
  for (int place = 0; place < 20; ++place) {
    const Entry volume = arrays.at("disk" + std::to_string(place) + "s1", true);
    EXPECT_EQ(*volume.text("Volume Name"), "v" + std::to_string(place));
  }
}

TEST_F(LinuxHardware, MediumTellsItsNumbersAndWhetherItIsWhole) {
  plug("stick");
  EXPECT_EQ(medium("disk0")->properties(), (PropertyDictionary{{"BSD Name", "disk0"},
                                                               {"BSD Major", std::uint64_t{8}},
                                                               {"BSD Minor", std::uint64_t{16}},
                                                               {"Whole", true},
                                                               {"Writable", true},
                                                               {"Removable", true},
                                                               {"Size", std::uint64_t{30277632} * 512},
                                                               {"Preferred Block Size", std::uint64_t{512}}}));
  EXPECT_EQ(medium("disk0s1")->properties(), (PropertyDictionary{{"BSD Name", "disk0s1"},
                                                                 {"BSD Major", std::uint64_t{8}},
                                                                 {"BSD Minor", std::uint64_t{17}},
                                                                 {"Whole", false},
                                                                 {"Writable", true},
                                                                 {"Removable", true},
                                                                 {"Size", std::uint64_t{30275584} * 512},
                                                                 {"Preferred Block Size", std::uint64_t{512}},
                                                                 {"Partition ID", std::uint64_t{1}},
                                                                 {"Content", "Windows_FAT_32"}}));
}

TEST_F(LinuxHardware, BusTellsItsPathAndDriver) {
  plug("nvme");
  const auto bus = above("disk0", "IOPCIDevice");
  ASSERT_TRUE(bus);
  EXPECT_EQ(bus->properties(), (PropertyDictionary{{"Path", "/devices/pci0000:17/0000:17:00.0"}, {"Driver", "nvme"}}));
}

TEST_F(LinuxHardware, VirtualDeviceStandsOnNoBus) {
  plug("loop");
  EXPECT_EQ(above("disk0", "IOPCIDevice"), nullptr);
  EXPECT_NE(above("disk0", "IOBlockStorageDriver"), nullptr);
}

TEST_F(LinuxHardware, PartitionTableHasAClassOfItsOwnAndStandsOnceAboveItsPartitions) {
  for (const char* hardware : {"sata", "stick", "firewire", "undescribed_ata"}) plug(hardware);
  // Disks in the order of their count: the one that is not counted, then the SATA disk, the stick, the FireWire disk.
  EXPECT_NE(above("disk0s1", "IOPartitionScheme"), nullptr);
  EXPECT_NE(above("disk2s1", "IOFDiskPartitionScheme"), nullptr);
  EXPECT_NE(above("disk3s3", "IOApplePartitionScheme"), nullptr);
  const auto scheme = above("disk1s2", "IOGUIDPartitionScheme");
  ASSERT_TRUE(scheme);
  EXPECT_EQ(scheme->properties(), (PropertyDictionary{{"IOClass", "IOGUIDPartitionScheme"}}));
  EXPECT_EQ(scheme->entryID(), above("disk1s4", "IOGUIDPartitionScheme")->entryID());
}

TEST_F(LinuxHardware, EveryObjectHasANumberOfItsOwn) {
  plug("sata");
  std::set<std::uint64_t> numbers;
  std::size_t objects = 0;
  for (auto object = medium("disk0s2"); object; object = object->parentIterator("IOService")->next()) {
    numbers.insert(object->entryID());
    ++objects;
  }
  EXPECT_EQ(numbers.size(), objects);
  EXPECT_FALSE(numbers.contains(0));
}

TEST_F(LinuxHardware, OnlyTheServicePlaneHasParents) {
  plug("sata");
  EXPECT_EQ(medium("disk0")->parentIterator("IODeviceTree"), nullptr);
}

TEST_F(LinuxHardware, CardsRevisionsStandWhereCardReadersHaveThem) {
  plug("card_whole");
  const auto device = above("disk0", "IOBlockStorageDevice");
  ASSERT_TRUE(device);
  EXPECT_EQ(*device->properties().dictionary("Card Characteristics"),
            (PropertyDictionary{{"Product Revision Level", "0x8"}}));
  const PropertyDictionary* texts = device->properties().dictionary("Device Characteristics");
  EXPECT_FALSE(texts->contains("Product Revision Level"));
  EXPECT_EQ(*texts->text("Revision"), "0x0");
}

}  // namespace
}  // namespace zelvo::tests
