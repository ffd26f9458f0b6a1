/// Where log lines go on Linux: the system log for the window, standard error for the command line.
#pragma once

#include <string>

#include "platform/log.h"

namespace zelvo::platform::linux_ {

/// Text with every control character replaced by \xNN, so that a line stays one line and cannot steer a terminal.
[[nodiscard]] std::string withoutControlCharacters(std::string_view text);

/// Lines to the system log under the name given, which must outlive the log.
class SystemLog final : public Log {
 public:
  explicit SystemLog(const char* name);
  ~SystemLog() override;
  void line(std::string_view text) override;
};

/// Lines to standard error, each after `prefix`.
class StandardErrorLog final : public Log {
 public:
  StandardErrorLog(std::string prefix, bool tracesPositions);
  void line(std::string_view text) override;
  [[nodiscard]] bool tracesPositions() const override { return tracesPositions_; }

 private:
  std::string prefix_;
  bool tracesPositions_;
};

}  // namespace zelvo::platform::linux_
