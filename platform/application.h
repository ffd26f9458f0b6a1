/// The running program: its event loop, its end, and the redraws that go on while the main thread is busy.
#pragma once

#include <functional>

#include "platform/elements.h"

namespace zelvo::platform {

/// Who is asked when a window closes. Thread: main.
class WindowDelegate {
 public:
  virtual ~WindowDelegate() = default;
  /// Whether the window may close. Not asked while a sheet is up: the window then stays.
  [[nodiscard]] virtual bool windowShouldClose() = 0;
  /// The window is about to close.
  virtual void windowWillClose() = 0;
};

/// Thread: main.
class Application {
 public:
  virtual ~Application() = default;

  /// Nothing (nullptr) takes the delegate away.
  virtual void setDelegate(Window& window, WindowDelegate* delegate) = 0;

  /// Shows the main window and returns once it is painted.
  virtual void showMainWindow() = 0;
  /// Serves events until `terminate`. Answers the exit status.
  virtual int run() = 0;
  /// Ends the event loop, and every modal panel with it. May be called again.
  virtual void terminate() = 0;
  /// Runs what waits in the main queue, redraws included, and then nothing more: for the end of the program.
  virtual void drainMainQueue() = 0;

  /// Runs redraws that are due and paints; delivers no input and no other work of the main queue. Cheap when nothing is
  /// due, so that long work on the main thread may call it between any two steps.
  virtual void deliverRedraws() = 0;

  /// Long work on the main thread begins: keys, clicks and whatever else a person does in the window meanwhile are for
  /// a window that could not answer, and what would stop that work looks off. Once it is closed, closing changes
  /// nothing.
  /// Decision: runs, What is pressed during the copy is dropped
  virtual void closeInput() = 0;
  /// The long work is over: drops what the person did since `closeInput`, delivered by the display or still on its way,
  /// and answers again. Work of the main queue is not run within the call, so that no panel that comes up afterwards is
  /// dismissed by a key that was meant for something else. Without a `closeInput` before, it does nothing.
  virtual void openInput() = 0;

  /// Called when the system asks the program to end (SIGTERM, a log-out).
  virtual void setTerminationHandler(std::function<void()> handler) = 0;
  /// True from the moment the system asks, also while the main thread is too busy to run the handler.
  [[nodiscard]] virtual bool terminationRequested() const = 0;
};

}  // namespace zelvo::platform
