#include "platform/linux/storage_devices.h"

#include <dirent.h>
#include <libudev.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <initializer_list>
#include <map>
#include <memory>
#include <string_view>
#include <tuple>

#include "platform/linux/c_text.h"

namespace zelvo::platform::linux_ {

namespace {

struct DeviceUnref {
  void operator()(udev* context) const { udev_unref(context); }
  void operator()(udev_enumerate* enumeration) const { udev_enumerate_unref(enumeration); }
  void operator()(udev_device* device) const { udev_device_unref(device); }
};

constexpr std::uint64_t kSectorSize = 512;  // of the kernel's "size", whatever the disk's own blocks are
constexpr std::uint64_t kOpticalBlockSize = 2048;

std::string property(udev_device* device, const char* key) {
  return device ? textOrEmpty(udev_device_get_property_value(device, key)) : "";
}

std::string attribute(udev_device* device, const char* name) {
  if (!device) return "";
  std::string value = textOrEmpty(udev_device_get_sysattr_value(device, name));
  while (value.ends_with('\n')) value.pop_back();
  return value;
}

std::uint64_t numberIn(const std::string& text) {
  std::uint64_t number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

/// Whether a device has all of these. One that has gone away has none of its attributes any more, so that who read one
/// of these last read all that came before while the device was there.
bool hasAll(udev_device* device, std::initializer_list<const char*> names) {
  return std::ranges::all_of(names, [device](const char* name) { return udev_device_get_sysattr_value(device, name); });
}

/// The first text with anything but blanks in it.
std::string firstOf(std::initializer_list<std::string> texts) {
  for (const std::string& text : texts) {
    if (text.find_first_not_of(" \t") != std::string::npos) return text;
  }
  return "";
}

/// The devices above a disk that tell something about it; null where there is none. Borrowed from the disk.
struct Above {
  explicit Above(udev_device* disk)
      : usb(parent(disk, "usb", "usb_device")),
        fireWire(parent(disk, "firewire", nullptr)),
        mmc(parent(disk, "mmc", nullptr)),
        nvme(parent(disk, "nvme", nullptr)),
        scsi(parent(disk, "scsi", "scsi_device")),
        virtio(parent(disk, "virtio", nullptr)),
        pci(parent(disk, "pci", nullptr)) {
    if (!nvme) nvme = parent(disk, "nvme-subsystem", nullptr);  // a disk reached over several controllers
  }
  static udev_device* parent(udev_device* disk, const char* subsystem, const char* kind) {
    return udev_device_get_parent_with_subsystem_devtype(disk, subsystem, kind);
  }

  udev_device* usb;
  udev_device* fireWire;
  udev_device* mmc;
  udev_device* nvme;
  udev_device* scsi;
  udev_device* virtio;
  udev_device* pci;
};

Connection connectionOf(udev_device* disk, const Above& above) {
  // The ancestors go first: a SATA disk in a USB enclosure is described as an ATA disk, too.
  if (above.usb) return Connection::usb;
  if (above.fireWire || !attribute(above.scsi, "ieee1394_id").empty()) return Connection::fireWire;
  if (above.mmc) return attribute(above.mmc, "type") == "MMC" ? Connection::embeddedCard : Connection::card;
  if (above.nvme) return Connection::nvme;
  if (above.virtio) return Connection::virtualDevice;
  if (property(disk, "ID_ATA_SATA") == "1") return Connection::sata;
  if (property(disk, "ID_ATA") == "1") return Connection::ata;
  // Where no daemon has described the disk, the name of the SCSI layer's ATA translation is all there is.
  if (attribute(above.scsi, "vendor").starts_with("ATA")) return Connection::sata;
  return above.scsi ? Connection::scsi : Connection::virtualDevice;
}

DiskTexts textsOf(udev_device* disk, const Above& above, Connection connection) {
  DiskTexts texts;
  const std::string encodedModel = decodedUdevText(property(disk, "ID_MODEL_ENC"));
  if (connection == Connection::card || connection == Connection::embeddedCard) {
    texts.model = texts.product = attribute(above.mmc, "name");
    texts.serial = attribute(above.mmc, "serial");
    texts.revision = attribute(above.mmc, "fwrev");
    texts.vendor = attribute(above.mmc, "manfid");
    texts.productRevision = attribute(above.mmc, "hwrev");
    return texts;
  }
  // "ID_MODEL" comes last but for the SCSI layer's text: it has underscores where the disk has blanks, and the SCSI
  // layer's is cut after 16 characters. A mapped device and a loop have no model; what they stand for tells more.
  texts.model =
      firstOf({encodedModel, attribute(above.nvme, "model"), property(disk, "ID_MODEL"), attribute(above.scsi, "model"),
               attribute(disk, "dm/name"), attribute(disk, "loop/backing_file")});
  texts.serial =
      firstOf({property(disk, "ID_SERIAL_SHORT"), attribute(above.nvme, "serial"), attribute(disk, "serial")});
  texts.revision =
      firstOf({property(disk, "ID_REVISION"), attribute(above.nvme, "firmware_rev"), attribute(above.scsi, "rev")});
  if (connection != Connection::usb && connection != Connection::fireWire && connection != Connection::scsi) {
    return texts;
  }
  texts.vendor = firstOf(
      {decodedUdevText(property(disk, "ID_VENDOR_ENC")), property(disk, "ID_VENDOR"), attribute(above.scsi, "vendor")});
  texts.product = texts.model;
  texts.productRevision = texts.revision;
  return texts;
}

void readSizeAndWritable(udev_device* from, BlockDevice& device) {
  device.size = numberIn(attribute(from, "size")) * kSectorSize;
  device.writable = attribute(from, "ro") == "0";
}

void readWholeDisk(udev_device* disk, BlockDevice& device) {
  const Above above(disk);
  device.sequence = numberIn(firstOf({attribute(disk, "diskseq"), property(disk, "DISKSEQ")}));
  device.removable = attribute(disk, "removable") == "1";
  device.connection = connectionOf(disk, above);
  device.texts = textsOf(disk, above, device.connection);
  if (above.pci) {
    device.busPath = textOrEmpty(udev_device_get_devpath(above.pci));
    device.busDriver = textOrEmpty(udev_device_get_driver(above.pci));
  }
  const bool optical = attribute(above.scsi, "type") == "5" || property(disk, "ID_CDROM") == "1";
  readSizeAndWritable(disk, device);
  const std::uint64_t logicalBlock = numberIn(attribute(disk, "queue/logical_block_size"));
  if (logicalBlock != 0) device.blockSize = logicalBlock;
  if (!optical) return;
  device.blockSize = kOpticalBlockSize;
  // The kernel does not call a drive read-only because of the medium in it.
  device.writable = device.writable && property(disk, "ID_CDROM_MEDIA_DVD_RAM") == "1";
}

bool isMemoryDisk(std::string_view systemName) {
  return systemName.starts_with("ram") || systemName.starts_with("zram");
}

/// False for what does not count as a device.
bool readDevice(udev_device* from, BlockDevice& device) {
  device.systemName = textOrEmpty(udev_device_get_sysname(from));
  device.node = textOrEmpty(udev_device_get_devnode(from));
  device.number = udev_device_get_devnum(from);
  if (isMemoryDisk(device.systemName) || attribute(from, "hidden") == "1") return false;

  device.fileSystemLabel = decodedUdevText(property(from, "ID_FS_LABEL_ENC"));
  for (udev_list_entry* link = udev_device_get_devlinks_list_entry(from); link; link = udev_list_entry_get_next(link)) {
    device.links.push_back(textOrEmpty(udev_list_entry_get_name(link)));
  }
  const std::string mapping = attribute(from, "dm/name");
  if (!mapping.empty()) device.links.push_back("/dev/mapper/" + mapping);

  // What the kernel calls it decides, not which attributes are left of it.
  const std::string kind = textOrEmpty(udev_device_get_devtype(from));
  if (kind == "disk") {
    readWholeDisk(from, device);
    return device.size != 0 && hasAll(from, {"queue/logical_block_size", "removable", "size", "ro"});
  }
  if (kind != "partition") return false;
  if (udev_device* disk = Above::parent(from, "block", "disk")) {
    device.wholeDisk = textOrEmpty(udev_device_get_sysname(disk));
  }
  device.scheme = property(from, "ID_PART_ENTRY_SCHEME");
  device.partitionType = property(from, "ID_PART_ENTRY_TYPE");
  device.partition = numberIn(attribute(from, "partition"));
  readSizeAndWritable(from, device);
  return device.size != 0 && device.partition != 0 && hasAll(from, {"size", "ro"});
}

}  // namespace

std::vector<BlockDevice> readBlockDevices(const std::string& folder, std::error_code& error) {
  // The library takes a system without such a folder for one without devices.
  if (DIR* const listed = ::opendir(folder.c_str())) {
    ::closedir(listed);
  } else {
    error = {errno, std::generic_category()};
    return {};
  }
  const std::unique_ptr<udev, DeviceUnref> context(udev_new());
  const std::unique_ptr<udev_enumerate, DeviceUnref> enumeration(context ? udev_enumerate_new(context.get()) : nullptr);
  if (!enumeration) {
    error = {errno, std::generic_category()};
    return {};
  }
  int answer = udev_enumerate_add_match_subsystem(enumeration.get(), "block");
  if (answer >= 0) answer = udev_enumerate_scan_devices(enumeration.get());
  if (answer < 0) {
    error = {-answer, std::generic_category()};
    return {};
  }
  std::vector<BlockDevice> devices;
  udev_list_entry* entry = udev_enumerate_get_list_entry(enumeration.get());
  for (; entry; entry = udev_list_entry_get_next(entry)) {
    const std::unique_ptr<udev_device, DeviceUnref> from(
        udev_device_new_from_syspath(context.get(), udev_list_entry_get_name(entry)));
    BlockDevice device;
    // A device may go away between the listing and the look at it.
    if (from && readDevice(from.get(), device)) devices.push_back(std::move(device));
  }
  return devices;
}

void giveBsdNames(std::vector<BlockDevice>& devices) {
  // Whole disks go first, in the order of their numbers; then the partitions, disk by disk.
  std::ranges::sort(devices, {}, [](const BlockDevice& device) {
    return std::tuple(device.partition != 0, device.sequence, device.number);
  });
  struct Disk {
    std::size_t place;
    std::uint64_t blockSize;
    bool removable;
  };
  std::map<std::string, Disk> disks;
  std::erase_if(devices, [&disks](const BlockDevice& device) {
    if (device.partition == 0)
      disks.try_emplace(device.systemName, Disk{disks.size(), device.blockSize, device.removable});
    return device.partition != 0 && !disks.contains(device.wholeDisk);
  });
  const auto diskOf = [&disks](const BlockDevice& device) {
    return disks.at(device.partition == 0 ? device.systemName : device.wholeDisk);
  };
  for (BlockDevice& device : devices) {
    device.bsdName = "disk" + std::to_string(diskOf(device).place);
    if (device.partition == 0) continue;
    device.bsdName += "s" + std::to_string(device.partition);
    device.blockSize = diskOf(device).blockSize;  // only the disk has a queue that knows it
    device.removable = diskOf(device).removable;
  }
  std::ranges::sort(
      devices, {}, [&diskOf](const BlockDevice& device) { return std::tuple(diskOf(device).place, device.partition); });
}

std::string decodedUdevText(const std::string& encoded) {
  std::string text;
  for (std::size_t at = 0; at < encoded.size(); ++at) {
    unsigned byte = 0;
    const char* digits = encoded.data() + at + 2;
    if (encoded.compare(at, 2, "\\x") == 0 && at + 4 <= encoded.size() &&
        std::from_chars(digits, digits + 2, byte, 16).ptr == digits + 2) {
      text += static_cast<char>(byte);
      at += 3;
    } else {
      text += encoded[at];
    }
  }
  return text;
}

}  // namespace zelvo::platform::linux_
