/// Asks how long a film is, beside the main thread.
/// Thread: main.
#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "platform/main_queue.h"

namespace zelvo::platform::qt {

/// Each question is asked on a thread of its own that nobody waits for: a disk that fails may take minutes over the
/// first bytes of a film, and neither the window nor its end hangs on it.
/// Decision: window, Nobody waits for folder readers
class FilmLengthReader final {
 public:
  using Seconds = std::optional<double>;

  explicit FilmLengthReader(MainQueue& queue) : queue_(queue) {}
  ~FilmLengthReader() { abandon(); }
  FilmLengthReader(const FilmLengthReader&) = delete;
  FilmLengthReader& operator=(const FilmLengthReader&) = delete;

  /// Gives up the question before, and asks `readLength`; `told` then gets the answer on the main thread. It is not
  /// called once another question was asked, or the reader is gone.
  void ask(std::function<Seconds()> readLength, std::function<void(Seconds seconds)> told);
  void abandon();

 private:
  struct Question;

  MainQueue& queue_;
  std::shared_ptr<Question> question_;
};

}  // namespace zelvo::platform::qt
