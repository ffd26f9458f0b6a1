/// A program without an event loop: its events are what the test does.
/// Thread: main; `requestTermination` and `redrawsDelivered` any.
#pragma once

#include <functional>
#include <string>
#include <utility>

#include "platform/application.h"
#include "platform/headless/elements.h"
#include "platform/headless/events.h"
#include "platform/relaxed.h"

namespace zelvo::platform::headless {

class HeadlessApplication final : public Application {
 public:
  HeadlessApplication(Events* events, HeadlessWindow& mainWindow) : events_(events), mainWindow_(mainWindow) {}

  void setDelegate(Window& window, WindowDelegate* delegate) override {
    if (&window != &mainWindow_) return;
    note("mainWindow.setDelegate(" + std::string(delegate != nullptr ? "delegate" : "nothing") + ")");
    delegate_ = delegate;
  }
  void showMainWindow() override {
    note("showMainWindow()");
    mainWindow_.setVisible(true);
  }
  int run() override {
    note("run()");
    if (onRun) onRun();
    return exitStatus;
  }
  void terminate() override {
    note("terminate()");
    terminated_ = true;
  }
  void drainMainQueue() override {
    note("drainMainQueue()");
    if (onDrain) onDrain();
  }
  void deliverRedraws() override {
    redraws_ = redraws_ + 1;
    if (onDeliverRedraws) onDeliverRedraws();
  }
  /// Written down in no list of events: look at `inputIsClosed` and `inputClosings`.
  void closeInput() override {
    if (!inputIsClosed_) ++inputClosings_;
    inputIsClosed_ = true;
  }
  void openInput() override { inputIsClosed_ = false; }
  void setTerminationHandler(std::function<void()> handler) override { handler_ = std::move(handler); }
  [[nodiscard]] bool terminationRequested() const override { return requested_; }

  /// As the window's close button: false when the window stays.
  bool closeMainWindow() {
    if (sheetIsUp && sheetIsUp()) return false;
    if (delegate_ != nullptr && !delegate_->windowShouldClose()) return false;
    if (delegate_ != nullptr) delegate_->windowWillClose();
    mainWindow_.setVisible(false);
    return true;
  }
  /// As SIGTERM. A main thread that is busy comes to the handler later.
  void requestTermination(bool mainThreadIsBusy = false) {
    requested_ = true;
    if (handler_ && !mainThreadIsBusy) handler_();
  }
  [[nodiscard]] bool terminated() const { return terminated_; }
  [[nodiscard]] int redrawsDelivered() const { return redraws_; }
  [[nodiscard]] bool inputIsClosed() const { return inputIsClosed_; }
  /// How often it was closed.
  [[nodiscard]] int inputClosings() const { return inputClosings_; }

  std::function<bool()> sheetIsUp;
  std::function<void()> onRun;
  std::function<void()> onDrain;
  std::function<void()> onDeliverRedraws;
  int exitStatus = 0;

 private:
  void note(const std::string& what) const {
    if (events_ != nullptr) events_->add(what);
  }

  Events* events_;
  HeadlessWindow& mainWindow_;
  WindowDelegate* delegate_ = nullptr;
  std::function<void()> handler_;
  Relaxed<bool> requested_;
  Relaxed<int> redraws_;
  bool terminated_ = false;
  bool inputIsClosed_ = false;
  int inputClosings_ = 0;
};

}  // namespace zelvo::platform::headless
