#include "tests/platform/qt/movie_bench.h"

#include <QCoreApplication>
#include <QPainter>
#include <cstdlib>
#include <filesystem>
#include <utility>

#include "tests/platform/qt/bounded_wait.h"
#include "tests/support/ffmpeg.h"

namespace zelvo::tests {

using platform::qt::MovieWidget;

namespace {

/// Runs what waits, `also`, and what comes within a moment.
void serveAMoment(platform::linux_::LinuxMainQueue& queue, const std::function<void()>& also) {
  bool served = false;
  queue.runUntil([&] {
    also();
    return std::exchange(served, true);
  });
}

}  // namespace

MovieBench::MovieBench()
    : loader_(platform::qt::makeMovieLoader(
          {.mainQueue = queue_, .workers = workers_, .notifications = centre_, .log = log_})) {
  centre_.addObserver(this, platform::kMovieDidEndNotification,
                      [this](const platform::Notification& notification) { ends_.push_back(notification.object); });
}

std::string MovieBench::film(const std::string& name) const {
  return filmOf(
      "-f lavfi -i 'testsrc2=size=64x48:rate=10:duration=1,hue=H=2*PI*t' -f lavfi -i sine=duration=1 -c:v mjpeg "
      "-pix_fmt yuvj444p -q:v 2 -c:a pcm_s16le",
      name);
}

std::string MovieBench::filmOf(const std::string& arguments, const std::string& name) const {
  EXPECT_TRUE(runFfmpeg(arguments + " '" + folder_.path(name) + "'"));
  return folder_.path(name);
}

std::vector<QImage> MovieBench::decoded(const std::string& film, const std::string& filters) const {
  const std::string pattern = folder_.path("decoded-%03d.png");
  EXPECT_TRUE(runFfmpeg("-i '" + film + "' -vf " + filters + " -pix_fmt rgb24 '" + pattern + "'"));
  std::vector<QImage> pictures;
  for (int number = 1;; ++number) {
    const QString name = QStringLiteral("decoded-%1.png").arg(number, 3, 10, QLatin1Char('0'));
    const QImage picture(QString::fromStdString(folder_.path(name.toStdString())));
    if (picture.isNull()) return pictures;
    pictures.push_back(picture);
  }
}

std::shared_ptr<platform::Movie> MovieBench::load(const std::string& path) {
  const platform::LoadedMovie loaded = loader_->movieWithFile(path);
  EXPECT_EQ(loaded.error, std::nullopt);
  return loaded.movie;
}

void MovieBench::serveUntil(const std::function<bool()>& reached, const std::function<std::string()>& saw,
                            const ::zelvo::tests::CodePlace& where) {
  waitUntil(
      reached, [this] { serveAMoment(queue_, [] { QCoreApplication::processEvents(); }); },
      [&] {
        std::string all = std::to_string(ends_.size()) + " ends";
        for (const std::string& line : logged()) all += "; " + line;
        return saw ? all + "; " + saw() : all;
      },
      where);
}

void MovieBench::serveUntilShown(MovieWidget& widget, const QImage& picture, const ::zelvo::tests::CodePlace& where) {
  serveUntil([&] { return difference(shown(widget), picture) < kAlike; },
             [&] {
               return "a widget \"" + widget.accessibleName().toStdString() + "\", \"" +
                      widget.accessibleDescription().toStdString() + "\", " +
                      std::to_string(difference(shown(widget), picture)) + " from the picture waited for";
             },
             where);
}

void MovieBench::serveForOneFilm() {
  const auto clock = load(film("clock.avi"));
  const std::size_t before = ends_.size();
  clock->play();
  serveUntil([&] { return ends_.size() > before && ends_.back() == clock.get(); });
  ends_.pop_back();
}

void MovieBench::beBusyForOneFilm() {
  platform::NotificationCentre centre;
  platform::linux_::LinuxMainQueue queue;
  const auto loader =
      platform::qt::makeMovieLoader({.mainQueue = queue, .workers = workers_, .notifications = centre, .log = log_});
  bool ended = false;
  centre.addObserver(this, platform::kMovieDidEndNotification, [&](const platform::Notification&) { ended = true; });
  auto clock = loader->movieWithFile(film("busy.avi")).movie;
  clock->play();
  waitUntil([&] { return ended; }, [&] { serveAMoment(queue, [] {}); },
            [] { return std::string("a film that does not end"); });
}

QImage MovieBench::shown(MovieWidget& widget, qreal ratio) {
  QImage image((QSizeF(widget.size()) * ratio).toSize(), QImage::Format_RGB32);
  image.setDevicePixelRatio(ratio);
  image.fill(Qt::magenta);
  widget.render(&image);
  image.setDevicePixelRatio(1.0);
  return image;
}

FilmWidget::FilmWidget(int width, int height) {
  setMinimumSize(1, 1);
  resize(width, height);
}

double difference(const QImage& one, const QImage& other) {
  if (one.size() != other.size() || one.isNull()) return 255.0;
  double sum = 0;
  for (int y = 0; y < one.height(); ++y) {
    for (int x = 0; x < one.width(); ++x) {
      const QRgb a = one.pixel(x, y);
      const QRgb b = other.pixel(x, y);
      sum += std::abs(qRed(a) - qRed(b)) + std::abs(qGreen(a) - qGreen(b)) + std::abs(qBlue(a) - qBlue(b));
    }
  }
  return sum / (3.0 * one.width() * one.height());
}

bool isOpen(const std::string& path) {
  std::error_code ignored;
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd", ignored)) {
    const std::string target = std::filesystem::read_symlink(entry.path(), ignored).string();
    if (target == path || target == path + " (deleted)") return true;
  }
  return false;
}

}  // namespace zelvo::tests
