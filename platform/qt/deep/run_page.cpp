#include "platform/qt/deep/run_page.h"

#include "platform/qt/deep_texts.h"
#include "platform/qt/texts.h"

namespace zelvo::platform::qt {

DeepRunPage::DeepRunPage(const PageParts& parts)
    : WindowPage(parts, texts::deepRepair()),
      runpathlabel(parts.queue, *new ElidedLabel),
      runprogress(new StageProgress),
      runstopbutton(parts.button(texts::stop(), QtButton::Look::push)) {
  auto* const column = new QVBoxLayout;
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(kPageGap);
  column->addWidget(headline(texts::runHeadline()));
  runpathlabel.label().setForegroundRole(QPalette::PlaceholderText);
  column->addWidget(&runpathlabel.label());
  column->addSpacing(kPageGap);
  column->addWidget(runprogress);
  column->addWidget(explanation(texts::runExplanation()));
  column->addSpacing(kPageGap);
  column->addWidget(runstopbutton, 0, Qt::AlignLeft);
  showInTheMiddle(column);
  setFirstFocus(runstopbutton);
}

}  // namespace zelvo::platform::qt
