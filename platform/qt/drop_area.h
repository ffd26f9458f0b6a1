/// The large area of the first page: a file is dropped on it, and a click anywhere in it opens the chooser.
/// Thread: main.
#pragma once

#include <QAbstractButton>
#include <QWidget>

#include "platform/qt/pictures.h"

namespace zelvo::platform::qt {

class DropArea final : public QWidget {
 public:
  /// A click presses `chooser`.
  DropArea(Pictures& pictures, QAbstractButton& chooser, QWidget* parent = nullptr);
  /// Below everything else in the area.
  void addLine(QWidget* widget);
  /// Whether a file that can be dropped is over the window.
  void setInviting(bool inviting);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;

 private:
  QAbstractButton& chooser_;
  bool isInviting_ = false;
};

}  // namespace zelvo::platform::qt
