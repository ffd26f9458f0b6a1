/// The help inside the window: a page of the installed help, at one of its places, in a panel above whatever is shown.
/// Decision: window, F1 works over a message
/// Thread: main.
#pragma once

#include <QPointer>
#include <QString>
#include <QTextBrowser>
#include <QUrl>

#include "platform/qt/panels/panel_frame.h"
#include "platform/qt/panels/panel_stack.h"

namespace zelvo::platform::qt {

class HelpPanel {
 public:
  explicit HelpPanel(PanelStack& stack) : stack_(stack) {}
  ~HelpPanel() { close(); }
  HelpPanel(const HelpPanel&) = delete;
  HelpPanel& operator=(const HelpPanel&) = delete;

  /// Shows a page (an address of a local file) at `topic`, or where it tells of messages when it knows no such topic;
  /// at its beginning when `topic` is empty. `why` stands above it when it is not empty. What is no page that is there
  /// is told by its address. Shown already, the panel turns to it.
  void show(const QUrl& page, const QString& topic, const QString& why);
  [[nodiscard]] bool isShown() const {
    const PanelFrame* const shown = frame_;
    return shown != nullptr && stack_.isShown(*shown);
  }
  /// Nothing while it is not shown.
  [[nodiscard]] QTextBrowser* browser() const { return isShown() ? browser_ : nullptr; }
  [[nodiscard]] PanelFrame* frame() const { return frame_; }

 private:
  void close();
  void turnTo(const QUrl& page, const QString& topic);

  PanelStack& stack_;
  QPointer<PanelFrame> frame_;
  QTextBrowser* browser_ = nullptr;
};

}  // namespace zelvo::platform::qt
