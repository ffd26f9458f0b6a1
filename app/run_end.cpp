// What becomes of a run:
// 1. Its worker waits for the one before, then works; its end is told on the main thread.
// 2. A write error takes the window back to page 1 and is told with its cause.
// 3. A preview or save asked for too early waits until the rebuilt file is whole.
// 4. A run that nobody waits for any more is abandoned. What it wrote, or a stopped run, is removed when it has ended.
#include <algorithm>
#include <chrono>
#include <utility>

#include "app/controller.h"
#include "app/texts.h"
#include "engine/globals.h"
#include "platform/paths.h"
#include "platform/ran_out.h"

namespace zelvo::app {

void Orlin_Repair_AVIAppDelegate::startRun() {
  abandonShownRun();
  std::erase_if(runs_, [](const auto& one) { return one.expired(); });
  const std::shared_ptr<engine::Run> run = engine::RepairFile::newRun();
  run->mayWrite = [this, scratch = run->internalpath](std::uint64_t bytes) {
    bytesToWrite_ = bytes;
    std::set<std::string> written = scratchFiles_.get();  // one run at a time comes here
    written.insert(scratch);
    scratchFiles_.set(std::move(written));
    return true;
  };
  const std::uint64_t number = runGuard_.start();
  // On the main thread, before the sheet that a run asks for next.
  run->found = [this, number](const platform::FilmReport& report) {
    services_.mainQueue.perform([this, number, report] {
      if (!runGuard_.shows(number)) return;
      outlets.own.filmreport.show(report);
      if (shownRun_) shownRun_->verdict = report.verdict;
      tellJudgement();
    });
  };
  run->rejected = [this](platform::Rejection reason) { outlets.own.rejectionreason.show(reason); };
  outlets.own.filmreport.clear();
  outlets.own.runprogress.follow([this, number] { return runProgress(number); });
  shownRun_ = ShownRun{number, run};
  runs_.push_back(run);
  const bool waits = lastWorker_ && !lastWorker_->finished();
  outlets.own.waitingtext.setStringValue(waits ? translated(texts::kWaitsForOtherRun) : "");
  mythread = services_.workers.start(run->cancel, [this, number, run, before = lastWorker_] {
    if (before) before->join();
    workOn(number, run);
  });
  if (mythread) lastWorker_ = mythread;  // otherwise the next run still waits for the one before
}

void Orlin_Repair_AVIAppDelegate::runDidNotStart() {
  bytesToWrite_ = 0;
  const ShownRun run = *shownRun_;
  runEnded(run.number, *run.run, avi::WriteFailure{0, platform::noThread()});
}

void Orlin_Repair_AVIAppDelegate::workOn(std::uint64_t number, const std::shared_ptr<engine::Run>& run) {
  runGuard_.beginWork(number);
  countedFiles_.restart();
  bytesToWrite_ = 0;
  if (runGuard_.shows(number)) outlets.own.waitingtext.setStringValue("");
  const bool worked = !run->cancel->cancelled();
  runAtWork_ = run.get();
  const std::error_code shortage = platform::ranOut([&] { repair1->retrieveAudioVideoSamples(run); });
  runAtWork_ = nullptr;
  if (worked) removeLeftover(number, *run);
  // No later run has begun yet: its worker waits for this one.
  auto failure = worked ? repair1->writeFailure.get() : std::nullopt;
  if (shortage && !failure) failure = avi::WriteFailure{0, shortage};
  runGuard_.endWork();
  const auto told = [this, number, run, failure] { runEnded(number, *run, failure); };
  // The window waits for the end of the run, so it is told as soon as there is memory to tell it with.
  while (platform::ranOut([&] { services_.mainQueue.perform(told); })) {
    services_.clock.sleepFor(std::chrono::milliseconds(100));
  }
}

// Decision: runs, A stop itself deletes nothing
void Orlin_Repair_AVIAppDelegate::removeLeftover(std::uint64_t number, const engine::Run& run) {
  if (runGuard_.shows(number) || !run.cancel->cancelled()) return;
  if (scratchFiles_.get().contains(run.internalpath)) removeScratch(run.internalpath);
}

void Orlin_Repair_AVIAppDelegate::runEnded(std::uint64_t number, const engine::Run& run,
                                           const std::optional<avi::WriteFailure>& failure) {
  if (terminated_) return;
  if (!shownRun_ || shownRun_->number != number) {
    const bool isWrittenAgain = shownRun_ && shownRun_->run->internalpath == run.internalpath;
    // Stopped after its worker had looked.
    if (!isWrittenAgain) removeLeftover(number, run);
    return;
  }
  shownRun_->atWork = false;
  if (!failure) return;
  if (waiting_) {
    untoldFailure_ = failure;
    return;
  }
  reportWriteFailure(run, *failure);
}

void Orlin_Repair_AVIAppDelegate::answerRefusal(void (engine::RepairFile::*answer)(platform::Button*),
                                                platform::Button* sender) {
  const std::optional<std::string> refused = engine::path.get();
  (*repair1.*answer)(sender);
  services_.films.choiceCleared();
  if (refused) services_.films.filmRefused(*refused);
}

void Orlin_Repair_AVIAppDelegate::answerCompletion(platform::Button* sender) {
  repair1->repairCompletedOk(sender);
  if (!shownRun_) return;
  shownRun_->isResultShown = true;
  tellJudgement();
}

void Orlin_Repair_AVIAppDelegate::tellJudgement() {
  if (!shownRun_ || !shownRun_->isResultShown || !shownRun_->verdict) return;
  services_.films.filmJudged(shownRun_->run->path.value_or(""), *shownRun_->verdict);
}

void Orlin_Repair_AVIAppDelegate::abandonShownRun() {
  if (!shownRun_) return;
  if (shownRun_->atWork) shownRun_->run->cancel->abandon();
  runGuard_.hideProgress();
  shownRun_.reset();
}

// Decision: runs, A failed repair is told
void Orlin_Repair_AVIAppDelegate::reportWriteFailure(const engine::Run& run, const avi::WriteFailure& failure) {
  runGuard_.hideProgress();
  endAndHide(outlets.stoprepairwindow);
  endAndHide(repair1->outlets.repaircompletedwindow);
  progressbarValue = 0.0;
  outlets.progressbar.setDoubleValue(0.0);
  outlets.tabview.selectFirstTabViewItem();
  removeScratch(run.internalpath);

  const std::string cause = failure.cause.message();
  const std::string folder = platform::folderOf(run.internalpath);
  std::string message = cause + ".";
  if (platform::isShortage(failure.cause)) {
    message = translated(failure.cause == std::errc::not_enough_memory ? texts::kNoMemory : texts::kNoThread);
  } else if (const auto space = services_.fileManager.freeSpace(folder)) {
    message = bytesToWrite_ == 0 ? translated(texts::kRoomThere, {cause, sizeWords(*space), folder})
                                 : translated(texts::kRoomThereAndNeeded,
                                              {cause, sizeWords(*space), folder, sizeWords(bytesToWrite_)});
  }
  services_.alertPanels.runAlertPanel({.title = translated(texts::kWriteFailedTitle),
                                       .message = translated(texts::kRepairNotWritten, {message}),
                                       .defaultButton = texts::kOk,
                                       .alternateButton = std::nullopt,
                                       .otherButton = std::nullopt});
}

// Decision: runs, Preview and save wait for the whole file
bool Orlin_Repair_AVIAppDelegate::waitForRebuiltFile() {
  if (!shownRun_ || !shownRun_->atWork) return true;
  if (waiting_) return false;
  const std::shared_ptr<engine::Run> run = shownRun_->run;
  waiting_ = true;
  const bool finished =
      services_.waitPanels.runWaitPanel({.title = translated(texts::kFinishingTitle),
                                         .message = translated(texts::kFinishingMessage),
                                         .cancelButton = translated(texts::kCancel),
                                         .percent = [this] { return writtenPercent(); },
                                         .finished = [this] { return !shownRun_ || !shownRun_->atWork; }});
  waiting_ = false;
  if (const auto failure = std::exchange(untoldFailure_, std::nullopt)) {
    reportWriteFailure(*run, *failure);
    return false;
  }
  return finished && shownRun_ && shownRun_->run == run;
}

platform::RunProgress Orlin_Repair_AVIAppDelegate::runProgress(std::uint64_t number) const {
  using platform::RunStage;
  if (!runGuard_.isWorking(number) || !shownRun_ || shownRun_->number != number) return {};
  if (const std::uint64_t all = bytesToWrite_; all != 0) return {RunStage::writing, countedFiles_.written(), all};
  constexpr std::uint64_t kBlockSize = avi::InputFile::kBlockSize;
  return {RunStage::searching, std::min(repair1->sector * kBlockSize, shownRun_->run->inputfilesize),
          shownRun_->run->inputfilesize};
}

double Orlin_Repair_AVIAppDelegate::writtenPercent() const {
  const std::uint64_t all = bytesToWrite_;
  if (all == 0) return 0.0;
  return std::min(100.0, static_cast<double>(countedFiles_.written()) * 100.0 / static_cast<double>(all));
}

void Orlin_Repair_AVIAppDelegate::removeScratch(const std::string& scratch) {
  const auto attributes = services_.fileManager.attributes(scratch);
  if (!attributes || attributes->kind != platform::FileAttributes::Kind::regularFile) return;
  static_cast<void>(services_.fileManager.remove(scratch));  // what cannot be removed now, the next holder removes
}

}  // namespace zelvo::app
