#include "tests/platform/qt/deep_shots.h"

#include <QScrollArea>
#include <QScrollBar>
#include <chrono>

#include "platform/qt/panels/panel_frame.h"
#include "tests/platform/qt/deep_samples.h"

namespace zelvo::tests {

namespace {

using platform::DeepPage;

const std::string kLongPath = "/media/camera/DCIM/2019-06-22 wedding of Anna and Paul/MVI_0042.AVI";

void scrollDown(platform::qt::WindowPage& page) {
  for (QScrollArea* const area : page.findChildren<QScrollArea*>()) {
    area->verticalScrollBar()->setValue(area->verticalScrollBar()->maximum());
  }
}

/// While it lives, each text of a button is as long as a German one may be.
class LongTitles {
 public:
  explicit LongTitles(QWidget& root) {
    for (QPushButton* const one : root.findChildren<QPushButton*>()) {
      auto* const button = dynamic_cast<platform::qt::QtButton*>(one);
      if (button == nullptr || button->text().isEmpty()) continue;
      titles_.emplace_back(button, button->text());
      const QString tail = QStringLiteral("verarbeitung").left(static_cast<int>(button->text().size() * 2 / 5));
      button->setTitle(button->text() + tail);
    }
  }
  ~LongTitles() {
    for (const auto& [button, title] : titles_) button->setTitle(title);
  }
  LongTitles(const LongTitles&) = delete;
  LongTitles& operator=(const LongTitles&) = delete;

 private:
  std::vector<std::pair<platform::qt::QtButton*, QString>> titles_;
};

void showFirstPage(WindowBench& bench, const std::function<void(const char* name)>& take) {
  const platform::DeepOutlets& deep = bench.deep->outlets();
  deep.deeprepairbutton.setEnabled(true);
  deep.refusedoffer.show("A deep repair may still bring MVI_0042.AVI back.");
  take("choose-offer");
  deep.refusedoffer.hide();
  deep.deeprepairbutton.setEnabled(false);
  bench.window->controllerOutlets().tabview.selectNextTabViewItem();
  bench.window->controllerOutlets().tabview.selectNextTabViewItem();
  deep.partlyoffer.show("The repair has not kept all of the film. A deep repair may bring back more.");
  take("result-offer");
  deep.partlyoffer.hide();
  bench.window->controllerOutlets().tabview.selectFirstTabViewItem();
}

void showRun(WindowBench& bench, const std::function<void(const char* name)>& take) {
  const platform::DeepOutlets& deep = bench.deep->outlets();
  deep.runpathlabel.setStringValue(kLongPath);
  deep.runprogress.follow({});
  deep.pages.show(DeepPage::run);
  take("deep-starting");
  std::uint64_t done = 0;
  deep.runprogress.follow([&done] { return platform::DeepProgress{"Looking at every byte", done, 734000000}; });
  const auto now = platform::TimeLeft::Clock::now();
  bench.deep->runPage().runprogress->showProgress(now);
  done = 281900000;
  bench.deep->runPage().runprogress->showProgress(now + std::chrono::seconds(20));
  take("deep-run");
  deep.runprogress.follow({});
}

void showResults(WindowBench& bench, const std::string& film, const std::function<void(const char* name)>& take) {
  const platform::DeepOutlets& deep = bench.deep->outlets();
  platform::qt::DeepResultPage& page = bench.deep->resultPage();
  deep.movieview.setMovie(bench.movies->movieWithFile(film).movie);
  deep.donorbutton.setHidden(false);
  deep.result.show(partialResult());
  deep.pages.show(DeepPage::result);
  bench.until([&bench] {
    const QImage shown = bench.deepMovie->movie().grab().toImage();
    const QColor middle = shown.pixelColor(shown.rect().center());
    return middle != bench.deepMovie->movie().palette().color(QPalette::Window) && middle != QColor(Qt::white);
  });
  take("deep-result");
  page.losses().setFocus(Qt::TabFocusReason);
  bench.key(Qt::Key_Down);
  take("deep-result-loss");
  scrollDown(page);
  take("deep-result-end");
  deep.result.showComparison(sampleComparison());
  bench.settle();
  take("deep-result-compared");
  {
    const LongTitles longer(page);
    take("deep-result-long");
  }
  deep.donorbutton.setHidden(true);
  deep.result.show(cleanResult());
  take("deep-result-clean");
  deep.savebutton.setHidden(true);
  deep.donorbutton.setHidden(false);
  deep.result.show(hopelessResult());
  take("deep-result-hopeless");
  deep.savebutton.setHidden(false);
  deep.movieview.setMovie(nullptr);
}

void showQueue(WindowBench& bench, const std::function<void(const char* name)>& take) {
  const platform::DeepOutlets& deep = bench.deep->outlets();
  deep.queue.show({});
  deep.queuestartbutton.setEnabled(false);
  deep.queuestopbutton.setEnabled(false);
  deep.pages.show(DeepPage::films);
  take("films-none");
  deep.queue.show(sampleQueue());
  deep.queuefoldertext.setStringValue("/home/anna/Videos/Repaired films of the summer");
  deep.queuestopbutton.setEnabled(true);
  bench.deep->filmsPage().queue->setFocus(Qt::TabFocusReason);
  bench.key(Qt::Key_Down);
  take("films");
  {
    const LongTitles longer(bench.deep->filmsPage());
    take("films-long");
  }
  deep.pages.show(DeepPage::none);
}

void showPanels(WindowBench& bench, const std::function<void(const char* name)>& take) {
  const platform::DeepOutlets& deep = bench.deep->outlets();
  deep.pages.show(DeepPage::result);
  deep.result.show(partialResult());
  deep.saveprogressbar.setDoubleValue(62.0);
  deep.savebytestext.setStringValue("455.1 MB of 734.0 MB copied");
  bench.window->panels().begin(bench.deep->savePanel());
  take("deep-saving");
  bench.window->panels().orderOut(bench.deep->savePanel());
  bench.filmChoosers->chooseFilms({.title = "Which films?", .prompt = "Add", .folder = bench.temp.path()},
                                  [](const std::vector<std::string>&) {});
  take("deep-choose-films");
  bench.key(Qt::Key_Escape);
  bench.filmChoosers->chooseFolder({.title = "Where should they be saved?", .prompt = "Choose", .folder = {}},
                                   [](const std::optional<std::string>&) {});
  take("deep-choose-folder");
  bench.key(Qt::Key_Escape);
  bench.filmChoosers->chooseNewFile(
      {.chooser = {.title = "Where should it be saved?", .prompt = "Save", .folder = bench.temp.path()},
       .name = "MVI_0042-salvaged.avi",
       .tickBox = "Save the report beside it",
       .isTicked = true,
       .refusal = {}},
      [](const std::optional<platform::NewFileAnswer>&) {});
  take("deep-save");
  bench.key(Qt::Key_Escape);
  deep.pages.show(DeepPage::none);
}

}  // namespace

void showDeepStates(WindowBench& bench, const std::string& film, const std::function<void(const char* name)>& take) {
  showFirstPage(bench, take);
  showRun(bench, take);
  showResults(bench, film, take);
  showQueue(bench, take);
  showPanels(bench, take);
}

}  // namespace zelvo::tests
