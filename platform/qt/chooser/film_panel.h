/// A chooser of what exists: films, one film, or a folder.
/// Thread: main.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/film_choosers.h"
#include "platform/qt/chooser/shown_file_panel.h"

namespace zelvo::platform::qt {

class FilmPanel final : public std::enable_shared_from_this<FilmPanel> {
 public:
  enum class Kind { films, film, folder };

  FilmPanel(std::shared_ptr<FilePanelMemory> memory, Kind kind) : shown_(std::move(memory)), kind_(kind) {}

  /// Shows it. `answer` gets the paths, none when it is cancelled.
  void begin(const ChooserRequest& request, std::function<void(std::vector<std::string>)> answer);

 private:
  void showSelection();
  void accept();
  void acceptNothingTyped();
  void take(std::vector<std::string> paths, const std::string& folder);
  [[nodiscard]] ChooserFiles& files() const { return *shown_.memory().files; }
  [[nodiscard]] bool isFolder(const std::string& path) const { return files().kindOf(path) == PathKind::folder; }
  /// Why the path cannot be chosen; empty when it can.
  [[nodiscard]] QString objection(const std::string& path) const;

  ShownFilePanel shown_;
  Kind kind_;
  std::vector<std::string> chosen_;
};

/// Where a chooser opens: the folder that is asked for, else that of the last choice, else where films usually lie.
[[nodiscard]] std::string openingFolder(const ChooserRequest& request, const FilePanelMemory& memory);

}  // namespace zelvo::platform::qt
