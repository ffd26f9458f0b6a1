#include "controls/small_image_button.h"

#include "platform/headless/recording_canvas.h"
#include "tests/controls/button_bench.h"

namespace zelvo::tests {
namespace {

using platform::CursorShape;
using platform::headless::RecordingImage;

class SmallImageButton : public ButtonTest<controls::SmallImageButton> {
 protected:
  RecordingImage normal{"close-1"};
  RecordingImage hover{"close-2"};
};

TEST_F(SmallImageButton, WithoutAnImageItDrawsOnlyTheBaseButton) {
  EXPECT_EQ(painted(), (Lines{"button.drawBase(0, 0, 100, 24)", "button.invalidateCursorRects()"}));
}

TEST_F(SmallImageButton, WithoutAHoverImageItDrawsOnlyTheBaseButtonWhileHovering) {
  attachOverlay();
  show();
  button.setImageNormal(&normal, nullptr);

  host.movePointer(kInside);

  EXPECT_EQ(painted(), (Lines{"button.drawBase(0, 0, 100, 24)", "button.invalidateCursorRects()",
                              "button.addCursorRect(0, 0, 100, 24; pointing hand)"}));
}

TEST_F(SmallImageButton, DrawsTheNormalImageAtEighteenPointsOverItsBounds) {
  button.setImageNormal(&normal, &hover);

  EXPECT_EQ(painted(), (Lines{"button.drawBase(0, 0, 100, 24)",
                              "drawImage(close-1 of 18 x 18; 0, 0, 100, 24; from whole; operation 2; fraction 1)",
                              "button.invalidateCursorRects()"}));
  EXPECT_EQ(normal.size(), (platform::Size{18, 18}));
  EXPECT_EQ(hover.size(), platform::Size{});
}

TEST_F(SmallImageButton, DrawsTheHoverImageOnTheTopmostOverlay) {
  attachOverlay();
  show();
  button.setImageNormal(&normal, &hover);

  host.movePointer(kInside);

  EXPECT_EQ(painted(), (Lines{"button.drawBase(0, 0, 100, 24)",
                              "drawImage(close-2 of 18 x 18; 0, 0, 100, 24; from whole; operation 2; fraction 1)",
                              "button.invalidateCursorRects()", "button.addCursorRect(0, 0, 100, 24; pointing hand)"}));
}

TEST_F(SmallImageButton, SettingTheImagesAsksForARedraw) {
  button.setImageNormal(&normal, &hover);

  EXPECT_EQ(takeEvents(), Lines{"button.setNeedsDisplay()"});
}

TEST_F(SmallImageButton, WithoutOverlayEnteringDoesNothing) {
  show();

  host.movePointer(kInside);

  EXPECT_EQ(takeEvents(), Lines{});
  EXPECT_FALSE(button.hovering());
  painted();
  EXPECT_EQ(host.cursorAt(kInside), CursorShape::arrow);
}

TEST_F(SmallImageButton, BelowALaterOverlayEnteringDoesNothing) {
  attachOverlay().setviewsOverlaidCount(1);
  show();

  host.movePointer(kInside);

  EXPECT_EQ(takeEvents(), Lines{});
  EXPECT_FALSE(button.hovering());
  painted();
  EXPECT_EQ(host.cursorAt(kInside), CursorShape::arrow);
}

TEST_F(SmallImageButton, TheTrackingAreaIsActiveInTheKeyWindow) {
  host.resynchronise();

  EXPECT_EQ(takeEvents(), (Lines{"button.addTrackingArea(0, 0, 100, 24; 545)", "button.setNeedsDisplay()"}));
}

TEST_F(SmallImageButton, AwakeItShowsNoPress) {
  button.awakeFromNib();

  EXPECT_EQ(takeEvents(), Lines{"base.setHighlightsBy(0)"});
}

}  // namespace
}  // namespace zelvo::tests
