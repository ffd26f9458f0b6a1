/// A player that plays what a test has written down.
#pragma once

#include <deque>
#include <vector>

#include "platform/film_player.h"

namespace zelvo::platform::headless {

class HeadlessFilmPlayer final : public FilmPlayer {
 public:
  /// What the next calls play, one each; the last one stays. Without any there is no player.
  std::deque<std::vector<PlayEvent>> films;
  PlayEnd end = PlayEnd::played;
  bool isConfined = true;
  unsigned plays = 0;
  PlayChoices lastChoices;

  [[nodiscard]] PlayEnd play(const std::string& /*path*/, const PlayChoices& choices, const CancelMark& cancel,
                             const std::function<void(const PlayEvent&)>& take) override {
    ++plays;
    lastChoices = choices;
    if (films.empty()) return PlayEnd::noPlayer;
    const std::vector<PlayEvent> events = films.front();
    if (films.size() > 1) films.pop_front();
    for (const PlayEvent& event : events) {
      if (cancel.abandoned()) return PlayEnd::interrupted;
      take(event);
    }
    return end;
  }
  [[nodiscard]] bool wasConfined() const override { return isConfined; }
};

}  // namespace zelvo::platform::headless
