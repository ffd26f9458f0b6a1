// Each self-drawnAt control, drawnAt by the window's elements and compared pixel by pixel with a picture made by plain
// loops; only captions are drawnAt with a painter, at a place that is computed here.
#include <QFontMetricsF>
#include <QGraphicsDropShadowEffect>
#include <QPainter>
#include <memory>

#include "controls/button_hover.h"
#include "controls/button_popup_fix_now.h"
#include "controls/button_startup_issues.h"
#include "controls/hover_button_settings_apply.h"
#include "controls/no_drag_movie_view.h"
#include "controls/small_image_button.h"
#include "controls/small_image_button_level2.h"
#include "controls/view_clean_result.h"
#include "controls/view_transparent.h"
#include "platform/linux/main_queue.h"
#include "platform/notification_centre.h"
#include "platform/qt/drawing/appearance.h"
#include "platform/qt/drawing/button.h"
#include "platform/qt/drawing/hosted_widget.h"
#include "tests/platform/qt/drawn_pictures.h"
#include "tests/platform/qt/pixels.h"

namespace zelvo::tests {
namespace {

using platform::qt::HostedWidget;
using platform::qt::QtButton;

// The colours of the controls as pixels.
constexpr QRgb kEnabledFill = 0xff1089d5;
constexpr QRgb kHoverFrame = 0xff3bbdee;
constexpr QRgb kDisabledFill = 0xff808080;
constexpr QRgb kDisabledCaption = 0xffdfdfdf;
constexpr QRgb kResultFrame = 0xff035f8f;
constexpr QRgb kWhite = 0xffffffff;

/// Draws the widget alone, as if it stood on nothing.
QImage drawnAt(QWidget& widget, double scale) {
  QImage picture = blankPicture(widget.width(), widget.height(), scale);
  widget.render(&picture, QPoint(), QRegion(), QWidget::DrawChildren);
  return picture;
}

class ControlPictures : public testing::TestWithParam<double> {
 protected:
  [[nodiscard]] double scale() const { return GetParam(); }
  [[nodiscard]] int pixel(double points) const { return pixelOf(points, scale()); }

  [[nodiscard]] std::unique_ptr<QtButton> button(const char* title, QtButton::Look look = QtButton::Look::push,
                                                 int width = 100, int height = 24) {
    auto made = std::make_unique<QtButton>(queue, pictures.all(), QString::fromUtf8(title), look);
    made->resize(width, height);
    return made;
  }
  /// An overlay that has nothing above it.
  controls::ViewTransparent* overlay() {
    auto made = controls::ViewTransparent::initWithFrame({0, 0, 400, 300}, &overlayWidget.host(), centre);
    controls::ViewTransparent* const view = made.get();
    overlayWidget.host().carry(std::move(made));
    return view;
  }

  /// `fill`, and `caption` in its middle.
  [[nodiscard]] QImage filled(const QWidget& widget, QRgb fill, const QString& caption, QRgb captionColour,
                              bool framed = false) const {
    QImage picture = blankPicture(widget.width(), widget.height(), scale());
    setPixels(picture, 0, 0, picture.width(), picture.height(), fill);
    if (framed) setFrame(picture, pixel(3), kHoverFrame);
    drawCaption(picture, widget, caption, captionColour);
    return picture;
  }
  static void drawCaption(QImage& picture, const QWidget& widget, const QString& caption, QRgb colour) {
    QFont font;
    font.setPixelSize(13);
    const QFontMetricsF metrics(font, &picture);
    const double roomWidth = widget.width() - 4;
    QString kept = caption;
    while (metrics.horizontalAdvance(kept) > roomWidth && !caption.isEmpty()) {
      kept = kept.chopped(kept.endsWith(QChar(0x2026)) ? 2 : 1) + QChar(0x2026);
    }
    const double y = std::round(2 + (widget.height() - 4) / 2.0 - metrics.height() / 2);
    QPainter painter(&picture);
    painter.setFont(font);
    painter.setPen(QColor::fromRgba(colour));
    painter.drawText(QPointF(2 + (roomWidth - metrics.horizontalAdvance(kept)) / 2, y + metrics.ascent()), kept);
  }
  /// What a framed button of the window looks like by itself.
  [[nodiscard]] QImage framedBase(const QtButton& button) const {
    const QPalette palette = button.palette();
    QImage picture = blankPicture(button.width(), button.height(), scale());
    setPixels(picture, 0, 0, picture.width(), picture.height(), platform::qt::surface(palette).rgba());
    setFrame(picture, pixel(1), platform::qt::accent(palette).rgba());
    QPainter painter(&picture);
    painter.setFont(button.font());
    painter.setPen(palette.color(QPalette::ButtonText));
    painter.drawText(QRectF(button.rect()), Qt::AlignCenter, button.text());
    return picture;
  }

