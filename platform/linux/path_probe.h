/// A path probe that sends a child process. The child may hang in the system, where not even a kill ends it; this
/// process never waits for it. // Decision: inventory, A child asks paths that may hang
#pragma once

#include <sys/types.h>

#include <chrono>
#include <mutex>
#include <string>
#include <vector>

#include "platform/path_probe.h"

namespace zelvo::platform::linux_ {

class LinuxPathProbe final : public PathProbe {
 public:
  static constexpr std::chrono::milliseconds kLimit{1000};

  /// For so long a path that did not answer, and all below it, is not asked again but taken for dead: whoever goes
  /// through several steps waits for the first one only.
  static constexpr std::chrono::milliseconds kSilence{3000};

  /// `program` takes `kProbeOption` and the paths, and does what `answerForPaths` does.
  explicit LinuxPathProbe(std::string program, std::chrono::milliseconds limit = kLimit,
                          std::chrono::milliseconds silence = kSilence);
  LinuxPathProbe(const LinuxPathProbe&) = delete;
  LinuxPathProbe& operator=(const LinuxPathProbe&) = delete;
  ~LinuxPathProbe() override;

  /// The running program itself, for one that begins with `isProbeChild`.
  [[nodiscard]] static std::string thisProgram() { return "/proc/self/exe"; }
  /// The small program that is installed in the folder of the running one.
  [[nodiscard]] static std::string programBeside(const std::string& runningProgram);

  [[nodiscard]] std::vector<PathAnswer> ask(const std::vector<std::string>& paths) override;

 private:
  struct Silent {
    std::string path;
    std::chrono::steady_clock::time_point until;
  };

  [[nodiscard]] bool isSilent(const std::string& path);
  void keep(pid_t child, const std::vector<std::string>& paths, const std::vector<PathAnswer>& answers);
  void takeNoteOfEnded();

  const std::string program_;
  const std::chrono::milliseconds limit_;
  const std::chrono::milliseconds silence_;
  std::mutex mutex_;             ///< guards what follows
  std::vector<pid_t> children_;  ///< whose end has not been taken note of
  std::vector<Silent> silent_;   ///< paths that did not answer
};

}  // namespace zelvo::platform::linux_
