// What a person does while the main thread is busy reaches nothing, and the window answers again afterwards.
#include <gtest/gtest.h>

#include <QCloseEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QTest>
#include <QWindow>
#include <thread>

#include "platform/qt/panels/panel_frame.h"
#include "tests/platform/qt/window_bench.h"

namespace zelvo::tests {
namespace {

namespace qt = platform::qt;

class InputGate : public testing::Test {
 protected:
  /// As the display delivers a key: it waits until events are served.
  void queueKey(Qt::Key key) {
    for (const QEvent::Type kind : {QEvent::KeyPress, QEvent::KeyRelease}) {
      QCoreApplication::postEvent(window.windowHandle(), new QKeyEvent(kind, key, Qt::NoModifier));
    }
  }
  void queueClick(const QWidget& widget) {
    const QPointF at = widget.mapTo(&window, widget.rect().center());
    for (const QEvent::Type kind : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
      const bool isDown = kind == QEvent::MouseButtonPress;
      QCoreApplication::postEvent(window.windowHandle(),
                                  new QMouseEvent(kind, at, window.mapToGlobal(at), Qt::LeftButton,
                                                  isDown ? Qt::LeftButton : Qt::NoButton, {}));
    }
  }
  void show(qt::PanelFrame& panel) {
    bench.sheets->beginSheet(panel, window, {});
    bench.settle();
    ASSERT_TRUE(bench.isShown(panel));
  }

  WindowBench bench;
  qt::MainWindow& window = *bench.window;
  qt::WindowPanels& panels = window.fixedPanels();
};

TEST_F(InputGate, QueuedKeysAndClicksDismissASheetWithoutTheGate) {
  show(panels.filenotselectedwindow);
  queueKey(Qt::Key_Return);
  bench.settle();
  EXPECT_FALSE(bench.isShown(panels.filenotselectedwindow));

  show(panels.filenotselectedwindow);
  queueClick(panels.filenotselectedokbutton);
  bench.settle();
  EXPECT_FALSE(bench.isShown(panels.filenotselectedwindow));
}

TEST_F(InputGate, KeysOfTheBusyTimeReachNothing) {
  show(panels.filenotselectedwindow);
  bench.application->closeInput();
  queueKey(Qt::Key_Return);
  bench.application->openInput();
  bench.settle();
  EXPECT_TRUE(bench.isShown(panels.filenotselectedwindow));
}

TEST_F(InputGate, ClicksOfTheBusyTimeReachNothing) {
  show(panels.filenotselectedwindow);
  bench.application->closeInput();
  queueClick(panels.filenotselectedokbutton);
  bench.application->openInput();
  bench.settle();
  EXPECT_TRUE(bench.isShown(panels.filenotselectedwindow));
}

TEST_F(InputGate, RedrawsOfTheBusyTimeDeliverNoKeys) {
  show(panels.filenotselectedwindow);
  bench.application->closeInput();
  queueKey(Qt::Key_Return);
  bench.application->deliverRedraws();
  EXPECT_TRUE(bench.isShown(panels.filenotselectedwindow));
  bench.application->openInput();
}

TEST_F(InputGate, TheWindowAnswersAgainAfterwards) {
  show(panels.filenotselectedwindow);
  bench.application->closeInput();
  bench.application->openInput();
  bench.key(Qt::Key_Return);
  EXPECT_FALSE(bench.isShown(panels.filenotselectedwindow));
}

TEST_F(InputGate, AWindowAskedToCloseMeanwhileStaysAndAsksNothing) {
  bench.application->closeInput();
  QCoreApplication::postEvent(window.windowHandle(), new QCloseEvent);
  bench.application->openInput();
  bench.settle();
  EXPECT_TRUE(window.isVisible());
  EXPECT_TRUE(window.panels().isEmpty());
}

TEST_F(InputGate, WorkOfTheMainQueueWaitsUntilTheInputIsOpen) {
  bool cameUp = false;
  bench.application->closeInput();
  std::thread([&] { bench.queue.perform([&] { cameUp = true; }); }).join();
  bench.application->openInput();
  EXPECT_FALSE(cameUp);
  bench.settle();
  EXPECT_TRUE(cameUp);
}

TEST_F(InputGate, StopLooksOffWhileTheWindowCannotAnswer) {
  bench.application->closeInput();
  show(panels.saveprogresspanel);
  EXPECT_FALSE(panels.stopsavingbutton.isEnabled());
  bench.application->openInput();
  EXPECT_TRUE(panels.stopsavingbutton.isEnabled());
  EXPECT_TRUE(panels.stopsavingbutton.hasFocus());
}

TEST_F(InputGate, StopThatHadTheKeyboardHasItAgain) {
  show(panels.saveprogresspanel);
  ASSERT_TRUE(panels.stopsavingbutton.hasFocus());
  bench.application->closeInput();
  bench.application->openInput();
  EXPECT_TRUE(panels.stopsavingbutton.hasFocus());
}

TEST_F(InputGate, OpeningWhatIsOpenChangesNothing) {
  panels.stopsavingbutton.setEnabled(false);
  bench.application->openInput();
  EXPECT_FALSE(panels.stopsavingbutton.isEnabled());
  bench.key(Qt::Key_R, Qt::ControlModifier);
  EXPECT_TRUE(bench.isShown(panels.filenotselectedwindow));
}

TEST_F(InputGate, ClosingTwiceIsOpenedAtOnce) {
  bench.application->closeInput();
  bench.application->closeInput();
  bench.application->openInput();
  bench.key(Qt::Key_R, Qt::ControlModifier);
  EXPECT_TRUE(bench.isShown(panels.filenotselectedwindow));
}

}  // namespace
}  // namespace zelvo::tests
