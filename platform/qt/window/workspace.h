/// The desktop's services. Of the running applications only this one is known, and only its window can be brought to
/// the front.
/// Thread: main.
#pragma once

#include <QUrl>
#include <functional>
#include <string>

#include "platform/launcher.h"
#include "platform/qt/window/address_opener.h"
#include "platform/workspace.h"

class QWidget;

namespace zelvo::platform::qt {

class QtWorkspace final : public Workspace {
 public:
  /// `applications` is the folder that the names of `openFile` are looked for in; `identifier` is this program's.
  QtWorkspace(QWidget& window, FileOpener& opener, ProgramStarter& starter, std::string applications,
              std::string identifier, std::string browserStarter = "xdg-open")
      : window_(window),
        opener_(opener),
        applications_(std::move(applications)),
        identifier_(std::move(identifier)),
        addresses_(starter, std::move(browserStarter)) {}

  /// Told, from the event loop, of an address that nothing could be started for.
  void setUnopenedReceiver(std::function<void(const QUrl& address)> receiver) { unopened_ = std::move(receiver); }

  /// Opens nothing but what a scheme with a handler names; no shell sees the address.
  bool openURL(const std::string& url) override;
  bool openFile(const std::string& path, std::string_view application) override;
  [[nodiscard]] std::vector<LaunchedApplication> launchedApplications() override;
  [[nodiscard]] std::optional<Process> processForIdentifier(std::int64_t identifier) override;
  void setFrontProcess(const Process& process) override;

 private:
  QWidget& window_;
  FileOpener& opener_;
  std::string applications_;
  std::string identifier_;
  AddressOpener addresses_;
  std::function<void(const QUrl& address)> unopened_;
};

}  // namespace zelvo::platform::qt
