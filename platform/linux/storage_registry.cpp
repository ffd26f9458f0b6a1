#include "platform/linux/storage_registry.h"

#include <sys/sysmacros.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <map>
#include <utility>

namespace zelvo::platform::linux_ {

namespace {

class StoredIterator final : public RegistryIterator {
 public:
  explicit StoredIterator(RegistryObjects objects) : objects_(std::move(objects)) {}
  std::shared_ptr<const RegistryObject> next() override { return at_ < objects_.size() ? objects_[at_++] : nullptr; }

 private:
  RegistryObjects objects_;
  std::size_t at_ = 0;
};

class StoredObject final : public RegistryObject {
 public:
  StoredObject(std::string className, std::uint64_t entryID, PropertyDictionary properties,
               std::shared_ptr<const RegistryObject> parent)
      : className_(std::move(className)), entryID_(entryID), properties_(std::move(properties)) {
    if (parent) parents_.push_back(std::move(parent));
  }
  [[nodiscard]] const std::string& className() const override { return className_; }
  [[nodiscard]] std::uint64_t entryID() const override { return entryID_; }
  [[nodiscard]] const PropertyDictionary& properties() const override { return properties_; }
  [[nodiscard]] std::unique_ptr<RegistryIterator> parentIterator(std::string_view plane) const override {
    return plane == "IOService" ? iterate(parents_) : nullptr;
  }

 private:
  std::string className_;
  std::uint64_t entryID_;
  PropertyDictionary properties_;
  RegistryObjects parents_;
};

struct DosType {
  unsigned number;
  std::string_view content;
};

constexpr std::array<DosType, 12> kDosTypes{{{0x01, "DOS_FAT_12"},
                                             {0x04, "DOS_FAT_16_S"},
                                             {0x05, "DOS_Extended"},
                                             {0x06, "DOS_FAT_16"},
                                             {0x07, "Windows_NTFS"},
                                             {0x0b, "DOS_FAT_32"},
                                             {0x0c, "Windows_FAT_32"},
                                             {0x0e, "Windows_FAT_16"},
                                             {0x0f, "Windows_FAT_Extended"},
                                             {0x82, "Linux_Swap"},
                                             {0x83, "Linux"},
                                             {0xaf, "Apple_HFS"}}};

std::string dosContent(std::string_view type) {
  unsigned number = 0;
  if (type.starts_with("0x")) type.remove_prefix(2);
  const auto read = std::from_chars(type.data(), type.data() + type.size(), number, 16);
  if (type.empty() || read.ptr != type.data() + type.size()) return "";
  const auto* row = std::ranges::find(kDosTypes, number, &DosType::number);
  if (row != kDosTypes.end()) return std::string(row->content);
  std::array<char, 16> shown{};
  std::snprintf(shown.data(), shown.size(), "0x%02X", number);
  return shown.data();
}

const char* schemeClass(const std::string& scheme) {
  if (scheme == "gpt") return "IOGUIDPartitionScheme";
  if (scheme == "dos") return "IOFDiskPartitionScheme";
  if (scheme == "mac") return "IOApplePartitionScheme";
  return "IOPartitionScheme";
}

const char* interconnect(Connection connection) {
  switch (connection) {
    case Connection::sata:
      return "SATA";
    case Connection::ata:
      return "ATA";
    case Connection::usb:
      return "USB";
    case Connection::fireWire:
      return "FireWire";
    case Connection::card:
      return "Secure Digital";
    case Connection::embeddedCard:
      return "MMC";
    case Connection::nvme:
      return "PCI-Express";
    case Connection::scsi:
      return "SCSI";
    case Connection::virtualDevice:
      break;
  }
  return "Virtual Interface";
}

bool isExternal(const BlockDevice& disk) {
  return disk.connection == Connection::usb || disk.connection == Connection::fireWire;
}

/// Null where the walk's own default, the icon of removable media, fits.
const char* iconFile(const BlockDevice& disk) {
  if (disk.connection == Connection::card) return "SD.icns";
  if (disk.removable) return nullptr;
  return isExternal(disk) ? "External.icns" : "Internal.icns";
}

void setUnlessEmpty(PropertyDictionary& properties, const char* key, const std::string& text) {
  if (!text.empty()) properties.set(key, text);
}

PropertyDictionary deviceProperties(const BlockDevice& disk) {
  PropertyDictionary characteristics;
  setUnlessEmpty(characteristics, "Model", disk.texts.model);
  setUnlessEmpty(characteristics, "Serial Number", disk.texts.serial);
  setUnlessEmpty(characteristics, "Revision", disk.texts.revision);
  setUnlessEmpty(characteristics, "Vendor Identification", disk.texts.vendor);
  setUnlessEmpty(characteristics, "Product Identification", disk.texts.product);
  const bool card = disk.connection == Connection::card;
  if (!card) setUnlessEmpty(characteristics, "Product Revision Level", disk.texts.productRevision);

  PropertyDictionary properties{
      {"IOClass", card ? "AppleSDXCBlockStorageDevice" : "IOBlockStorageDevice"},
      {"Protocol Characteristics",
       PropertyDictionary{{"Physical Interconnect", interconnect(disk.connection)},
                          {"Physical Interconnect Location", isExternal(disk) ? "External" : "Internal"}}}};
  if (!characteristics.empty()) properties.set("Device Characteristics", std::move(characteristics));
  if (card) {
    PropertyDictionary cardCharacteristics;
    setUnlessEmpty(cardCharacteristics, "Product Revision Level", disk.texts.productRevision);
    properties.set("Card Characteristics", std::move(cardCharacteristics));
  }
  if (const char* file = iconFile(disk)) {
    properties.set("IOMediaIcon", PropertyDictionary{{"CFBundleIdentifier", "com.apple.iokit.IOStorageFamily"},
                                                     {"IOBundleResourceFile", file}});
  }
  return properties;
}

PropertyDictionary mediaProperties(const BlockDevice& device) {
  PropertyDictionary properties{{"BSD Name", device.bsdName},
                                {"BSD Major", std::uint64_t{major(device.number)}},
                                {"BSD Minor", std::uint64_t{minor(device.number)}},
                                {"Whole", device.partition == 0},
                                {"Writable", device.writable},
                                {"Removable", device.removable},
                                {"Size", device.size},
                                {"Preferred Block Size", device.blockSize}};
  if (device.partition != 0) {
    properties.set("Partition ID", device.partition);
    setUnlessEmpty(properties, "Content", partitionContent(device.scheme, device.partitionType));
  }
  return properties;
}

/// Makes objects, each with a number of its own.
class Maker {
 public:
  std::shared_ptr<const RegistryObject> make(std::string className, PropertyDictionary properties,
                                             std::shared_ptr<const RegistryObject> parent) {
    return std::make_shared<StoredObject>(std::move(className), ++lastID_, std::move(properties), std::move(parent));
  }

