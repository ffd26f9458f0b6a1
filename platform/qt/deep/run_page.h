/// The page of a deep repair at work.
/// Thread: main.
#pragma once

#include "platform/qt/deep/stage_progress.h"
#include "platform/qt/drawing/elements.h"
#include "platform/qt/window/window_page.h"

namespace zelvo::platform::qt {

class DeepRunPage final : public WindowPage {
 public:
  explicit DeepRunPage(const PageParts& parts);

  QtTextField runpathlabel;
  StageProgress* runprogress;
  QtButton* runstopbutton;
};

}  // namespace zelvo::platform::qt
