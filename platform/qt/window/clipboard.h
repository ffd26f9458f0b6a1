/// The desktop's clipboard, by Qt.
/// Thread: main.
#pragma once

#include "platform/clipboard.h"

namespace zelvo::platform::qt {

class QtClipboard final : public Clipboard {
 public:
  void setText(std::string_view text) override;
};

}  // namespace zelvo::platform::qt
