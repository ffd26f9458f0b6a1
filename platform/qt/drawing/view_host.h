/// Carries a self-drawn control on a widget: draws it, and tells it what the pointer does and when its place changes.
/// Thread: main.
#pragma once

#include <QObject>
#include <QPainter>
#include <QPointer>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "platform/view.h"

class QMouseEvent;
class QWidget;

namespace zelvo::platform::qt {

class QtViewHost final : public QObject, public ViewHost {
 public:
  /// Draws what the widget would be without a client.
  using BaseLook = std::function<void(QPainter& painter)>;

  /// Belongs to `widget`, whose paint event calls `paint`.
  QtViewHost(QWidget& widget, BaseLook base);
  ~QtViewHost() override;

  void addTrackingArea(std::shared_ptr<const TrackingArea> area) override;
  void removeTrackingArea(const std::shared_ptr<const TrackingArea>& area) override;
  [[nodiscard]] std::vector<std::shared_ptr<const TrackingArea>> trackingAreas() const override { return areas_; }
  [[nodiscard]] std::optional<Point> mouseLocationOutsideOfEventStream() const override;

  void invalidateCursorRects() override;
  void addCursorRect(const Rect& rect, CursorShape shape) override;

  void carry(std::unique_ptr<ViewClient> client) override;
  [[nodiscard]] Rect bounds() const override;
  void setFrame(const Rect& frame) override;
  void setNeedsDisplay() override;
  void drawBase(Canvas& canvas, const Rect& rect) override;
  void setWantsLayer(bool wantsLayer) override;
  void setShadow(const Shadow& shadow) override;

  /// Draws the client, or the widget's own look without one.
  void paint(QPainter& painter, const QRect& rect);
  /// Tells the client that the pointer may have come or gone without an event.
  void resynchronise();
  /// Tells nobody of the pointer any more: the window goes, and the owners of areas may be gone already.
  void stopTracking() { areas_.clear(); }
  [[nodiscard]] ViewClient* client() const { return client_.get(); }
  [[nodiscard]] QWidget& widget() const { return widget_; }

 private:
  struct CursorRect {
    Rect rect;
    CursorShape shape;
  };

  bool eventFilter(QObject* watched, QEvent* event) override;
  [[nodiscard]] bool widgetEvent(QEvent& event);
  [[nodiscard]] bool mouseEvent(QMouseEvent& event);
  void watchWhatHoldsIt();
  void wake();
  void reportTrackers(bool entered);
  [[nodiscard]] bool isLive(const TrackingArea& area) const;
  void rebuildCursorRects();
  void showCursor();
  void applyShadow();

  QWidget& widget_;
  std::vector<QPointer<QWidget>> holders_;  ///< from the parent up to the window
  BaseLook base_;
  std::unique_ptr<ViewClient> client_;
  std::vector<std::shared_ptr<const TrackingArea>> areas_;
  std::vector<CursorRect> cursorRects_;
  std::optional<Shadow> shadow_;
  bool wantsLayer_ = false;
  bool isAwake_ = false;
  bool isPainting_ = false;
  bool cursorRectsAreInvalid_ = false;
};

}  // namespace zelvo::platform::qt
