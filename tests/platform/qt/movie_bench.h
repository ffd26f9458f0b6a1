/// The surroundings of the preview's tests: small films made by FFmpeg, the pictures FFmpeg sees in them, and a main
/// queue that serves Qt's events too.
#pragma once

#include <gtest/gtest.h>

#include <QImage>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/headless/screen.h"
#include "platform/linux/main_queue.h"
#include "platform/linux/workers.h"
#include "platform/movies.h"
#include "platform/notification_centre.h"
#include "platform/qt/preview/movie_preview.h"
#include "platform/qt/preview/movie_widget.h"
#include "tests/platform/qt/code_place.h"
#include "tests/support/temp_folder.h"

namespace zelvo::tests {

class MovieBench : public testing::Test {
 protected:
  MovieBench();

  /// A film of ten pictures of 64 by 48, each unlike the others, and a second of sound.
  [[nodiscard]] std::string film(const std::string& name = "film.avi") const;
  /// A film made by FFmpeg from other arguments (without the output's name).
  [[nodiscard]] std::string filmOf(const std::string& arguments, const std::string& name = "film.avi") const;
  /// The pictures that FFmpeg decodes; `filters` as FFmpeg writes them.
  [[nodiscard]] std::vector<QImage> decoded(const std::string& film, const std::string& filters = "null") const;

  [[nodiscard]] std::shared_ptr<platform::Movie> load(const std::string& path);
  /// Serves the main queue and Qt until `reached`. Waiting in vain fails and ends the test, with what `saw` tells.
  void serveUntil(const std::function<bool()>& reached, const std::function<std::string()>& saw = {},
                  const ::zelvo::tests::CodePlace& where = ::zelvo::tests::CodePlace::current());
  /// Waits until the widget shows that picture.
  void serveUntilShown(platform::qt::MovieWidget& widget, const QImage& picture,
                       const ::zelvo::tests::CodePlace& where = ::zelvo::tests::CodePlace::current());
  /// Serves while another film plays from its beginning to its end.
  void serveForOneFilm();
  /// Serves neither the main queue nor Qt while a film of another queue plays for more than a second: as a main thread
  /// that is busy.
  void beBusyForOneFilm();
  /// Movies whose end was told, in order.
  [[nodiscard]] const std::vector<platform::NotificationSender*>& ends() const { return ends_; }
  [[nodiscard]] std::vector<std::string> logged() const { return events_.lines(); }

  /// What a widget of that size shows now, at `ratio` device pixels for a point.
  [[nodiscard]] static QImage shown(platform::qt::MovieWidget& widget, qreal ratio = 1.0);

  TempFolder folder_;
  platform::headless::Events events_;
  platform::headless::HeadlessLog log_{&events_};
  platform::NotificationCentre centre_;
  platform::linux_::LinuxMainQueue queue_;
  platform::linux_::LinuxWorkers workers_;
  std::unique_ptr<platform::MovieLoader> loader_;

 private:
  std::vector<platform::NotificationSender*> ends_;
};

/// A widget of exactly this size, not yet shown.
class FilmWidget : public platform::qt::MovieWidget {
 public:
  FilmWidget(int width, int height);
};

/// Mean difference of two pictures of one size, in steps of 255 a channel; 255 when their sizes differ.
[[nodiscard]] double difference(const QImage& one, const QImage& other);

/// What the conversion of colours may change; pictures of the films differ by ten times as much and more.
inline constexpr double kAlike = 4.0;

/// Whether this process has the file open.
[[nodiscard]] bool isOpen(const std::string& path);

}  // namespace zelvo::tests
