/// What the deep repair of the window uses of the platform, by reference.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/clipboard.h"
#include "platform/clock.h"
#include "platform/file_manager.h"
#include "platform/files.h"
#include "platform/film_choosers.h"
#include "platform/film_programs.h"
#include "platform/locked_files.h"
#include "platform/log.h"
#include "platform/main_queue.h"
#include "platform/movies.h"
#include "platform/new_files.h"
#include "platform/panels.h"
#include "platform/path_probe.h"
#include "platform/settings.h"
#include "platform/sheets.h"
#include "platform/translator.h"
#include "platform/workers.h"
#include "platform/workspace.h"

namespace zelvo::deep {

struct DeepServices {
  platform::Files& files;
  platform::FileManager& fileManager;
  platform::NewFiles& newFiles;
  platform::LockedFiles& lockedFiles;
  platform::Workers& workers;
  platform::MainQueue& mainQueue;
  platform::Clock& clock;
  platform::Log& log;
  platform::Sheets& sheets;
  platform::AlertPanels& alertPanels;
  platform::FilmChoosers& choosers;
  platform::MovieLoader& movies;  ///< their ends are told to a centre of their own
  platform::Workspace& workspace;
  platform::Clipboard& clipboard;
  platform::Settings& settings;
  platform::PathProbe& pathProbe;
  const platform::Translator& translator;
  /// Programs for the films of one run, for the thread that asks.
  std::function<std::unique_ptr<platform::FilmPrograms>()> makePrograms;
  /// Folders for what is not saved yet, those first that are to be taken first. They need not exist; what lies above
  /// the last one need not either. Thread: main.
  std::function<std::vector<std::string>()> scratchFolders;
  std::int64_t process = 0;  ///< number of this program among those that run
  /// How long a program may take to end in order after a stop, before it is killed.
  std::chrono::milliseconds patience = std::chrono::seconds(3);
};

}  // namespace zelvo::deep
