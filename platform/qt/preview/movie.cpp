#include "platform/qt/preview/movie.h"

#include <QFile>
#include <array>
#include <cstddef>
#include <utility>
#include <vector>

#include "platform/qt/language.h"
#include "platform/qt/preview/open_movies.h"

namespace zelvo::platform::qt {

namespace {

QString cannotBeShown() {
  return translated("The preview cannot open this film. You can save it, but another player may not open it either.");
}
QString onlySound() {
  return translated(
      "The picture of this film cannot be shown here, only its sound be heard. You can save it and try another "
      "player.");
}
QString isNotThere() { return translated("The film is not there any more."); }

/// What a line of a picture is made of, so that every line begins where drawing is fastest.
struct alignas(64) Stretch {
  std::array<uchar, 64> bytes;
};

void letGo(void* stretches) { std::unique_ptr<std::vector<Stretch>>(static_cast<std::vector<Stretch>*>(stretches)); }

/// An image that owns its lines.
QImage emptyFrame(QSize size) {
  const auto width = static_cast<std::size_t>(size.width());
  const std::size_t stretchesPerLine = (width * 4 + sizeof(Stretch) - 1) / sizeof(Stretch);
  auto stretches = std::make_unique<std::vector<Stretch>>(stretchesPerLine * static_cast<std::size_t>(size.height()));
  uchar* const first = stretches->front().bytes.data();
  return {first,
          size.width(),
          size.height(),
          static_cast<qsizetype>(stretchesPerLine * sizeof(Stretch)),
          QImage::Format_RGB32,
          letGo,
          stretches.release()};
}

}  // namespace

QtMovie::QtMovie(std::string path, OpenMovies& openMovies) : path_(std::move(path)), openMovies_(openMovies) {}

QtMovie::~QtMovie() {
  if (!player_) return;
  // A worker may be the last to let go of a movie, and players are the main thread's.
  openMovies_.mainQueue().perform(
      [&openMovies = openMovies_, player = std::make_shared<std::unique_ptr<MpvPlayer>>(std::move(player_))] {
        openMovies.release(std::move(*player));
      });
}

void QtMovie::onMain(std::function<void(QtMovie& movie)> step) {
  openMovies_.mainQueue().perform(
      [movie = std::static_pointer_cast<QtMovie>(shared_from_this()), step = std::move(step)] { step(*movie); });
}

void QtMovie::play() { onMain(&QtMovie::startPlaying); }
void QtMovie::stop() { onMain(&QtMovie::stopPlaying); }
void QtMovie::gotoBeginning() { gotoTime(0); }

void QtMovie::gotoTime(double seconds) {
  onMain([seconds](QtMovie& movie) { movie.goTo(seconds); });
}

void QtMovie::startPlaying() {
  if (!player_) open();
  playing_ = true;
  paused_ = false;
  if (player_) {
    player_->setHeld(false);
    player_->play();
  }
  openMovies_.ring();  // one that could not be opened ends, but never within this call
  reportAudience();
}

void QtMovie::stopPlaying() {
  playing_ = false;
  paused_ = false;
  if (player_) player_->pause();
  reportAudience();
}

void QtMovie::setPaused(bool paused) {
  if (!playing_ || paused == paused_) return;
  paused_ = paused;
  if (player_) player_->setHeld(paused);
  reportAudience();
}

void QtMovie::goTo(double seconds) {
  if (!player_) {
    start_ = seconds;
    return;
  }
  player_->gotoTime(seconds);
  openMovies_.ring();  // a jump to the end is the end, which is never told within this call
  reportAudience();
}

double QtMovie::position() const { return player_ ? player_->position() : 0; }

std::optional<double> QtMovie::duration() const { return player_ ? player_->duration() : std::nullopt; }

void QtMovie::setLoudness(const Loudness& loudness) {
  loudness_ = loudness;
  if (player_) player_->setLoudness(loudness);
}

void QtMovie::beginShow(std::function<void()> changed) {
  changed_ = std::move(changed);
  if (!player_ && !failed_) open();
}

void QtMovie::pauseShow() {
  changed_ = nullptr;
  close();
  paused_ = false;
  if (!std::exchange(playing_, false)) return;
  const auto self = shared_from_this();  // who is told may let go of it
  openMovies_.postEnd(*this);
}

void QtMovie::endShow() {
  changed_ = nullptr;
  playing_ = paused_ = false;
  close();
}

void QtMovie::open() {
  failed_ = false;
  remark_.clear();
  openMovies_.serve(std::static_pointer_cast<QtMovie>(shared_from_this()));
  player_ = MpvPlayer::open(path_, [&openMovies = openMovies_] { openMovies.ring(); });
  if (!player_) {
    fail("no player could be made");
    return;
  }
  player_->setLoudness(loudness_);
  if (const double start = std::exchange(start_, 0.0); start > 0) player_->gotoTime(start);
}

void QtMovie::close() {
  openMovies_.release(std::move(player_));
  frame_ = {};
  remark_.clear();
  failed_ = false;
}

void QtMovie::fail(const std::string& reason) {
  logLine(openMovies_.log(), "%@: %@", path_, reason);
  close();
  failed_ = true;
  remark_ = QFile::exists(QFile::decodeName(path_.c_str())) ? cannotBeShown() : isNotThere();
}

void QtMovie::serve() {
  bool changed = false;
  bool ends = failed_;
  if (player_) {
    const MpvPlayer::News news = player_->news();
    takeNews(news);
    changed = news.frame || news.shape || news.time || news.pictureless || news.failure;
    ends = news.ended || failed_;
  }
  ends = ends && std::exchange(playing_, false);
  if (ends) paused_ = false;
  if (changed || ends) reportAudience();
  if (ends) openMovies_.postEnd(*this);
}

// Decision: preview, The preview always ends
void QtMovie::takeNews(const MpvPlayer::News& news) {
  if (news.failure) {
    fail(*news.failure);
    return;
  }
  if (news.pictureless) remark_ = onlySound();
  if (news.frame) drawNextFrame();
}

void QtMovie::drawNextFrame() {
  if (frame_.isNull()) {
    player_->passFrame();
    return;
  }
  if (!frame_.isDetached()) frame_ = emptyFrame(frame_.size());  // somebody kept the last one
  const auto stride = static_cast<std::size_t>(frame_.bytesPerLine());
  if (!player_->draw(frame_.bits(), frame_.width(), frame_.height(), stride)) frame_ = {};
}

QSize QtMovie::shape() const {
  const MpvPlayer::Shape shape = player_ ? player_->shape() : MpvPlayer::Shape();
  return {shape.width, shape.height};
}

QImage QtMovie::picture(QSize size) {
  if (!player_ || size.isEmpty()) return {};
  if (frame_.size() != size) {
    frame_ = emptyFrame(size);
    drawNextFrame();
  }
  return frame_;
}

void QtMovie::reportAudience() const {
  const std::function<void()> changed = changed_;
  if (changed) changed();
}

}  // namespace zelvo::platform::qt
