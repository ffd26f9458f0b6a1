/// A movie with what steers it: its picture, and below it a bar to play, pause, go to a place and make it louder.
/// Thread: main.
#pragma once

#include <QWidget>
#include <functional>

#include "platform/qt/preview/movie_bar.h"
#include "platform/qt/preview/movie_widget.h"
#include "platform/settings.h"

namespace zelvo::platform::qt {

/// The bar follows whatever movie the picture is told to show, and is off while there is none that can be played. The
/// pane takes the colours of where it lies.
class MoviePane final : public QWidget {
 public:
  explicit MoviePane(QWidget* parent = nullptr);

  /// The picture; what a `QtMovieView` hands its movies to.
  [[nodiscard]] MovieWidget& movie() { return *movie_; }
  [[nodiscard]] MovieBar& bar() { return *bar_; }

  /// How a movie is played that does not play: by `starter`, which may come to nothing, in the place of
  /// `Movie::play`. For a page that has a way of its own to begin and end a preview. The movie goes on from where it
  /// stood all the same.
  void setStarter(std::function<void()> starter) { bar_->setStarter(std::move(starter)); }
  /// Where the loudness is remembered; all panes with the same settings share it. `settings` outlives the pane.
  void setSettings(Settings& settings) { bar_->setSettings(settings); }

  /// That of a movie alone: the bar takes its room from the picture.
  [[nodiscard]] QSize sizeHint() const override { return movie_->sizeHint(); }

 private:
  MovieWidget* movie_;
  MovieBar* bar_;
};

}  // namespace zelvo::platform::qt
