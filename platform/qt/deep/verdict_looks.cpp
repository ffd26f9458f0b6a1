#include "platform/qt/deep/verdict_looks.h"

#include "platform/qt/deep_texts.h"

namespace zelvo::platform::qt {

std::string pictureOf(DeepVerdict verdict) {
  switch (verdict) {
    case DeepVerdict::clean:
    case DeepVerdict::repaired:
      return "sheet-done";
    case DeepVerdict::partial:
      return "sheet-warning";
    case DeepVerdict::hopeless:
      return "sheet-failed";
  }
  return {};
}

QString nameOf(DeepVerdict verdict) {
  switch (verdict) {
    case DeepVerdict::clean:
      return texts::verdictClean();
    case DeepVerdict::repaired:
      return texts::verdictRepaired();
    case DeepVerdict::partial:
      return texts::verdictPartial();
    case DeepVerdict::hopeless:
      return texts::verdictHopeless();
  }
  return {};
}

QString nameOf(QueuedFilm::State state) {
  switch (state) {
    case QueuedFilm::State::waiting:
      return texts::waiting();
    case QueuedFilm::State::working:
      return texts::working();
    case QueuedFilm::State::done:
      return texts::done();
    case QueuedFilm::State::failed:
      return texts::failed();
    case QueuedFilm::State::stopped:
      return texts::stopped();
  }
  return {};
}

}  // namespace zelvo::platform::qt
