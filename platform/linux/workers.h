/// Worker threads of the system.
#pragma once

#include <memory>

#include "platform/workers.h"

namespace zelvo::platform::linux_ {

/// Joins every thread before it goes, but for those apart.
class LinuxWorkers final : public Workers {
 public:
  LinuxWorkers();
  ~LinuxWorkers() override;
  std::shared_ptr<Worker> start(std::shared_ptr<CancelMark> mark, std::function<void()> body) override;
  std::shared_ptr<Worker> startHelper(std::function<void()> body) override;
  [[nodiscard]] bool startApart(std::function<void()> body) override;
  [[nodiscard]] unsigned processors() const override;
  /// From now on `processors` answers no more than that. 0 lifts it.
  void useAtMost(unsigned processors) { limit_ = processors; }
  void joinAll() override;

 private:
  class Roll;
  std::shared_ptr<Roll> roll_;
  Relaxed<unsigned> limit_;
};

}  // namespace zelvo::platform::linux_
