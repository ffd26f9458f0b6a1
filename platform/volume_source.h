/// The mounted local volumes: where they are mounted, from what, and the folder that gives them names. Sizes are in
/// bytes.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

namespace zelvo::platform {

/// One entry of the volumes folder.
struct VolumesFolderEntry {
  std::string name;                       ///< without a path
  std::optional<std::string> linkTarget;  ///< as it is written, when the entry is a symbolic link
};

/// What a volume is mounted from ("/dev/disk1s2"), or the reason why that cannot be told.
struct MountedFrom {
  std::string name;
  std::error_code error;
};

/// Bytes of a volume, or the reason why they cannot be told: `timed_out` when the volume does not answer.
struct VolumeSpace {
  std::uint64_t free = 0;      ///< what this user may still write
  std::uint64_t capacity = 0;  ///< what the volume holds when it is empty
  std::error_code error;
};

/// What the mount table has of a volume, whether the volume itself answers or not.
struct MountFacts {
  std::string mountedFrom;  ///< as `MountedFrom::name`
  bool readOnly = false;
};

/// Thread: one at a time.
class VolumeSource {
 public:
  virtual ~VolumeSource() = default;

  /// Mount points of the local volumes (no network, no memory-only file systems), each once.
  [[nodiscard]] virtual std::vector<std::string> mountedLocalVolumePaths() = 0;
  /// Why the mounted volumes could not be read; no error when they were.
  [[nodiscard]] virtual std::error_code mountTableError() = 0;
  /// The entries of "/Volumes".
  [[nodiscard]] virtual std::vector<VolumesFolderEntry> volumesFolder() = 0;
  /// The file system's mounted-from name of the volume at a mount point. A volume that does not answer has none.
  [[nodiscard]] virtual MountedFrom mountedFromName(const std::string& mountPoint) = 0;
  [[nodiscard]] virtual VolumeSpace space(const std::string& mountPoint) = 0;
  /// Nothing but empty facts for what is no mount point.
  [[nodiscard]] virtual MountFacts mountFacts(const std::string& mountPoint) = 0;
};

}  // namespace zelvo::platform
