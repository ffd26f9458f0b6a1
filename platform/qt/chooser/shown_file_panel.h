/// A chooser on the window, from its showing to its answer.
/// Thread: main.
#pragma once

#include <QPointer>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>

#include "platform/panels.h"
#include "platform/path_probe.h"
#include "platform/qt/chooser/file_chooser.h"
#include "platform/qt/chooser/new_folder_panel.h"
#include "platform/qt/panels/panel_frame.h"
#include "platform/qt/panels/panel_stack.h"

namespace zelvo::platform::qt {

/// What the choosers of one run of the program share.
struct FilePanelMemory {
  PanelStack& stack;
  AlertPanels& alerts;
  std::shared_ptr<ChooserFiles> files;
  PathProbe* probe = nullptr;  ///< asked before a path is looked at here; nobody is without one
  std::optional<std::string> lastFolder = std::nullopt;   ///< of what was chosen last
  std::optional<std::string> inputFolder = std::nullopt;  ///< of the file that was chosen last
  std::set<std::shared_ptr<void>> shownPanels = {};       ///< they live as long as they are shown

  /// False when to look at the path may take for ever. // Decision: inventory, A child asks paths that may hang
  [[nodiscard]] bool answers(const std::string& path) const {
    return probe == nullptr || path.empty() || probe->answers({path});
  }
};

/// A chooser from the moment it is shown to its answer, which is given once: by a button, by Esc, or by whoever takes
/// it off the window. One that is still up when the program ends gives none.
class ShownFilePanel {
 public:
  explicit ShownFilePanel(std::shared_ptr<FilePanelMemory> memory) : memory_(std::move(memory)) {}
  ~ShownFilePanel();
  ShownFilePanel(const ShownFilePanel&) = delete;
  ShownFilePanel& operator=(const ShownFilePanel&) = delete;

  struct Look {
    QString title;
    QString nameLabel;
    QString prompt;  ///< of the button that accepts
    FileFilter filter;
    bool canCreateDirectories = false;
  };
  /// Makes the chooser, which `show` then shows. `self` is kept until the answer. `accept` runs when the user wants to
  /// end with what is chosen.
  FileChooser& begin(const std::shared_ptr<void>& self, const Look& look, std::function<void()> accept,
                     std::function<void(int answer)> completion);
  void show();
  /// Takes the chooser off the window, then answers. Nothing when it is not shown.
  void finish(int answer);
  [[nodiscard]] bool isShown() const { return frame_ != nullptr; }
  [[nodiscard]] FileChooser& chooser() const { return *chooser_; }
  [[nodiscard]] FilePanelMemory& memory() const { return *memory_; }

 private:
  /// The action, for as long as what is shown now is shown. A chooser that has ended lives on for a while, and while
  /// its answer asks something, for long; a screen reader may still press its buttons.
  std::function<void()> whileShown(std::function<void()> action);
  void askForNewFolder();
  void leave();

  std::shared_ptr<FilePanelMemory> memory_;
  std::weak_ptr<void> self_;
  QPointer<PanelFrame> frame_;
  std::unique_ptr<NewFolderPanel> newFolder_;
  FileChooser* chooser_ = nullptr;
  std::function<void(int answer)> completion_;
};

}  // namespace zelvo::platform::qt
