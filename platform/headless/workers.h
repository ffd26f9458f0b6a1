/// Workers that run when the test says, on the test's own thread.
#pragma once

#include <cstddef>
#include <deque>
#include <memory>

#include "platform/workers.h"

namespace zelvo::platform::headless {

/// Bodies wait in order of their start. Joining a worker runs its body if nobody has.
/// Thread: one.
class HeadlessWorkers final : public Workers {
 public:
  std::shared_ptr<Worker> start(std::shared_ptr<CancelMark> mark, std::function<void()> body) override;
  /// A real thread: whoever asks for a helper waits for it.
  std::shared_ptr<Worker> startHelper(std::function<void()> body) override;
  [[nodiscard]] unsigned processors() const override { return processors_; }
  void setProcessors(unsigned processors) { processors_ = processors; }
  void joinAll() override;
  /// The next start of a worker answers nothing, as a system without a thread to spare does it.
  void refuseNext() { refusesNext_ = true; }

  /// Runs the oldest body that waits; false when none does.
  bool runNext();
  /// How many bodies wait.
  [[nodiscard]] std::size_t waiting() const;

 private:
  class WaitingWorker;
  std::deque<std::shared_ptr<WaitingWorker>> started_;
  unsigned processors_ = 2;
  bool refusesNext_ = false;
};

}  // namespace zelvo::platform::headless
