#include "platform/qt/preview/movie_pane.h"

#include <QVBoxLayout>

namespace zelvo::platform::qt {

MoviePane::MoviePane(QWidget* parent) : QWidget(parent), movie_(new MovieWidget), bar_(new MovieBar(*movie_)) {
  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(movie_, 1);
  column->addWidget(bar_);
}

}  // namespace zelvo::platform::qt
