/// The inventory in words: a table, a tree, and JSON.
#pragma once

#include <string>

#include "cli/drive_view.h"

namespace zelvo::cli {

/// One line per disk, partition and further mount point, under a line of headings.
[[nodiscard]] std::string drivesTable(const InventoryView& view);

/// Disks over their partitions over their volumes.
[[nodiscard]] std::string drivesTree(const InventoryView& view);

/// What stands in the place of a volume's space that is not known: "needs root", "not answering" or "unknown".
[[nodiscard]] std::string shownSpaceError(const std::error_code& error);

/// One object in one line: both arrays as they are; beside the given keys, in each entry the "native node" where there
/// is one, in a medium's its "connection", in a volume's its space and whether it is read-only.
[[nodiscard]] std::string drivesJson(const storage::Entries& responseFindMedia,
                                     const storage::Entries& finalArrayForVolumes, platform::MediaRegistry& registry,
                                     platform::VolumeSource& source);

}  // namespace zelvo::cli
