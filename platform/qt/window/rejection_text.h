/// The message of the not-supported sheet: the one true reason.
#pragma once

#include "platform/main_queue.h"
#include "platform/qt/panels/panel_frame.h"
#include "platform/qt/window/film_texts.h"
#include "platform/rejection.h"

namespace zelvo::platform::qt {

/// Thread: any, but for the constructor (main).
class RejectionText final : public RejectionView {
 public:
  RejectionText(MainQueue& queue, PanelFrame& sheet) : queue_(queue), sheet_(sheet) {}
  void show(Rejection reason) override {
    queue_.perform([this, reason] { sheet_.message().setText(texts::rejection(reason)); });
  }

 private:
  MainQueue& queue_;
  PanelFrame& sheet_;
};

}  // namespace zelvo::platform::qt
