/// What the window needs of a movie besides playing it: its picture at a size, what to say where there is none, where
/// it is, how loud, and a pause.
/// Thread: main.
#pragma once

#include <QImage>
#include <QSize>
#include <QString>
#include <functional>
#include <optional>

#include "platform/movies.h"

namespace zelvo::platform::qt {

/// How loud a movie is to be heard.
struct Loudness {
  int percent = 100;  ///< 0 to 100
  bool isMuted = false;

  friend bool operator==(const Loudness&, const Loudness&) = default;
};

class ShownMovie : public Movie {
 public:
  /// The movie is looked at from now on: its file is opened if it is not, and `changed` is called whenever there is
  /// something new to paint or to say, never within this call. Again while it is looked at, it changes nothing.
  virtual void beginShow(std::function<void()> changed) = 0;
  /// Nobody looks for now: the file is let go, so that a removed one takes no space. One that plays ends here, and says
  /// so as at its end, since whoever waits for that would wait for ever.
  virtual void pauseShow() = 0;
  /// Another movie takes its place, or the window goes: as `pauseShow`, but nothing is said.
  virtual void endShow() = 0;

  /// Size of the picture with square pixels; empty while there is none.
  [[nodiscard]] virtual QSize shape() const = 0;
  /// The current picture drawn at `size` (device pixels); null while there is none.
  [[nodiscard]] virtual QImage picture(QSize size) = 0;
  /// A sentence to show in the picture's place; empty when there is nothing to say.
  [[nodiscard]] virtual QString remark() const = 0;
  /// From `play` until its end or `stop`, pauses included.
  [[nodiscard]] virtual bool isPlaying() const = 0;

  // Decision: preview, A pause is not a stop
  /// Lets a movie that plays stand still, or go on. It still plays to whoever waits for its end. Changes nothing about
  /// one that does not play.
  virtual void setPaused(bool paused) = 0;
  [[nodiscard]] virtual bool isPaused() const = 0;

  /// Where it is, in seconds; the place asked for while it goes there.
  [[nodiscard]] virtual double position() const = 0;
  /// How long it is, in seconds; nothing while that is not known.
  [[nodiscard]] virtual std::optional<double> duration() const = 0;

  /// Holds for whatever is heard of it from now on.
  virtual void setLoudness(const Loudness& loudness) = 0;
};

}  // namespace zelvo::platform::qt
