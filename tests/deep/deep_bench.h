/// The deep repair without a window: its flow on headless elements, real files in a folder of the test's own, and
/// programs that the test plays. Workers run when the test says.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "deep/deep_repair.h"
#include "platform/headless/actions.h"
#include "platform/headless/clock.h"
#include "platform/headless/deep_screen.h"
#include "platform/headless/events.h"
#include "platform/headless/film_choosers.h"
#include "platform/headless/film_programs.h"
#include "platform/headless/main_queue.h"
#include "platform/headless/panels.h"
#include "platform/headless/path_probe.h"
#include "platform/headless/screen.h"
#include "platform/headless/settings.h"
#include "platform/headless/workers.h"
#include "platform/headless/workspace.h"
#include "platform/linux/file_manager.h"
#include "platform/linux/files.h"
#include "platform/linux/locked_files.h"
#include "platform/linux/new_files.h"
#include "salvage/salvage_report.h"
#include "tests/support/temp_folder.h"

namespace zelvo::tests {

/// A film with a stream of pictures and one of sound, of which two pictures are lost and one is hurt.
[[nodiscard]] salvage::SalvageReport hurtReport();
/// Of that film when nothing of it can be brought back.
[[nodiscard]] salvage::SalvageReport hopelessReport();

/// Everything that the flow stands on but its threads.
class DeepBench {
 protected:
  DeepBench(platform::MainQueue& queue, platform::Workers& workers,
            std::function<std::unique_ptr<platform::FilmPrograms>()> makePrograms);

  /// The parts of the bench, with new files made by `newFilesToUse`.
  [[nodiscard]] deep::DeepServices servicesOf(platform::MainQueue& queue, platform::Workers& workers,
                                              platform::NewFiles& newFilesToUse,
                                              std::function<std::unique_ptr<platform::FilmPrograms>()> makePrograms);

  bool press(platform::headless::HeadlessButton& button) { return actions.press(button); }
  /// Titles of the alerts that were shown since the last look.
  std::vector<std::string> takeAlerts();
  /// Names in the folder of films that are not saved yet, below the window's own.
  [[nodiscard]] std::vector<std::string> scratchNames();

  TempFolder temp;
  platform::headless::Events events;
  platform::linux_::LinuxFiles files;
  platform::linux_::LinuxFileManager fileManager;
  platform::linux_::LinuxNewFiles newFiles;
  platform::linux_::LinuxLockedFiles lockedFiles;
  platform::headless::HeadlessClock clock{&events};
  platform::headless::HeadlessLog log{&events};
  platform::headless::HeadlessSheets sheets;
  platform::headless::HeadlessAlertPanels alerts{&events};
  platform::headless::HeadlessFilmChoosers choosers;
  platform::headless::HeadlessMovieLoader movies{&events};
  platform::headless::HeadlessWorkspace workspace{&events};
  platform::headless::HeadlessClipboard clipboard;
  platform::headless::HeadlessSettings settings;
  platform::headless::HeadlessPathProbe pathProbe;
  platform::headless::HeadlessActions actions;
  platform::headless::DeepScreen screen;
  std::vector<std::string> scratchFolders{temp / "cache"};
  std::unique_ptr<deep::DeepRepair> deepRepair;

 private:
  std::size_t alertsSeen_ = 0;
};

struct HeadlessThreads {
  platform::headless::HeadlessMainQueue queue;
  platform::headless::HeadlessWorkers workers;
  platform::headless::HeadlessFilmPrograms programs;
};

/// Programs are played by the test, and workers run when it says.
class DeepTest : public testing::Test, protected HeadlessThreads, protected DeepBench {
 protected:
  DeepTest();
  ~DeepTest() override { deepRepair.reset(); }

  using Program = platform::headless::PlayedProgram;

  /// Lets every worker that waits run to its end, with what it asks of the main thread. Programs do as `play` says; one
  /// that was stopped ends as they do then.
  void runWorkers();

  /// Puts a damaged film there and chooses it.
  std::string choose(const std::string& name = "broken.avi");
  /// The same, repaired as `report` says, up to its result page.
  std::string reachResult();

  /// The program tells its end, and ends with `exit`.
  static void end(Program& program, int exit, const std::string& reason = {});
  /// It writes what it was asked for, and ends.
  void repair(Program& program) const;
  /// It tells how far it is.
  static void tell(Program& program, const std::string& stage, std::uint64_t done, std::uint64_t all);
  /// What follows an option of its command line, of the last such option; empty without one.
  [[nodiscard]] static std::string valueOf(const Program& program, const std::string& option);

  /// What running programs do when they are waited for.
  std::function<void(Program&)> play = [this](Program& program) { repair(program); };
  salvage::SalvageReport report = hurtReport();
  std::string repairedBytes = "the repaired film";
};

}  // namespace zelvo::tests
