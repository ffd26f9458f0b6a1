#include "platform/qt/chooser/file_panels.h"

#include <filesystem>
#include <system_error>
#include <utility>

#include "platform/paths.h"

namespace zelvo::platform::qt {

QtPanels::QtPanels(PanelStack& stack, AlertPanels& alerts, std::shared_ptr<ChooserFiles> files, PathProbe* probe)
    : memory_(std::make_shared<FilePanelMemory>(
          FilePanelMemory{.stack = stack, .alerts = alerts, .files = std::move(files), .probe = probe})) {}

QtPanels::~QtPanels() {
  // Panels that are still up go now, while the window is there; they and what they share hold each other.
  const auto shown = std::exchange(memory_->shownPanels, {});
}

std::shared_ptr<OpenPanel> QtPanels::openPanel() { return std::make_shared<QtOpenPanel>(memory_); }

std::shared_ptr<SavePanel> QtPanels::savePanel() { return std::make_shared<QtSavePanel>(memory_); }

void QtPanels::noteInput(const std::string& file) {
  std::error_code failure;
  const std::filesystem::path whole = std::filesystem::absolute(file, failure);
  if (failure) return;
  memory_->lastFolder = folderOf(whole.string());
  memory_->inputFolder = memory_->lastFolder;
}

}  // namespace zelvo::platform::qt
