#include "platform/qt/deep/films_page.h"

#include <QHBoxLayout>

#include "platform/qt/deep_texts.h"
#include "platform/qt/drawing/appearance.h"
#include "platform/qt/texts.h"

namespace zelvo::platform::qt {

FilmsPage::FilmsPage(const PageParts& parts)
    : WindowPage(parts, texts::severalFilms()),
      queue(new QueueTable(parts.queue, parts.pictures)),
      queuefoldertext(parts.queue, *new ElidedLabel),
      queuefolderbutton(parts.button(texts::changeFolder(), QtButton::Look::link)),
      queueaddbutton(parts.button(texts::addFilms(), QtButton::Look::push)),
      queuestartbutton(parts.button(texts::start(), QtButton::Look::push)),
      queuestopbutton(parts.button(texts::stop(), QtButton::Look::push)) {
  body()->addWidget(headline(texts::filmsHeadline()));
  body()->addWidget(explanation(texts::filmsExplanation()));
  body()->addWidget(queue, 1);

  auto* const folder = new QHBoxLayout;
  folder->setSpacing(kPageGap);
  auto* const name = new QLabel(texts::savedInto());
  auto& path = dynamic_cast<ElidedLabel&>(queuefoldertext.label());
  for (QLabel* const label : {name, static_cast<QLabel*>(&path)}) label->setFont(textFont(kSmallPixels));
  name->setForegroundRole(QPalette::PlaceholderText);
  path.setPlaceholder(texts::noFolderYet());
  path.setAccessibleDescription(texts::savedInto());
  folder->addWidget(name);
  folder->addWidget(&path, 1);
  folder->addWidget(queuefolderbutton);
  body()->addLayout(folder);

  auto* const buttons = new QHBoxLayout;
  buttons->setSpacing(kPageGap);
  buttons->addWidget(queueaddbutton);
  buttons->addStretch(1);
  buttons->addWidget(queuestopbutton);
  buttons->addWidget(queuestartbutton);
  body()->addLayout(buttons);
  setFilled(*queuestartbutton);
  setFirstFocus(queueaddbutton);
}

}  // namespace zelvo::platform::qt
