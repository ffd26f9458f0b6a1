// The tests of the panels draw without a display, unless the caller names one.
#include <gtest/gtest.h>

#include <QApplication>

#include "platform/qt/appearance.h"
#include "platform/qt/panel_frame.h"

int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  testing::InitGoogleTest(&argc, argv);
  const QApplication application(argc, argv);
  zelvo::platform::qt::apply(zelvo::platform::qt::Appearance::light);
  zelvo::platform::qt::installPanelAccessibility();
  return RUN_ALL_TESTS();
}
