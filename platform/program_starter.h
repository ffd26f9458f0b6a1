/// Starts programs of the desktop with one argument, and learns how they end.
#pragma once

#include <memory>
#include <string>

namespace zelvo::platform {

/// A program that was started. It goes on when this object is gone.
class StartedProgram {
 public:
  virtual ~StartedProgram() = default;
  /// Readable once the program has ended; -1 where its end cannot be learned.
  [[nodiscard]] virtual int descriptor() const = 0;
  /// True when the program has ended and its status is not 0. Takes note of its end.
  [[nodiscard]] virtual bool hasFailed() = 0;
};

/// Thread: any.
class ProgramStarter {
 public:
  virtual ~ProgramStarter() = default;
  /// Starts `program`, looked for in the PATH, in a session of its own, with no descriptor of ours and its streams led
  /// nowhere. No shell sees the argument. Nothing when it could not be started.
  [[nodiscard]] virtual std::unique_ptr<StartedProgram> start(const std::string& program,
                                                              const std::string& argument) = 0;
};

}  // namespace zelvo::platform
