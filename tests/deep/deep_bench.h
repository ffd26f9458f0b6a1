/// The deep repair without a window: its flow on headless elements, real files in a folder of the test's own, and
/// programs that the test plays. Workers run when the test says.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "deep/deep_repair.h"
#include "platform/headless/actions.h"
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
#include "tests/support/temp_folder.h"

namespace zelvo::tests {

class DeepTest : public testing::Test {
 protected:
  DeepTest();

  bool press(platform::headless::HeadlessButton& button) { return actions.press(button); }
  /// Lets every worker that waits run to its end, with what it asks of the main thread.
  void runWorkers();

  TempFolder temp;
  platform::headless::Events events;
  platform::headless::HeadlessMainQueue queue;
  platform::headless::HeadlessWorkers workers;
  platform::linux_::LinuxFiles files;
  platform::linux_::LinuxFileManager fileManager;
  platform::linux_::LinuxNewFiles newFiles;
  platform::linux_::LinuxLockedFiles lockedFiles;
  platform::headless::HeadlessLog log{&events};
  platform::headless::HeadlessSheets sheets{queue, &events};
  platform::headless::HeadlessAlertPanels alerts{&events};
  platform::headless::HeadlessFilmChoosers choosers;
  platform::headless::HeadlessMovieLoader movies{&events};
  platform::headless::HeadlessWorkspace workspace{&events};
  platform::headless::HeadlessClipboard clipboard;
  platform::headless::HeadlessSettings settings;
  platform::headless::HeadlessPathProbe pathProbe;
  platform::headless::HeadlessFilmPrograms programs;
  platform::headless::HeadlessActions actions;
  platform::headless::DeepScreen screen;
  std::unique_ptr<deep::DeepRepair> deepRepair;
};

}  // namespace zelvo::tests
