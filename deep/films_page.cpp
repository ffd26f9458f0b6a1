#include "deep/films_page.h"

#include <algorithm>
#include <utility>

#include "deep/file_names.h"
#include "deep/remembered.h"
#include "deep/run_page.h"
#include "deep/texts.h"
#include "platform/paths.h"
#include "platform/ran_out.h"

namespace zelvo::deep {

using State = platform::QueuedFilm::State;

namespace {

/// Names that are tried for one film.
constexpr int kMaxNumbers = 9999;

bool waits(const platform::QueuedFilm& film) { return film.state == State::waiting || film.state == State::stopped; }

/// What failed may fare better when it is tried again: a disk has room by then, or is back.
bool canBegin(const platform::QueuedFilm& film) { return waits(film) || film.state == State::failed; }

}  // namespace

FilmsPage::FilmsPage(const DeepServices& services, const platform::DeepOutlets& outlets, FilmRuns& runs,
                     ScratchFolder& scratch, std::function<void(std::shared_ptr<const RepairedFilm> film)> open)
    : services_(services),
      outlets_(outlets),
      runs_(runs),
      scratch_(scratch),
      open_(std::move(open)),
      questions_(services.alertPanels, services.translator) {}

void FilmsPage::wire(platform::Actions& actions) {
  actions.connect(outlets_.queueaddbutton, [this](platform::Button&) { chooseFilms(); });
  actions.connect(outlets_.queuefolderbutton, [this](platform::Button&) { chooseFolder(); });
  actions.connect(outlets_.queuestartbutton, [this](platform::Button&) { start(); });
  actions.connect(outlets_.queuestopbutton, [this](platform::Button&) { stop(); });
  actions.connect(outlets_.queuehome, [this](platform::Button&) { goHome(); });
  outlets_.queue.setOpener([this](std::size_t index) { openFilm(index); });
  outlets_.queue.setRemover([this](std::size_t index) { removeFilm(index); });
}

void FilmsPage::chooseFilms() {
  services_.choosers.chooseFilms({.title = questions_.translated(texts::kFilmsTitle),
                                  .prompt = questions_.translated(texts::kFilmsPrompt),
                                  .folder = services_.settings.value(remembered::kFilmsFolder)},
                                 [this](const std::vector<std::string>& films) {
                                   if (films.empty()) return;
                                   services_.settings.setValue(remembered::kFilmsFolder,
                                                               platform::folderOf(films.front()));
                                   add(films);
                                 });
}

void FilmsPage::add(const std::vector<std::string>& paths) {
  for (const std::string& path : paths) {
    if (std::ranges::any_of(entries_, [&](const auto& entry) { return entry->told.path == path; })) continue;
    entries_.push_back(std::make_shared<Entry>());
    entries_.back()->told.path = path;
  }
  if (entries_.empty()) return;
  if (folder_.empty()) {
    useFolder(
        services_.settings.value(remembered::kOutputFolder).value_or(platform::folderOf(entries_.front()->told.path)));
  }
  show();
  outlets_.pages.show(platform::DeepPage::films);
}

bool FilmsPage::isUndone() const {
  return work_ || std::ranges::any_of(entries_, [](const auto& entry) { return waits(entry->told); });
}

void FilmsPage::useFolder(const std::string& folder) {
  folder_ = folder;
  outlets_.queuefoldertext.setStringValue(folder);
}

void FilmsPage::chooseFolder() {
  services_.choosers.chooseFolder({.title = questions_.translated(texts::kFolderTitle),
                                   .prompt = questions_.translated(texts::kFolderPrompt),
                                   .folder = folder_},
                                  [this](const std::optional<std::string>& folder) {
                                    if (!folder || work_) return;
                                    services_.settings.setValue(remembered::kOutputFolder, *folder);
                                    useFolder(*folder);
                                  });
}

bool FilmsPage::isFolderUsable() {
  if (!services_.pathProbe.answers({folder_})) {
    questions_.tell(texts::kFolderRefusedTitle, questions_.translated(texts::kNotAnswering));
    return false;
  }
  const auto there = services_.fileManager.attributesFollowingLinks(folder_);
  if (there && there->kind == platform::FileAttributes::Kind::folder && services_.fileManager.isWritable(folder_)) {
    return true;
  }
  questions_.tell(texts::kFolderRefusedTitle, questions_.translated(texts::kNoFolder, {folder_}));
  return false;
}

void FilmsPage::start() {
  if (work_ || runs_.isClosed() || !isFolderUsable()) return;
  services_.settings.setValue(remembered::kWrittenFolder, folder_);
  for (const auto& entry : entries_) {
    if (canBegin(entry->told)) entry->told = {.path = entry->told.path};
  }
  show();
  beginNext();
}

std::string FilmsPage::freeOutput(const std::string& input) {
  const std::string name = salvagedName(platform::nameOf(input));
  std::string path = platform::pathIn(folder_, name);
  for (int number = 2; services_.fileManager.attributes(path) && number <= kMaxNumbers; ++number) {
    path = platform::pathIn(folder_, numberedName(name, number));
  }
  return path;
}

void FilmsPage::beginNext() {
  const auto next =
      std::ranges::find_if(entries_, [](const auto& entry) { return entry->told.state == State::waiting; });
  if (next == entries_.end()) {
    enableButtons();
    return tellAllDone();
  }
  const std::shared_ptr<Entry> entry = *next;
  const ScratchFolder::Made made = scratch_.makeFolder();
  if (made.path.empty()) {
    enableButtons();
    return questions_.tell(texts::kNoScratchTitle,
                           questions_.translated(texts::kNoScratch, {made.tried, made.error.message()}));
  }
  const auto work = std::make_shared<Work>();
  work->entry = entry;
  work_ = work;
  entry->told.state = State::working;
  entry->told.words.clear();
  update(entry);
  enableButtons();
  const RepairOrder order{
      .input = entry->told.path, .output = freeOutput(entry->told.path), .folder = made.path, .donor = {}};
  work->run = startRepair(
      services_, runs_, scratch_, order, [this, work](const auto& film) { ended(work, film); },
      [this, work](const salvage::FilmStep& step) { moved(work, step); });
  if (work->run) return;
  const auto nothing = std::make_shared<RepairedFilm>();
  nothing->order = order;
  nothing->end = {.kind = FilmEnd::Kind::notStarted, .error = platform::noThread()};
  ended(work, nothing);
}

void FilmsPage::moved(const std::shared_ptr<Work>& work, const salvage::FilmStep& step) {
  if (work_ != work) return;
  const std::shared_ptr<Entry> entry = work->entry;
  entry->told.words = step.stage.empty() ? std::string() : services_.translator.translated(step.stage);
  entry->told.share =
      step.all == 0 ? std::nullopt
                    : std::optional(std::min(1.0, static_cast<double>(step.done) / static_cast<double>(step.all)));
  update(entry);
}

void FilmsPage::ended(const std::shared_ptr<Work>& work, const std::shared_ptr<const RepairedFilm>& film) {
  const std::shared_ptr<Entry> entry = work->entry;
  work->run.reset();
  const bool isAwaited = work_ == work;
  // One that was done when the stop came lies where it was to be saved.
  const bool isDoneAllTheSame =
      entry->told.state == State::stopped && !film->path.empty() && std::ranges::count(entries_, entry) > 0;
  if (!film->end.isJudged() || !(isAwaited || isDoneAllTheSame)) scratch_.remove(film->order.folder);
  if (!isAwaited && !isDoneAllTheSame) return;
  if (isAwaited) work_.reset();
  entry->told.share.reset();
  if (film->end.isJudged()) {
    entry->film = film;
    entry->told.state = State::done;
    entry->told.verdict = film->result.verdict;
    entry->told.words = film->result.sentence;
  } else {
    entry->told.state = State::failed;
    entry->told.words = failureWords(film->end, platform::nameOf(entry->told.path), services_.translator);
  }
  update(entry);
  enableButtons();
  if (!isAwaited) return;
  // The next film would fare no better.
  if (film->end.kind == FilmEnd::Kind::notStarted) return questions_.tell(texts::kFailedTitle, entry->told.words);
  beginNext();
}

void FilmsPage::stop() {
  if (!work_) return;
  const std::shared_ptr<Entry> entry = work_->entry;
  if (work_->run) work_->run->stop();
  work_.reset();
  entry->told = {.path = entry->told.path, .state = State::stopped};
  update(entry);
  enableButtons();
}

void FilmsPage::goHome() {
  if (isUndone()) {
    const auto asked = entries_;
    if (!questions_.agrees(texts::kUndoneTitle, questions_.translated(texts::kUndone), texts::kStay, texts::kLeave))
      return;
    if (entries_ != asked) return;
  }
  clear();
  outlets_.pages.show(platform::DeepPage::none);
}

void FilmsPage::clear() {
  stop();
  for (const auto& entry : entries_) {
    if (entry->film) scratch_.remove(entry->film->order.folder);
  }
  entries_.clear();
  folder_.clear();
  show();
}

void FilmsPage::openFilm(std::size_t index) {
  if (index >= entries_.size() || !entries_[index]->film) return;
  open_(entries_[index]->film);
}

void FilmsPage::removeFilm(std::size_t index) {
  if (index >= entries_.size() || (work_ && entries_[index] == work_->entry)) return;
  if (entries_[index]->film) scratch_.remove(entries_[index]->film->order.folder);
  entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(index));
  show();
}

