#include "platform/qt/drawing/scroll_areas.h"

#include <QAccessibleWidget>
#include <QScrollArea>

namespace zelvo::platform::qt {

namespace {

// The child widgets of any widget are looked up within their number, and do not come and go with the bars.
QAccessibleInterface* accessibleScrollArea(const QString&, QObject* object) {
  auto* const area = dynamic_cast<QScrollArea*>(object);
  return area == nullptr ? nullptr : new QAccessibleWidget(area, QAccessible::Client);  // Qt's cache owns it
}

}  // namespace

void installScrollAreaAccessibility() { QAccessible::installFactory(accessibleScrollArea); }

}  // namespace zelvo::platform::qt
