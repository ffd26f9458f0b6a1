// Hover pictures: one table of controls. Entering a control shows its hover picture; leaving any control shows the
// normal picture of all.
#include <array>

#include "app/controller.h"
#include "app/globals.h"
#include "app/texts.h"

namespace zelvo::app {

namespace {

using Controller = Orlin_Repair_AVIAppDelegate;
using Outlets = platform::ControllerOutlets;

constexpr std::uint32_t kAreaOptions = platform::kTrackingMouseEnteredAndExited | platform::kTrackingActiveAlways;
constexpr std::int64_t kNoIdentifier = -1;
constexpr std::int64_t kLastIdentifier = 15;

/// One row of the hover table.
struct HoverRow {
  platform::Button& (*control)(const Outlets&);
  Controller::AreaReference Controller::*area;
  std::int64_t identifier;
  std::string_view hover;   ///< empty: entering sets no picture
  std::string_view normal;  ///< empty: leaving sets no picture
  std::uint8_t Controller::*exitMark;
};

constexpr std::int64_t kClickHereIdentifier = 9;

constexpr std::array<HoverRow, 11> kHoverTable = {{
    {+[](const Outlets& o) -> platform::Button& { return o.repairbutton; }, &Controller::trackingAreaRepair, 0,
     texts::kRepairHover, texts::kRepairNormal, &Controller::inTrackArea1},
    // Deliberate: an area without user information, so that the picture never changes.
    {+[](const Outlets& o) -> platform::Button& { return o.main1; }, &Controller::trackingAreaMain1, kNoIdentifier,
     std::string_view{}, std::string_view{}, nullptr},
    {+[](const Outlets& o) -> platform::Button& { return o.main2; }, &Controller::trackingAreaMain2, 4,
     texts::kHomeHover, texts::kHomeNormal, &Controller::inTrackArea5},
    {+[](const Outlets& o) -> platform::Button& { return o.main3; }, &Controller::trackingAreaMain3, 5,
     texts::kHomeHover, texts::kHomeNormal, &Controller::inTrackArea6},
    {+[](const Outlets& o) -> platform::Button& { return o.help1; }, &Controller::trackingAreaHelp1, 6,
     texts::kHelpHover, texts::kHelpNormal, &Controller::inTrackArea7},
    {+[](const Outlets& o) -> platform::Button& { return o.help2; }, &Controller::trackingAreaHelp2, 7,
     texts::kHelpHover, texts::kHelpNormal, &Controller::inTrackArea8},
    {+[](const Outlets& o) -> platform::Button& { return o.help3; }, &Controller::trackingAreaHelp3, 8,
     texts::kHelpHover, texts::kHelpNormal, &Controller::inTrackArea9},
    {+[](const Outlets& o) -> platform::Button& { return o.clickherebutton; }, &Controller::trackingAreaclickhere,
     kClickHereIdentifier, std::string_view{}, std::string_view{}, nullptr},
    {+[](const Outlets& o) -> platform::Button& { return o.update1; }, &Controller::trackingAreaUpdate1, 10,
     texts::kUpdateHover, texts::kUpdateNormal, &Controller::inTrackArea11},
    {+[](const Outlets& o) -> platform::Button& { return o.update2; }, &Controller::trackingAreaUpdate2, 11,
     texts::kUpdateHover, texts::kUpdateNormal, &Controller::inTrackArea12},
    {+[](const Outlets& o) -> platform::Button& { return o.update3; }, &Controller::trackingAreaUpdate3, 12,
     texts::kUpdateHover, texts::kUpdateNormal, &Controller::inTrackArea13},
}};

}  // namespace

void Orlin_Repair_AVIAppDelegate::installTrackingAreas() {
  for (const HoverRow& row : kHoverTable) {
    std::optional<platform::TrackingDictionary> userInfo;
    if (row.identifier != kNoIdentifier) userInfo.emplace().emplace(kTrackerKey, row.identifier);
    this->*row.area = std::make_shared<const platform::TrackingArea>(
        platform::TrackingArea{kAreaOptions, *this, std::move(userInfo)});
    services_.tracking.addTrackingArea(row.control(outlets), this->*row.area);
  }
}

void Orlin_Repair_AVIAppDelegate::mouseEntered(const platform::TrackingEvent& event) {
  handleEnteredExited(true, event.userData);
}

void Orlin_Repair_AVIAppDelegate::handleEnteredExited(bool, const platform::TrackingDictionary* withTrackingDict) {
  if (withTrackingDict == nullptr) return;
  const std::int64_t identifier = getTrackerIDFromDict(*withTrackingDict);
  if (identifier < 0 || identifier > kLastIdentifier) return;
  for (const HoverRow& row : kHoverTable) {
    if (row.identifier != identifier) continue;
    if (!row.hover.empty()) row.control(outlets).setImage(row.hover);
    if (identifier == kClickHereIdentifier) {
      services_.cursor.setPointingHand();
      platform::logLine(services_.log, "Close hand");
    }
  }
}

void Orlin_Repair_AVIAppDelegate::mouseExited(const platform::TrackingEvent&) {
  // Deliberate: the cursor is not reset.
  for (const HoverRow& row : kHoverTable) {
    if (row.exitMark != nullptr && this->*row.exitMark == 0) row.control(outlets).setImage(row.normal);
  }
}

void Orlin_Repair_AVIAppDelegate::mouseDragged(const platform::TrackingEvent&) {
  platform::logLine(services_.log, "Mouse dragged");
}

std::int64_t Orlin_Repair_AVIAppDelegate::getTrackerIDFromDict(const platform::TrackingDictionary& dictionary) {
  const auto found = dictionary.find(std::string(kTrackerKey));
  return found == dictionary.end() ? 0 : found->second;
}

}  // namespace zelvo::app