  platform::linux_::LinuxMainQueue queue;
  platform::NotificationCentre centre;
  DrawnPictures pictures;
  HostedWidget overlayWidget;
};

TEST_P(ControlPictures, SettingsButtonIsFilledUpToItsEdgeWithItsCaptionInTheMiddle) {
  const auto made = button("Base title");
  auto& control = platform::makeCarried<controls::HoverButtonSettingsApply>(made->host(), *made);
  control.setTitle("Apply");
  EXPECT_TRUE(samePixels(drawnAt(*made, scale()), filled(*made, kEnabledFill, QStringLiteral("Apply"), kWhite)));
}

TEST_P(ControlPictures, SettingsButtonWithoutACaptionIsAFillAlone) {
  const auto made = button("Base title");
  platform::makeCarried<controls::HoverButtonSettingsApply>(made->host(), *made);
  EXPECT_TRUE(samePixels(drawnAt(*made, scale()), filled(*made, kEnabledFill, QString(), kWhite)));
}

TEST_P(ControlPictures, HoverFrameLiesOnTheOutermostPixelsAndNowhereElse) {
  const auto made = button("");
  auto& control = platform::makeCarried<controls::HoverButtonSettingsApply>(made->host(), *made);
  control.setViewTransparent(overlay());
  control.setTitle("Apply");
  control.mouseEntered({});
  ASSERT_TRUE(control.hovering());
  EXPECT_TRUE(samePixels(drawnAt(*made, scale()), filled(*made, kEnabledFill, QStringLiteral("Apply"), kWhite, true)));
  made->host().carry(nullptr);
}

TEST_P(ControlPictures, DisabledSettingsButtonIsGreyWithoutAFrame) {
  const auto made = button("");
  auto& control = platform::makeCarried<controls::HoverButtonSettingsApply>(made->host(), *made);
  control.setViewTransparent(overlay());
  control.setTitle("Apply");
  control.mouseEntered({});
  control.setDisabled(true);
  ASSERT_TRUE(control.hovering());
  EXPECT_TRUE(
      samePixels(drawnAt(*made, scale()), filled(*made, kDisabledFill, QStringLiteral("Apply"), kDisabledCaption)));
  made->host().carry(nullptr);
}

TEST_P(ControlPictures, LongCaptionEndsInAnEllipsisOnOneLine) {
  const auto made = button("");
  auto& control = platform::makeCarried<controls::HoverButtonSettingsApply>(made->host(), *made);
  const QString caption = QStringLiteral("A caption that is longer than its button");
  control.setTitle(caption.toStdString());
  EXPECT_TRUE(samePixels(drawnAt(*made, scale()), filled(*made, kEnabledFill, caption, kWhite)));
}

TEST_P(ControlPictures, StartupIssuesButtonShowsTheTitleOfItsElement) {
  const auto made = button("Fix all");
  auto& control = platform::makeCarried<controls::ButtonStartupIssues>(made->host(), *made);
  EXPECT_TRUE(samePixels(drawnAt(*made, scale()), filled(*made, kEnabledFill, QStringLiteral("Fix all"), kWhite)));
  control.setViewTransparent(overlay());
  control.mouseEntered({});
  EXPECT_TRUE(
      samePixels(drawnAt(*made, scale()), filled(*made, kEnabledFill, QStringLiteral("Fix all"), kWhite, true)));
  control.setDisabled(true);
  EXPECT_TRUE(
      samePixels(drawnAt(*made, scale()), filled(*made, kDisabledFill, QStringLiteral("Fix all"), kDisabledCaption)));
  made->host().carry(nullptr);
}

TEST_P(ControlPictures, FramedElementHasItsFrameOnTheOutermostPixels) {
  const auto made = button("OK");
  EXPECT_TRUE(samePixels(drawnAt(*made, scale()), framedBase(*made)));
}

template <class Control>
void expectImagesOverTheBounds(QtButton& button, double scale, const DrawnPictures& pictures, const QImage& base,
                               controls::ViewTransparent* overlay) {
  const auto normal = pictures.image("home-1");
  const auto hover = pictures.image("help-2");
  auto& control = platform::makeCarried<Control>(button.host(), button);
  EXPECT_TRUE(samePixels(drawnAt(button, scale), base)) << "without an image";

  control.setImageNormal(normal.get(), hover.get());
  QImage expected = base;
  setPixels(expected, 0, 0, base.width(), base.height(), DrawnPictures::kHome1);
  EXPECT_TRUE(samePixels(drawnAt(button, scale), expected)) << "the normal image";
  EXPECT_EQ(normal->size(), (platform::Size{18, 18}));

  control.setViewTransparent(overlay);
  control.mouseEntered({});
  setPixels(expected, 0, 0, base.width(), base.height(), DrawnPictures::kHelp2);
  EXPECT_TRUE(samePixels(drawnAt(button, scale), expected)) << "the hover image";

  control.setImageNormal(normal.get(), nullptr);
  EXPECT_TRUE(samePixels(drawnAt(button, scale), base)) << "hovering without a hover image";
  button.host().carry(nullptr);
}

TEST_P(ControlPictures, SmallImageButtonLaysItsImageOverTheBounds) {
  const auto made = button("", QtButton::Look::push, 24, 24);
  expectImagesOverTheBounds<controls::SmallImageButton>(*made, scale(), pictures, framedBase(*made), overlay());
}

TEST_P(ControlPictures, SmallImageButtonLevel2LaysItsImageOverTheBounds) {
  const auto made = button("", QtButton::Look::push, 24, 24);
  expectImagesOverTheBounds<controls::SmallImageButtonLevel2>(*made, scale(), pictures, framedBase(*made), overlay());
}

TEST_P(ControlPictures, ImageWithTwoHalvesIsDividedInTheMiddle) {
  const auto made = button("", QtButton::Look::push, 16, 16);
  const auto halves = pictures.image("halves");
  auto& control = platform::makeCarried<controls::SmallImageButtonLevel2>(made->host(), *made);
  control.setImageNormal(halves.get(), nullptr);
  QImage expected = blankPicture(16, 16, scale());
  setPixels(expected, 0, 0, pixel(8), pixel(16), DrawnPictures::kLeft);
  setPixels(expected, pixel(8), 0, pixel(16), pixel(16), DrawnPictures::kRight);
  EXPECT_TRUE(samePixels(drawnAt(*made, scale()), expected));
  made->host().carry(nullptr);
}

TEST_P(ControlPictures, FixNowButtonLooksLikeItsElement) {
  const auto made = button("Fix Now");
  platform::makeCarried<controls::ButtonPopupFixNow>(made->host(), *made);
  EXPECT_TRUE(samePixels(drawnAt(*made, scale()), framedBase(*made)));
}

TEST_P(ControlPictures, FixNowButtonIsNotDarkenedByAPress) {
  const auto made = button("Fix Now");
  platform::makeCarried<controls::ButtonPopupFixNow>(made->host(), *made);
  made->setDown(true);
  EXPECT_TRUE(samePixels(drawnAt(*made, scale()), framedBase(*made)));
}

TEST_P(ControlPictures, StyledTitlesAreBoldUnderlinedAndBeginAtTheLeft) {
  for (const auto& [title, colour] : {std::pair("Fix Now", kWhite), {"Details", 0xff404040}}) {
    const auto made = button(title);
    auto& control = platform::makeCarried<controls::ButtonPopupFixNow>(made->host(), *made);
    control.initialize();
    QImage expected = blankPicture(100, 24, scale());
    setPixels(expected, 0, 0, expected.width(), expected.height(), platform::qt::surface(made->palette()).rgba());
    setFrame(expected, pixel(1), platform::qt::accent(made->palette()).rgba());
    QPainter painter(&expected);
    QFont font;
    font.setPixelSize(12);
    font.setBold(true);
    font.setUnderline(true);
    painter.setFont(font);
    painter.setPen(QColor::fromRgba(colour));
    painter.drawText(QRectF(made->rect()), Qt::AlignLeft | Qt::AlignVCenter, made->text());
    painter.end();
    EXPECT_TRUE(samePixels(drawnAt(*made, scale()), expected)) << title;
  }
}

TEST_P(ControlPictures, ButtonHoverShowsTheOtherPictureFromTheFirstEntryOn) {
  const auto made = button("Help", QtButton::Look::picture, 16, 16);
  made->setImage("help-1");
  auto& control = platform::makeCarried<controls::ButtonHover>(made->host(), *made);
  QImage expected = blankPicture(16, 16, scale());
  setPixels(expected, 0, 0, expected.width(), expected.height(), DrawnPictures::kHelp1);
  EXPECT_TRUE(samePixels(drawnAt(*made, scale()), expected)) << "before";

  setPixels(expected, 0, 0, expected.width(), expected.height(), DrawnPictures::kHelp2);
  control.mouseEntered({});
  EXPECT_TRUE(samePixels(drawnAt(*made, scale()), expected)) << "inside";
  control.mouseExited({});
  EXPECT_TRUE(samePixels(drawnAt(*made, scale()), expected)) << "outside again";
}

TEST_P(ControlPictures, ResultAreaIsWhiteInAFrameOfFourPoints) {
  HostedWidget widget;
  widget.resize(60, 40);
  platform::makeCarried<controls::ViewCleanResult>(widget.host());
  QImage expected = blankPicture(60, 40, scale());
  setPixels(expected, 0, 0, expected.width(), expected.height(), kWhite);
  setFrame(expected, pixel(4), kResultFrame);
  EXPECT_TRUE(samePixels(drawnAt(widget, scale()), expected));
}

TEST_P(ControlPictures, ResultAreaIsTheSameWhereverItLies) {
  // At an odd place its edges fall between pixels, and still no pixel is a mixture.
  QWidget page;
  page.resize(80, 60);
  HostedWidget widget(&page);
  widget.setGeometry(3, 5, 60, 40);
  platform::makeCarried<controls::ViewCleanResult>(widget.host());
  const QImage picture = drawnAt(page, scale());
  QImage expected = blankPicture(80, 60, scale());
  setPixels(expected, pixel(3), pixel(5), pixel(63), pixel(45), kResultFrame);
  const int width = pixel(4);
  setPixels(expected, pixel(3) + width, pixel(5) + width, pixel(63) - width, pixel(45) - width, kWhite);
  EXPECT_TRUE(samePixels(picture, expected));
}

TEST_P(ControlPictures, OverlayPaintsNothing) {
  QWidget page;
  page.resize(80, 60);
  HostedWidget widget(&page);
  auto made = controls::ViewTransparent::initWithFrame({0, 0, 80, 60}, &widget.host(), centre);
  widget.host().carry(std::move(made));
  EXPECT_TRUE(samePixels(drawnAt(page, scale()), blankPicture(80, 60, scale())));
  widget.host().carry(nullptr);
}

/// A movie view whose film is one colour.
class PlainMovie final : public HostedWidget {
 public:
  static constexpr QRgb kFilm = 0xff123456;

