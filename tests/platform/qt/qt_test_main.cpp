// The main of every test program that needs Qt: without a display unless one is asked for, without the desktop's
// services, and in the light appearance.
#include <gmock/gmock.h>

#include <QApplication>

#include "platform/qt/drawing/appearance.h"
#include "platform/qt/panels/panel_frame.h"

// Libraries that are not built for the thread sanitizer, which cannot see how they wait: Qt paints large pictures with
// threads of a pool of its own; the decoders count references to their buffers and wait with locks of their own; the
// sound server's client makes and ends threads while the player looks for a way to be heard. Only what these libraries
// themselves touch is left out: what the program's own threads do is looked at.
extern "C" const char* __tsan_default_suppressions() {  // NOLINT
  return "called_from_lib:libQt6Core.so.6\ncalled_from_lib:libQt6Gui.so.6\nrace:libavutil.so\nrace:libavcodec.so\n"
         "race:libpulsecommon\n";
}

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
  testing::InitGoogleMock(&argc, argv);
  const QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  zelvo::platform::qt::apply(zelvo::platform::qt::Appearance::light);
  zelvo::platform::qt::installPanelAccessibility();
  return RUN_ALL_TESTS();
}
