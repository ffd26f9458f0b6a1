// The main of every test program that needs Qt: without a display unless one is asked for, without the desktop's
// services, and in the light appearance.
#include <gmock/gmock.h>

#include <QApplication>

#include "platform/qt/appearance.h"
#include "platform/qt/panel_frame.h"

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
