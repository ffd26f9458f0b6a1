/// A file system that keeps blocks back for root, so that what is free and what a user may write differ. Sizes in
/// bytes.
#pragma once

#include <sys/statvfs.h>

#include <cstdint>
#include <optional>
#include <string>

namespace zelvo::tests {

struct KeptBlocks {
  std::string path;
  double available = 0;  ///< what this user may still write
  double kept = 0;       ///< what is free beyond that
};

/// Nothing where none of the usual places keeps more back than others may write during a test.
[[nodiscard]] inline std::optional<KeptBlocks> placeThatKeepsBlocksBack() {
  constexpr double kFarMoreThanIsWrittenMeanwhile = 2e9;
  for (const char* path : {"/tmp", "/", "/var", "/home", "/usr"}) {
    struct statvfs space {};
    if (::statvfs(path, &space) != 0) continue;
    const auto bytes = [&space](std::uint64_t blocks) {
      return static_cast<double>(blocks) * static_cast<double>(space.f_frsize);
    };
    const KeptBlocks found{path, bytes(space.f_bavail), bytes(space.f_bfree) - bytes(space.f_bavail)};
    if (found.kept > kFarMoreThanIsWrittenMeanwhile) return found;
  }
  return std::nullopt;
}

}  // namespace zelvo::tests
