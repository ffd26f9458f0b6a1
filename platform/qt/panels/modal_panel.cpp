#include "platform/qt/panels/modal_panel.h"

#include <QApplication>

namespace zelvo::platform::qt {

void runModally(PanelStack& stack, PanelFrame& panel, QEventLoop& loop) {
  QWidget& window = *stack.content().window();
  if (!window.isVisible()) window.show();
  panel.setStaysOnTop();
  stack.begin(panel);
  if (!window.isActiveWindow()) QApplication::alert(&window);
  loop.exec();
  stack.orderOut(panel);
}

}  // namespace zelvo::platform::qt
