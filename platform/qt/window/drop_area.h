/// The large area of the first page: a file is dropped on it, and a click anywhere in it opens the chooser. Once a film
/// is chosen, it is its card: name, size and length.
/// Thread: main.
#pragma once

#include <QHBoxLayout>
#include <QLabel>
#include <QWidget>
#include <functional>
#include <string>

#include "platform/chosen_film.h"
#include "platform/main_queue.h"
#include "platform/qt/drawing/button.h"
#include "platform/qt/drawing/elements.h"
#include "platform/qt/drawing/picture_widget.h"
#include "platform/qt/drawing/pictures.h"
#include "platform/qt/window/film_length_reader.h"

namespace zelvo::platform::qt {

class DropArea final : public QWidget, public ChosenFilmView {
 public:
  /// A click presses `chooser`, which stands below the text.
  DropArea(MainQueue& queue, Pictures& pictures, QtButton& chooser, QWidget* parent = nullptr);

  // ---- platform::ChosenFilmView ----
  void show(ChosenFilm film) override;

  /// No film is chosen any more.
  void clear();

  /// Told when a film has come onto the card, or gone from it.
  void setCardObserver(std::function<void(bool isCard)> observer) { cardObserver_ = std::move(observer); }
  /// At the right of the chooser's button.
  void addBeside(QWidget* widget);
  /// Below everything else in the area.
  void addLine(QWidget* widget);
  /// Whether a file that can be dropped is over the window.
  void setInviting(bool inviting);

  [[nodiscard]] bool isCard() const { return isCard_; }
  [[nodiscard]] QString title() const { return title_->text(); }
  [[nodiscard]] QString facts() const { return facts_->text(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;

 private:
  void becomeCard(bool isCard);

  QtButton& chooser_;
  PictureWidget* picture_;
  ElidedLabel* title_;
  QLabel* facts_;
  QHBoxLayout* buttons_;
  FilmLengthReader lengthReader_;
  std::function<void(bool isCard)> cardObserver_;
  bool isInviting_ = false;
  bool isCard_ = false;
};

}  // namespace zelvo::platform::qt
