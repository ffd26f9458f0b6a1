/// A plain view that can carry a self-drawn control. Without one, and below one that asks for it, it draws its own
/// look.
/// Thread: main.
#pragma once

#include <QWidget>

#include "platform/qt/drawing/view_host.h"

namespace zelvo::platform::qt {

class HostedWidget : public QWidget {
 public:
  explicit HostedWidget(QWidget* parent = nullptr);
  [[nodiscard]] QtViewHost& host() const { return *host_; }

 protected:
  /// What the view looks like by itself: nothing, unless a derived one says otherwise.
  virtual void paintBase(QPainter&) {}
  void paintEvent(QPaintEvent* event) override;

 private:
  QtViewHost* host_;
};

}  // namespace zelvo::platform::qt
