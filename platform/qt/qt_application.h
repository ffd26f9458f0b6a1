/// The program's event loop on Qt's. Work of the main queue is served from it: whoever posts wakes the loop through a
/// descriptor of ours and touches nothing of Qt. // Decision: window, A descriptor of ours wakes the loop
/// Thread: main, but for `terminationRequested`.
#pragma once

#include <QObject>
#include <QTimer>
#include <chrono>
#include <functional>

#include "platform/application.h"
#include "platform/served_queue.h"

class QSocketNotifier;

namespace zelvo::platform::qt {

class MainWindow;

/// Wakes the event loop from anywhere: any thread, and a signal handler.
class LoopWaker final : public QObject {
 public:
  /// `woken` runs in the event loop after one or more calls of `wake`.
  explicit LoopWaker(std::function<void()> woken);
  ~LoopWaker() override;
  LoopWaker(const LoopWaker&) = delete;
  LoopWaker& operator=(const LoopWaker&) = delete;
  void wake() const;

 private:
  int descriptor_;
  QSocketNotifier* notifier_;
};

class QtApplication final : public QObject, public Application {
 public:
  /// There is one at a time, made after the QApplication; `queue` outlives it. Takes SIGTERM, SIGINT and SIGHUP over.
  QtApplication(ServedQueue& queue, MainWindow& window);
  ~QtApplication() override;

  void setDelegate(Window& window, WindowDelegate* delegate) override;
  void showMainWindow() override;
  int run() override;
  void terminate() override;
  void drainMainQueue() override;
  void deliverRedraws() override;
  void closeInput() override;
  void openInput() override;
  void setTerminationHandler(std::function<void()> handler) override;
  [[nodiscard]] bool terminationRequested() const override;

  /// Runs `handler` once, as soon as `run` serves events.
  void setStartHandler(std::function<void()> handler) { startHandler_ = std::move(handler); }

  /// True once `terminate` was called: a modal panel that is still to open does not.
  [[nodiscard]] bool terminated() const { return terminated_; }

 private:
  /// Takes what a person does while the input is closed.
  bool eventFilter(QObject* watched, QEvent* event) override;
  void serve();
  void requestTermination();

  ServedQueue& queue_;
  MainWindow& window_;
  WindowDelegate* delegate_ = nullptr;
  std::function<void()> terminationHandler_;
  std::function<void()> startHandler_;
  QTimer nextServing_;
  LoopWaker arrival_;
  LoopWaker signal_;
  std::chrono::steady_clock::time_point nextDelivery_;
  bool deliversRedrawsOnly_ = false;
  bool inputIsClosed_ = false;
  bool terminated_ = false;
};

}  // namespace zelvo::platform::qt
