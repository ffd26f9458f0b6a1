/// The whole application without a window: the controller on headless elements with files in memory. Everything that
/// happens lands in one list of events.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "app/application_main.h"
#include "app/controller.h"
#include "app/globals.h"
#include "app/wire.h"
#include "engine/globals.h"
#include "platform/headless/actions.h"
#include "platform/headless/application.h"
#include "platform/headless/bundle.h"
#include "platform/headless/clock.h"
#include "platform/headless/film_observer.h"
#include "platform/headless/main_queue.h"
#include "platform/headless/panels.h"
#include "platform/headless/path_probe.h"
#include "platform/headless/scratch_paths.h"
#include "platform/headless/screen.h"
#include "platform/headless/tracking.h"
#include "platform/headless/workers.h"
#include "platform/headless/workspace.h"
#include "platform/print_sink.h"
#include "tests/app/recording_files.h"
#include "tests/support/marked_translator.h"
#include "tests/support/memory_files.h"
#include "tests/support/recorded_system.h"

namespace zelvo::tests {

using Lines = std::vector<std::string>;

inline constexpr const char* kInput = "/films/broken.avi";
inline constexpr const char* kScratch1 = "/Applications/testfile1.avi";
inline constexpr const char* kScratch2 = "/Applications/testfile2.avi";

/// All of them, one after the other.
[[nodiscard]] inline Lines joined(std::initializer_list<Lines> parts) {
  Lines all;
  for (const Lines& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

/// Notes what was asked, and of whom; answers yes and "digest".
class RecordingUpdateCheck final : public update::UpdateOperations {
 public:
  explicit RecordingUpdateCheck(platform::headless::Events& events) : events_(events) {}
  bool checkForUpdate() override { return noted("checkForUpdate"); }
  bool isInternetAvailable() override { return noted("isInternetAvailable"); }
  void checkForUpdateClicked(platform::Button* sender) override;
  void update() override { noted("update"); }
  void autoUpdateScan(const update::ScanGates& gates) override;
  void autoUpdateScanningThread() override { noted("autoUpdateScanningThread"); }
  void copyUpdator() override { noted("copyUpdator"); }
  void updateCleanupThread() override { noted("updateCleanupThread"); }
  bool isWriteDeletablePath(const std::string& path) override { return noted("isWriteDeletablePath(" + path + ")"); }
  std::optional<std::string> md5(std::optional<std::span<const std::byte>> data) override;
  std::optional<std::string> hashString(const std::string& text) override;

 private:
  bool noted(const std::string& line) {
    events_.add(line);
    return true;
  }

  platform::headless::Events& events_;
};

/// Prints into the list of events.
class EventPrint final : public platform::PrintSink {
 public:
  explicit EventPrint(platform::headless::Events& events) : events_(events) {}
  void print(std::string_view text) override { events_.add("print: " + std::string(text)); }

 private:
  platform::headless::Events& events_;
};

/// Globals are reset when it is made and when it goes. The controller is wired, but not yet woken.
class AppBench {
 public:
  AppBench(platform::MainQueue& queue, platform::Workers& workers, bool keepsEvents = true);
  ~AppBench();
  AppBench(const AppBench&) = delete;
  AppBench& operator=(const AppBench&) = delete;

  /// `init`, `awakeFromNib`, `applicationDidFinishLaunching`.
  void start();
  /// Puts the input there and chooses it in the chooser.
  MemoryFile& choose(platform::Bytes bytes, const std::string& path = kInput);
  bool press(platform::headless::HeadlessButton& button) { return actions.press(button); }
  [[nodiscard]] bool isShown(const platform::headless::HeadlessWindow& sheet) const;

  /// From now on the list of events tells, before the next event, which process-wide variables and which fields of the
  /// controller have changed: "path = /films/broken.avi".
  void watchVariables();

  /// What happened since the last look.
  [[nodiscard]] Lines takeAllEvents();
  /// The same, without the steps of the progress.
  [[nodiscard]] Lines takeEvents();
  /// The same, of those that begin with one of the given texts.
  [[nodiscard]] Lines takeEvents(const Lines& beginnings);

  platform::headless::Events events;
  MemoryFiles files;
  RecordingFiles recordingFiles{files, events};
  std::vector<std::string> openedUnattended;  ///< on a thread that may outlive the controller and its files
  RecordingFileManager fileManager{files, events};
  platform::headless::Screen screen;
  platform::headless::HeadlessLog log;
  platform::headless::HeadlessSheets sheets;
  platform::headless::HeadlessMovieLoader movies;
  platform::headless::HeadlessPanels panels{&events};
  platform::headless::HeadlessAlertPanels alerts{&events};
  platform::headless::HeadlessWaitPanels waits{&events};
  platform::NotificationCentre notifications;
  platform::headless::HeadlessTracking tracking{&events};
  platform::headless::HeadlessCursor cursor{&events};
  platform::headless::HeadlessWorkspace workspace{&events};
  platform::headless::HeadlessBundle bundle;
  platform::headless::HeadlessScratchPaths scratchPaths;
  platform::headless::HeadlessClock clock{&events};
  platform::headless::HeadlessApplication application;
  platform::headless::HeadlessActions actions;
  platform::PathMapper paths;
  platform::headless::HeadlessPathProbe pathProbe;
  RecordingUpdateCheck updateCheck{events};
  MarkedTranslator words;  ///< English, unless a test switches it on before anything is said
  platform::headless::HeadlessFilmObserver films;
  /// What the inventory sees; a test may put another system there.
  std::shared_ptr<RecordedSystem> storage = std::make_shared<RecordedSystem>(platform::PropertyDictionary{});
  EventPrint printed{events};
  std::unique_ptr<app::Orlin_Repair_AVIAppDelegate> controller;

 private:
  /// A variable, and what it was at the last look.
  struct Watched {
    std::string name;
    std::function<std::string()> look;
    std::string last;
  };
  /// Thread: any; the test's own sees to it that no other writes meanwhile.
  [[nodiscard]] Lines changedVariables();

  std::mutex watching_;
  std::vector<Watched> watched_;
};

/// One test of a flow: workers run when the test says, the main queue is pumped by hand.
class FlowTest : public testing::Test {
 protected:
  /// Lets every worker that waits run, with what it asks of the main thread.
  void runWorkers();
  /// The worker that waits longest runs to its end on a thread of its own, while the main thread serves nothing.
  void runNextOnAThread();
  /// Presses Repair and lets the run come to its end.
  void repairWhole();
  /// The same, up to the OK of the completion sheet: page 3.
  void reachResultPage();

  platform::headless::HeadlessMainQueue queue;
  platform::headless::HeadlessWorkers workers;
  AppBench app{queue, workers};
};

/// An AVI file that can be repaired: 45 video chunks, each followed by an audio chunk; a little over 512 KiB.
[[nodiscard]] platform::Bytes smallAvi();

}  // namespace zelvo::tests
