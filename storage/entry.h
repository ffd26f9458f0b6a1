/// One line of the drive inventory: a writable medium (whole disk or partition) or a mounted volume, as keys with
/// values. A key is there only where the system supplies its value. Sizes are in bytes.
#pragma once

#include <vector>

#include "platform/property_value.h"

namespace zelvo::storage {

using Entry = platform::PropertyDictionary;
using Entries = std::vector<Entry>;

/// Keys of a volume's entry; the first and the third are copied into the entry of its medium.
namespace volume_key {
constexpr auto kMountedPath = "Mounted Path";  ///< its mount point
constexpr auto kSymlinkName = "Symlink Name";  ///< "/Volumes/NAME", a link that leads to the mount point
constexpr auto kVolumeName = "Volume Name";    ///< last component of the link's path, else of the mount point
constexpr auto kVolumePath = "Volume Path";    ///< what it is mounted from ("/dev/disk1s2")
}  // namespace volume_key

/// Keys of a medium's entry. The "Whether" keys are absent or the 32-bit number 1.
namespace media_key {
constexpr auto kDevicePath = "device path";          ///< "/dev/r" and the medium's name ("/dev/rdisk1s2")
constexpr auto kWhetherVolume = "WhetherVolume";     ///< the entry describes a mounted volume
constexpr auto kContent = "Content";                 ///< kind of a mounted partition
constexpr auto kBlockSize = "Preferred Block Size";  ///< bytes
constexpr auto kWhetherSATA = "WhetherSATA";         ///< a parent is on SATA
constexpr auto kWhetherUSB = "WhetherUSB";           ///< a parent is on USB or FireWire, or is a card reader
constexpr auto kWhetherCardReader = "WhetherCardReader";
constexpr auto kDeviceModel = "device model";
constexpr auto kDeviceSerial = "device serial";
constexpr auto kDeviceRevision = "device revision";
constexpr auto kVendorIdentification = "Vendor Identification";
constexpr auto kProductIdentification = "Product Identification";
constexpr auto kProductRevisionLevel = "Product Revision Level";
constexpr auto kDeviceSize = "device size";         ///< bytes
constexpr auto kIconBundle = "CFBundleIdentifier";  ///< with the next: the medium's icon
constexpr auto kIconFile = "IOBundleResourceFile";
}  // namespace media_key

}  // namespace zelvo::storage
