/// A movie that a player of the movie library plays. Its file is opened when the movie is first looked at or played,
/// and let go when nobody looks any more.
#pragma once

#include <memory>
#include <string>

#include "platform/qt/preview/mpv_player.h"
#include "platform/qt/preview/shown_movie.h"

namespace zelvo::platform::qt {

class OpenMovies;

/// Thread: `play`, `stop`, `gotoBeginning`, `gotoTime` and the destructor any, taken over to the main thread in order;
/// the rest main.
class QtMovie final : public ShownMovie {
 public:
  /// `openMovies` outlives the movie. Opens nothing. Thread: any.
  QtMovie(std::string path, OpenMovies& openMovies);
  ~QtMovie() override;

  /// Plays on; from the beginning when it stood at its end. A film that cannot be played is tried again, and then ends
  /// at once.
  void play() override;
  /// Stands still.
  void stop() override;
  void gotoBeginning() override;
  /// Of a film that is not open yet: where it begins once it is.
  void gotoTime(double seconds) override;

  void beginShow(std::function<void()> changed) override;
  void pauseShow() override;
  void endShow() override;
  [[nodiscard]] QSize shape() const override;
  [[nodiscard]] QImage picture(QSize size) override;
  [[nodiscard]] QString remark() const override { return remark_; }
  [[nodiscard]] bool isPlaying() const override { return playing_; }
  void setPaused(bool paused) override;
  [[nodiscard]] bool isPaused() const override { return paused_; }
  [[nodiscard]] double position() const override;
  [[nodiscard]] std::optional<double> duration() const override;
  void setLoudness(const Loudness& loudness) override;

  /// Looks for what its player has to tell.
  void serve();

 private:
  void onMain(std::function<void(QtMovie& movie)> step);
  void startPlaying();
  void stopPlaying();
  void goTo(double seconds);
  void open();
  void close();
  void fail(const std::string& reason);
  void takeNews(const MpvPlayer::News& news);
  void drawNextFrame();
  void reportAudience() const;

  const std::string path_;
  OpenMovies& openMovies_;
  std::unique_ptr<MpvPlayer> player_;
  std::function<void()> changed_;  ///< the audience; nothing while nobody looks
  QImage frame_;                   ///< the current picture at the size asked for last
  QString remark_;
  bool playing_ = false;
  bool paused_ = false;  ///< never while it does not play
  double start_ = 0;     ///< where it begins when it is opened, in seconds
  Loudness loudness_;
  bool failed_ = false;
};

}  // namespace zelvo::platform::qt
