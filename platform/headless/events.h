/// What happened, as one list of text lines in order: every change of an element, every sheet, every log line.
#pragma once

#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace zelvo::platform::headless {

/// Thread: any.
class Events {
 public:
  void add(std::string line) {
    const std::lock_guard lock(mutex_);
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
