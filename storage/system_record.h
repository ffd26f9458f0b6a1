/// A machine's storage written down as one tree, so that what was seen on one machine can be looked at on another.
#pragma once

#include "platform/media_registry.h"
#include "platform/property_value.h"
#include "platform/volume_source.h"

namespace zelvo::storage {

/// The tree's keys. Objects of the registry are dictionaries of their properties with their class, their number and
/// their children beside them: the shape of a registry dump, whose objects load just so.
namespace record_key {
constexpr auto kRegistry = "Registry";  ///< the objects that have no parents, an array
constexpr auto kChildren = "IORegistryEntryChildren";
constexpr auto kClass = "IOObjectClass";
constexpr auto kEntryID = "IORegistryEntryID";
constexpr auto kNoMatching = "NoMatching";  ///< true: no matching dictionary can be made
constexpr auto kStatus = "Status";          ///< of a search that failed
constexpr auto kVolumes = "Volumes";        ///< the mounted local volumes, an array of dictionaries:
constexpr auto kMountedPath = "Mounted Path";
constexpr auto kMountedFrom = "Mounted From";
constexpr auto kMountedFromError = "Mounted From Error";  ///< number of the system's error: the volume tells no name
constexpr auto kReadOnly = "Read Only";                   ///< true: it is mounted read-only
constexpr auto kFreeSpace = "Free Space";                 ///< bytes
constexpr auto kCapacity = "Capacity";                    ///< bytes
constexpr auto kFreeSpaceError = "Free Space Error";      ///< number of the system's error, in the place of both
constexpr auto kPathHex = "path_hex";                     ///< the very bytes of a mount point that is not UTF-8
constexpr auto kVolumesError = "Volumes Error";   ///< number of the system's error: the volumes could not be listed
constexpr auto kVolumesFolder = "VolumesFolder";  ///< the entries of "/Volumes", an array of dictionaries:
constexpr auto kName = "Name";
constexpr auto kLinkTarget = "Link Target";  ///< absent unless the entry is a symbolic link
constexpr auto kNativeNode = "Native Node";  ///< beside a medium's properties: the system's own node for it
}  // namespace record_key

/// Every medium, writable or not, below all that stands above it, and every mounted local volume. An object with
/// several parents is written below each of them.
[[nodiscard]] platform::PropertyDictionary recordedSystem(platform::MediaRegistry& registry,
                                                          platform::VolumeSource& volumes);

}  // namespace zelvo::storage