  /// A whole disk below its driver, its device and, where there is one, its bus.
  std::shared_ptr<const RegistryObject> makeDisk(const BlockDevice& disk) {
    std::shared_ptr<const RegistryObject> bus;
    if (!disk.busPath.empty()) {
      PropertyDictionary properties{{"Path", disk.busPath}};
      setUnlessEmpty(properties, "Driver", disk.busDriver);
      bus = make("IOPCIDevice", std::move(properties), nullptr);
    }
    const auto device = make("IOBlockStorageDevice", deviceProperties(disk), bus);
    const auto driver = make("IOBlockStorageDriver", {{"IOClass", "IOBlockStorageDriver"}}, device);
    return make("IOMedia", mediaProperties(disk), driver);
  }

 private:
  std::uint64_t lastID_ = 0;
};

}  // namespace

RegistryObjects mediaObjects(const std::vector<BlockDevice>& devices) {
  Maker maker;
  RegistryObjects media;
  std::map<std::string, std::shared_ptr<const RegistryObject>> disks;
  std::map<std::string, std::shared_ptr<const RegistryObject>> schemes;  // one for all partitions of a disk
  for (const BlockDevice& device : devices) {
    if (device.partition == 0) {
      media.push_back(disks[device.systemName] = maker.makeDisk(device));
      continue;
    }
    auto& scheme = schemes[device.wholeDisk];
    if (!scheme) {
      const char* name = schemeClass(device.scheme);
      scheme = maker.make(name, {{"IOClass", name}}, disks[device.wholeDisk]);
    }
    media.push_back(maker.make("IOMedia", mediaProperties(device), scheme));
  }
  return media;
}

std::unique_ptr<RegistryIterator> iterate(RegistryObjects objects) {
  return std::make_unique<StoredIterator>(std::move(objects));
}

std::string partitionContent(std::string_view scheme, std::string_view type) {
  if (scheme == "dos") return dosContent(type);
  std::string content(type);
  if (scheme == "gpt") {
    std::ranges::transform(content, content.begin(), [](char letter) {
      return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
    });
  }
  return content;
}

}  // namespace zelvo::platform::linux_
