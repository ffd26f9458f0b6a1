/// What the controller uses of the platform, by reference.
#pragma once

#include <functional>
#include <string>

#include "platform/application.h"
#include "platform/bundle.h"
#include "platform/clock.h"
#include "platform/file_manager.h"
#include "platform/files.h"
#include "platform/film_observer.h"
#include "platform/log.h"
#include "platform/main_queue.h"
#include "platform/movies.h"
#include "platform/notification_centre.h"
#include "platform/panels.h"
#include "platform/path_mapper.h"
#include "platform/path_probe.h"
#include "platform/print_sink.h"
#include "platform/scratch_paths.h"
#include "platform/sheets.h"
#include "platform/storage_view.h"
#include "platform/tracking.h"
#include "platform/translator.h"
#include "platform/workers.h"
#include "platform/workspace.h"
#include "update/update_operations.h"

namespace zelvo::app {

struct AppServices {
  platform::Application& application;
  platform::Files& files;
  /// Opens a file for reading as `files` does, on a thread that nobody waits for: what it uses lives as long as it
  /// does.
  std::function<platform::Opened<platform::ReadableFile>(const std::string& path)> openUnattended;
  platform::FileManager& fileManager;
  platform::ScratchPaths& scratchPaths;
  platform::Workers& workers;
  platform::MainQueue& mainQueue;
  platform::Clock& clock;
  platform::Log& log;
  platform::Sheets& sheets;
  platform::Panels& panels;
  platform::AlertPanels& alertPanels;
  platform::WaitPanels& waitPanels;
  platform::MovieLoader& movies;
  platform::NotificationCentre& notifications;
  platform::Tracking& tracking;
  platform::Cursor& cursor;
  platform::Workspace& workspace;
  const platform::Bundle& bundle;
  const platform::PathMapper& paths;
  platform::PathProbe& pathProbe;  ///< asked before the main thread looks at a path that the user named
  update::UpdateOperations& updateCheck;
  platform::FilmObserver& films;  ///< hears of the chosen film
  /// Reads the machine's storage again.
  std::function<platform::StorageView()> lookAtStorage;
  platform::PrintSink& printed;  ///< where the inventory's dumps and failures go: standard output
  std::string homeDirectory;     ///< the user's, without a slash at its end
  /// Says what the application says on its own. What is given is said in English.
  const platform::Translator& translator = platform::englishTranslator();
};

}  // namespace zelvo::app
