/// What pressing a button of the window does, which of its buttons tell of the pointer, and the pointer's shape.
/// Thread: main.
#pragma once

#include <QCursor>
#include <QWidget>
#include <utility>

#include "platform/actions.h"
#include "platform/qt/drawing/button.h"
#include "platform/tracking.h"

namespace zelvo::platform::qt {

class QtActions final : public Actions {
 public:
  void connect(Button& button, std::function<void(Button& sender)> action) override;
};

class QtTracking final : public Tracking {
 public:
  void addTrackingArea(Button& control, std::shared_ptr<const TrackingArea> area) override;
};

class QtCursor final : public Cursor {
 public:
  /// Shapes the pointer for the widget that it is over.
  void setPointingHand() override;
};

}  // namespace zelvo::platform::qt
