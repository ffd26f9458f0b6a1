#include "platform/headless/screen.h"

#include <algorithm>
#include <utility>

namespace zelvo::platform::headless {

namespace {

/// On the headless screen every window is a HeadlessWindow.
HeadlessWindow& headless(Window& window) { return dynamic_cast<HeadlessWindow&>(window); }

}  // namespace

void HeadlessSheets::beginSheet(Window& sheet, Window& over, std::function<bool()> stillWanted) {
  queue_.perform([this, &sheet = headless(sheet), &over = headless(over), wanted = std::move(stillWanted)] {
    if (wanted && !wanted()) {
      if (events_ != nullptr) events_->add("beginSheet(" + sheet.name() + ") dropped");
      return;
    }
    if (events_ != nullptr) events_->add("beginSheet(" + sheet.name() + ", " + over.name() + ")");
    sheet.setVisible(true);
    const std::lock_guard lock(mutex_);
    if (std::find(shown_.begin(), shown_.end(), &sheet) == shown_.end()) shown_.push_back(&sheet);
  });
}

void HeadlessSheets::endSheet(Window& sheet) {
  queue_.perform([this, &sheet = headless(sheet)] {
    if (events_ != nullptr) events_->add("endSheet(" + sheet.name() + ")");
    const std::lock_guard lock(mutex_);
    std::erase(shown_, &sheet);
  });
}

std::vector<std::string> HeadlessSheets::shown() const {
  const std::lock_guard lock(mutex_);
  std::vector<std::string> names;
  for (const HeadlessWindow* sheet : shown_) names.push_back(sheet->name());
  return names;
}

Screen::Screen(Events* events)
    : status("textfield", events),
      videocodecfield("videocodecfield", events),
      audiocodecfield("audiocodecfield", events),
      pathfield("pathfield", events),
      mainWindow("mainWindow", events),
      filenotsupportedwindow("filenotsupportedwindow", events),
      invalidfilewindow("invalidfilewindow", events),
      repaircompletedwindow("repaircompletedwindow", events),
      stoprepairwindow("stoprepairwindow", events),
      stopbutton("stopbutton", events),
      tabview("tabview", events),
      movieview1("movieview1", events),
      filenotsupportedokbutton("filenotsupportedokbutton", events),
      invalidfileokbutton("invalidfileokbutton", events),
      repaircompletedokbutton("repaircompletedokbutton", events),
      previewbutton("previewbutton", events),
      minutestextfield("minutestextfield", events),
      secondstextfield("secondstextfield", events),
      hourstextfield("hourstextfield", events),
      job{.textfield = status,
          .videocodecfield = videocodecfield,
          .audiocodecfield = audiocodecfield,
          .pathfield = pathfield,
          .window = mainWindow,
          .filenotsupportedwindow = filenotsupportedwindow,
          .invalidfilewindow = invalidfilewindow,
          .repaircompletedwindow = repaircompletedwindow,
          .stoprepairwindow = stoprepairwindow,
          .stopbutton = stopbutton,
          .tabview2 = tabview,
          .movieview1 = movieview1,
          .filenotsupportedokbutton = filenotsupportedokbutton,
          .invalidfileokbutton = invalidfileokbutton,
          .repaircompletedokbutton = repaircompletedokbutton,
          .previewbutton = previewbutton,
          .minutestextfield = minutestextfield,
          .secondstextfield = secondstextfield,
          .hourstextfield = hourstextfield} {}

}  // namespace zelvo::platform::headless
