/// Running a program and looking at what it says and answers.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace zelvo::tests {

struct Ended {
  int exit = -1;    ///< exit code; -1 when a signal ended it, 127 when it could not be started
  int signal = 0;   ///< that signal
  std::string out;  ///< standard output
  std::string err;  ///< standard error
};

/// Where a program's standard error goes.
enum class ErrorStream { pipe, terminal };

/// A program that was started and runs beside the test.
class Program {
 public:
  /// `command`: the program, looked for in PATH when it is no path, and its arguments. Signals are as a terminal's
  /// shell would leave them.
  explicit Program(const std::vector<std::string>& command, ErrorStream error = ErrorStream::pipe);
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;
  /// Kills it when it still runs.
  ~Program();

  /// Waits until standard error holds `text`. False when it ends before.
  [[nodiscard]] bool waitForError(const std::string& text);
  void send(int signal) const;
  [[nodiscard]] pid_t id() const { return id_; }
  /// Reads all it says and waits for its end.
  [[nodiscard]] Ended wait();

 private:
  /// Reads what is there now, or waits for more. False once both streams have ended.
  bool readSome();

  pid_t id_ = -1;
  int outStream_ = -1;
  int errStream_ = -1;
  Ended ended_;
};

[[nodiscard]] Ended run(const std::vector<std::string>& command);

/// zelvo-avi with these arguments.
[[nodiscard]] std::vector<std::string> zelvoAvi(const std::vector<std::string>& arguments);
[[nodiscard]] Ended runZelvoAvi(const std::vector<std::string>& arguments);

/// Waits, without polling, until an entry whose name begins with a beginning appears in a folder.
class FolderWatch {
 public:
  explicit FolderWatch(const std::string& folder);
  FolderWatch(const FolderWatch&) = delete;
  FolderWatch& operator=(const FolderWatch&) = delete;
  ~FolderWatch();
  /// False when nothing of the kind has appeared after a minute.
  [[nodiscard]] bool waitFor(const std::string& beginning) const;

 private:
  int stream_;
};

}  // namespace zelvo::tests
