/// Programs for one film each: the command line, once more where it is this very program. Both ends.
/// Decision: collections, Each film has a program of its own
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/film_programs.h"
#include "platform/linux/descriptor.h"

namespace zelvo::platform::linux_ {

/// First argument of a program that works on one film for another; after it how many threads it may use, a "p" when its
/// progress is wanted, and a "c" when checksums are.
inline constexpr std::string_view kFilmOption = "--for-batch=";

class LinuxFilmPrograms final : public FilmPrograms {
 public:
  /// `program` is the path of the program to start.
  explicit LinuxFilmPrograms(std::string program) : program_(std::move(program)) {}
  /// The command line's program, which lies in the same folder as a program.
  [[nodiscard]] static std::string programBeside(const std::string& runningProgram);
  [[nodiscard]] Started start(const FilmProgramRequest& request) override;
  void wait(std::chrono::milliseconds most) override;

 private:
  class Program;
  const std::string program_;
  std::vector<Program*> running_;
};

class LinuxFilmParent final : public FilmParent {
 public:
  /// Whether a program that was started with these arguments works for another one.
  [[nodiscard]] static bool isAsked(std::span<char* const> arguments);
  /// Only where that is so. From now on this program is asked to end when the other one has ended, and the system
  /// takes this one first when it runs out of memory.
  explicit LinuxFilmParent(std::string_view option);

  /// How many threads this program may use; 0 when nothing was said.
  [[nodiscard]] unsigned threads() const { return threads_; }
  [[nodiscard]] bool wantsProgress() const override { return wantsProgress_; }
  [[nodiscard]] bool wantsChecksums() const override { return wantsChecksums_; }
  void tell(std::string_view line) override;
  [[nodiscard]] bool ask(std::string_view line) override;

 private:
  Descriptor socket_;
  unsigned threads_ = 0;
  bool wantsProgress_ = false;
  bool wantsChecksums_ = false;
};

}  // namespace zelvo::platform::linux_
