/// The bar below a movie: play or pause, the place in the film, the time, mute and volume.
/// Thread: main.
#pragma once

#include <QGridLayout>
#include <QLabel>
#include <QPointer>
#include <QWidget>
#include <functional>
#include <memory>

#include "platform/qt/preview/movie_bar_button.h"
#include "platform/qt/preview/movie_slider.h"
#include "platform/qt/preview/movie_widget.h"
#include "platform/settings.h"

namespace zelvo::platform::qt {

class MovieBar final : public QWidget {
 public:
  /// Steers whatever `movie` shows, as its only observer.
  /// Lifetime: either may go first.
  explicit MovieBar(MovieWidget& movie, QWidget* parent = nullptr);

  /// See MoviePane.
  void setStarter(std::function<void()> starter) { starter_ = std::move(starter); }
  void setSettings(Settings& settings);

  [[nodiscard]] QSize minimumSizeHint() const override;
  /// Before it has that width, too.
  [[nodiscard]] int heightForWidth(int width) const override;

  // ---- For tests and pictures of the window ----
  [[nodiscard]] MovieBarButton& playButton() { return *play_; }
  [[nodiscard]] MovieSlider& place() { return *place_; }
  [[nodiscard]] QLabel& time() { return *time_; }
  [[nodiscard]] MovieBarButton& muteButton() { return *mute_; }
  [[nodiscard]] MovieSlider& volume() { return *volume_; }
  [[nodiscard]] const Loudness& loudness() const { return loudness_; }

 protected:
  void showEvent(QShowEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  /// What its elements leave: Space plays and pauses, M mutes, up and down change the volume.
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void follow();
  void showPlace();
  void showTime(const QString& time, const QString& length);
  void showLoudness();
  void pressPlay();
  void goTo(int value);
  static void goToEnd(ShownMovie& film);
  void beginDrag();
  void endDrag();
  void setLoudness(const Loudness& loudness);
  void useLoudness(const Loudness& loudness);
  void readLoudness();
  /// The place has a row of its own where the bar is short; where it is shorter yet, the volume gives way.
  void arrange();
  [[nodiscard]] bool needsTwoRows(int width) const;
  [[nodiscard]] int widthWithoutSliders() const;

  /// Nothing once the widget is gone, and in an empty one.
  [[nodiscard]] std::shared_ptr<ShownMovie> film() const;

  QPointer<MovieWidget> movie_;
  MovieBarButton* play_;
  MovieSlider* place_;
  QLabel* time_;
  MovieBarButton* mute_;
  MovieSlider* volume_;
  QGridLayout* grid_;
  bool hasTwoRows_ = false;
  std::function<void()> starter_;
  Settings* settings_ = nullptr;
  Loudness loudness_;
  std::weak_ptr<ShownMovie> heard_;    ///< the movie that was told the loudness last
  std::weak_ptr<ShownMovie> dragged_;  ///< the one that was held for a drag, and goes on after it
};

}  // namespace zelvo::platform::qt
