#include "platform/qt/chooser/folder_reader.h"

#include <atomic>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

#include "platform/qt/chooser/folder_listing.h"

namespace zelvo::platform::qt {

namespace {

FolderListing readSorted(ChooserFiles& files, const std::string& folder, const FileFilter& filter,
                         const std::atomic<bool>& abandoned) {
  FolderListing listing = files.read(folder, filter, abandoned);
  sortByName(listing.entries);
  return listing;
}

}  // namespace

/// Shared by the main thread and the thread that reads, whichever lives longer.
struct FolderReader::Reading {
  std::atomic<bool> abandoned{false};
  std::mutex mutex;
  MainQueue* queue = nullptr;  ///< guarded; null once nobody waits any more
  std::function<void(FolderListing listing)> told;
};

void FolderReader::abandon() {
  if (!reading_) return;
  reading_->abandoned = true;
  {
    const std::scoped_lock lock(reading_->mutex);
    reading_->queue = nullptr;
  }
  reading_.reset();
}

void FolderReader::read(const std::string& folder, const FileFilter& filter,
                        std::function<void(FolderListing listing)> told) {
  abandon();
  reading_ = std::make_shared<Reading>();
  reading_->queue = &queue_;
  reading_->told = std::move(told);
  const auto work = [reading = reading_, files = files_, folder, filter] {
    auto listing = std::make_shared<FolderListing>(readSorted(*files, folder, filter, reading->abandoned));
    const std::scoped_lock lock(reading->mutex);
    if (reading->queue == nullptr) return;
    reading->queue->perform([reading, listing] {
      if (!reading->abandoned) reading->told(std::move(*listing));
    });
  };
  try {
    std::thread(work).detach();
  } catch (const std::system_error&) {
    // No thread to be had: better slowly than not at all.
    reading_->told(readSorted(*files_, folder, filter, reading_->abandoned));
  }
}

}  // namespace zelvo::platform::qt
