/// Memory as /proc and the control groups tell it.
#pragma once

#include <string>

#include "platform/memory_view.h"

namespace zelvo::platform::linux_ {

class LinuxMemoryView final : public MemoryView {
 public:
  /// `root` stands for "/" in a test.
  explicit LinuxMemoryView(std::string root = {}) : root_(std::move(root)) {}
  /// The least of what the system has and of what each control group above this program leaves it, by the first and the
  /// second version of them.
  [[nodiscard]] std::optional<std::uint64_t> available() override;

 private:
  const std::string root_;
};

}  // namespace zelvo::platform::linux_
