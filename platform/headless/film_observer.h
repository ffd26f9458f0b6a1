/// Hears of films and writes down what it was told. Thread: main.
#pragma once

#include <string>
#include <vector>

#include "platform/film_observer.h"

namespace zelvo::platform::headless {

class HeadlessFilmObserver final : public FilmObserver {
 public:
  void filmChosen(const std::string& path) override { heard.push_back("chosen " + path); }
  void choiceCleared() override { heard.emplace_back("cleared"); }
  void filmRefused(const std::string& path) override { heard.push_back("refused " + path); }
  void filmJudged(const std::string& path, FilmVerdict verdict) override {
    heard.push_back("judged " + path + " " + std::to_string(static_cast<int>(verdict)));
  }
  [[nodiscard]] bool mayClose() override {
    heard.emplace_back("may close");
    return allowsClosing;
  }
  void programEnds() override { heard.emplace_back("ends"); }

  std::vector<std::string> heard;
  bool allowsClosing = true;
};

}  // namespace zelvo::platform::headless
