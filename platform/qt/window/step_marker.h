/// Says which of the three steps a page is: three numbered marks, the steps that are done ticked off.
/// A label, so that a screen reader reads it as a text.
/// Thread: main.
#pragma once

#include <QLabel>

namespace zelvo::platform::qt {

class StepMarker final : public QLabel {
 public:
  /// `step` is 0, 1 or 2.
  explicit StepMarker(int step, QWidget* parent = nullptr);
  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  int step_;
};

}  // namespace zelvo::platform::qt
