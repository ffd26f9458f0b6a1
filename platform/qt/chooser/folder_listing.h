/// How a chooser shows what is in a folder: names and their order.
#pragma once

#include <QString>
#include <string>
#include <vector>

#include "platform/chooser_files.h"

namespace zelvo::platform::qt {

/// A path as it is shown.
[[nodiscard]] QString shownPath(const std::string& path);

/// Folders first, each kind in the order that the user's language gives their names; notes each one's place.
/// Thread: any.
void sortByName(std::vector<FolderEntry>& entries);

}  // namespace zelvo::platform::qt
