/// Sends what a copy writes to its medium while the copy goes on, on a thread of its own, so that the last flush is
/// short and whoever copies can redraw meanwhile. Sizes and positions are in bytes.
/// Decision: runs, Saved bytes go out as the copy goes
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <system_error>

#include "platform/files.h"
#include "platform/workers.h"

namespace zelvo::app {

/// Thread: one, which also writes the file.
class WriteOut {
 public:
  /// So much is sent together.
  static constexpr std::uint64_t kStep = 4U << 20U;
  /// A copy that is so far ahead of the medium had better wait.
  static constexpr std::uint64_t kMaxAhead = 4 * kStep;

  /// `file` outlives it. Where no thread is to be had, everything is left to the last flush.
  WriteOut(platform::WritableFile& file, platform::Workers& workers);
  /// Ends without the last flush, when there was none.
  ~WriteOut();
  WriteOut(const WriteOut&) = delete;
  WriteOut& operator=(const WriteOut&) = delete;

  /// The file is written up to `end`.
  void wroteUpTo(std::uint64_t end);
  /// Waits until the copy is no longer too far ahead, but no longer than a redraw may wait. Answers whether it may go
  /// on.
  [[nodiscard]] bool mayGoOn();

  /// Nothing more will be written: the rest is sent, and the file flushed.
  void finish();
  /// Waits for that flush, but no longer than a redraw may wait. Answers whether it is done.
  [[nodiscard]] bool isFlushed();
  /// Why the file does not lie whole on its medium; once it is flushed.
  [[nodiscard]] std::error_code error() const;

 private:
  void work();
  template <class Condition>
  [[nodiscard]] bool waitFor(Condition condition);

  platform::WritableFile& file_;
  mutable std::mutex mutex_;
  std::condition_variable changed_;
  std::uint64_t written_ = 0;
  std::uint64_t sent_ = 0;
  bool finishing_ = false;
  bool abandoned_ = false;
  bool flushed_ = false;
  std::error_code error_;
  std::shared_ptr<platform::Worker> helper_;  ///< none when no thread was to be had
};

}  // namespace zelvo::app
