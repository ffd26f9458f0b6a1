/// Where the program writes: results to standard output; messages, log lines and the progress line to standard error.
/// What goes to standard error is made printable here. A result goes out as it is: whoever makes it has escaped what
/// came from outside, as text or as JSON wants it.
#pragma once

#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "platform/log.h"
#include "salvage/batch_queue.h"

namespace zelvo::cli {

/// Thread: `logLine` any; the rest main.
class Console {
 public:
  using ProgressTaker = std::function<void(std::string_view line, const salvage::FilmStep& step)>;

  /// A result that goes to a terminal makes a progress line give way, which may stand on that very terminal.
  explicit Console(bool errorIsTerminal, bool resultIsTerminal = false)
      : errorIsTerminal_(errorIsTerminal), resultIsTerminal_(resultIsTerminal) {}

  /// Nothing but results and errors from now on: no progress, no warnings.
  void setQuiet(bool quiet) { quiet_ = quiet; }
  [[nodiscard]] bool isQuiet() const { return quiet_; }

  /// Adds to standard output, exactly as it is. False once a write has failed (a closed pipe, a full disk).
  bool result(std::string_view text);
  /// Passes on what is buffered of the result.
  bool flushResult();
  /// Why a write of the result failed; empty while none did.
  [[nodiscard]] std::error_code resultError() const { return resultError_; }

  /// One line to standard error after the program's name: an error. Always shown.
  void error(std::string_view sentence);
  /// The same for what the user may like to know.
  void warning(std::string_view sentence);
  /// One line to standard error, unless the console is quiet.
  void note(std::string_view line);
  /// One log line; a progress line gives way to it.
  void logLine(std::string_view line);

  /// Whether anybody sees a progress line.
  [[nodiscard]] bool showsProgress() const { return (errorIsTerminal_ || progressTo_) && !quiet_; }
  /// Replaces the progress line; an empty one takes it away. None is drawn after a result whose line is not ended.
  /// `step` says the same to whoever takes the progress.
  void progress(std::string_view line, const salvage::FilmStep& step = {});
  /// The same of several lines, one below the other. What a terminal has no room for is cut off.
  void progressLines(const std::vector<std::string>& lines);
  /// From now on progress goes there, and is not drawn.
  void setProgressTo(ProgressTaker to) { progressTo_ = std::move(to); }

 private:
  void writeError(std::string_view line);
  /// What takes the progress lines away that stand there; empty when there are none.
  [[nodiscard]] std::string erasure() const;

  const bool errorIsTerminal_;
  const bool resultIsTerminal_;
  bool quiet_ = false;
  std::error_code resultError_;
  bool resultLineIsOpen_ = false;  ///< on a terminal
  std::mutex mutex_;               ///< guards standard error and the progress line
  std::string progressLine_;       ///< what is drawn, with line ends between several
  ProgressTaker progressTo_;
};

/// The log of a run: lines to the console when they are wanted.
class ConsoleLog final : public platform::Log {
 public:
  /// `verbosity`: 0 no lines, 1 the log's lines, 2 also those that come once per byte position.
  ConsoleLog(Console& console, int verbosity) : console_(console), verbosity_(verbosity) {}
  void line(std::string_view text) override;
  [[nodiscard]] bool tracesPositions() const override { return verbosity_ > 1; }

 private:
  Console& console_;
  const int verbosity_;
};

}  // namespace zelvo::cli
