/// A bar with a handle: the place in a film, or how loud it is. A click goes there, a drag moves the handle, and the
/// keyboard goes by steps. A screen reader is told the value in words.
/// Thread: main.
#pragma once

#include <QAbstractSlider>
#include <QString>
#include <functional>

namespace zelvo::platform::qt {

/// The arrows up and down are left to what the slider lies in.
class MovieSlider final : public QAbstractSlider {
 public:
  explicit MovieSlider(QWidget* parent = nullptr);

  /// Moves the handle, unless a person holds it, and tells nobody. The least value is 0.
  void showValue(int value, int maximum);
  /// How much of the value is 1 to a screen reader.
  void setUnit(double unit) { unit_ = unit; }
  [[nodiscard]] double unit() const { return unit_; }
  /// What the value is, in words.
  void setWords(const QString& words);
  [[nodiscard]] const QString& words() const { return words_; }

  /// Told the value that a person asks for, by a click, a drag or a key.
  void setReceiver(std::function<void(int value)> receiver) { receiver_ = std::move(receiver); }
  /// Told when a person takes hold of the handle, and lets go of it.
  void setHoldObserver(std::function<void(bool isHeld)> observer) { holdObserver_ = std::move(observer); }

  /// Where the middle of the handle stands for a value, in the widget's points.
  [[nodiscard]] double placeOf(int value) const;

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;

 private:
  [[nodiscard]] int valueAt(double place) const;
  void letGo();

  QString words_;
  double unit_ = 1;
  std::function<void(int value)> receiver_;
  std::function<void(bool isHeld)> holdObserver_;
  bool isShowing_ = false;  ///< the value is being set by `showValue`
  bool showsFocus_ = false;
};

}  // namespace zelvo::platform::qt
