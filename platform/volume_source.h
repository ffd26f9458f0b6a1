/// The mounted local volumes: where they are mounted, from what, and the folder that gives them names. Sizes are in bytes.
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

/// Bytes that this user may still write on a volume, or the reason why they cannot be told.
struct FreeSpace {
  std::uint64_t bytes = 0;
  std::error_code error;
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
  /// The file system's mounted-from name of the volume at a mount point.
  [[nodiscard]] virtual MountedFrom mountedFromName(const std::string& mountPoint) = 0;
  /// Looked up at the moment of the call.
  [[nodiscard]] virtual FreeSpace freeSpace(const std::string& mountPoint) = 0;
};

}  // namespace zelvo::platform
