/// The window without the application: its elements, its controls and a queue that is served when the test says. Real
/// events reach it through the window system's entrance, so that it decides itself which of its elements gets them.
#pragma once

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QCursor>
#include <QTest>
#include <QWindow>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

#include "app/window_controls.h"
#include "platform/linux/main_queue.h"
#include "platform/notification_centre.h"
#include "platform/qt/deep/deep_pages.h"
#include "platform/qt/drawing/pictures.h"
#include "platform/qt/panels/sheets.h"
#include "platform/qt/window/main_window.h"

namespace zelvo::tests {

/// Lets everything happen that has been asked for.
inline void settle() {
  for (int turn = 0; turn < 5; ++turn) {
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
  }
}

/// Moves the pointer to a point of the widget, or of nothing.
inline void movePointer(const QWidget& widget, const QPoint& to) {
  QCursor::setPos(widget.mapToGlobal(to));
  settle();
}
inline void movePointerOver(const QWidget& widget) { movePointer(widget, widget.rect().center()); }
inline void movePointerAway() {
  QCursor::setPos(QPoint(1, 1));
  settle();
}

/// A click into the window at a point of `widget`; whatever lies uppermost there gets it.
inline void clickAt(const QWidget& widget, const QPoint& at) {
  QTest::mouseClick(widget.window()->windowHandle(), Qt::LeftButton, {}, widget.mapTo(widget.window(), at));
  settle();
}
inline void clickOn(const QWidget& widget) { clickAt(widget, widget.rect().center()); }

/// A key that reaches the window and goes where its keyboard's focus is.
inline void pressKey(const QWidget& widget, Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
  QTest::keyClick(widget.window()->windowHandle(), key, modifiers);
  settle();
}

/// Every widget of a kind below `root`. The window's classes are told apart by themselves, not by Qt's names for them.
template <class Kind>
[[nodiscard]] std::vector<Kind*> allBelow(const QWidget& root) {
  std::vector<Kind*> found;
  for (QWidget* one : root.findChildren<QWidget*>()) {
    if (auto* const ofKind = dynamic_cast<Kind*>(one)) found.push_back(ofKind);
  }
  return found;
}

/// Shows the widget as the active window.
inline void showActive(QWidget& widget) {
  widget.move(100, 100);
  widget.show();
  widget.activateWindow();
  settle();
  ASSERT_TRUE(widget.isActiveWindow());
}

/// Shows no movie.
class NoMovieView final : public platform::MovieView {
 public:
  void setMovie(std::shared_ptr<platform::Movie>) override {}
};

class ElementBench {
 public:
  ElementBench() {
    movePointerAway();
    window.panels().setControls(&controls);
    controls.dress(window.hostedViews());
    showActive(window);
  }
  ~ElementBench() {
    movePointerAway();
    window.panels().setControls(nullptr);
  }
  ElementBench(const ElementBench&) = delete;
  ElementBench& operator=(const ElementBench&) = delete;

  /// Runs `work` on a thread of its own, and then what it asked of the main thread.
  void onWorker(const std::function<void()>& work) {
    std::thread(work).join();
    while (queue.serve()) {
    }
    settle();
  }

  platform::linux_::LinuxMainQueue queue;
  platform::NotificationCentre centre;
  platform::qt::Pictures pictures{ZELVO_PICTURES};
  app::WindowControls controls{centre};
  NoMovieView movieView;
  platform::qt::MainWindow window{queue, pictures, new platform::qt::MoviePane, movieView};
  platform::qt::QtDeepPages deep{window, new platform::qt::MoviePane, movieView};
  platform::qt::QtSheets sheets{window.panels(), queue};
};

}  // namespace zelvo::tests
