#include "platform/qt/window/film_length_reader.h"

#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace zelvo::platform::qt {

/// Shared by the main thread and the thread that asks, whichever lives longer.
struct FilmLengthReader::Question {
  std::mutex mutex;
  MainQueue* queue = nullptr;  ///< guarded; null once nobody waits any more
  bool isAbandoned = false;    ///< main thread
  std::function<void(Seconds seconds)> told;
};

void FilmLengthReader::abandon() {
  if (!question_) return;
  question_->isAbandoned = true;
  {
    const std::scoped_lock lock(question_->mutex);
    question_->queue = nullptr;
  }
  question_.reset();
}

void FilmLengthReader::ask(std::function<Seconds()> readLength, std::function<void(Seconds seconds)> told) {
  abandon();
  question_ = std::make_shared<Question>();
  question_->queue = &queue_;
  question_->told = std::move(told);
  const auto work = [question = question_, read = std::move(readLength)] {
    const Seconds seconds = read();
    const std::scoped_lock lock(question->mutex);
    if (question->queue == nullptr) return;
    question->queue->perform([question, seconds] {
      if (!question->isAbandoned) question->told(seconds);
    });
  };
  try {
    std::thread(work).detach();
  } catch (const std::system_error&) {
    abandon();  // no thread to be had: the length stays unsaid
  }
}

}  // namespace zelvo::platform::qt
