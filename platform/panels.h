/// Panels: the file choosers that slide down over a window, modal alerts, and a modal notice while something finishes.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/elements.h"
#include "platform/sheet_head.h"
#include "platform/translator.h"

namespace zelvo::platform {

/// What a file chooser answers.
inline constexpr int kPanelCancelled = 0;
inline constexpr int kPanelOk = 1;

/// Chooses existing files or folders. Thread: main.
class OpenPanel {
 public:
  virtual ~OpenPanel() = default;
  /// Full path of the choice; nothing while there is none.
  [[nodiscard]] virtual std::optional<std::string> filename() const = 0;
  /// Only files with one of these extensions can be chosen, however it was typed (see `hasAllowedFileType`).
  virtual void setAllowedFileTypes(std::vector<std::string> extensions) = 0;
  virtual void setTreatsFilePackagesAsDirectories(bool treats) = 0;
  virtual void setExtensionHidden(bool hidden) = 0;
  virtual void setCanChooseDirectories(bool can) = 0;
  virtual void setCanChooseFiles(bool can) = 0;
  virtual void setCanCreateDirectories(bool can) = 0;
  virtual void setAllowsMultipleSelection(bool allows) = 0;
  /// Text of the button that ends the panel with an answer.
  virtual void setPrompt(std::string_view text) = 0;
  /// Shows the panel over `over` and returns without waiting; `completion` gets the answer. The panel stays as long as
  /// it is shown, whoever lets go of it.
  virtual void beginSheetModalForWindow(Window& over, std::function<void(int answer)> completion) = 0;
};

/// What a save panel must know about a name before it takes it.
struct NameVerdict {
  enum class Kind { taken, ask, refused };
  Kind kind = Kind::taken;
  std::string why;  ///< what to ask the user, or why the name cannot be; a sentence
};

/// Chooses a name that need not exist yet. Thread: main.
class SavePanel {
 public:
  virtual ~SavePanel() = default;
  [[nodiscard]] virtual std::optional<std::string> filename() const = 0;
  virtual void setPrompt(std::string_view text) = 0;
  virtual void setCanCreateDirectories(bool can) = 0;
  /// What will be saved in the folder that is named, shown after its path: "/repaired.avi".
  virtual void setSavedFile(std::string_view behindFolder) = 0;
  /// Asked for the full path as it was typed before the panel ends with it. On `ask` the user decides, on `refused` the
  /// panel says why and stays.
  virtual void setNameJudge(std::function<NameVerdict(const std::string& path)> judge) = 0;
  /// Shows the panel over `over`, in `directory` (the panel's default when there is none), with `name` proposed, and
  /// returns without waiting. An existing folder of the chosen name is an answer, not a place to go into.
  virtual void beginSheet(const std::optional<std::string>& directory, std::string_view name, Window& over,
                          std::function<void(int answer)> completion) = 0;
  virtual void endSheet() = 0;
  virtual void orderOut() = 0;
};

/// Makes panels. Thread: main.
class Panels {
 public:
  virtual ~Panels() = default;
  /// A fresh panel; nothing when it could not be made.
  [[nodiscard]] virtual std::shared_ptr<OpenPanel> openPanel() = 0;
  [[nodiscard]] virtual std::shared_ptr<SavePanel> savePanel() = 0;
};

/// A modal question or message. A button without a title, or with an empty one, is not shown; but for the first, which
/// then says "OK".
struct AlertPanel {
  std::optional<std::string> title;
  std::optional<std::string> message;
  std::optional<std::string> defaultButton;
  std::optional<std::string> alternateButton;
  std::optional<std::string> otherButton;
  std::optional<SheetSign> sign = std::nullopt;  ///< by the number of its buttons without one
};

/// What an alert answers.
inline constexpr int kAlertDefault = 1;
inline constexpr int kAlertAlternate = 0;
inline constexpr int kAlertOther = -1;

/// What Esc and closing answer: the button that says "Cancel", in English or in the translator's language, or, without
/// one, the alternate button, else the default.
/// Decision: window, Esc answers "Cancel"
[[nodiscard]] int dismissalAnswer(const AlertPanel& alert, const Translator& translator = englishTranslator());

/// Thread: main.
class AlertPanels {
 public:
  virtual ~AlertPanels() = default;
  /// Shows the alert, waits for its answer and gives it. Work for the main thread is served meanwhile.
  virtual int runAlertPanel(const AlertPanel& alert) = 0;
};

/// A modal notice with a progress bar and a button that gives up waiting.
struct WaitPanel {
  std::string title;
  std::string message;
  std::string cancelButton;
  std::function<double()> percent;  ///< 0 to 100; asked again and again
  std::function<bool()> finished;
};

/// Thread: main.
class WaitPanels {
 public:
  virtual ~WaitPanels() = default;
  /// Shows the notice until `finished` answers true, and then answers true; false when the user gave up or the
  /// application ends. Work for the main thread is served meanwhile; no other window takes input.
  [[nodiscard]] virtual bool runWaitPanel(const WaitPanel& notice) = 0;
};

/// True when the file's extension is one of `extensions` in any letter case. An empty list allows every file.
[[nodiscard]] bool hasAllowedFileType(std::string_view path, const std::vector<std::string>& extensions);

}  // namespace zelvo::platform
