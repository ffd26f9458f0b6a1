/// Choosers that a test answers. What was asked last is kept; asking again without an answer takes its place.
/// Thread: main.
#pragma once

#include <utility>

#include "platform/film_choosers.h"

namespace zelvo::platform::headless {

class HeadlessFilmChoosers final : public FilmChoosers {
 public:
  void chooseFilms(const ChooserRequest& request, std::function<void(std::vector<std::string>)> answer) override {
    asked = request;
    films_ = std::move(answer);
  }
  void chooseFilm(const ChooserRequest& request, std::function<void(std::optional<std::string>)> answer) override {
    asked = request;
    film_ = std::move(answer);
  }
  void chooseFolder(const ChooserRequest& request, std::function<void(std::optional<std::string>)> answer) override {
    asked = request;
    folder_ = std::move(answer);
  }
  void chooseNewFile(const NewFileRequest& request, std::function<void(std::optional<NewFileAnswer>)> answer) override {
    asked = request.chooser;
    askedFile = request;
    file_ = std::move(answer);
  }

  /// Each answers the question of its kind; false when none is open.
  bool answerFilms(std::vector<std::string> films) { return answer(films_, std::move(films)); }
  bool answerFilm(std::optional<std::string> film) { return answer(film_, std::move(film)); }
  bool answerFolder(std::optional<std::string> folder) { return answer(folder_, std::move(folder)); }
  bool answerFile(std::optional<NewFileAnswer> file) { return answer(file_, std::move(file)); }
  [[nodiscard]] bool isAsking() const { return films_ || film_ || folder_ || file_; }

  ChooserRequest asked;
  NewFileRequest askedFile;

 private:
  template <class Answer>
  static bool answer(std::function<void(Answer)>& waiting, Answer given) {
    if (!waiting) return false;
    std::exchange(waiting, nullptr)(std::move(given));
    return true;
  }

  std::function<void(std::vector<std::string>)> films_;
  std::function<void(std::optional<std::string>)> film_;
  std::function<void(std::optional<std::string>)> folder_;
  std::function<void(std::optional<NewFileAnswer>)> file_;
};

}  // namespace zelvo::platform::headless
