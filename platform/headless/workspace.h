/// A desktop that writes down what it is asked to open, and a launcher that does the same.
/// Thread: main.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/headless/events.h"
#include "platform/launcher.h"
#include "platform/workspace.h"

namespace zelvo::platform::headless {

class HeadlessWorkspace final : public Workspace {
 public:
  explicit HeadlessWorkspace(Events* events) : events_(events) {}

  bool openURL(const std::string& url) override {
    note("openURL(" + url + ")");
    return true;
  }
  bool openFile(const std::string& path, std::string_view application) override {
    note("openFile(" + path + ", " + std::string(application) + ")");
    return true;
  }
  [[nodiscard]] std::vector<LaunchedApplication> launchedApplications() override { return applications; }
  [[nodiscard]] std::optional<Process> processForIdentifier(std::int64_t identifier) override {
    note("processForIdentifier(" + std::to_string(identifier) + ")");
    if (identifier == missingProcess) return std::nullopt;
    return Process{identifier};
  }
  void setFrontProcess(const Process& process) override {
    note("setFrontProcess(" + std::to_string(process.identifier) + ")");
  }

  std::vector<LaunchedApplication> applications;
  std::int64_t missingProcess = 0;

 private:
  void note(const std::string& what) const {
    if (events_ != nullptr) events_->add(what);
  }

  Events* events_;
};

class HeadlessLauncher final : public Launcher {
 public:
  explicit HeadlessLauncher(Events* events) : events_(events) {}
  bool launchApplication(const std::string& path, std::uint32_t options) override {
    if (events_ != nullptr) events_->add("launchApplication(" + path + ", " + std::to_string(options) + ")");
    return launches;
  }
  bool launches = true;

 private:
  Events* events_;
};

}  // namespace zelvo::platform::headless
