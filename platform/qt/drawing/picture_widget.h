/// A named picture as a part of the window, at a fixed size (logical pixels). It says nothing to a screen reader.
/// Thread: main.
#pragma once

#include <QWidget>
#include <string>

#include "platform/qt/drawing/pictures.h"

namespace zelvo::platform::qt {

class PictureWidget final : public QWidget {
 public:
  PictureWidget(Pictures& pictures, std::string name, const QSize& size);
  /// Shows another picture; none when `name` is empty.
  void setName(std::string name);
  [[nodiscard]] const std::string& name() const { return name_; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  Pictures& pictures_;
  std::string name_;
};

}  // namespace zelvo::platform::qt
