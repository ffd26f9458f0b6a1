/// Programs for films that a test plays: it says what each sends, prints and how it ends.
#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "platform/film_programs.h"

namespace zelvo::platform::headless {

/// What a test sees of a program, and does in its place. It outlives the program.
struct PlayedProgram {
  std::vector<std::string> arguments;
  std::vector<std::string> messages;  ///< that were not taken yet
  std::vector<std::string> answers;   ///< that it was given
  std::string printed;
  std::string complaints;
  std::optional<ProgramEnd> end;
  bool isStopped = false;
  bool isKilled = false;
  bool isGone = false;  ///< nobody holds it any more
};

/// Programs of all runs. Thread: one at a time.
class HeadlessFilmPrograms {
 public:
  /// What a run gets.
  [[nodiscard]] std::unique_ptr<FilmPrograms> make() { return std::make_unique<Programs>(*this); }

  /// Every program that was started, the oldest first.
  std::vector<std::shared_ptr<PlayedProgram>> started;
  /// Called while a run waits: here the test plays its programs.
  std::function<void()> onWait;
  /// Why no program can be started.
  std::error_code startError;

 private:
  class Program final : public FilmProgram {
   public:
    explicit Program(std::shared_ptr<PlayedProgram> played) : played_(std::move(played)) {}
    ~Program() override { played_->isGone = true; }
    std::vector<std::string> takeMessages() override { return std::exchange(played_->messages, {}); }
    void answer(std::string_view line) override { played_->answers.emplace_back(line); }
    const std::string& printed() const override { return played_->printed; }
    const std::string& complaints() const override { return played_->complaints; }
    void stop() override { played_->isStopped = true; }
    void kill() override { played_->isKilled = true; }
    std::optional<ProgramEnd> end() const override { return played_->end; }

   private:
    std::shared_ptr<PlayedProgram> played_;
  };

  class Programs final : public FilmPrograms {
   public:
    explicit Programs(HeadlessFilmPrograms& all) : all_(all) {}
    Started start(const FilmProgramRequest& request) override {
      if (all_.startError) return {nullptr, all_.startError};
      auto played = std::make_shared<PlayedProgram>();
      played->arguments = request.arguments;
      all_.started.push_back(played);
      return {std::make_unique<Program>(std::move(played)), {}};
    }
    void wait(std::chrono::milliseconds) override {
      if (all_.onWait) all_.onWait();
    }

   private:
    HeadlessFilmPrograms& all_;
  };
};

}  // namespace zelvo::platform::headless
