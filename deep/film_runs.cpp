#include "deep/film_runs.h"

#include <utility>

namespace zelvo::deep {

FilmRuns::~FilmRuns() {
  close();
  for (const auto& run : runs_) run->join();
}

std::shared_ptr<FilmRun> FilmRuns::start(FilmOrder order) {
  if (isClosed_) return nullptr;
  std::erase_if(runs_, [](const auto& run) { return run->isOver(); });
  auto run = FilmRun::start(services_, std::move(order));
  if (run) runs_.push_back(run);
  return run;
}

void FilmRuns::close() {
  isClosed_ = true;
  for (const auto& run : runs_) {
    run->forget();
    run->stop();
  }
}

}  // namespace zelvo::deep
