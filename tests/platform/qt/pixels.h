/// Pictures for comparing with what the window drew, made one pixel after the other and by nothing that draws for it.
#pragma once

#include <gtest/gtest.h>

#include <QColor>
#include <QImage>
#include <array>
#include <cmath>
#include <string>

namespace zelvo::tests {

/// The scales at which everything is compared.
inline constexpr std::array kScales = {1.0, 1.25, 1.5, 2.0};

/// Nothing in the window has this colour, so what was left unpainted shows.
inline constexpr QRgb kUnpainted = 0xffff00ff;

/// `width` and `height` points at `scale` pixels a point, all of it unpainted.
[[nodiscard]] inline QImage blankPicture(int width, int height, double scale) {
  QImage picture(static_cast<int>(std::ceil(width * scale)), static_cast<int>(std::ceil(height * scale)),
                 QImage::Format_ARGB32_Premultiplied);
  picture.setDevicePixelRatio(scale);
  picture.fill(kUnpainted);
  return picture;
}

/// Sets the pixels from (left, top) up to, and without, (right, bottom).
inline void setPixels(QImage& picture, int left, int top, int right, int bottom, QRgb colour) {
  for (int y = std::max(0, top); y < std::min(bottom, picture.height()); ++y) {
    for (int x = std::max(0, left); x < std::min(right, picture.width()); ++x) picture.setPixel(x, y, colour);
  }
}

/// Sets the outermost `width` pixels of the picture.
inline void setFrame(QImage& picture, int width, QRgb colour) {
  const int right = picture.width();
  const int bottom = picture.height();
  setPixels(picture, 0, 0, right, width, colour);
  setPixels(picture, 0, bottom - width, right, bottom, colour);
  setPixels(picture, 0, 0, width, bottom, colour);
  setPixels(picture, right - width, 0, right, bottom, colour);
}

/// The pixel at which an edge at `points` comes to lie.
[[nodiscard]] inline int pixelOf(double points, double scale) { return static_cast<int>(std::round(points * scale)); }

[[nodiscard]] inline std::string written(QRgb colour) {
  return QColor::fromRgba(colour).name(QColor::HexArgb).toStdString();
}

/// Equal in every pixel.
[[nodiscard]] inline testing::AssertionResult samePixels(const QImage& drawn, const QImage& expected) {
  if (drawn.size() != expected.size()) {
    return testing::AssertionFailure() << drawn.width() << " x " << drawn.height() << " pixels instead of "
                                       << expected.width() << " x " << expected.height();
  }
  int differing = 0;
  std::string first;
  for (int y = 0; y < drawn.height(); ++y) {
    for (int x = 0; x < drawn.width(); ++x) {
      if (drawn.pixel(x, y) == expected.pixel(x, y)) continue;
      if (differing++ == 0) {
        first = "(" + std::to_string(x) + ", " + std::to_string(y) + ") is " + written(drawn.pixel(x, y)) +
                " instead of " + written(expected.pixel(x, y));
      }
    }
  }
  if (differing == 0) return testing::AssertionSuccess();
  return testing::AssertionFailure() << differing << " of " << drawn.width() << " x " << drawn.height()
                                     << " pixels differ; the first, " << first;
}

/// Names a test of one scale: "At125PerCent".
[[nodiscard]] inline std::string scaleName(const testing::TestParamInfo<double>& scale) {
  std::string name = std::to_string(static_cast<int>(std::lround(scale.param * 100)));
  return "At" + name + "PerCent";
}

}  // namespace zelvo::tests
