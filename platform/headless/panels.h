/// Panels that a test answers: each writes down what it was told, waits, and ends when the test says how.
/// Thread: main.
#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/headless/elements.h"
#include "platform/headless/events.h"
#include "platform/panels.h"

namespace zelvo::platform::headless {

class HeadlessOpenPanel final : public OpenPanel {
 public:
  explicit HeadlessOpenPanel(Events* events, std::optional<std::string> filename = std::nullopt)
      : events_(events), filename_(std::move(filename)) {}

  [[nodiscard]] std::optional<std::string> filename() const override { return filename_; }
  void setAllowedFileTypes(std::vector<std::string> extensions) override;
  void setTreatsFilePackagesAsDirectories(bool treats) override;
  void setExtensionHidden(bool hidden) override;
  void setCanChooseDirectories(bool can) override;
  void setCanChooseFiles(bool can) override;
  void setCanCreateDirectories(bool can) override;
  void setAllowsMultipleSelection(bool allows) override;
  void setPrompt(std::string_view text) override;
  void beginSheetModalForWindow(Window& over, std::function<void(int answer)> completion) override;

  /// Chooses a file and ends with "OK". False, and the panel stays, when the file's extension is not allowed.
  bool choose(const std::string& path);
  void cancel();
  [[nodiscard]] bool isShown() const { return completion_ != nullptr; }

 private:
  void note(const std::string& what) const;

  Events* events_;
  std::optional<std::string> filename_;
  std::vector<std::string> extensions_;
  std::function<void(int answer)> completion_;
};

class HeadlessSavePanel final : public SavePanel {
 public:
  explicit HeadlessSavePanel(Events* events) : events_(events) {}

  [[nodiscard]] std::optional<std::string> filename() const override { return filename_; }
  void setPrompt(std::string_view text) override;
  void setCanCreateDirectories(bool can) override;
  void setSavedFile(std::string_view behindFolder) override { savedFile_ = behindFolder; }
  void setNameJudge(std::function<NameVerdict(const std::string& path)> judge) override { judge_ = std::move(judge); }
  void beginSheet(const std::optional<std::string>& directory, std::string_view name, Window& over,
                  std::function<void(int answer)> completion) override;
  void endSheet() override;
  void orderOut() override;

  /// Takes a full path and ends with "OK". False, and the panel stays, when the name was refused, or was to be asked
  /// about and `agreed` is false.
  bool choose(const std::string& path, bool agreed = true);
  void cancel();
  [[nodiscard]] bool isShown() const { return completion_ != nullptr; }
  [[nodiscard]] const std::string& savedFile() const { return savedFile_; }

 private:
  void note(const std::string& what) const;

  Events* events_;
  std::string savedFile_;
  std::optional<std::string> filename_;
  std::function<NameVerdict(const std::string& path)> judge_;
  std::function<void(int answer)> completion_;
};

class HeadlessPanels final : public Panels {
 public:
  explicit HeadlessPanels(Events* events) : events_(events) {}
  [[nodiscard]] std::shared_ptr<OpenPanel> openPanel() override;
  [[nodiscard]] std::shared_ptr<SavePanel> savePanel() override;

  /// The open panels asked for are made or not, in this order; those after them are made.
  void scriptOpenPanels(std::deque<bool> made) { openPanelScript_ = std::move(made); }
  /// Whether open panels are made once the script is through.
  void makeOpenPanels(bool made) { makesOpenPanels_ = made; }
  void makeSavePanels(bool made) { makesSavePanels_ = made; }
  /// Fresh open panels report this name already.
  void setFreshFilename(std::optional<std::string> filename) { freshFilename_ = std::move(filename); }

  /// Open panels that are up, the oldest first.
  [[nodiscard]] std::vector<std::shared_ptr<HeadlessOpenPanel>> shownOpenPanels() const;
  /// The panel that was made last; null when none was.
  [[nodiscard]] std::shared_ptr<HeadlessOpenPanel> lastOpenPanel() const;
  [[nodiscard]] std::shared_ptr<HeadlessSavePanel> lastSavePanel() const { return lastSavePanel_; }

 private:
  Events* events_;
  std::deque<bool> openPanelScript_;
  bool makesOpenPanels_ = true;
  bool makesSavePanels_ = true;
  std::optional<std::string> freshFilename_;
  std::vector<std::shared_ptr<HeadlessOpenPanel>> openPanels_;
  std::shared_ptr<HeadlessSavePanel> lastSavePanel_;
};

/// Alerts answered by a script; without one, as if Esc was pressed.
class HeadlessAlertPanels final : public AlertPanels {
 public:
  explicit HeadlessAlertPanels(Events* events) : events_(events) {}
  int runAlertPanel(const AlertPanel& alert) override;
  void script(std::deque<int> answers) { answers_ = std::move(answers); }
  [[nodiscard]] const std::vector<AlertPanel>& shown() const { return shown_; }

 private:
  Events* events_;
  std::deque<int> answers_;
  std::vector<AlertPanel> shown_;
};

/// Notices whose waiting is the test's: `onWait` gets the notice and answers for it. Without one the user gives up.
class HeadlessWaitPanels final : public WaitPanels {
 public:
  explicit HeadlessWaitPanels(Events* events) : events_(events) {}
  [[nodiscard]] bool runWaitPanel(const WaitPanel& notice) override;
  std::function<bool(const WaitPanel&)> onWait;

 private:
  Events* events_;
};

}  // namespace zelvo::platform::headless
