#include "platform/qt/panels/sheets.h"

#include <utility>

namespace zelvo::platform::qt {

void QtSheets::beginSheet(Window& sheet, Window&, std::function<bool()> stillWanted) {
  auto* const panel = dynamic_cast<PanelFrame*>(&sheet);
  if (panel == nullptr) return;
  queue_.perform([this, panel, wanted = std::move(stillWanted)] {
    if (!wanted || wanted()) stack_.begin(*panel, PanelStack::Place::belowQuestions);
  });
}

void QtSheets::endSheet(Window& sheet) {
  auto* const panel = dynamic_cast<PanelFrame*>(&sheet);
  if (panel != nullptr) queue_.perform([this, panel] { stack_.end(*panel); });
}

}  // namespace zelvo::platform::qt
