// The tests of the preview draw without a display, unless the caller names one.
#include <gtest/gtest.h>

#include <QApplication>

// The decoders' libraries are not built for the thread sanitizer, which cannot see how they count references to their
// buffers: it takes a buffer's release for a race with its making.
extern "C" const char* __tsan_default_suppressions() { return "race:libavutil.so\n"; }  // NOLINT

int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  testing::InitGoogleTest(&argc, argv);
  const QApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
