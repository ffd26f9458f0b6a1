#include "platform/qt/panels/sheet_head.h"

#include "platform/qt/drawing/text.h"

namespace zelvo::platform::qt {

const char* pictureOf(SheetSign sign) {
  switch (sign) {
    case SheetSign::done:
      return "sheet-done";
    case SheetSign::warning:
      return "sheet-warning";
    case SheetSign::failure:
      return "sheet-failed";
  }
  return "sheet-warning";
}

void QtSheetHead::setTitle(std::string_view title) {
  queue_.perform([this, text = shown(title)] { panel_.setHead(panel_.pictureName(), text); });
}

void QtSheetHead::setSign(SheetSign sign) {
  queue_.perform([this, sign] { panel_.setHead(QString::fromLatin1(pictureOf(sign)), panel_.title()); });
}

}  // namespace zelvo::platform::qt
