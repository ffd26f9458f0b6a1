#include "platform/qt/panels/wait_panels.h"

#include <QTimer>

#include "platform/qt/drawing/elements.h"
#include "platform/qt/drawing/text.h"
#include "platform/qt/panels/panel_frame.h"
#include "platform/qt/texts.h"

namespace zelvo::platform::qt {

bool QtWaitPanels::runWaitPanel(const WaitPanel& notice) {
  constexpr int kLookMilliseconds = 100;
  const auto isFinished = [&notice] { return notice.finished && notice.finished(); };
  if (isFinished()) return true;
  if (end_.terminated()) return false;

  PanelFrame panel(stack_, {QStringLiteral("sheet-info"), shown(notice.title), shown(notice.message)});
  auto* const bar = new FlatProgressBar;
  bar->setAccessibleName(shown(notice.title));
  panel.addContent(bar);
  QtProgressBar progress(stack_.queue(), *bar);
  const auto showPercent = [&notice, &progress] {
    if (notice.percent) progress.setDoubleValue(notice.percent());
  };
  showPercent();

  QEventLoop loop;
  bool finished = false;
  const QString title = shown(notice.cancelButton);
  QtButton& button = panel.addButton(title.isEmpty() ? texts::cancel() : title, PanelFrame::Role::cancels);
  button.setAction([&loop](Button&) { loop.quit(); });
  QTimer look;
  QObject::connect(&look, &QTimer::timeout, &panel, [&] {
    finished = isFinished();
    showPercent();
    if (finished) loop.quit();
  });
  look.start(kLookMilliseconds);
  runModally(stack_, panel, loop);
  return finished;
}

}  // namespace zelvo::platform::qt
