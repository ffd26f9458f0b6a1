#include "platform/qt/window/workspace.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QUrl>
#include <QWidget>

#include "platform/qt/drawing/text.h"

namespace zelvo::platform::qt {

bool QtWorkspace::openURL(const std::string& url) {
  const QUrl address = QUrl::fromEncoded(QByteArray::fromStdString(url), QUrl::StrictMode);
  const auto tell = [this, address] {
    if (unopened_) unopened_(address);
  };
  if (!address.isValid()) return false;
  if (addresses_.open(url, tell) || QDesktopServices::openUrl(address)) return true;
  // Not within the call: whoever asked is still at it.
  QMetaObject::invokeMethod(&addresses_, tell, Qt::QueuedConnection);
  return false;
}

bool QtWorkspace::openFile(const std::string& path, std::string_view application) {
  return opener_.openFile(path, applications_ + "/" + std::string(application));
}

std::vector<LaunchedApplication> QtWorkspace::launchedApplications() {
  return {{identifier_, QCoreApplication::applicationPid()}};
}

std::optional<Process> QtWorkspace::processForIdentifier(std::int64_t identifier) {
  if (identifier != QCoreApplication::applicationPid()) return std::nullopt;
  return Process{identifier};
}

void QtWorkspace::setFrontProcess(const Process& process) {
  if (process.identifier != QCoreApplication::applicationPid()) return;
  window_.raise();
  window_.activateWindow();
}

}  // namespace zelvo::platform::qt
