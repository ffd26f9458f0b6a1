#include "platform/qt/qt_file_panels.h"

namespace zelvo::platform::qt {

QtPanels::QtPanels(PanelStack& stack, AlertPanels& alerts)
    : memory_(std::make_shared<FilePanelMemory>(FilePanelMemory{.stack = stack, .alerts = alerts})) {}

QtPanels::~QtPanels() {
  // Panels that are still up go now, while the window is there; they and what they share hold each other.
  const auto shown = std::exchange(memory_->shownPanels, {});
}

std::shared_ptr<OpenPanel> QtPanels::openPanel() { return std::make_shared<QtOpenPanel>(memory_); }

std::shared_ptr<SavePanel> QtPanels::savePanel() { return std::make_shared<QtSavePanel>(memory_); }

void QtPanels::noteInput(const std::string& file) {
  memory_->lastFolder = folderOf(file);
  memory_->inputFolder = folderOf(file);
}

}  // namespace zelvo::platform::qt
