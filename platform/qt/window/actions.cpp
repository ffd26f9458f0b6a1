#include "platform/qt/window/actions.h"

#include <QApplication>

namespace zelvo::platform::qt {

namespace {

/// Every button of the window is one of ours.
QtButton& ours(Button& button) { return dynamic_cast<QtButton&>(button); }

}  // namespace

void QtActions::connect(Button& button, std::function<void(Button& sender)> action) {
  ours(button).setAction(std::move(action));
}

void QtTracking::addTrackingArea(Button& control, std::shared_ptr<const TrackingArea> area) {
  ours(control).host().addTrackingArea(std::move(area));
}

void QtCursor::setPointingHand() {
  if (QWidget* const under = QApplication::widgetAt(QCursor::pos())) under->setCursor(Qt::PointingHandCursor);
}

}  // namespace zelvo::platform::qt
