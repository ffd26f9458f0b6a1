/// Tracking areas, which tell when the pointer enters and leaves a control, and the pointer's shape.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "platform/elements.h"
#include "platform/geometry.h"

namespace zelvo::platform {

/// Bits of a tracking area's options.
inline constexpr std::uint32_t kTrackingMouseEnteredAndExited = 0x01;
inline constexpr std::uint32_t kTrackingActiveInKeyWindow = 0x20;
inline constexpr std::uint32_t kTrackingActiveInActiveApp = 0x40;
inline constexpr std::uint32_t kTrackingActiveAlways = 0x80;
inline constexpr std::uint32_t kTrackingInVisibleRect = 0x200;

/// What a tracking area carries for its owner.
using TrackingDictionary = std::map<std::string, std::int64_t>;

/// The pointer entered or left. `userData` is the area's; null when it carries none.
struct TrackingEvent {
  const TrackingDictionary* userData = nullptr;
};

/// Thread: main.
class TrackingOwner {
 public:
  virtual ~TrackingOwner() = default;
  virtual void mouseEntered(const TrackingEvent& event) = 0;
  virtual void mouseExited(const TrackingEvent& event) = 0;
};

/// Covers the whole bounds of the control that it is attached to: always so with kTrackingInVisibleRect, and as long as
/// `rect` is empty.
struct TrackingArea {
  std::uint32_t options = 0;
  TrackingOwner& owner;
  std::optional<TrackingDictionary> userInfo;
  Rect rect = {};  ///< in the control's coordinates
};

/// Thread: main.
class Tracking {
 public:
  virtual ~Tracking() = default;
  /// The control keeps the area; its owner must live as long as the control takes events.
  virtual void addTrackingArea(Button& control, std::shared_ptr<const TrackingArea> area) = 0;
};

/// Thread: main.
class Cursor {
 public:
  virtual ~Cursor() = default;
  /// The hand with which links are pointed at, until the platform resets the pointer by itself.
  virtual void setPointingHand() = 0;
};

}  // namespace zelvo::platform
