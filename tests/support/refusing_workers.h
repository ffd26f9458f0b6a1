/// Workers of which one start is refused, as a system without a thread to spare would do it.
#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "platform/workers.h"

namespace zelvo::tests {

/// Starts are counted from 1, helpers included.
/// Thread: those of the workers it stands before; starts one at a time.
class RefusingWorkers final : public platform::Workers {
 public:
  RefusingWorkers(platform::Workers& workers, unsigned refused) : workers_(workers), refused_(refused) {}

  std::shared_ptr<platform::Worker> start(std::shared_ptr<platform::CancelMark> mark,
                                          std::function<void()> body) override {
    return ++starts_ == refused_ ? nullptr : workers_.start(std::move(mark), std::move(body));
  }
  std::shared_ptr<platform::Worker> startHelper(std::function<void()> body) override {
    return ++starts_ == refused_ ? nullptr : workers_.startHelper(std::move(body));
  }
  [[nodiscard]] bool startApart(std::function<void()> body) override {
    return ++starts_ != refused_ && workers_.startApart(std::move(body));
  }
  /// Two, so that helpers are asked for on every machine.
  [[nodiscard]] unsigned processors() const override { return 2; }
  void joinAll() override { workers_.joinAll(); }

  [[nodiscard]] unsigned starts() const { return starts_; }

 private:
  platform::Workers& workers_;
  const unsigned refused_;
  unsigned starts_ = 0;
};

}  // namespace zelvo::tests
