/// What a drag of the desktop holds.
/// Thread: main.
#pragma once

#include <QMimeData>
#include <string>
#include <vector>

namespace zelvo::platform::qt {

/// The paths of the local files that are dragged; none when anything else is among them.
[[nodiscard]] std::vector<std::string> draggedFiles(const QMimeData& dragged);

}  // namespace zelvo::platform::qt
