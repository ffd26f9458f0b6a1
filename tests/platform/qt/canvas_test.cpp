#include <QFontMetricsF>
#include <QPainter>

#include "platform/headless/recording_canvas.h"
#include "platform/qt/drawing/canvas.h"
#include "platform/qt/drawing/pictures.h"
#include "tests/platform/qt/drawn_pictures.h"
#include "tests/platform/qt/pixels.h"

namespace zelvo::tests {
namespace {

using platform::Colour;
using platform::Rect;
using platform::qt::QtCanvas;

constexpr Colour kBlueFill{0.0627, 0.5373, 0.8353, 1.0};
constexpr QRgb kBluePixel = 0xff1089d5;
constexpr Colour kFrameStroke{0.2314, 0.7412, 0.9333, 1.0};
constexpr QRgb kFramePixel = 0xff3bbdee;

platform::TextAttributes caption() {
  platform::TextAttributes attributes;
  attributes.foreground = platform::kWhite;
  attributes.font = platform::Font{platform::kSystemFont, 13};
  attributes.paragraph =
      platform::ParagraphStyle{platform::LineBreakMode::truncatingTail, platform::TextAlignment::centre};
  return attributes;
}

QFont captionFont() {
  QFont font;
  font.setPixelSize(13);
  return font;
}

/// 40 x 24 points.
class QtCanvasAtScale : public testing::TestWithParam<double> {
 protected:
  static constexpr int kWidth = 40;
  static constexpr int kHeight = 24;
  [[nodiscard]] double scale() const { return GetParam(); }
  [[nodiscard]] int pixel(double points) const { return pixelOf(points, scale()); }
  [[nodiscard]] QImage blank() const { return blankPicture(kWidth, kHeight, scale()); }
  template <class Draw>
  QImage drawn(const Draw& draw) {
    QImage picture = blank();
    QPainter painter(&picture);
    QtCanvas canvas(painter);
    draw(canvas);
    return picture;
  }
};

TEST_P(QtCanvasAtScale, FillEndsAtWholePixels) {
  for (const Rect& rect : {Rect{3, 5, 17, 11}, Rect{0, 0, 40, 24}, Rect{1, 1, 1, 1}, Rect{7.3, 2.6, 9.1, 3.3}}) {
    const QImage picture = drawn([&](QtCanvas& canvas) {
      canvas.setFillColour(kBlueFill);
      canvas.fillRect(rect);
    });
    QImage expected = blank();
    setPixels(expected, pixel(rect.x), pixel(rect.y), pixel(rect.x + rect.width), pixel(rect.y + rect.height),
              kBluePixel);
    EXPECT_TRUE(samePixels(picture, expected)) << rect.x << ", " << rect.y;
  }
}

TEST_P(QtCanvasAtScale, FillEndsAtWholePixelsWhateverThePainterSmooths) {
  QImage picture = blank();
  {
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    QtCanvas canvas(painter);
    canvas.setFillColour(kBlueFill);
    canvas.fillRect({3, 5, 17, 11});
    EXPECT_TRUE(painter.testRenderHint(QPainter::Antialiasing)) << "the painter gets its state back";
  }
  QImage expected = blank();
  setPixels(expected, pixel(3), pixel(5), pixel(20), pixel(16), kBluePixel);
  EXPECT_TRUE(samePixels(picture, expected));
}

TEST_P(QtCanvasAtScale, InsetStrokeCoversTheOutermostPixels) {
  for (const double width : {1.0, 3.0, 4.0}) {
    const QImage picture = drawn([&](QtCanvas& canvas) {
      canvas.setStrokeColour(kFrameStroke);
      canvas.strokeRectWithWidth(platform::insetRect({0, 0, kWidth, kHeight}, width / 2, width / 2), width);
    });
    QImage expected = blank();
    setFrame(expected, pixel(width), kFramePixel);
    EXPECT_TRUE(samePixels(picture, expected)) << width;
  }
}

TEST_P(QtCanvasAtScale, StrokeIsAsWideOnAllSidesWhereverItLies) {
  const QImage picture = drawn([&](QtCanvas& canvas) {
    canvas.setStrokeColour(kFrameStroke);
    canvas.strokeRectWithWidth({4.5, 6.5, 21, 10}, 3);
  });
  QImage expected = blank();
  setPixels(expected, pixel(3), pixel(5), pixel(27), pixel(18), kFramePixel);
  const int width = pixel(3);
  setPixels(expected, pixel(3) + width, pixel(5) + width, pixel(27) - width, pixel(18) - width, kUnpainted);
  EXPECT_TRUE(samePixels(picture, expected));
}

TEST_P(QtCanvasAtScale, StrokeThatLeavesNoRoomInsideFillsItsRectangle) {
  const QImage picture = drawn([&](QtCanvas& canvas) {
    canvas.setStrokeColour(kFrameStroke);
    canvas.strokeRectWithWidth({10, 10, 2, 4}, 4);
  });
  QImage expected = blank();
  setPixels(expected, pixel(8), pixel(8), pixel(14), pixel(16), kFramePixel);
  EXPECT_TRUE(samePixels(picture, expected));
}

TEST_P(QtCanvasAtScale, RectangleWithoutAnInsideIsNotPainted) {
  for (const Rect& rect : {Rect{5, 5, 0, 9}, Rect{5, 5, 9, 0}, Rect{5, 5, -4, 9}, Rect{5, 5, 9, -4}}) {
    const QImage picture = drawn([&](QtCanvas& canvas) {
      canvas.fillRect(rect);
      canvas.strokeRectWithWidth(rect, 3);
      canvas.drawInRect("text", rect, caption());
    });
    EXPECT_TRUE(samePixels(picture, blank()));
  }
}

TEST_P(QtCanvasAtScale, CaptionIsCentredAtTheTopOfItsRectangle) {
  const QImage picture = drawn([&](QtCanvas& canvas) { canvas.drawInRect("OK", {2, 4, 36, 18}, caption()); });
  QImage expected = blank();
  QPainter painter(&expected);
  painter.setFont(captionFont());
  painter.setPen(Qt::white);
  const QFontMetricsF metrics(captionFont(), &expected);
  painter.drawText(QPointF(2 + (36 - metrics.horizontalAdvance(QStringLiteral("OK"))) / 2, 4 + metrics.ascent()),
                   QStringLiteral("OK"));
  painter.end();
  EXPECT_FALSE(samePixels(expected, blank())) << "the expected picture shows nothing";
  EXPECT_TRUE(samePixels(picture, expected));
}

TEST_P(QtCanvasAtScale, TextIsMeasuredAsItsFontSays) {
  QImage picture = blank();
  QPainter painter(&picture);
  QtCanvas canvas(painter);
  const QFontMetricsF metrics(captionFont(), &picture);
  const platform::Size size = canvas.sizeWithAttributes("Caption", caption());
  EXPECT_DOUBLE_EQ(size.width, metrics.horizontalAdvance(QStringLiteral("Caption")));
  EXPECT_DOUBLE_EQ(size.height, metrics.height());
}

TEST_P(QtCanvasAtScale, LongCaptionLosesItsEndToAnEllipsis) {
  const QString whole = QStringLiteral("A caption that is too long");
  const QImage picture = drawn([&](QtCanvas& canvas) {
    canvas.drawInRect(whole.toStdString(), {2, 3, 36, 18}, caption());
  });
  QImage expected = blank();
  QPainter painter(&expected);
  painter.setFont(captionFont());
  painter.setPen(Qt::white);
  const QFontMetricsF metrics(captionFont(), &expected);
  QString kept = whole;
  while (metrics.horizontalAdvance(kept + QChar(0x2026)) > 36) kept.chop(1);
  ASSERT_FALSE(kept.isEmpty());
  kept += QChar(0x2026);
  painter.drawText(QPointF(2 + (36 - metrics.horizontalAdvance(kept)) / 2, 3 + metrics.ascent()), kept);
  painter.end();
  EXPECT_TRUE(samePixels(picture, expected));
}

TEST_P(QtCanvasAtScale, TextIsCutAtTheEdgesOfItsRectangle) {
  const Rect room{10, 8, 20, 5};
  platform::TextAttributes wrapping = caption();
  wrapping.paragraph = platform::ParagraphStyle{};
  const QImage picture = drawn([&](QtCanvas& canvas) { canvas.drawInRect("Wgjy Wgjy Wgjy", room, wrapping); });
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      const bool inside = x >= std::floor(room.x * scale()) && x <= std::ceil((room.x + room.width) * scale()) &&
                          y >= std::floor(room.y * scale()) && y <= std::ceil((room.y + room.height) * scale());
      if (!inside) {
        ASSERT_EQ(picture.pixel(x, y), kUnpainted) << x << ", " << y;
      }
    }
  }
  EXPECT_FALSE(samePixels(picture, blank()));
}

