/// Movies and the view that plays them. A movie is opened when something first needs its content, so that loading one
/// that nobody looks at costs nothing and cannot fail. // Decision: preview, A film is open only while it is looked at
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/notification_centre.h"

namespace zelvo::platform {

/// Posted, with the movie as its object, when a movie has played to its end. Thread: main.
inline constexpr std::string_view kMovieDidEndNotification = "QTMovieDidEndNotification";

class Movie : public NotificationSender, public std::enable_shared_from_this<Movie> {
 public:
  virtual void play() = 0;
  virtual void stop() = 0;
  virtual void gotoBeginning() = 0;
  /// Shows the picture at a time, in seconds, and goes on as it did: playing, or still. A time at the end or behind it
  /// is the end, which is told of one that plays. One that is not open yet begins there.
  virtual void gotoTime(double seconds) = 0;
};

/// A movie, or the reason why there is none, as a sentence for the log.
struct LoadedMovie {
  std::shared_ptr<Movie> movie;
  std::optional<std::string> error;
};

/// Thread: any.
class MovieLoader {
 public:
  virtual ~MovieLoader() = default;
  [[nodiscard]] virtual LoadedMovie movieWithFile(const std::string& path) = 0;
};

/// Thread: any; calls from workers are taken over to the main thread in order.
class MovieView {
 public:
  virtual ~MovieView() = default;
  /// Shows `movie`; nothing shows an empty view.
  virtual void setMovie(std::shared_ptr<Movie> movie) = 0;
};

}  // namespace zelvo::platform
