/// The element of the window in which a movie is seen: its current picture in its own shape, in the middle of a ground
/// of the window's colour; a sentence where there is no picture to show.
/// Thread: main.
#pragma once

#include <QString>
#include <functional>
#include <memory>
#include <utility>

#include "platform/movies.h"
#include "platform/qt/drawing/hosted_widget.h"
#include "platform/qt/preview/shown_movie.h"

namespace zelvo::platform::qt {

/// A movie is looked at while the widget is shown (a window that is only minimised still shows it), and its file is
/// open only then or while it plays.
class MovieWidget : public HostedWidget {
 public:
  explicit MovieWidget(QWidget* parent = nullptr);
  ~MovieWidget() override;

  /// Shows `movie` in the place of the former one; nothing, or a movie that is not of this window's loader, shows an
  /// empty view.
  void setMovie(std::shared_ptr<Movie> movie);
  /// The movie that is shown; nothing in an empty view.
  [[nodiscard]] const std::shared_ptr<ShownMovie>& movie() const { return movie_; }
  /// Told whenever there is another movie, or something new about this one.
  void setObserver(std::function<void()> observer) { observer_ = std::move(observer); }

  [[nodiscard]] QSize sizeHint() const override;

 protected:
  /// Draws the movie, at the resolution of what `painter` paints on.
  void paintBase(QPainter& painter) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void look();
  void movieChanged();
  [[nodiscard]] bool paintPicture(QPainter& painter);
  [[nodiscard]] QString sentence() const;

  std::shared_ptr<ShownMovie> movie_;
  std::function<void()> observer_;
};

}  // namespace zelvo::platform::qt