TEST_P(QtCanvasAtScale, PictureFillsItsPlace) {
  const DrawnPictures pictures;
  const auto image = pictures.image("halves");
  image->setSize({18, 18});
  const QImage picture = drawn([&](QtCanvas& canvas) {
    canvas.drawImage(*image, {4, 4, 16, 16}, platform::kWholeImage, platform::CompositeOperation::sourceOver, 1.0);
  });
  QImage expected = blank();
  setPixels(expected, pixel(4), pixel(4), pixel(12), pixel(20), DrawnPictures::kLeft);
  setPixels(expected, pixel(12), pixel(4), pixel(20), pixel(20), DrawnPictures::kRight);
  EXPECT_TRUE(samePixels(picture, expected));
}

TEST_P(QtCanvasAtScale, PartOfAPictureIsGivenInPointsOfItsSize) {
  const DrawnPictures pictures;
  const auto image = pictures.image("halves");
  image->setSize({18, 18});
  const QImage picture = drawn([&](QtCanvas& canvas) {
    canvas.drawImage(*image, {4, 4, 16, 16}, {9, 0, 9, 18}, platform::CompositeOperation::sourceOver, 1.0);
  });
  QImage expected = blank();
  setPixels(expected, pixel(4), pixel(4), pixel(20), pixel(20), DrawnPictures::kRight);
  EXPECT_TRUE(samePixels(picture, expected));
}

