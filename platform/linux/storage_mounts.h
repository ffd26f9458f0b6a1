/// The mount table of this machine as libmount tells about it.
#pragma once

#include <cstdint>
#include <string>
#include <system_error>
#include <vector>

namespace zelvo::platform::linux_ {

/// One mounted file system.
struct Mount {
  std::string target;        ///< its mount point, octal escapes decoded
  std::string source;        ///< what it is mounted from, as the table has it
  std::string type;          ///< "ext4"
  std::string root;          ///< the part of the file system that is mounted; "/" for all of it
  std::uint64_t number = 0;  ///< number of the device behind it; its major part is 0 where the kernel made one up
  bool pseudo = false;       ///< memory only, or a view of something else
  bool network = false;
  bool swap = false;
  bool readOnly = false;   ///< the mount, or the file system as a whole
  bool wholePart = false;  ///< it shows all of the file system, or a whole sub-volume of one that has such
};

/// Reads a mount table in the form of /proc/self/mountinfo. Of several mounts on one target only the last is answered:
/// it covers the others.
/// Failure: `error` says why, and nothing is answered.
/// Thread: any.
[[nodiscard]] std::vector<Mount> readMountTable(const std::string& path, std::error_code& error);

/// False for what is no volume of this machine whatever is behind it: memory, views of something else, network, swap,
/// and parts of a file system that is mounted once more elsewhere. Nothing is asked of the file system.
/// Decision: inventory, Volumes come from the mount table alone
[[nodiscard]] bool mayBeLocalVolume(const Mount& mount);

/// True when the mount stands for a volume of this machine: it may be one, and there is a block device behind it, or it
/// is of a type that spans devices. // Decision: inventory, Volumes come from the mount table alone
/// \param onBlockDevice whether the mount's device, or else its source, is a block device
[[nodiscard]] bool isLocalVolume(const Mount& mount, bool onBlockDevice);

}  // namespace zelvo::platform::linux_
