// Home on the result page, the help pages, and two small helpers.
#include <algorithm>

#include "app/controller.h"
#include "app/globals.h"
#include "app/texts.h"
#include "engine/globals.h"

namespace zelvo::app {

using platform::logLine;

void Orlin_Repair_AVIAppDelegate::main3(platform::Button*) {
  abandonShownRun();
  negvalue = negvalue == 0 ? 1 : 0;
  removeScratch(engine::internalpath.get());
  outlets.tabview.selectFirstTabViewItem();
  forgetPath();
}

void Orlin_Repair_AVIAppDelegate::help1(platform::Button*) {
  services_.workspace.openURL(services_.paths.mapped(texts::kHelpPage1));
}

void Orlin_Repair_AVIAppDelegate::help2(platform::Button*) {
  logLine(services_.log, "Help clicked");
  services_.workspace.openURL(services_.paths.mapped(texts::kHelpPage2));
}

void Orlin_Repair_AVIAppDelegate::help3(platform::Button*) {
  logLine(services_.log, "Help clicked");
  services_.workspace.openURL(services_.paths.mapped(texts::kHelpPage2));
}

void Orlin_Repair_AVIAppDelegate::showAlertPanelWithData(const std::map<std::string, std::string>& data) {
  const auto valueOf = [&data](const char* key) -> std::optional<std::string> {
    const auto found = data.find(key);
    if (found == data.end()) return std::nullopt;
    return found->second;
  };
  alertResultValue = services_.alertPanels.runAlertPanel({.title = valueOf("title"),
                                                          .message = valueOf("body"),
                                                          .defaultButton = valueOf("defaultButton"),
                                                          .alternateButton = valueOf("alternateButton"),
                                                          .otherButton = valueOf("otherButton")});
}

bool Orlin_Repair_AVIAppDelegate::stringIsNumeric(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char one) { return one >= '0' && one <= '9'; });
}

}  // namespace zelvo::app
