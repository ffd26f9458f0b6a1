/// Choosers of files and names as panels of the window. // Decision: window, Choosers are our own
/// Thread: main.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/panels.h"
#include "platform/qt/chooser/shown_file_panel.h"
#include "platform/qt/panels/panel_stack.h"

namespace zelvo::platform::qt {

/// Starts in the folder of the last choice of this run, else in the user's folder for videos, else at home.
class QtOpenPanel final : public OpenPanel, public std::enable_shared_from_this<QtOpenPanel> {
 public:
  explicit QtOpenPanel(std::shared_ptr<FilePanelMemory> memory) : shown_(std::move(memory)) {}

  [[nodiscard]] std::optional<std::string> filename() const override { return filename_; }
  void setAllowedFileTypes(std::vector<std::string> extensions) override { extensions_ = std::move(extensions); }
  /// This system has no folders that pose as files.
  void setTreatsFilePackagesAsDirectories(bool) override {}
  /// Names are always shown whole: what cannot be seen cannot be judged.
  void setExtensionHidden(bool) override {}
  void setCanChooseDirectories(bool can) override { canChooseDirectories_ = can; }
  void setCanChooseFiles(bool can) override { canChooseFiles_ = can; }
  void setCanCreateDirectories(bool can) override { canCreateDirectories_ = can; }
  /// One is chosen at a time, whatever is allowed: `filename` tells one.
  void setAllowsMultipleSelection(bool) override {}
  void setPrompt(std::string_view text) override { prompt_ = text; }
  void beginSheetModalForWindow(Window& over, std::function<void(int answer)> completion) override;

 private:
  void accept();
  void acceptNothingTyped();
  void take(const std::string& path);
  /// Takes a path that does not answer, when its name is one that can be chosen.
  void takeUnseen(const std::string& path);
  void takeIn(const std::string& path, const std::string& folder);
  void enterInstead(const std::string& folder);
  [[nodiscard]] ChooserFiles& files() const { return *shown_.memory().files; }
  [[nodiscard]] bool isFolder(const std::string& path) const { return files().kindOf(path) == PathKind::folder; }
  /// Why the file cannot be chosen; empty when it can.
  [[nodiscard]] QString objection(const std::string& path) const;

  ShownFilePanel shown_;
  std::vector<std::string> extensions_;
  bool canChooseDirectories_ = false;
  bool canChooseFiles_ = true;
  bool canCreateDirectories_ = false;
  std::string prompt_;
  std::optional<std::string> filename_;
};

/// Starts, when it is told no folder, in that of the file that was chosen last.
class QtSavePanel final : public SavePanel, public std::enable_shared_from_this<QtSavePanel> {
 public:
  explicit QtSavePanel(std::shared_ptr<FilePanelMemory> memory) : shown_(std::move(memory)) {}

  [[nodiscard]] std::optional<std::string> filename() const override { return filename_; }
  void setPrompt(std::string_view text) override { prompt_ = text; }
  void setCanCreateDirectories(bool can) override { canCreateDirectories_ = can; }
  void setSavedFile(std::string_view behindFolder) override { savedFile_ = behindFolder; }
  void setNameJudge(std::function<NameVerdict(const std::string& path)> judge) override { judge_ = std::move(judge); }
  void beginSheet(const std::optional<std::string>& directory, std::string_view name, Window& over,
                  std::function<void(int answer)> completion) override;
  /// A panel that is still shown is cancelled by either.
  void endSheet() override { shown_.finish(kPanelCancelled); }
  void orderOut() override { shown_.finish(kPanelCancelled); }

 private:
  void accept();
  /// The path that would be the answer, without slashes at its end; empty while there is no name.
  [[nodiscard]] std::string wantedPath() const;
  /// Why nothing can be saved there; empty when it can.
  [[nodiscard]] QString objection(const std::string& path) const;
  void showWhere();

  ShownFilePanel shown_;
  bool canCreateDirectories_ = false;
  std::string savedFile_;
  std::string prompt_;
  std::function<NameVerdict(const std::string& path)> judge_;
  std::optional<std::string> filename_;
};

class QtPanels final : public Panels {
 public:
  /// `alerts` asks what a save panel must ask. With a `probe`, no panel looks at a path that does not answer: it is
  /// taken as it is, and whoever gets it must ask in turn.
  QtPanels(PanelStack& stack, AlertPanels& alerts, std::shared_ptr<ChooserFiles> files, PathProbe* probe = nullptr);
  ~QtPanels() override;

  [[nodiscard]] std::shared_ptr<OpenPanel> openPanel() override;
  [[nodiscard]] std::shared_ptr<SavePanel> savePanel() override;

  /// The input was chosen in another way: dropped, or named when the program was started.
  void noteInput(const std::string& file);

 private:
  std::shared_ptr<FilePanelMemory> memory_;
};

}  // namespace zelvo::platform::qt
