/// The order in which a chooser shows a folder.
#pragma once

#include <vector>

#include "platform/chooser_files.h"

namespace zelvo::platform::qt {

/// Folders first, each kind in the order that the user's language gives their names; notes each one's place.
/// Thread: any.
void sortByName(std::vector<FolderEntry>& entries);

}  // namespace zelvo::platform::qt
