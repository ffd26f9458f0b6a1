#include "platform/qt/drawing/pictures.h"

#include <QFile>
#include <QIcon>
#include <QPixmap>
#include <QSvgRenderer>
#include <utility>

namespace zelvo::platform::qt {

QtImage::QtImage(std::shared_ptr<QSvgRenderer> renderer) : renderer_(std::move(renderer)) {
  const QSizeF drawn = renderer_->viewBoxF().size();
  size_ = {drawn.width(), drawn.height()};
}

void QtImage::draw(QPainter& painter, const QRectF& into, const Rect& from) const {
  if (from == kWholeImage || size_.width <= 0 || size_.height <= 0) {
    renderer_->render(&painter, into);
    return;
  }
  if (from.width <= 0 || from.height <= 0) return;
  const double across = into.width() / from.width;
  const double down = into.height() / from.height;
  painter.save();
  painter.setClipRect(into, Qt::IntersectClip);
  renderer_->render(&painter, QRectF(into.x() - from.x * across, into.y() - from.y * down, size_.width * across,
                                     size_.height * down));
  painter.restore();
}

std::shared_ptr<QSvgRenderer> Pictures::renderer(std::string_view name) {
  if (const auto found = renderers_.find(name); found != renderers_.end()) return found->second;
  const std::string file = folder_ + "/" + std::string(name) + ".svg";
  auto made = std::make_shared<QSvgRenderer>(QFile::decodeName(QByteArray::fromStdString(file)));
  if (!made->isValid()) made.reset();
  return renderers_.emplace(name, std::move(made)).first->second;
}

void Pictures::draw(QPainter& painter, std::string_view name, const QRectF& into) {
  const auto picture = renderer(name);
  if (!picture) return;
  const QSizeF fitting = picture->viewBoxF().size().scaled(into.size(), Qt::KeepAspectRatio);
  QRectF place(QPointF(0, 0), fitting);
  place.moveCenter(into.center());
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  picture->render(&painter, place);
  painter.restore();
}

Size Pictures::size(std::string_view name) {
  const auto picture = renderer(name);
  if (!picture) return {};
  return {picture->viewBoxF().width(), picture->viewBoxF().height()};
}

QIcon Pictures::icon(std::string_view name) {
  QIcon all;
  if (renderer(name) == nullptr) return all;
  for (const int pixels : {16, 24, 32, 48, 64, 128, 256}) {
    QPixmap one(pixels, pixels);
    one.fill(Qt::transparent);
    QPainter painter(&one);
    draw(painter, name, QRectF(one.rect()));
    painter.end();
    all.addPixmap(one);
  }
  return all;
}

std::unique_ptr<QtImage> Pictures::image(std::string_view name) {
  const auto picture = renderer(name);
  return picture ? std::make_unique<QtImage>(picture) : nullptr;
}

}  // namespace zelvo::platform::qt
