/// One self-drawn button on a host whose window and pointer are the test's, and overlays to lie above it.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "controls/view_transparent.h"
#include "platform/headless/view_host.h"

namespace zelvo::tests {

// What several buttons draw.
inline const std::string kCaptionLooks = "system 13; 1, 1, 1, 1; truncating tail; centred)";
inline const std::string kHoverFrame = "strokeRectWithWidth(1.5, 1.5, 97, 21; 3)";

using Lines = std::vector<std::string>;

/// An overlay in a host of its own.
struct CarriedOverlay {
  CarriedOverlay(platform::NotificationCentre& centre, platform::headless::Events& events)
      : host("overlay", events, {0, 0, 0, 0}) {
    auto made = controls::ViewTransparent::initWithFrame({0, 0, 400, 300}, &host, centre);
    view = made.get();
    host.carry(std::move(made));
  }

  platform::headless::RecordingViewHost host;
  controls::ViewTransparent* view = nullptr;
};

/// 100 points wide and 24 high; the pointer starts outside.
template <class Client>
class ButtonTest : public ::testing::Test {
 protected:
  static constexpr platform::Point kInside{50, 12};
  static constexpr platform::Point kOutside{-5, 12};

  /// What happened since the last time this was asked.
  Lines takeEvents() {
    Lines lines = events.lines();
    events.clear();
    return lines;
  }
  /// What the next drawing does.
  Lines painted() {
    events.clear();
    host.paint();
    return takeEvents();
  }
  /// Puts the button on an overlay that has nothing above it.
  controls::ViewTransparent& attachOverlay() {
    overlay = std::make_unique<CarriedOverlay>(centre, events);
    button.setViewTransparent(overlay->view);
    events.clear();
    return *overlay->view;
  }
  /// Shows the button in its window, with the pointer outside.
  void show() {
    host.placePointer(kOutside);
    host.resynchronise();
    events.clear();
  }

  platform::headless::Events events;
  platform::NotificationCentre centre;
  std::unique_ptr<CarriedOverlay> overlay;
  platform::headless::RecordingBaseButton base{"base", &events};
  platform::headless::RecordingViewHost host{"button", events, {20, 30, 100, 24}, true};
  Client& button = platform::makeCarried<Client>(host, base);
};

}  // namespace zelvo::tests
