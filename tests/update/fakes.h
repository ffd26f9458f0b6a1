/// The outside of the update check as the tests have it: what is asked lands in one list of events.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/file_manager.h"
#include "platform/folder_trees.h"
#include "platform/headless/bundle.h"
#include "platform/headless/clock.h"
#include "platform/headless/elements.h"
#include "platform/headless/panels.h"
#include "platform/headless/workers.h"
#include "platform/launcher.h"
#include "platform/linux/digest.h"
#include "platform/linux/property_lists.h"
#include "platform/reachability.h"
#include "platform/web.h"
#include "tests/support/memory_files.h"
#include "update/updates.h"

namespace zelvo::tests {

using Lines = std::vector<std::string>;

[[nodiscard]] inline platform::Bytes bytesOf(std::string_view text) {
  const auto bytes = std::as_bytes(std::span(text));
  return {bytes.begin(), bytes.end()};
}

/// Answers `flags` for any address.
class FakeReachability final : public platform::Reachability {
 public:
  std::unique_ptr<platform::ReachabilityReference> createWithAddress(const platform::SocketAddress& address) override;

  std::optional<std::uint32_t> flags = platform::kReachable;
  bool makesReferences = true;
  int asked = 0;
  platform::SocketAddress lastAddress;
  int liveReferences = 0;
};

/// Answers with the bodies that are there, in pieces of three bytes.
class FakeWeb final : public platform::Web {
 public:
  bool fetch(const std::string& address, const platform::FetchLimits& limits, const platform::BodySink& sink) override;

  std::map<std::string, std::string> bodies;
  bool comesShort = false;  ///< the pieces come, and then the fetch fails
  Lines asked;
  platform::FetchLimits lastLimits;
};

class RecordingLauncher final : public platform::Launcher {
 public:
  explicit RecordingLauncher(platform::headless::Events& events) : events_(events) {}
  bool launchApplication(const std::string& path, std::uint32_t options) override {
    events_.add("launch(" + path + ", " + std::to_string(options) + ")");
    return answer;
  }
  bool answer = true;

 private:
  platform::headless::Events& events_;
};

/// Paths that are there or not. What is copied or removed is written down, and is there or gone from then on.
class RecordingTrees final : public platform::FolderTrees {
 public:
  RecordingTrees(MemoryFiles& files, platform::headless::Events& events) : files_(files), events_(events) {}
  std::error_code copy(const std::string& from, const std::string& to) override;
  std::error_code remove(const std::string& path) override;
  bool fails = false;

 private:
  MemoryFiles& files_;
  platform::headless::Events& events_;
};

/// The update check on all of them. The bundle lies at its place below "/Applications".
struct UpdateBench {
  UpdateBench();
  /// Puts the application's own list there.
  void putOwnList(const std::string& content);
  /// A dictionary of texts as a list.
  [[nodiscard]] static std::string listOf(const std::map<std::string, std::string>& members);

  platform::headless::Events events;
  MemoryFiles files;
  FakeReachability reachability;
  FakeWeb web;
  platform::linux_::LinuxPropertyLists lists;
  platform::linux_::LinuxDigest digest;
  RecordingLauncher launcher{events};
  platform::headless::HeadlessAlertPanels alerts{&events};
  RecordingTrees trees{files, events};
  platform::headless::HeadlessWorkers workers;
  platform::headless::HeadlessClock clock{&events};
  platform::headless::HeadlessBundle bundle;
  platform::PathMapper paths;
  update::Updates updates;
};

inline constexpr const char* kListAddress = "https://updates.example/list.plist";

}  // namespace zelvo::tests
