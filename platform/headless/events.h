/// What happened, as one list of text lines in order: every change of an element, every sheet, every log line.
#pragma once

#include <functional>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace zelvo::platform::headless {

/// A switch as a line tells it.
[[nodiscard]] inline const char* yesOrNo(bool value) { return value ? "yes" : "no"; }

/// Thread: any.
class Events {
 public:
  /// Asked before each line is added: lines of what has changed without telling, which come before it. Set before there
  /// are other threads.
  std::function<std::vector<std::string>()> changedBefore;

  void add(std::string line) {
    std::vector<std::string> before;
    if (changedBefore) before = changedBefore();
    const std::lock_guard lock(mutex_);
    lines_.insert(lines_.end(), before.begin(), before.end());
    lines_.push_back(std::move(line));
  }
  [[nodiscard]] std::vector<std::string> lines() const {
    const std::lock_guard lock(mutex_);
    return lines_;
  }
  void clear() {
    const std::lock_guard lock(mutex_);
    lines_.clear();
  }

 private:
  mutable std::mutex mutex_;
  std::vector<std::string> lines_;
};

}  // namespace zelvo::platform::headless
