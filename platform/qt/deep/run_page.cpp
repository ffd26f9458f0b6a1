#include "platform/qt/deep/run_page.h"

#include <QHBoxLayout>

#include "platform/qt/deep_texts.h"
#include "platform/qt/texts.h"

namespace zelvo::platform::qt {

namespace {

constexpr int kRunWidth = 640;

}  // namespace

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

  auto* const middle = new QWidget;
  middle->setLayout(column);
  middle->setMaximumWidth(kRunWidth);
  auto* const row = new QHBoxLayout;
  row->addStretch(1);
  row->addWidget(middle, 20);
  row->addStretch(1);
  body()->addStretch(2);
  body()->addLayout(row);
  body()->addStretch(3);
  setFirstFocus(runstopbutton);
}

}  // namespace zelvo::platform::qt
