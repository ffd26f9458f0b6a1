#include "platform/headless/panels.h"

#include <algorithm>
#include <utility>

namespace zelvo::platform::headless {

namespace {

std::string nameOf(const Window& window) { return dynamic_cast<const HeadlessWindow&>(window).name(); }

void add(Events* events, const std::string& line) {
  if (events != nullptr) events->add(line);
}

}  // namespace

void HeadlessOpenPanel::note(const std::string& what) const { add(events_, "openPanel." + what); }

void HeadlessOpenPanel::setAllowedFileTypes(std::vector<std::string> extensions) {
  std::string list;
  for (const std::string& extension : extensions) list += (list.empty() ? "" : ", ") + extension;
  note("setAllowedFileTypes(" + list + ")");
  extensions_ = std::move(extensions);
}
void HeadlessOpenPanel::setTreatsFilePackagesAsDirectories(bool treats) {
  note(std::string("setTreatsFilePackagesAsDirectories(") + yesOrNo(treats) + ")");
}
void HeadlessOpenPanel::setExtensionHidden(bool hidden) {
  note(std::string("setExtensionHidden(") + yesOrNo(hidden) + ")");
}
void HeadlessOpenPanel::setCanChooseDirectories(bool can) {
  note(std::string("setCanChooseDirectories(") + yesOrNo(can) + ")");
}
void HeadlessOpenPanel::setCanChooseFiles(bool can) { note(std::string("setCanChooseFiles(") + yesOrNo(can) + ")"); }
void HeadlessOpenPanel::setCanCreateDirectories(bool can) {
  note(std::string("setCanCreateDirectories(") + yesOrNo(can) + ")");
}
void HeadlessOpenPanel::setAllowsMultipleSelection(bool allows) {
  note(std::string("setAllowsMultipleSelection(") + yesOrNo(allows) + ")");
}
void HeadlessOpenPanel::setPrompt(std::string_view text) { note("setPrompt(" + std::string(text) + ")"); }
void HeadlessOpenPanel::beginSheetModalForWindow(Window& over, std::function<void(int answer)> completion) {
  note("beginSheetModalForWindow(" + nameOf(over) + ")");
  completion_ = std::move(completion);
}

bool HeadlessOpenPanel::choose(const std::string& path) {
  if (!completion_ || !hasAllowedFileType(path, extensions_)) return false;
  filename_ = path;
  std::exchange(completion_, nullptr)(kPanelOk);
  return true;
}

void HeadlessOpenPanel::cancel() {
  if (completion_) std::exchange(completion_, nullptr)(kPanelCancelled);
}

void HeadlessSavePanel::note(const std::string& what) const { add(events_, "savePanel." + what); }

void HeadlessSavePanel::setPrompt(std::string_view text) { note("setPrompt(" + std::string(text) + ")"); }
void HeadlessSavePanel::setCanCreateDirectories(bool can) {
  note(std::string("setCanCreateDirectories(") + yesOrNo(can) + ")");
}
void HeadlessSavePanel::beginSheet(const std::optional<std::string>& directory, std::string_view name, Window& over,
                                   std::function<void(int answer)> completion) {
  note("beginSheet(" + directory.value_or("default folder") + ", " + std::string(name) + ", " + nameOf(over) + ")");
  completion_ = std::move(completion);
}
void HeadlessSavePanel::endSheet() { note("endSheet()"); }
void HeadlessSavePanel::orderOut() { note("orderOut()"); }

bool HeadlessSavePanel::choose(const std::string& path, bool agreed) {
  if (!completion_) return false;
  const NameVerdict verdict = judge_ ? judge_(path) : NameVerdict{};
  if (verdict.kind == NameVerdict::Kind::refused) note("refused: " + verdict.why);
  if (verdict.kind == NameVerdict::Kind::ask) note("asked: " + verdict.why);
  if (verdict.kind == NameVerdict::Kind::refused || (verdict.kind == NameVerdict::Kind::ask && !agreed)) return false;
  filename_ = path;
  std::exchange(completion_, nullptr)(kPanelOk);
  return true;
}

void HeadlessSavePanel::cancel() {
  if (completion_) std::exchange(completion_, nullptr)(kPanelCancelled);
}

std::shared_ptr<OpenPanel> HeadlessPanels::openPanel() {
  bool made = makesOpenPanels_;
  if (!openPanelScript_.empty()) {
    made = openPanelScript_.front();
    openPanelScript_.pop_front();
  }
  add(events_, made ? "openPanel()" : "openPanel() failed");
  if (!made) return nullptr;
  openPanels_.push_back(std::make_shared<HeadlessOpenPanel>(events_, freshFilename_));
  return openPanels_.back();
}

std::shared_ptr<SavePanel> HeadlessPanels::savePanel() {
  add(events_, makesSavePanels_ ? "savePanel()" : "savePanel() failed");
  if (!makesSavePanels_) return nullptr;
  lastSavePanel_ = std::make_shared<HeadlessSavePanel>(events_);
  return lastSavePanel_;
}

std::vector<std::shared_ptr<HeadlessOpenPanel>> HeadlessPanels::shownOpenPanels() const {
  std::vector<std::shared_ptr<HeadlessOpenPanel>> shown;
  std::copy_if(openPanels_.begin(), openPanels_.end(), std::back_inserter(shown),
               [](const auto& panel) { return panel->isShown(); });
  return shown;
}

std::shared_ptr<HeadlessOpenPanel> HeadlessPanels::lastOpenPanel() const {
  return openPanels_.empty() ? nullptr : openPanels_.back();
}

int HeadlessAlertPanels::runAlertPanel(const AlertPanel& alert) {
  const auto shown = [](const std::optional<std::string>& text) { return text ? "\"" + *text + "\"" : "nothing"; };
  add(events_, "alert(" + shown(alert.title) + ", " + shown(alert.message) + ", " + shown(alert.defaultButton) + ", " +
                   shown(alert.alternateButton) + ", " + shown(alert.otherButton) + ")");
  shown_.push_back(alert);
  if (answers_.empty()) return dismissalAnswer(alert);
  const int answer = answers_.front();
  answers_.pop_front();
  return answer;
}

bool HeadlessWaitPanels::runWaitPanel(const WaitPanel& notice) {
  add(events_, "wait(" + notice.title + ")");
  const bool finished = onWait && onWait(notice);
  add(events_, finished ? "wait finished" : "wait cancelled");
  return finished;
}

}  // namespace zelvo::platform::headless