void FilmsPage::tellAllDone() {
  const auto isRepaired = [](const auto& entry) { return entry->film && !entry->film->path.empty(); };
  const auto repaired = static_cast<std::uint64_t>(std::ranges::count_if(entries_, isRepaired));
  const std::uint64_t others = entries_.size() - repaired;
  std::string message;
  if (repaired > 0) {
    message = platform::filled(services_.translator.counted(texts::kFilmsRepaired, repaired), {folder_});
  }
  if (others > 0) {
    message += (message.empty() ? "" : " ") + services_.translator.counted(texts::kFilmsNotRepaired, others);
  }
  if (repaired == 0) return questions_.tell(texts::kAllDoneTitle, message);
  const std::string folder = folder_;
  if (questions_.tellDone(texts::kAllDoneTitle, message, texts::kOpenFolder, texts::kClose) ==
      platform::kAlertDefault) {
    services_.workspace.openURL(fileUrl(folder));
  }
}

void FilmsPage::show() {
  std::vector<platform::QueuedFilm> films;
  for (const auto& entry : entries_) films.push_back(entry->told);
  outlets_.queue.show(films);
  enableButtons();
}

void FilmsPage::update(const std::shared_ptr<Entry>& entry) {
  const auto found = std::ranges::find(entries_, entry);
  if (found == entries_.end()) return;
  outlets_.queue.update(static_cast<std::size_t>(found - entries_.begin()), entry->told);
}

void FilmsPage::enableButtons() {
  const bool isAny = std::ranges::any_of(entries_, [](const auto& entry) { return canBegin(entry->told); });
  outlets_.queuestartbutton.setEnabled(!work_ && isAny);
  outlets_.queuestopbutton.setEnabled(work_ != nullptr);
  outlets_.queuefolderbutton.setEnabled(!work_);
}

}  // namespace zelvo::deep
