#include "platform/qt/qt_workspace.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QUrl>
#include <QWidget>

#include "platform/qt/text.h"

namespace zelvo::platform::qt {

bool QtWorkspace::openURL(const std::string& url) {
  const QUrl address = QUrl::fromEncoded(QByteArray::fromStdString(url), QUrl::StrictMode);
  return address.isValid() && QDesktopServices::openUrl(address);
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
