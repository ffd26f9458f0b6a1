/// What stands between the engine and the window, so that an old run never meets a new one: progress of a run that the
/// window no longer shows is dropped, and so are its sheets and its rebuilt file once a newer run was started; its
/// sheets also once another film was chosen. Runs are numbered from 1. // Decision: runs, Old runs never meet new ones
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <string>
#include <thread>

#include "engine/progress_relay.h"
#include "platform/relaxed.h"
#include "platform/sheets.h"

namespace zelvo::app {

/// Runs follow one another, so one at most works at a time.
class RunGuard final : public engine::ProgressRelay, public platform::Sheets {
 public:
  /// What passes goes on to `relay` and `sheets`.
  RunGuard(engine::ProgressRelay& relay, platform::Sheets& sheets) : relay_(relay), sheets_(sheets) {}

  /// A run was started: its progress is the one to show. Answers its number. Thread: main.
  std::uint64_t start() {
    latest_ = ++started_;
    shown_ = started_;
    return started_;
  }
  /// The window shows no run any more: no value of a run is stored once this has returned. Thread: main.
  void hideProgress();
  /// A film was chosen again: a sheet of a run that was stopped before would take that choice away. Thread: main.
  void choiceMade() {
    if (shown_ == 0) sheetsBegin_ = started_ + 1;
  }
  /// Nor does it take sheets: the program is ending. Thread: main.
  void close() {
    hideProgress();
    latest_ = 0;
  }
  /// A run begins and ends its work. Thread: its worker.
  void beginWork(std::uint64_t number) { working_ = number; }
  void endWork() { working_ = 0; }

  /// True for the run that the window shows. Thread: any.
  [[nodiscard]] bool shows(std::uint64_t number) const { return shown_.load() == number; }

  /// True between the begin and the end of its work. Thread: any.
  [[nodiscard]] bool isWorking(std::uint64_t number) const { return working_ == number; }

  // ---- From the engine ----
  void setProgressBarValue(double percent) override;
  void updateProgressBar() override { relay_.updateProgressBar(); }
  void updateSaveProgressBar() override { relay_.updateSaveProgressBar(); }
  void updateSaveProgressBar2() override { relay_.updateSaveProgressBar2(); }
  void setMovieView(const std::string& path) override {
    if (isLatest(working_)) relay_.setMovieView(path);
  }
  void beginSheet(platform::Window& sheet, platform::Window& over, std::function<bool()> stillWanted) override;
  void endSheet(platform::Window& sheet) override { sheets_.endSheet(sheet); }

 private:
  /// Outside of a run's work everything passes.
  [[nodiscard]] bool passes() const {
    const std::uint64_t working = working_;
    return working == 0 || working == shown_.load();
  }

  [[nodiscard]] bool isLatest(std::uint64_t number) const { return number == 0 || number == latest_; }

  engine::ProgressRelay& relay_;
  platform::Sheets& sheets_;
  std::uint64_t started_ = 0;
  std::uint64_t sheetsBegin_ = 0;  ///< no sheet of a run before this one is wanted. Thread: main
  platform::Relaxed<std::uint64_t> latest_;
  /// Ordered with `storing_`: of a store that begins and a run that is hidden at the same time, one sees the other.
  std::atomic<std::uint64_t> shown_{0};
  std::atomic<std::thread::id> storing_{};  ///< the thread that is handing a value on, if one is
  platform::Relaxed<std::uint64_t> working_;
};

}  // namespace zelvo::app
