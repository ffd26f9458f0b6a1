#include "platform/qt/deep/deep_pages.h"

#include <QApplication>
#include <array>

#include "platform/qt/deep_texts.h"
#include "platform/qt/drawing/appearance.h"
#include "platform/qt/drawing/text.h"
#include "platform/qt/texts.h"
#include "platform/qt/window/desktop_notice.h"

namespace zelvo::platform::qt {

namespace {

/// Where the help tells of each page.
constexpr std::array kHelpTopics = {"deep-repair", "deep-result", "several-films"};

FlatProgressBar& barIn(PanelFrame& panel) {
  auto* const made = new FlatProgressBar;
  made->setAccessibleName(panel.title());
  panel.addContent(made);
  return *made;
}

QLabel& lineIn(PanelFrame& panel) {
  auto* const made = new QLabel;
  made->setTextFormat(Qt::PlainText);
  made->setFont(textFont(kSmallPixels));
  made->setForegroundRole(QPalette::PlaceholderText);
  made->setWordWrap(true);
  panel.addContent(made);
  return *made;
}

}  // namespace

QtDeepPages::QtDeepPages(MainWindow& window, MoviePane* movie, MovieView& movieView)
    : window_(window),
      run_(new DeepRunPage({window.panels().queue(), window.panels().pictures()})),
      result_(new DeepResultPage({window.panels().queue(), window.panels().pictures()}, movie)),
      films_(new FilmsPage({window.panels().queue(), window.panels().pictures()})),
      save_(*new PanelFrame(window.panels(),
                            {QStringLiteral("sheet-info"), texts::savingFilmTitle(), texts::savingFilmMessage()})),
      saveBar_(barIn(save_)),
      saveprogressbar_(window.panels().queue(), saveBar_),
      savebytestext_(window.panels().queue(), lineIn(save_)),
      savestopbutton_(save_.addButton(texts::stop(), PanelFrame::Role::cancels)) {
  const std::array<WindowPage*, 3> pages = {run_, result_, films_};
  for (std::size_t i = 0; i < pages.size(); ++i) {
    window_.addPage(*pages[i]);
    pages[i]->help->setAction([&window, topic = kHelpTopics[i]](Button&) { window.showHelp(QLatin1String(topic)); });
  }
  window_.showInTitle(*run_, run_->runprogress->bar());
  window_.showInTitle(save_, saveBar_);
  savebytestext_.setObserver([&window, panel = &save_](const QString&) { window.panels().placeAgain(*panel); });
  save_.setHelpTopic(QStringLiteral("saving"));
  fillOutlets(movieView);
}

WindowPage* QtDeepPages::pageOf(DeepPage page) const {
  switch (page) {
    case DeepPage::run:
      return run_;
    case DeepPage::result:
      return result_;
    case DeepPage::films:
      return films_;
    case DeepPage::none:
      break;
  }
  return nullptr;
}

void QtDeepPages::show(DeepPage page) {
  const DeepPage before = std::exchange(shown_, page);
  window_.showPage(pageOf(page));
  if (before == DeepPage::run && page == DeepPage::result) tellOfTheEnd();
}

void QtDeepPages::tellOfTheEnd() {
  if (window_.isActiveWindow()) return;
  showDesktopNotice(texts::deepRepair(), result_->sentence());
  QApplication::alert(&window_);
}

void QtDeepPages::fillOutlets(MovieView& movieView) {
  ChoosePage& one = window_.choosePage();
  ResultPage& three = window_.resultPage();
  outlets_ = std::make_unique<DeepOutlets>(DeepOutlets{.pages = *this,
                                                       .deeprepairbutton = *one.deeprepairbutton,
                                                       .addfilmsbutton = *one.addfilmsbutton,
                                                       .refusedoffer = *one.refusedoffer,
                                                       .refusedofferbutton = *one.refusedofferbutton,
                                                       .partlyoffer = *three.partlyoffer,
                                                       .partlyofferbutton = *three.partlyofferbutton,
                                                       .runpathlabel = run_->runpathlabel,
                                                       .runprogress = *run_->runprogress,
                                                       .runstopbutton = *run_->runstopbutton,
                                                       .runhome = *run_->home,
                                                       .result = *result_,
                                                       .movieview = movieView,
                                                       .savebutton = *result_->savebutton,
                                                       .copyreportbutton = *result_->copyreportbutton,
                                                       .comparebutton = *result_->comparebutton,
                                                       .donorbutton = *result_->donorbutton,
                                                       .resulthome = *result_->home,
                                                       .queue = *films_->queue,
                                                       .queuefoldertext = films_->queuefoldertext,
                                                       .queuefolderbutton = *films_->queuefolderbutton,
                                                       .queueaddbutton = *films_->queueaddbutton,
                                                       .queuestartbutton = *films_->queuestartbutton,
                                                       .queuestopbutton = *films_->queuestopbutton,
                                                       .queuehome = *films_->home,
                                                       .mainWindow = window_,
                                                       .savepanel = save_,
                                                       .saveprogressbar = saveprogressbar_,
                                                       .savebytestext = savebytestext_,
                                                       .savestopbutton = savestopbutton_});
}

}  // namespace zelvo::platform::qt
