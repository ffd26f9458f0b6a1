/// A file, window by window, each read and searched for where codes may begin. A helper thread reads ahead, so that two
/// processors share the work; what is found does not depend on it. Offsets and sizes are in bytes.
#pragma once

#include <array>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <system_error>
#include <vector>

#include "avi/input_file.h"
#include "platform/page_bytes.h"
#include "platform/workers.h"

namespace zelvo::salvage {

/// What one window holds.
struct SearchedWindow {
  explicit SearchedWindow(std::size_t size);

  std::uint64_t start = 0;
  std::size_t wanted = 0;     ///< what was asked for
  std::size_t count = 0;      ///< what was read
  std::error_code error;      ///< why that is less, unless the file ends
  bool isLast = false;        ///< nothing readable follows it
  platform::PageBytes bytes;  ///< with room for the search's margin
  /// Rising, from `start` on; of a window that others follow the last `SearchedWindows::kLookAhead` are left to the
  /// next.
  std::vector<std::uint32_t> beginnings;
};

/// Thread: one.
class SearchedWindows {
 public:
  /// What is looked at after a position: three entries of a table.
  static constexpr std::size_t kLookAhead = 64;
  static constexpr std::size_t kPage = 4096;

  /// Windows of `windowSize`, in whole pages, at least two. Without `workers`, without a second processor or where
  /// there is no thread to be had, nothing is read ahead.
  SearchedWindows(avi::InputFile& input, std::size_t windowSize, platform::Workers* workers);
  SearchedWindows(const SearchedWindows&) = delete;
  SearchedWindows& operator=(const SearchedWindows&) = delete;
  ~SearchedWindows();

  /// The window that begins at `start`, a multiple of `kPage`, and ends before `limit`; valid until the next call. The
  /// next one is expected to begin at the last page of this one.
  /// Failure: once a read has come short, nothing is read ahead any more.
  [[nodiscard]] const SearchedWindow& at(std::uint64_t start, std::uint64_t limit);

 private:
  static constexpr std::size_t kWindows = 4;

  [[nodiscard]] std::uint64_t startOf(std::uint64_t job) const { return first_ + job * (windowSize_ - kPage); }
  [[nodiscard]] SearchedWindow& windowOf(std::uint64_t job) { return *windows_[job % kWindows]; }
  [[nodiscard]] bool mayReadAhead() const;
  void restart(std::uint64_t start, std::uint64_t limit, std::unique_lock<std::mutex>& lock);
  void perform(std::uint64_t job, std::unique_lock<std::mutex>& lock);
  void readAndSearch(SearchedWindow& window, std::uint64_t start, std::uint64_t limit);
  void serve();

  avi::InputFile& input_;
  const std::size_t windowSize_;
  const bool isShared_;  ///< with a helper, which looks at it while it is still being started
  std::array<std::unique_ptr<SearchedWindow>, kWindows> windows_;

  std::mutex mutex_;
  std::condition_variable changed_;
  // Windows are numbered from where the row at hand began.
  std::uint64_t first_ = 0;
  std::uint64_t limit_ = 0;
  std::uint64_t next_ = 0;     ///< what `at` will be asked for
  std::uint64_t claimed_ = 0;  ///< windows before it are read, or somebody reads them
  std::array<bool, kWindows> isDone_{};
  unsigned busy_ = 0;  ///< threads that read
  bool hasComeShort_ = false;
  bool isEnding_ = false;
  std::shared_ptr<platform::Worker> helper_;
};

}  // namespace zelvo::salvage
