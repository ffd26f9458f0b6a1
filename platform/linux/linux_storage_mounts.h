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
};

/// Reads a mount table in the form of /proc/self/mountinfo. Of several mounts on one target only the last is answered:
/// it covers the others.
/// Failure: `error` says why, and nothing is answered.
/// Thread: any.
[[nodiscard]] std::vector<Mount> readMountTable(const std::string& path, std::error_code& error);

/// True when the mount stands for a volume of this machine that a user may store files on: not pseudo, not network, not
/// swap, with a block device behind it or of a type that spans devices; and not a part of a file system that is mounted
/// once more elsewhere. // Decision 0042
/// \param onBlockDevice whether the mount's device, or else its source, is a block device
[[nodiscard]] bool isLocalVolume(const Mount& mount, bool onBlockDevice);

}  // namespace zelvo::platform::linux_
