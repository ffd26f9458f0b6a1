/// The program's event loop on Qt's. Work of the main queue is served from it: whoever posts wakes the loop through a
/// descriptor of ours and touches nothing of Qt. // Decision: window, A descriptor of ours wakes the loop
/// Thread: main, but for `terminationRequested`.
#pragma once

#include <QObject>
#include <QTimer>
#include <chrono>
#include <functional>
#include <memory>

#include "platform/application.h"
#include "platform/qt/panels/modal_panel.h"
#include "platform/served_queue.h"
#include "platform/waker.h"

class QSocketNotifier;

namespace zelvo::platform::qt {

class MainWindow;

/// Runs a function in the event loop after calls of a waker.
class WakeNotifier final : public QObject {
 public:
  /// `woken` runs after one or more calls of `wake`.
  WakeNotifier(std::unique_ptr<Waker> waker, std::function<void()> woken);
  ~WakeNotifier() override;
  WakeNotifier(const WakeNotifier&) = delete;
  WakeNotifier& operator=(const WakeNotifier&) = delete;
  /// Thread: any; a signal handler too.
  void wake() const noexcept { waker_->wake(); }

 private:
  const std::unique_ptr<Waker> waker_;
  QSocketNotifier* notifier_;
};

class QtApplication final : public QObject, public Application, public ModalEnd {
 public:
  /// There is one at a time, made after the QApplication; `queue` outlives it. Takes SIGTERM, SIGINT and SIGHUP over.
  QtApplication(ServedQueue& queue, MainWindow& window, LoopWakers wakers);
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

  // ---- ModalEnd ----
  [[nodiscard]] bool terminated() const override { return terminated_; }

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
  WakeNotifier arrival_;
  WakeNotifier signal_;
  std::chrono::steady_clock::time_point nextDelivery_;
  bool deliversRedrawsOnly_ = false;
  bool inputIsClosed_ = false;
  bool terminated_ = false;
};

}  // namespace zelvo::platform::qt
