#include "platform/qt/window/clipboard.h"

#include <QClipboard>
#include <QGuiApplication>

#include "platform/qt/drawing/text.h"

namespace zelvo::platform::qt {

void QtClipboard::setText(std::string_view text) { QGuiApplication::clipboard()->setText(shown(text)); }

}  // namespace zelvo::platform::qt
