#include "platform/headless/workers.h"

#include <algorithm>
#include <thread>
#include <utility>

#include "platform/guarded.h"
#include "platform/ran_out.h"

namespace zelvo::platform::headless {

class HeadlessWorkers::WaitingWorker final : public Worker {
 public:
  WaitingWorker(std::shared_ptr<CancelMark> mark, std::function<void()> body)
      : mark_(std::move(mark)), body_(std::move(body)) {}

  void cancel() override { mark_->cancel(); }
  [[nodiscard]] bool finished() const override { return finished_; }
  [[nodiscard]] bool begun() const { return begun_; }
  [[nodiscard]] std::error_code failure() const override { return failure_; }
  void join() override {
    if (begun_) return;
    begun_ = true;
    failure_ = ranOut(std::exchange(body_, nullptr));
    finished_ = true;
  }

 private:
  std::shared_ptr<CancelMark> mark_;
  std::function<void()> body_;
  std::error_code failure_;
  bool begun_ = false;
  bool finished_ = false;
};

std::shared_ptr<Worker> HeadlessWorkers::start(std::shared_ptr<CancelMark> mark, std::function<void()> body) {
  if (std::exchange(refusesNext_, false)) return nullptr;
  started_.push_back(std::make_shared<WaitingWorker>(std::move(mark), std::move(body)));
  return started_.back();
}

namespace {

class HelperThread final : public Worker {
 public:
  explicit HelperThread(std::function<void()> body)
      : thread_([this, work = std::move(body)] {
          failure_.set(ranOut(work));
          finished_ = true;
        }) {}
  ~HelperThread() override { join(); }
  HelperThread(const HelperThread&) = delete;
  HelperThread& operator=(const HelperThread&) = delete;
  void cancel() override {}
  [[nodiscard]] bool finished() const override { return finished_; }
  [[nodiscard]] std::error_code failure() const override { return failure_.get(); }
  void join() override {
    if (thread_.joinable()) thread_.join();
  }

 private:
  Guarded<std::error_code> failure_;
  Relaxed<bool> finished_;
  std::thread thread_;
};

}  // namespace

std::shared_ptr<Worker> HeadlessWorkers::startHelper(std::function<void()> body) {
  return std::make_shared<HelperThread>(std::move(body));
}

bool HeadlessWorkers::runNext() {
  while (!started_.empty()) {
    const std::shared_ptr<WaitingWorker> next = started_.front();
    started_.pop_front();
    if (next->begun()) continue;
    next->join();
    return true;
  }
  return false;
}

void HeadlessWorkers::joinAll() {
  while (runNext()) {
  }
}

std::size_t HeadlessWorkers::waiting() const {
  return static_cast<std::size_t>(
      std::count_if(started_.begin(), started_.end(), [](const auto& worker) { return !worker->begun(); }));
}

}  // namespace zelvo::platform::headless
