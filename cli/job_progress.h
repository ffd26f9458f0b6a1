/// How far a run is, for the progress line. A run tells it many times a second, so telling is a store.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include "engine/repair_observer.h"
#include "platform/relaxed.h"
#include "salvage/batch_queue.h"

namespace zelvo::cli {

enum class Stage { none, analysing, scanning, weighing, writing, copying, flushing, inspecting, playing };

/// Keeps what a repair tells last. Thread: any.
class RunProgress final : public engine::RepairObserver {
 public:
  explicit RunProgress(platform::Log& log) : log_(log) {}

  [[nodiscard]] platform::Log& log() override { return log_; }
  void stage(engine::RepairStage stage) override;
  void progress(std::uint64_t done, std::uint64_t all) override {
    done_ = done;
    all_ = all;
  }

  void setStage(Stage stage) { stage_ = stage; }
  [[nodiscard]] Stage stage() const { return stage_; }
  /// How much of the stage is done, 0 to 1. The two figures may be of two moments, which no reader of a line notices.
  [[nodiscard]] double share() const;

 private:
  platform::Log& log_;
  platform::Relaxed<Stage> stage_;
  platform::Relaxed<std::uint64_t> done_;
  platform::Relaxed<std::uint64_t> all_;
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
  /// What the last text told.
  [[nodiscard]] const salvage::FilmStep& step() const { return step_; }

 private:
  std::string name_;
  Clock::time_point last_{};
  Stage stage_ = Stage::none;
  salvage::FilmStep step_;
  Clock::time_point stageBegan_{};
};

}  // namespace zelvo::cli
