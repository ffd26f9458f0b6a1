/// Where the window stood, and how large it was, from one start to the next.
/// Thread: main.
#pragma once

#include <QWidget>

#include "platform/settings.h"

namespace zelvo::platform::qt {

class WindowPlace final : public QObject {
 public:
  /// Remembers when the window goes, and when this goes. The settings outlive it.
  WindowPlace(QWidget& window, Settings& settings);
  ~WindowPlace() override;
  /// Leaves the window as it is where nothing is remembered, or no sense of it can be made. What is on no screen that
  /// is there is brought onto one.
  void restore();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void remember();

  QWidget& window_;
  Settings& settings_;
};

}  // namespace zelvo::platform::qt
