/// A notice of the desktop, for whoever does not look at the window.
/// Thread: main.
#pragma once

#include <QString>

namespace zelvo::platform::qt {

/// Shows a notice and returns without waiting. A desktop without notices shows none.
void showDesktopNotice(const QString& title, const QString& message);

}  // namespace zelvo::platform::qt
