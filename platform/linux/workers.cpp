#include "platform/linux/workers.h"

#include <sched.h>
#include <signal.h>

#include <algorithm>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include "platform/ran_out.h"

namespace zelvo::platform::linux_ {

class ThreadWorker final : public Worker {
 public:
  explicit ThreadWorker(std::shared_ptr<CancelMark> mark) : mark_(std::move(mark)) {}

  void cancel() override { mark_->cancel(); }
  bool finished() const override {
    const std::lock_guard lock(mutex_);
    return finished_;
  }
  void join() override {
    std::unique_lock lock(mutex_);
    ended_.wait(lock, [this] { return finished_; });
  }
  std::error_code failure() const override {
    const std::lock_guard lock(mutex_);
    return failure_;
  }
  void markFinished(std::error_code failure) {
    {
      const std::lock_guard lock(mutex_);
      failure_ = failure;
      finished_ = true;
    }
    ended_.notify_all();
  }

 private:
  std::shared_ptr<CancelMark> mark_;
  mutable std::mutex mutex_;
  std::condition_variable ended_;
  std::error_code failure_;
  bool finished_ = false;
};

namespace {

/// Signals are the main thread's: a worker blocks them all, so that no read or write of a run is interrupted.
class SignalsBlocked {
 public:
  SignalsBlocked() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, &before_);
  }
  SignalsBlocked(const SignalsBlocked&) = delete;
  SignalsBlocked& operator=(const SignalsBlocked&) = delete;
  ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

 private:
  sigset_t before_{};
};

}  // namespace

/// The threads started so far. A thread that has ended is joined when the next one starts.
class LinuxWorkers::Roll {
 public:
  void add(const std::shared_ptr<ThreadWorker>& worker, std::function<void()> body) {
    const std::lock_guard lock(mutex_);
    std::erase_if(entries_, [](Entry& entry) {
      if (!entry.worker->finished()) return false;
      entry.thread.join();
      return true;
    });
    entries_.reserve(entries_.size() + 1);  // a thread that runs must not lack its entry
    const SignalsBlocked blocked;
    std::thread thread([worker, work = std::move(body)]() mutable {
      const std::error_code failure = ranOut([&work] { work(); });
      work = nullptr;  // what the body holds is let go before anyone is told
      worker->markFinished(failure);
    });
    entries_.push_back({worker, std::move(thread)});
  }

  void joinAll() {
    for (;;) {
      std::vector<Entry> taken;
      {
        const std::lock_guard lock(mutex_);
        taken.swap(entries_);
      }
      if (taken.empty()) return;
      for (Entry& entry : taken) entry.thread.join();
    }
  }

 private:
  struct Entry {
    std::shared_ptr<ThreadWorker> worker;
    std::thread thread;
  };
  std::mutex mutex_;
  std::vector<Entry> entries_;
};

LinuxWorkers::LinuxWorkers() : roll_(std::make_shared<Roll>()) {}
LinuxWorkers::~LinuxWorkers() { roll_->joinAll(); }

std::shared_ptr<Worker> LinuxWorkers::start(std::shared_ptr<CancelMark> mark, std::function<void()> body) {
  std::shared_ptr<ThreadWorker> worker;
  const std::error_code refused = ranOut([&] {
    worker = std::make_shared<ThreadWorker>(std::move(mark));
    roll_->add(worker, std::move(body));
  });
  return refused ? nullptr : worker;
}

std::shared_ptr<Worker> LinuxWorkers::startHelper(std::function<void()> body) {
  return start(std::make_shared<CancelMark>(), std::move(body));
}

bool LinuxWorkers::startApart(std::function<void()> body) {
  return !ranOut([&body] {
    const SignalsBlocked blocked;
    std::thread([work = std::move(body)] {
      // Nobody is there to be told that memory ran out.
      static_cast<void>(ranOut(work));
    }).detach();
  });
}

unsigned LinuxWorkers::processors() const {
  cpu_set_t allowed;
  CPU_ZERO(&allowed);
  const bool isKnown = ::sched_getaffinity(0, sizeof allowed, &allowed) == 0;
  const unsigned all = isKnown ? static_cast<unsigned>(CPU_COUNT(&allowed)) : std::thread::hardware_concurrency();
  const unsigned limit = limit_;
  return std::max(1U, limit > 0 ? std::min(all, limit) : all);
}

void LinuxWorkers::joinAll() { roll_->joinAll(); }

}  // namespace zelvo::platform::linux_
