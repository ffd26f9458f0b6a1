/// The application's named pictures: SVG files of one folder, drawn at any scale. Sizes are points.
/// Thread: main.
#pragma once

#include <QPainter>
#include <QString>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "platform/canvas.h"

class QIcon;
class QSvgRenderer;

namespace zelvo::platform::qt {

/// One picture, as big as it was drawn until `setSize` says otherwise.
class QtImage final : public Image {
 public:
  explicit QtImage(std::shared_ptr<QSvgRenderer> renderer);
  void setSize(const Size& size) override { size_ = size; }
  [[nodiscard]] Size size() const { return size_; }
  /// Draws the part `from` (in points of the picture's size) into `into`.
  void draw(QPainter& painter, const QRectF& into, const Rect& from) const;

 private:
  std::shared_ptr<QSvgRenderer> renderer_;
  Size size_;
};

class Pictures {
 public:
  /// `folder` holds NAME.svg for each name.
  explicit Pictures(std::string folder) : folder_(std::move(folder)) {}
  Pictures(const Pictures&) = delete;
  Pictures& operator=(const Pictures&) = delete;

  /// Draws the whole picture into `into`, as large as its proportions allow, in the middle. One that is missing or
  /// damaged draws nothing.
  void draw(QPainter& painter, std::string_view name, const QRectF& into);
  /// The size at which the picture was drawn; empty when there is none.
  [[nodiscard]] Size size(std::string_view name);
  /// The picture at the sizes that desktops show a program's sign in; null when there is none.
  [[nodiscard]] QIcon icon(std::string_view name);
  /// A picture for a control that draws it itself; null when there is none.
  [[nodiscard]] std::unique_ptr<QtImage> image(std::string_view name);

 private:
  [[nodiscard]] std::shared_ptr<QSvgRenderer> renderer(std::string_view name);

  std::string folder_;
  std::map<std::string, std::shared_ptr<QSvgRenderer>, std::less<>> renderers_;
};

}  // namespace zelvo::platform::qt
