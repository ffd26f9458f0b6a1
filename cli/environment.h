/// Everything of the outside that a command may use, by reference.
#pragma once

#include <functional>

#include "cli/console.h"
#include "platform/checksums.h"
#include "platform/file_manager.h"
#include "platform/files.h"
#include "platform/film_player.h"
#include "platform/film_programs.h"
#include "platform/locked_files.h"
#include "platform/main_queue.h"
#include "platform/memory_view.h"
#include "platform/new_files.h"
#include "platform/property_lists.h"
#include "platform/relaxed.h"
#include "platform/storage_view.h"
#include "platform/trial_decoder.h"
#include "platform/workers.h"

namespace zelvo::cli {

using platform::StorageView;

struct Environment {
  platform::Files& files;
  platform::FileManager& fileManager;
  platform::NewFiles& newFiles;
  platform::Workers& workers;
  platform::MainQueue& mainQueue;
  /// Does the main queue's work until the question, asked many times a second, is answered with true.
  std::function<void(const std::function<bool()>&)> runUntil;
  std::function<StorageView()> lookAtStorage;  ///< for the commands that want it: reading it takes milliseconds
  platform::PropertyLists& propertyLists;
  platform::TrialDecoder& trialDecoder;
  platform::FilmPlayer& filmPlayer;
  Console& console;
  const platform::Relaxed<bool>& stopRequested;  ///< raised by a signal; never lowered
  // What batches stand on. Null in programs that know none.
  platform::LockedFiles* lockedFiles = nullptr;
  platform::Checksums* checksums = nullptr;
  platform::MemoryView* memory = nullptr;
  platform::FilmPrograms* filmPrograms = nullptr;
  platform::FilmParent* parent = nullptr;  ///< set when this program works on one film of a batch
};

}  // namespace zelvo::cli
