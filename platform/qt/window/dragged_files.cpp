#include "platform/qt/window/dragged_files.h"

#include <QFile>
#include <QUrl>

namespace zelvo::platform::qt {

std::vector<std::string> draggedFiles(const QMimeData& dragged) {
  std::vector<std::string> files;
  for (const QUrl& url : dragged.urls()) {
    if (!url.isLocalFile()) return {};
    files.push_back(QFile::encodeName(url.toLocalFile()).toStdString());
  }
  return files;
}

}  // namespace zelvo::platform::qt