INSTANTIATE_TEST_SUITE_P(Scales, QtCanvasAtScale, testing::ValuesIn(kScales), scaleName);

TEST(QtCanvas, PictureIsBlendedByItsFraction) {
  const DrawnPictures pictures;
  const auto image = pictures.image("halves");
  QImage picture = blankPicture(16, 16, 1);
  picture.fill(Qt::black);
  {
    QPainter painter(&picture);
    QtCanvas canvas(painter);
    canvas.drawImage(*image, {0, 0, 16, 16}, platform::kWholeImage, platform::CompositeOperation::sourceOver, 0.5);
  }
  EXPECT_NEAR(qRed(picture.pixel(2, 2)), 0.5 * qRed(DrawnPictures::kLeft), 1.5);
}

TEST(QtCanvas, PictureOfAnotherPlatformIsNotDrawn) {
  QImage picture = blankPicture(8, 8, 1);
  {
    QPainter painter(&picture);
    QtCanvas canvas(painter);
    canvas.drawImage(platform::headless::RecordingImage("foreign"), {0, 0, 8, 8}, platform::kWholeImage,
                     platform::CompositeOperation::sourceOver, 1.0);
  }
  EXPECT_TRUE(samePixels(picture, blankPicture(8, 8, 1)));
}

TEST(QtCanvas, StateThatWasPutAsideComesBackLastFirst) {
  QImage picture = blankPicture(4, 1, 1);
  {
    QPainter painter(&picture);
    QtCanvas canvas(painter);
    canvas.setFillColour({1, 0, 0, 1});
    canvas.saveState();
    canvas.setFillColour({0, 1, 0, 1});
    canvas.saveState();
    canvas.setFillColour({0, 0, 1, 1});
    canvas.fillRect({0, 0, 1, 1});
    canvas.restoreState();
    canvas.fillRect({1, 0, 1, 1});
    canvas.restoreState();
    canvas.fillRect({2, 0, 1, 1});
    canvas.restoreState();
    canvas.fillRect({3, 0, 1, 1});
  }
  EXPECT_EQ(picture.pixel(0, 0), 0xff0000ff);
  EXPECT_EQ(picture.pixel(1, 0), 0xff00ff00);
  EXPECT_EQ(picture.pixel(2, 0), 0xffff0000);
  EXPECT_EQ(picture.pixel(3, 0), 0xffff0000) << "nothing was put aside any more";
}

TEST(QtCanvas, ColoursOutsideOfTheRangeAreTheNearestOnes) {
  EXPECT_EQ(platform::qt::shown(Colour{2, -1, 0.5, 1}).rgba(), 0xffff0080);
}

TEST(QtCanvas, FontsHaveTheirSizeInLogicalPixels) {
  platform::TextAttributes attributes;
  attributes.font = platform::Font{platform::kBoldSystemFont, 12};
  attributes.underline = platform::UnderlineStyle::single;
  const QFont font = platform::qt::fontOf(attributes);
  EXPECT_EQ(font.pixelSize(), 12);
  EXPECT_EQ(font.weight(), QFont::Bold);
  EXPECT_TRUE(font.underline());
  EXPECT_EQ(font.family(), QFont().family());
}

TEST(QtCanvas, InvalidTextShowsReplacementCharacters) {
  QImage picture = blankPicture(8, 8, 1);
  QPainter painter(&picture);
  QtCanvas canvas(painter);
  EXPECT_DOUBLE_EQ(canvas.sizeWithAttributes("\xff", caption()).width,
                   canvas.sizeWithAttributes("\xef\xbf\xbd", caption()).width);
}

}  // namespace
}  // namespace zelvo::tests
