#include "platform/qt/window/window_place.h"

#include <QEvent>

namespace zelvo::platform::qt {

namespace {

constexpr std::string_view kPlaceKey = "window/place";

}  // namespace

WindowPlace::WindowPlace(QWidget& window, Settings& settings) : window_(window), settings_(settings) {
  window_.installEventFilter(this);
}

WindowPlace::~WindowPlace() {
  if (window_.isVisible()) remember();
}

void WindowPlace::restore() {
  const QByteArray place = QByteArray::fromBase64(QByteArray::fromStdString(settings_.value(kPlaceKey).value_or("")));
  // The toolkit takes zeros for what is cut off.
  if (place.size() == window_.saveGeometry().size()) window_.restoreGeometry(place);
}

void WindowPlace::remember() { settings_.setValue(kPlaceKey, window_.saveGeometry().toBase64().toStdString()); }

bool WindowPlace::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Hide) remember();
  return QObject::eventFilter(watched, event);
}

}  // namespace zelvo::platform::qt
