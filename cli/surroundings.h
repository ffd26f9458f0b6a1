/// Everything of the outside that a command may use, by reference.
#pragma once

#include <functional>

#include "cli/console.h"
#include "platform/file_manager.h"
#include "platform/files.h"
#include "platform/main_queue.h"
#include "platform/movies.h"
#include "platform/new_files.h"
#include "platform/outlets.h"
#include "platform/relaxed.h"
#include "platform/sheets.h"
#include "platform/workers.h"

namespace zelvo::cli {

struct Surroundings {
  platform::Files& files;
  platform::FileManager& fileManager;
  platform::NewFiles& newFiles;
  platform::Workers& workers;
  platform::MainQueue& mainQueue;
  /// Does the main queue's work until the question, asked many times a second, is answered with true.
  std::function<void(const std::function<bool()>&)> runUntil;
  platform::MovieLoader& movies;
  platform::Sheets& sheets;
  const platform::JobOutlets& outlets;  ///< elements that nobody looks at
  Console& console;
  const platform::Relaxed<bool>& stopRequested;  ///< raised by a signal; never lowered
};

}  // namespace zelvo::cli
