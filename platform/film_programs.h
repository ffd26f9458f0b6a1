/// Programs that work on one film each, beside this one: what goes wrong in one of them ends nothing else. Sizes are in
/// bytes.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace zelvo::platform {

class FileLock;

/// How a program ended.
struct ProgramEnd {
  int exit = -1;                 ///< its exit code; -1 when a signal ended it
  int signal = 0;                ///< that signal
  std::uint64_t peakMemory = 0;  ///< the most that it or a program of its own held at once
};

/// A program that was started. It is killed when this object goes while it runs.
class FilmProgram {
 public:
  virtual ~FilmProgram() = default;
  /// What it has sent since the last call: whole lines, each without its end.
  [[nodiscard]] virtual std::vector<std::string> takeMessages() = 0;
  /// Answers it; a program that is gone hears nothing.
  virtual void answer(std::string_view line) = 0;
  /// What it has printed so far: standard output and standard error.
  [[nodiscard]] virtual const std::string& printed() const = 0;
  [[nodiscard]] virtual const std::string& complaints() const = 0;
  /// Asks it to end in order.
  virtual void stop() = 0;
  virtual void kill() = 0;
  /// Set once it has ended and all it said has been taken in.
  [[nodiscard]] virtual std::optional<ProgramEnd> end() const = 0;
};

struct FilmProgramRequest {
  std::vector<std::string> arguments;  ///< a command line of this program, for one film
  unsigned threads = 0;                ///< how many it may use; 0 leaves it to it
  bool tellsProgress = false;
  bool takesChecksums = false;
  /// Stays locked until this program and every one that was started with it have ended; null for none.
  const FileLock* lock = nullptr;
};

/// Thread: one.
class FilmPrograms {
 public:
  virtual ~FilmPrograms() = default;
  struct Started {
    std::unique_ptr<FilmProgram> program;
    std::error_code error;  ///< why there is none
  };
  [[nodiscard]] virtual Started start(const FilmProgramRequest& request) = 0;
  /// Takes in what the programs say, and waits for that for at most so long. A signal ends the wait.
  virtual void wait(std::chrono::milliseconds most) = 0;
};

/// The other end: how a program that was started so speaks to the one that started it.
/// Thread: main.
class FilmParent {
 public:
  virtual ~FilmParent() = default;
  [[nodiscard]] virtual bool wantsProgress() const = 0;
  [[nodiscard]] virtual bool wantsChecksums() const = 0;
  virtual void tell(std::string_view line) = 0;
  /// Sends the line and waits for its answer; false when it is not "go", and when the other one is gone.
  [[nodiscard]] virtual bool ask(std::string_view line) = 0;
};

}  // namespace zelvo::platform
