/// Says which of the three steps a page is: three numbered marks, the steps that are done ticked off.
/// Thread: main.
#pragma once

#include <QWidget>

namespace zelvo::platform::qt {

class StepMarker final : public QWidget {
 public:
  /// `step` is 0, 1 or 2.
  explicit StepMarker(int step, QWidget* parent = nullptr);
  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  int step_;
};

}  // namespace zelvo::platform::qt
