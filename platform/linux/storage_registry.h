/// The block devices as objects of a registry, in the levels in which such a registry has them.
///
///   whole disk -> driver -> device -> bus
///   partition  -> scheme -> whole disk -> driver -> device
///
/// The real tree of devices is deeper and differs from bus to bus, so the levels are made. What a device tells about
/// itself stands in the device level only.
/// Decision: inventory, Levels above a disk are made up
#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "platform/linux/storage_devices.h"
#include "platform/media_registry.h"

namespace zelvo::platform::linux_ {

using RegistryObjects = std::vector<std::shared_ptr<const RegistryObject>>;

/// One object per device (class "IOMedia"), in the order of the devices, which have their names already.
[[nodiscard]] RegistryObjects mediaObjects(const std::vector<BlockDevice>& devices);

/// Goes over `objects`.
[[nodiscard]] std::unique_ptr<RegistryIterator> iterate(RegistryObjects objects);

/// The type of a partition in the registry's words: a GUID in upper case, a text of an Apple map as it is, and a name
/// for the number that a DOS table has ("0x83" where there is no name). Empty when the type is not known.
[[nodiscard]] std::string partitionContent(std::string_view scheme, std::string_view type);

}  // namespace zelvo::platform::linux_
