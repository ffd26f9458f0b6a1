/// The panels that lie over the window's content. Each lies on an overlay that swallows the mouse, over a backdrop that
/// dims what is below. Only the topmost takes input; they may end in any order.
/// Decision: window, Sheets are panels inside the window
/// Thread: main, unless a function says otherwise.
#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>
#include <functional>
#include <list>
#include <memory>
#include <vector>

#include "platform/main_queue.h"
#include "platform/panel_controls.h"
#include "platform/qt/drawing/hosted_widget.h"
#include "platform/qt/drawing/pictures.h"
#include "platform/qt/panels/panel_frame.h"
#include "platform/qt/panels/panel_owner.h"

namespace zelvo::platform::qt {

class PanelStack final : public QObject, public PanelOwner {
 public:
  /// Panels cover `content` wholly.
  PanelStack(QWidget& content, MainQueue& queue, Pictures& pictures);
  ~PanelStack() override;

  /// Who decides about what is self-drawn. Told at once of the buttons that were made before.
  void setControls(PanelControls* controls);

  enum class Place { onTop, belowQuestions };
  /// Shows `panel` above everything, or below the panels that stay on top. One that is shown already stays where it is.
  void begin(PanelFrame& panel, Place where = Place::onTop);
  /// Gives the input back to what lies below; the panel stays visible until `orderOut`. Ending one that is not shown
  /// does nothing.
  void end(PanelFrame& panel);

  [[nodiscard]] bool isEmpty() const { return entries_.empty(); }
  [[nodiscard]] bool isShown(const PanelFrame& panel) const;
  /// The panel that takes input; null when none is shown.
  [[nodiscard]] PanelFrame* top() const;

  /// Told after the number of panels has changed.
  void setObserver(std::function<void()> observer) { observer_ = std::move(observer); }
  /// Told of each panel that begins.
  void setBeginObserver(std::function<void(PanelFrame& panel)> observer) { beginObserver_ = std::move(observer); }

  // ---- PanelOwner ----
  void buttonMade(const HostedButton& button) override;
  void buttonDestroyed(const HostedButton& button) override;
  void panelDestroyed(PanelFrame& panel) override;
  void orderOut(PanelFrame& panel) override;
  void bringToFront(PanelFrame& panel) override;
  void placeAgain(PanelFrame& panel) override;
  [[nodiscard]] QWidget& content() const override { return content_; }
  [[nodiscard]] MainQueue& queue() const override { return queue_; }
  [[nodiscard]] Pictures& pictures() const override { return pictures_; }

 private:
  class Backdrop;
  struct Entry {
    PanelFrame* panel = nullptr;
    std::unique_ptr<Backdrop> backdrop;
    std::unique_ptr<HostedWidget> overlay;
    QPointer<QWidget> focusBefore;
    bool isTold = false;  ///< a screen reader knows of it
  };

  bool eventFilter(QObject* watched, QEvent* event) override;
  void place(PanelFrame& panel);
  void reportTop();
  void giveFocusBack(const Entry& ended, std::size_t position);

  QWidget& content_;
  MainQueue& queue_;
  Pictures& pictures_;
  PanelControls* controls_ = nullptr;
  std::list<HostedButton> buttons_;
  std::vector<Entry> entries_;
  std::function<void()> observer_;
  std::function<void(PanelFrame& panel)> beginObserver_;
};

}  // namespace zelvo::platform::qt
