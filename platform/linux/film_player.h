/// A film player that leaves the playing to a program of its own, zelvo-avi-player. That one may crash, hang or be
/// killed; this process only ever waits for it for a limited time, and starts it again for the rest of the film.
/// Decision: decoding, A film is played in a confined program, too
#pragma once

#include <chrono>
#include <string>

#include "platform/film_player.h"

namespace zelvo::platform::linux_ {

class LinuxFilmPlayer final : public FilmPlayer {
 public:
  /// Without a sign of life while it computes. A packet takes a second at the very most.
  static constexpr std::chrono::milliseconds kLimit{10'000};
  /// The program is started again so often for one film.
  static constexpr unsigned kMaxRestarts = 8;
  /// A stream whose decoder fails so often is left out from there on.
  static constexpr unsigned kMaxFailures = 3;

  explicit LinuxFilmPlayer(std::string program, std::chrono::milliseconds limit = kLimit)
      : program_(std::move(program)), limit_(limit) {}

  /// The program that is installed in the folder of the running one.
  [[nodiscard]] static std::string programBeside(const std::string& runningProgram);

  [[nodiscard]] PlayEnd play(const std::string& path, const PlayChoices& choices, const CancelMark& cancel,
                             const std::function<void(const PlayEvent&)>& take) override;
  [[nodiscard]] bool wasConfined() const override { return wasConfined_; }

 private:
  const std::string program_;
  const std::chrono::milliseconds limit_;
  bool wasConfined_ = false;
};

}  // namespace zelvo::platform::linux_
