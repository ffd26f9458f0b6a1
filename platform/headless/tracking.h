/// Tracking areas whose pointer is the test's.
/// Thread: main.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/headless/elements.h"
#include "platform/headless/events.h"
#include "platform/tracking.h"

namespace zelvo::platform::headless {

class HeadlessTracking final : public Tracking {
 public:
  explicit HeadlessTracking(Events* events) : events_(events) {}

  void addTrackingArea(Button& control, std::shared_ptr<const TrackingArea> area) override {
    std::string line =
        "addTrackingArea(" + dynamic_cast<HeadlessButton&>(control).name() + ", " + std::to_string(area->options);
    if (area->userInfo) {
      for (const auto& [key, value] : *area->userInfo) line += ", " + key + "=" + std::to_string(value);
    }
    if (events_ != nullptr) events_->add(line + ")");
    areas_.push_back({&control, std::move(area)});
  }

  void enter(const Button& control) const {
    forEach(control, [](const TrackingArea& area) { area.owner.mouseEntered(eventOf(area)); });
  }
  void exit(const Button& control) const {
    forEach(control, [](const TrackingArea& area) { area.owner.mouseExited(eventOf(area)); });
  }

 private:
  struct Attached {
    const Button* control = nullptr;
    std::shared_ptr<const TrackingArea> area;
  };
  static TrackingEvent eventOf(const TrackingArea& area) { return {area.userInfo ? &*area.userInfo : nullptr}; }
  template <class Tell>
  void forEach(const Button& control, const Tell& tell) const {
    for (const Attached& one : areas_) {
      if (one.control == &control) tell(*one.area);
    }
  }

  Events* events_;
  std::vector<Attached> areas_;
};

class HeadlessCursor final : public Cursor {
 public:
  explicit HeadlessCursor(Events* events) : events_(events) {}
  void setPointingHand() override {
    if (events_ != nullptr) events_->add("cursor.setPointingHand()");
  }

 private:
  Events* events_;
};

}  // namespace zelvo::platform::headless
