/// All runs of the window that have not ended yet, those that nobody waits for any more among them. Thread: main.
#pragma once

#include <memory>
#include <vector>

#include "deep/film_run.h"

namespace zelvo::deep {

class FilmRuns {
 public:
  explicit FilmRuns(const DeepServices& services) : services_(services) {}
  /// Stops them, and waits for their ends.
  ~FilmRuns();
  FilmRuns(const FilmRuns&) = delete;
  FilmRuns& operator=(const FilmRuns&) = delete;

  /// Null where the system gives no thread, and once they are closed.
  [[nodiscard]] std::shared_ptr<FilmRun> start(FilmOrder order);
  /// Stops them all; nothing is heard of them any more, and none is begun.
  void close();
  [[nodiscard]] bool isClosed() const { return isClosed_; }

 private:
  const DeepServices services_;
  std::vector<std::shared_ptr<FilmRun>> runs_;
  bool isClosed_ = false;
};

}  // namespace zelvo::deep
