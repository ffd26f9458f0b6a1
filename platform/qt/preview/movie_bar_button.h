/// A small button of the bar below a movie, with a sign in the place of its title.
/// Thread: main.
#pragma once

#include <QAbstractButton>

namespace zelvo::platform::qt {

class MovieBarButton final : public QAbstractButton {
 public:
  enum class Sign { play, pause, sound, mute };

  explicit MovieBarButton(QWidget* parent = nullptr);

  /// What it shows, and what it is to a screen reader and to the pointer: what a press does.
  void show(Sign sign, const QString& name);
  using QAbstractButton::show;
  [[nodiscard]] Sign sign() const { return sign_; }

  [[nodiscard]] QSize sizeHint() const override;

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;

 private:
  Sign sign_ = Sign::play;
  bool showsFocus_ = false;
};

}  // namespace zelvo::platform::qt
