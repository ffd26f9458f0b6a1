/// The page of several films that are repaired one after the other.
/// Thread: main.
#pragma once

#include "platform/qt/deep/queue_table.h"
#include "platform/qt/drawing/elements.h"
#include "platform/qt/window/window_page.h"

namespace zelvo::platform::qt {

class FilmsPage final : public WindowPage {
 public:
  explicit FilmsPage(const PageParts& parts);

  QueueTable* queue;
  QtTextField queuefoldertext;
  QtButton* queuefolderbutton;
  QtButton* queueaddbutton;
  QtButton* queuestartbutton;
  QtButton* queuestopbutton;
};

}  // namespace zelvo::platform::qt
