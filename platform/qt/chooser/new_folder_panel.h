/// A panel that asks for a name and makes a folder of it.
/// Thread: main.
#pragma once

#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <functional>
#include <optional>
#include <string>

#include "platform/chooser_files.h"
#include "platform/qt/panels/panel_frame.h"
#include "platform/qt/panels/panel_stack.h"

namespace zelvo::platform::qt {

class NewFolderPanel final {
 public:
  /// Shows the panel. `ended` gets the new folder's path, or nothing when the user gave up; it may destroy the panel.
  NewFolderPanel(PanelStack& stack, ChooserFiles& files, std::string folder,
                 std::function<void(const std::optional<std::string>& made)> ended);
  ~NewFolderPanel();
  NewFolderPanel(const NewFolderPanel&) = delete;
  NewFolderPanel& operator=(const NewFolderPanel&) = delete;

 private:
  void create();
  void say(const QString& sentence);
  void end(const std::optional<std::string>& made);

  PanelStack& stack_;
  ChooserFiles& files_;
  std::string folder_;
  QPointer<PanelFrame> frame_;
  QLineEdit* name_;
  QLabel* sentence_;
  std::function<void(const std::optional<std::string>& made)> ended_;
};

}  // namespace zelvo::platform::qt
