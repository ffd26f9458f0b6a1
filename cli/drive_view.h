/// The drive inventory as a person looks at it: disks, their partitions below them, and what is mounted where. Sizes
/// are in bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include "platform/media_registry.h"
#include "platform/volume_source.h"
#include "storage/entry.h"

namespace zelvo::cli {

struct VolumeView {
  std::string name;
  std::string mountPoint;
  platform::VolumeSpace space;
  bool readOnly = false;
};

/// A disk or a partition. Texts are as the device gives them, without white space at their ends; empty when not known.
struct DriveView {
  std::string bsdName;  ///< "disk0s2"
  std::string device;   ///< the system's own node, or else the device path
  std::string kind;     ///< "SATA", "USB", "card", "virtual"
  std::string model;
  std::string serial;
  std::optional<std::uint64_t> size;
  std::vector<VolumeView> volumes;    ///< more than one where it is mounted at several places
  std::vector<DriveView> partitions;  ///< of a disk
};

/// A volume that is on none of the drives shown (a pool, say).
struct OtherVolumeView {
  std::string device;
  VolumeView volume;
};

struct InventoryView {
  std::vector<DriveView> drives;  ///< partitions whose disk is not writable stand among the disks
  std::vector<OtherVolumeView> others;
  std::size_t readOnlyVolumes = 0;  ///< on media that are not writable, and so are not shown
};

/// Puts the arrays of the inventory together. Asks the registry for the connections and nodes, and `source` for the
/// space of each volume.
[[nodiscard]] InventoryView inventoryView(const storage::Entries& responseFindMedia,
                                          const storage::Entries& finalArrayForVolumes,
                                          platform::MediaRegistry& registry, platform::VolumeSource& source);

/// The system's own node of a medium's or a volume's entry; nothing when there is none.
[[nodiscard]] std::optional<std::string> nativeNodeOf(const storage::Entry& entry, platform::MediaRegistry& registry,
                                                      platform::VolumeSource& source);

/// What connects each medium of the registry, in the registry's words, by its "BSD Name". Empty where nothing tells.
[[nodiscard]] std::map<std::string, std::string> connectionsOf(platform::MediaRegistry& registry);

/// "disk0s2" of a medium's or a volume's entry; empty when there is none. A volume that does not answer, or whose mount
/// point is no text, has no "Volume Path"; the mount table tells then.
[[nodiscard]] std::string bsdNameOf(const storage::Entry& entry, platform::VolumeSource& source);

/// "SATA", "USB", "card", "virtual"; empty when it is not known.
[[nodiscard]] std::string kindOf(const storage::Entry& medium, const std::string& connection);

}  // namespace zelvo::cli
