/// What the program is, which version, and under which licences it and the libraries that it stands on are passed on: a
/// panel above whatever is shown.
/// Thread: main.
#pragma once

#include <QPointer>
#include <QString>
#include <QTextBrowser>

#include "platform/qt/panels/panel_frame.h"
#include "platform/qt/panels/panel_stack.h"

namespace zelvo::platform::qt {

class AboutPanel {
 public:
  explicit AboutPanel(PanelStack& stack) : stack_(stack) {}
  ~AboutPanel() { close(); }
  AboutPanel(const AboutPanel&) = delete;
  AboutPanel& operator=(const AboutPanel&) = delete;

  /// As "0.1.0"; nothing is said of it while it is empty.
  void setVersion(const QString& version) { version_ = version; }
  /// Shown already, it stays as it is.
  void show();
  [[nodiscard]] bool isShown() const { return frame_ != nullptr && stack_.isShown(*frame_); }
  /// The part that tells of licences; nothing while the panel is not shown.
  [[nodiscard]] QTextBrowser* licences() const { return isShown() ? licences_ : nullptr; }
  [[nodiscard]] PanelFrame* frame() const { return frame_; }

 private:
  void close();

  PanelStack& stack_;
  QString version_;
  QPointer<PanelFrame> frame_;
  QTextBrowser* licences_ = nullptr;
};

}  // namespace zelvo::platform::qt
