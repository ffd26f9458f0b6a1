/// What `zelvo-avi drives` says: the machine's writable disks and what is mounted from them.
#pragma once

#include <string>
#include <vector>

#include "cli/exit.h"
#include "platform/media_registry.h"
#include "platform/volume_source.h"

namespace zelvo::cli {

struct DrivesOptions {
  bool json = false;
  bool tree = false;
  bool verbose = false;  ///< tell what the registry has about each object
};

/// What the command has to say; the caller brings it to the streams.
struct DrivesAnswer {
  std::string result;               ///< for standard output
  std::string details;              ///< for standard error, as it is; empty unless verbose
  std::vector<std::string> notes;   ///< sentences for standard error
  std::vector<std::string> errors;  ///< sentences for standard error
  Exit exit = Exit::done;
};

/// Takes the inventory and puts it into words. Reads nothing but the two interfaces.
[[nodiscard]] DrivesAnswer listDrives(const DrivesOptions& options, platform::MediaRegistry& registry,
                                      platform::VolumeSource& volumes);

}  // namespace zelvo::cli