 protected:
  void paintBase(QPainter& painter) override { painter.fillRect(rect(), QColor::fromRgba(kFilm)); }
};

TEST_P(ControlPictures, MovieViewLooksLikeItsMovie) {
  PlainMovie movie;
  movie.resize(40, 30);
  platform::makeCarried<controls::NoDragMovieView>(movie.host());
  QImage expected = blankPicture(40, 30, scale());
  setPixels(expected, 0, 0, expected.width(), expected.height(), PlainMovie::kFilm);
  EXPECT_TRUE(samePixels(drawnAt(movie, scale()), expected));
}

INSTANTIATE_TEST_SUITE_P(Scales, ControlPictures, testing::ValuesIn(kScales), scaleName);

TEST(OverlayShadow, IsSetOnTheViewThatPaintsNothing) {
  platform::NotificationCentre centre;
  HostedWidget widget;
  widget.host().carry(controls::ViewTransparent::initWithFrame({0, 0, 80, 60}, &widget.host(), centre));
  const auto* const shadow = qobject_cast<QGraphicsDropShadowEffect*>(widget.graphicsEffect());
  ASSERT_NE(shadow, nullptr);
  EXPECT_EQ(shadow->color().rgba(), 0xff808080);
  EXPECT_EQ(shadow->offset(), QPointF(0, 0));
  EXPECT_EQ(shadow->blurRadius(), 5.0);
  widget.host().carry(nullptr);
}

TEST(OverlayShadow, NeedsALayer) {
  HostedWidget widget;
  widget.host().setShadow({platform::kGrey, {0, 0}, 5});
  EXPECT_EQ(widget.graphicsEffect(), nullptr);
  widget.host().setWantsLayer(true);
  EXPECT_NE(widget.graphicsEffect(), nullptr);
}

}  // namespace
}  // namespace zelvo::tests
