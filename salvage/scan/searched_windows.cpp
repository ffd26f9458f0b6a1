// Whoever is free takes the next window of the row, the reader of the row too while it waits. The window that the
// reader looks at and those after it share a ring.
#include "salvage/scan/searched_windows.h"

#include <algorithm>

#include "salvage/scan/code_search.h"

namespace zelvo::salvage {

// Two beginnings are two bytes apart, so the helper never asks for memory.
SearchedWindow::SearchedWindow(std::size_t size) : bytes(size + kSearchMargin) { beginnings.reserve(size / 2 + 1); }

SearchedWindows::SearchedWindows(avi::InputFile& input, std::size_t windowSize, platform::Workers* workers)
    : input_(input), windowSize_(windowSize), isShared_(workers != nullptr && workers->processors() > 1) {
  for (auto& window : windows_) {
    window = std::make_unique<SearchedWindow>(windowSize);
    if (!isShared_) return;
  }
  helper_ = workers->startHelper([this] { serve(); });
}

SearchedWindows::~SearchedWindows() {
  {
    const std::lock_guard lock(mutex_);
    isEnding_ = true;
  }
  changed_.notify_all();
  if (helper_) helper_->join();
}

/// Whether a window after the one that is looked at waits to be read and has a place.
bool SearchedWindows::mayReadAhead() const {
  return isShared_ && !hasComeShort_ && next_ > 0 && claimed_ < next_ - 1 + kWindows && startOf(claimed_) < limit_;
}

void SearchedWindows::readAndSearch(SearchedWindow& window, std::uint64_t start, std::uint64_t limit) {
  window.start = start;
  window.wanted = static_cast<std::size_t>(std::min<std::uint64_t>(windowSize_, limit - std::min(limit, start)));
  const platform::IoResult result = input_.tryRead(start, std::span(window.bytes).first(window.wanted));
  window.count = result.count;
  window.error = result.error;
  window.isLast = window.count < window.wanted || start + window.count == limit;
  std::fill_n(window.bytes.begin() + window.count, kSearchMargin, std::byte{0});
  window.beginnings.clear();
  const std::size_t positions = window.count - (window.isLast ? 0 : kLookAhead);
  findCodeBeginnings(std::span(window.bytes).first(window.count + kSearchMargin), positions, window.beginnings);
}

/// Reads the window that was just claimed.
void SearchedWindows::perform(std::uint64_t job, std::unique_lock<std::mutex>& lock) {
  const std::uint64_t start = startOf(job);
  const std::uint64_t limit = limit_;
  SearchedWindow& window = isShared_ ? windowOf(job) : *windows_[0];
  isDone_[job % kWindows] = false;
  ++busy_;
  lock.unlock();
  readAndSearch(window, start, limit);
  lock.lock();
  --busy_;
  isDone_[job % kWindows] = true;
  if (window.count < window.wanted) hasComeShort_ = true;
  changed_.notify_all();
}

void SearchedWindows::serve() {
  std::unique_lock lock(mutex_);
  while (true) {
    changed_.wait(lock, [this] { return isEnding_ || mayReadAhead(); });
    if (isEnding_) return;
    perform(claimed_++, lock);
  }
}

void SearchedWindows::restart(std::uint64_t start, std::uint64_t limit, std::unique_lock<std::mutex>& lock) {
  limit_ = 0;  // Nobody begins another window.
  changed_.wait(lock, [this] { return busy_ == 0; });
  first_ = start;
  limit_ = limit;
  next_ = claimed_ = 0;
}

const SearchedWindow& SearchedWindows::at(std::uint64_t start, std::uint64_t limit) {
  std::unique_lock lock(mutex_);
  if (next_ == 0 || start != startOf(next_) || limit != limit_) restart(start, limit, lock);
  const std::uint64_t job = next_++;
  if (claimed_ <= job) perform(claimed_++, lock);
  changed_.notify_all();
  while (!isDone_[job % kWindows]) {
    if (mayReadAhead()) {
      perform(claimed_++, lock);
    } else {
      changed_.wait(lock);
    }
  }
  return isShared_ ? windowOf(job) : *windows_[0];
}

}  // namespace zelvo::salvage
