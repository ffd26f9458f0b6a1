/// A chooser of a name for a new file.
/// Thread: main.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/film_choosers.h"
#include "platform/qt/chooser/shown_file_panel.h"

namespace zelvo::platform::qt {

class NewFilePanel final : public std::enable_shared_from_this<NewFilePanel> {
 public:
  explicit NewFilePanel(std::shared_ptr<FilePanelMemory> memory) : shown_(std::move(memory)) {}

  /// Shows it. `answer` gets nothing when it is cancelled.
  void begin(const NewFileRequest& request, std::function<void(std::optional<NewFileAnswer>)> answer);

 private:
  void accept();
  void take(const std::string& path);
  void showWhere();
  /// Asks whether a file that is there may be replaced.
  [[nodiscard]] bool mayReplace(const std::string& path);
  /// Why no file can be made there; empty when one can.
  [[nodiscard]] QString objection(const std::string& path) const;

  ShownFilePanel shown_;
  std::function<std::string(const std::string& path)> refusal_;
  std::optional<NewFileAnswer> chosen_;
};

}  // namespace zelvo::platform::qt
