/// One film worked on by a program of its own, with a worker that waits for it.
/// Decision: window, The deep repair is a program of its own
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "deep/deep_services.h"
#include "deep/film_end.h"
#include "platform/guarded.h"
#include "platform/relaxed.h"
#include "salvage/batch_queue.h"

namespace zelvo::deep {

struct FilmOrder {
  std::vector<std::string> arguments;                   ///< a command line for one film
  std::shared_ptr<const platform::FileLock> lock = {};  ///< held by the program too
  /// What is to be done when the program has ended, before `ended`. Thread: the worker.
  std::function<void(const FilmEnd& end)> afterwards = {};
  /// The program told more of how far it is. Thread: main.
  std::function<void(const salvage::FilmStep& step)> moved = {};
  /// Heard last, unless the run was forgotten. Thread: main.
  std::function<void(const FilmEnd& end)> ended = {};
};

/// Thread: main, unless a function says otherwise.
class FilmRun : public std::enable_shared_from_this<FilmRun> {
 public:
  /// Null where the system gives no thread.
  [[nodiscard]] static std::shared_ptr<FilmRun> start(const DeepServices& services, FilmOrder order);

  /// Asks the program to end, and has it killed when it does not.
  void stop() { isStopped_ = true; }
  /// Nothing more is heard of it.
  void forget() {
    order_.moved = nullptr;
    order_.ended = nullptr;
  }
  /// What the program told last; without a stage before. Thread: any.
  [[nodiscard]] salvage::FilmStep step() const { return step_.get(); }
  [[nodiscard]] bool isOver() const { return worker_ == nullptr || worker_->finished(); }
  /// Waits for its end. Only after a stop.
  void join();

 private:
  class Queue;

  FilmRun(const DeepServices& services, FilmOrder order) : services_(services), order_(std::move(order)) {}
  /// Thread: the worker.
  void work();
  void tellMoved(const salvage::FilmStep& step);
  void tellEnd(const FilmEnd& end);

  const DeepServices services_;
  FilmOrder order_;
  std::shared_ptr<platform::Worker> worker_;
  platform::Relaxed<bool> isStopped_;
  platform::Guarded<salvage::FilmStep> step_;
  std::atomic<bool> isMoveTold_{false};  ///< and not heard yet
};

}  // namespace zelvo::deep
