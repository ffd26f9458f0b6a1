#include "deep/run_page.h"

#include <utility>

#include "deep/file_names.h"
#include "deep/texts.h"
#include "platform/paths.h"
#include "platform/ran_out.h"

namespace zelvo::deep {

RunPage::RunPage(const DeepServices& services, const platform::DeepOutlets& outlets, FilmRuns& runs,
                 ScratchFolder& scratch)
    : services_(services),
      outlets_(outlets),
      runs_(runs),
      scratch_(scratch),
      questions_(services.alertPanels, services.translator) {}

void RunPage::wire(platform::Actions& actions) {
  actions.connect(outlets_.runstopbutton, [this](platform::Button&) { stop(); });
  actions.connect(outlets_.runhome, [this](platform::Button&) { goHome(); });
}

void RunPage::start(Work work) {
  if (run_ || runs_.isClosed()) return;
  const auto refuse = [&](std::string_view title, const std::string& message) {
    questions_.tell(title, message);
    if (work.left) work.left();
  };
  if (!services_.pathProbe.answers({work.input, work.donor.value_or(work.input)})) {
    return refuse(texts::kNotAnsweringTitle, questions_.translated(texts::kNotAnswering));
  }
  const ScratchFolder::Made made = scratch_.makeFolder();
  if (made.path.empty()) {
    return refuse(texts::kNoScratchTitle, questions_.translated(texts::kNoScratch, {made.tried, made.error.message()}));
  }
  const RepairOrder order{.input = work.input,
                          .output = platform::pathIn(made.path, salvagedName(platform::nameOf(work.input))),
                          .folder = made.path,
                          .donor = work.donor};
  // What is told at once, where there is only one thread, must find its run.
  const auto self = std::make_shared<std::weak_ptr<FilmRun>>();
  const auto run =
      startRepair(services_, runs_, scratch_, order, [this, self](const auto& film) { ended(self->lock(), film); });
  if (!run) {
    scratch_.remove(made.path);
    const FilmEnd end{.kind = FilmEnd::Kind::notStarted, .error = platform::noThread()};
    return refuse(texts::kFailedTitle, failureWords(end, platform::nameOf(work.input), services_.translator));
  }
  *self = run;
  work_ = std::move(work);
  run_ = run;
  outlets_.runpathlabel.setStringValue(work_.input);
  outlets_.runprogress.follow([this] { return progress(); });
  outlets_.pages.show(platform::DeepPage::run);
}

platform::DeepProgress RunPage::progress() const {
  if (!run_) return {};
  const salvage::FilmStep step = run_->step();
  return {step.stage.empty() ? std::string() : services_.translator.translated(step.stage), step.done, step.all};
}

void RunPage::goHome() {
  const auto run = run_;
  if (!run) return;
  if (!questions_.agrees(texts::kAtWorkTitle, questions_.translated(texts::kAtWork), texts::kStay,
                         texts::kStopAndLeave)) {
    return;
  }
  if (run_ == run) stop();
}

void RunPage::stop() {
  if (!run_) return;
  std::exchange(run_, nullptr)->stop();
  outlets_.runprogress.follow({});
  const Work work = std::exchange(work_, {});
  if (work.left) work.left();
}

void RunPage::ended(const std::shared_ptr<FilmRun>& run, const std::shared_ptr<const RepairedFilm>& film) {
  // Nobody waits any more for a run that was stopped.
  if (!run_ || run_ != run) return scratch_.remove(film->order.folder);
  run_.reset();
  outlets_.runprogress.follow({});
  const Work work = std::exchange(work_, {});
  work.ended(film);
}

std::shared_ptr<FilmRun> startRepair(const DeepServices& services, FilmRuns& runs, const ScratchFolder& scratch,
                                     const RepairOrder& order,
                                     std::function<void(std::shared_ptr<const RepairedFilm> film)> ended,
                                     std::function<void(const salvage::FilmStep& step)> moved) {
  // Filled in by the worker before the end is heard.
  const auto film = std::make_shared<std::shared_ptr<const RepairedFilm>>();
  return runs.start(
      {.arguments = repairArguments(order),
       .lock = scratch.lock(),
       .afterwards = [services, order, film](const FilmEnd& end) { *film = repairedFilm(services, order, end); },
       .moved = std::move(moved),
       .ended =
           [order, film, ended = std::move(ended)](const FilmEnd& end) {
             if (*film) return ended(*film);
             const auto nothing = std::make_shared<RepairedFilm>();
             nothing->order = order;
             nothing->end = end;
             ended(nothing);
           }});
}

}  // namespace zelvo::deep
