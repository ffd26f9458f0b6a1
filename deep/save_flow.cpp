// Saving a repaired film:
// 1. The panel proposes a name beside the damaged film, or where the last one was saved; it refuses the damaged film.
// 2. The copy is made by a worker, under a hidden name. Its sheet tells how far it is and can stop it.
// 3. What came of it is said; a film that is saved can be played and its folder opened.
#include "deep/save_flow.h"

#include <utility>

#include "deep/file_names.h"
#include "deep/remembered.h"
#include "deep/texts.h"
#include "platform/paths.h"
#include "platform/ran_out.h"
#include "platform/same_file.h"
#include "platform/shown_text.h"

namespace zelvo::deep {

namespace {

constexpr std::string_view kYes = "yes";
constexpr std::string_view kNo = "no";
/// Reports of other saves that may stand beside a film.
constexpr int kMaxReports = 99;

double percentOf(std::uint64_t done, std::uint64_t all) {
  return all == 0 ? 0.0 : static_cast<double>(done) * 100.0 / static_cast<double>(all);
}

}  // namespace

SaveFlow::SaveFlow(const DeepServices& services, const platform::DeepOutlets& outlets)
    : services_(services), outlets_(outlets), questions_(services.alertPanels, services.translator) {}

SaveFlow::~SaveFlow() {
  close();
  for (const auto& worker : workers_) worker->join();
}

void SaveFlow::close() {
  isClosed_ = true;
  if (copy_) copy_->progress.isStopped = true;
  copy_.reset();
}

void SaveFlow::save(std::shared_ptr<const RepairedFilm> film, std::function<void()> saved) {
  if (isClosed_ || copy_) return;
  platform::NewFileRequest request;
  request.chooser.title = questions_.translated(texts::kSaveTitle);
  request.chooser.prompt = questions_.translated(texts::kSavePrompt);
  request.chooser.folder =
      services_.settings.value(remembered::kSaveFolder).value_or(platform::folderOf(film->order.input));
  request.name = salvagedName(platform::nameOf(film->order.input));
  request.tickBox = questions_.translated(texts::kSaveReport);
  request.isTicked = services_.settings.value(remembered::kSavesReport) == kYes;
  request.refusal = [this, film](const std::string& path) { return refusal(*film, path); };
  services_.choosers.chooseNewFile(
      request, [this, film, saved = std::move(saved)](const std::optional<platform::NewFileAnswer>& answer) {
        if (answer && !isClosed_ && !copy_) placeChosen(film, *answer, saved);
      });
}

std::string SaveFlow::refusal(const RepairedFilm& film, const std::string& path) {
  if (!services_.pathProbe.answers({path, film.order.input})) return questions_.translated(texts::kNotAnswering);
  if (platform::areOneFile(services_.fileManager, path, film.order.input)) {
    return questions_.translated(texts::kWouldReplaceDamaged);
  }
  const auto there = services_.fileManager.attributesFollowingLinks(path);
  const bool isFolder = there && there->kind == platform::FileAttributes::Kind::folder;
  return isFolder ? questions_.translated(texts::kWouldReplaceFolder) : std::string();
}

void SaveFlow::placeChosen(const std::shared_ptr<const RepairedFilm>& film, const platform::NewFileAnswer& answer,
                           std::function<void()> saved) {
  const std::string folder = platform::folderOf(answer.path);
  services_.settings.setValue(remembered::kSaveFolder, folder);
  services_.settings.setValue(remembered::kSavesReport, answer.isTicked ? kYes : kNo);
  if (!services_.pathProbe.answers({folder, answer.path})) {
    questions_.tell(texts::kNotSavedTitle, questions_.translated(texts::kNotAnswering));
    return;
  }
  const auto copy = std::make_shared<Copy>();
  copy->film = film;
  // The panel has asked before it takes a name that is there already.
  copy->order = {.from = film->path,
                 .to = answer.path,
                 .mayReplace = services_.fileManager.exists(answer.path),
                 .damaged = film->order.input,
                 .size = film->size};
  copy->withReport = answer.isTicked;
  copy->saved = std::move(saved);
  copy->progress.all = film->size;
  copy_ = copy;
  showProgress(*copy);
  services_.sheets.beginSheet(outlets_.savepanel, outlets_.mainWindow, [this, copy] { return copy_ == copy; });
  auto worker = services_.workers.start(std::make_shared<platform::CancelMark>(), [this, copy] { this->copy(copy); });
  if (!worker) {
    copy->end = {.kind = CopyEnd::Kind::writeFailed, .cause = platform::noThread()};
    copyEnded(copy);
    return;
  }
  std::erase_if(workers_, [](const auto& one) { return one->finished(); });
  workers_.push_back(std::move(worker));
}

void SaveFlow::copy(const std::shared_ptr<Copy>& copy) {
  const std::error_code shortage = platform::ranOut([&] {
    copy->end = copyFilm(services_, copy->order, copy->progress, [&] {
      if (!copy->progress.isStopped) showProgress(*copy);
    });
    if (copy->end.kind == CopyEnd::Kind::done && copy->withReport) copyReport(*copy);
  });
  if (shortage) copy->end = {.kind = CopyEnd::Kind::writeFailed, .cause = shortage};
  while (platform::ranOut([&] { services_.mainQueue.perform([this, copy] { copyEnded(copy); }); })) {
    services_.clock.sleepFor(std::chrono::milliseconds(100));
  }
}

void SaveFlow::copyReport(Copy& copy) const {
  const std::string source = reportPage(copy.film->order.folder);
  const auto there = services_.fileManager.attributes(source);
  const std::string folder = platform::folderOf(copy.order.to);
  const std::string name = reportName(platform::nameOf(copy.order.to));
  CopyEnd end{.kind = CopyEnd::Kind::sourceGone};
  for (int number = 1; there && number <= kMaxReports; ++number) {
    const std::string path = platform::pathIn(folder, number == 1 ? name : numberedName(name, number));
    CopyProgress progress;
    end = copyFilm(services_, {.from = source, .to = path, .damaged = copy.film->order.input, .size = there->size},
                   progress, [] {});
    copy.reportPath = path;
    if (end.kind != CopyEnd::Kind::nameTaken && end.kind != CopyEnd::Kind::isDamaged) break;
  }
  if (end.kind == CopyEnd::Kind::done) return;
  copy.reportPath.clear();
  copy.reportError = end.cause ? end.cause : std::make_error_code(std::errc::no_such_file_or_directory);
}

void SaveFlow::showProgress(const Copy& copy) {
  const std::uint64_t done = copy.progress.done;
  const std::uint64_t all = copy.progress.all;
  outlets_.saveprogressbar.setDoubleValue(percentOf(done, all));
  outlets_.savebytestext.setStringValue(
      copy.progress.isFlushing
          ? questions_.translated(texts::kTakingTheLastBytes)
          : questions_.translated(texts::kCopied, {platform::shownSize(done, services_.translator),
                                                   platform::shownSize(all, services_.translator)}));
}

void SaveFlow::hideSheet() {
  services_.sheets.endSheet(outlets_.savepanel);
  outlets_.savepanel.orderOut();
}

void SaveFlow::stop() {
  if (!copy_) return;
  copy_->progress.isStopped = true;
  copy_.reset();
  hideSheet();
}

void SaveFlow::copyEnded(const std::shared_ptr<Copy>& copy) {
  if (copy_ != copy) return;
  copy_.reset();
  hideSheet();
  if (copy->end.kind == CopyEnd::Kind::done) {
    copy->saved();
    tellSaved(*copy);
  } else if (copy->end.kind != CopyEnd::Kind::stopped) {
    questions_.tell(texts::kNotSavedTitle, whyNot(*copy));
  }
}

void SaveFlow::tellSaved(const Copy& copy) {
  std::string message = questions_.translated(texts::kSavedAs, {copy.order.to});
  if (!copy.reportPath.empty()) message += " " + questions_.translated(texts::kReportSavedAs, {copy.reportPath});
  if (copy.reportError) message += " " + questions_.translated(texts::kReportNotSaved, {copy.reportError.message()});
  const int answer = questions_.tellDone(texts::kSavedTitle, message, texts::kPlay, texts::kClose, texts::kOpenFolder);
  if (answer == platform::kAlertDefault) services_.workspace.openURL(fileUrl(copy.order.to));
  if (answer == platform::kAlertOther) services_.workspace.openURL(fileUrl(platform::folderOf(copy.order.to)));
}

std::string SaveFlow::whyNot(const Copy& copy) const {
  const CopyEnd& end = copy.end;
  const std::string elsewhere = " " + questions_.translated(texts::kSaveElsewhere);
  const std::string again = " " + questions_.translated(texts::kRepairAgain);
  switch (end.kind) {
    case CopyEnd::Kind::noRoom:
      return questions_.translated(texts::kNoRoom, {platform::shownSize(end.needed, services_.translator),
                                                    platform::shownSize(end.free, services_.translator),
                                                    platform::folderOf(copy.order.to)}) +
             elsewhere;
    case CopyEnd::Kind::sourceGone:
      return questions_.translated(texts::kSourceGone) + again;
    case CopyEnd::Kind::unreadable:
      return questions_.translated(texts::kSourceUnreadable, {end.cause.message()}) + again;
    case CopyEnd::Kind::nameTaken:
      return questions_.translated(texts::kNameTaken) + elsewhere;
    case CopyEnd::Kind::isDamaged:
      return questions_.translated(texts::kWouldReplaceDamaged);
    case CopyEnd::Kind::done:
    case CopyEnd::Kind::stopped:
    case CopyEnd::Kind::writeFailed:
      break;
  }
  return questions_.translated(texts::kWriteFailed, {end.cause.message()}) + elsewhere;
}

}  // namespace zelvo::deep
