#include "deep/film_run.h"

#include <utility>

#include "platform/ran_out.h"

namespace zelvo::deep {

/// A queue of one film.
class FilmRun::Queue final : public salvage::FilmQueue {
 public:
  explicit Queue(FilmRun& run) : run_(run) {}

  [[nodiscard]] std::size_t films() const override { return 1; }
  [[nodiscard]] std::optional<std::vector<std::string>> begin(std::size_t) override { return run_.order_.arguments; }
  /// A queue that is stopped asks nobody.
  [[nodiscard]] bool mayName(std::size_t, const salvage::BatchLine&) override { return true; }
  void end(std::size_t, const salvage::FilmResult& result) override { end_ = filmEnd(result, isStopped()); }
  void tell(std::size_t, const salvage::FilmResult*) override {}
  void look(const std::vector<salvage::RunningFilm>& running) override {
    if (!running.empty()) run_.tellMoved(running.front().step);
  }
  [[nodiscard]] bool isStopped() const override { return run_.isStopped_; }

  /// Stopped, unless it came to another end.
  [[nodiscard]] const FilmEnd& end() const { return end_; }

 private:
  FilmRun& run_;
  FilmEnd end_;
};

std::shared_ptr<FilmRun> FilmRun::start(const DeepServices& services, FilmOrder order) {
  // Not make_shared: the constructor is private.
  const std::shared_ptr<FilmRun> run(new FilmRun(services, std::move(order)));
  run->worker_ = services.workers.start(std::make_shared<platform::CancelMark>(), [run] { run->work(); });
  return run->worker_ ? run : nullptr;
}

void FilmRun::join() {
  if (worker_) worker_->join();
}

void FilmRun::work() {
  FilmEnd end;
  const std::error_code shortage = platform::ranOut([&] {
    const auto programs = services_.makePrograms();
    Queue queue(*this);
    salvage::runQueue(*programs, queue,
                      {.jobs = 1,
                       .request = {.arguments = {}, .threads = 0, .tellsProgress = true, .lock = order_.lock.get()},
                       .patience = services_.patience});
    end = queue.end();
    if (order_.afterwards) order_.afterwards(end);
  });
  if (shortage) end = FilmEnd{.kind = FilmEnd::Kind::notStarted, .error = shortage};
  tellEnd(end);
}

void FilmRun::tellMoved(const salvage::FilmStep& step) {
  if (step == step_.get()) return;
  step_.set(step);
  // A main thread that is busy hears of many moves at once.
  if (isMoveTold_.exchange(true)) return;
  services_.mainQueue.perform([run = shared_from_this()] {
    run->isMoveTold_ = false;
    if (run->order_.moved) run->order_.moved(run->step());
  });
}

void FilmRun::tellEnd(const FilmEnd& end) {
  // The window waits for it, so it is told as soon as there is memory to tell it with.
  while (platform::ranOut([&] {
    services_.mainQueue.perform([run = shared_from_this(), end] {
      run->order_.moved = nullptr;
      if (const auto ended = std::exchange(run->order_.ended, nullptr)) ended(end);
    });
  })) {
    services_.clock.sleepFor(std::chrono::milliseconds(100));
  }
}

}  // namespace zelvo::deep
