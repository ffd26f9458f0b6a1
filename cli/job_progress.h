/// How far a run is, for the progress line. The engine tells it millions of times a second, so telling is a store.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

#include "engine/progress_relay.h"
#include "platform/elements.h"
#include "platform/relaxed.h"

namespace zelvo::cli {

enum class Stage { none, analysing, scanning, writing, copying, flushing, inspecting };

/// The job's status line, of which only the stage is kept. Thread: any.
class StageField final : public platform::TextField {
 public:
  void setStringValue(std::string_view text) override;
  void setIntegerValue(std::int64_t) override {}
  [[nodiscard]] Stage stage() const { return stage_; }
  void setStage(Stage stage) { stage_ = stage; }

 private:
  platform::Relaxed<Stage> stage_;
};

/// A button that is not there: the stop button is told ten times per block of the animation's end that it is disabled.
class NoButton final : public platform::Button {
 public:
  void setEnabled(bool) override {}
  void setHidden(bool) override {}
  void setState(State) override {}
  [[nodiscard]] State state() const override { return State::off; }
  void setImage(std::string_view) override {}
};

/// Keeps the last percentage of the harvest and the scan; everything else is read where it is.
class LastPercent final : public engine::ProgressRelay {
 public:
  void setProgressBarValue(double percent) override { percent_ = percent; }
  void updateProgressBar() override {}
  void updateSaveProgressBar() override {}
  void updateSaveProgressBar2() override {}
  void setMovieView(const std::string&) override {}
  [[nodiscard]] double percent() const { return percent_; }

 private:
  platform::Relaxed<double> percent_;
};

/// The text of the progress line: name, stage, per cent, amount and speed. Sizes are in bytes.
/// Thread: main.
class ProgressLine {
 public:
  using Clock = std::chrono::steady_clock;

  explicit ProgressLine(std::string name) : name_(std::move(name)) {}

  /// True when the last text is old enough for another (ten a second).
  [[nodiscard]] bool isDue(Clock::time_point now) const { return now - last_ >= std::chrono::milliseconds(100); }
  /// `done` of `all` bytes of this stage; `all` may be 0 while it is not known.
  [[nodiscard]] std::string text(Clock::time_point now, Stage stage, std::uint64_t done, std::uint64_t all);

 private:
  std::string name_;
  Clock::time_point last_{};
  Stage stage_ = Stage::none;
  Clock::time_point stageBegan_{};
};

}  // namespace zelvo::cli
