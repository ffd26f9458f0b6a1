/// The inventory in words: a table, a tree, and JSON.
#pragma once

#include <string>

#include "cli/drive_view.h"

namespace zelvo::cli {

/// One line per disk, partition and further mount point, under a line of headings.
[[nodiscard]] std::string drivesTable(const InventoryView& view);

/// Disks over their partitions over their volumes.
[[nodiscard]] std::string drivesTree(const InventoryView& view);

/// One object in one line: both arrays as they are, and in each entry the "native node" where there is one.
[[nodiscard]] std::string drivesJson(const storage::Entries& responseFindMedia,
                                     const storage::Entries& finalArrayForVolumes, platform::MediaRegistry& registry);

}  // namespace zelvo::cli
