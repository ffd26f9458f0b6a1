#include "controls/small_image_button_level2.h"

#include "platform/headless/recording_canvas.h"
#include "tests/controls/button_bench.h"

namespace zelvo::tests {
namespace {

using platform::CursorShape;
using platform::headless::RecordingImage;
using ::testing::Contains;

class SmallImageButtonLevel2 : public ButtonTest<controls::SmallImageButtonLevel2> {
 protected:
  RecordingImage normal{"close-1"};
  RecordingImage hover{"close-2"};
};

TEST_F(SmallImageButtonLevel2, HoversWithoutAnOverlayButShowsNoHand) {
  show();
  button.setImageNormal(&normal, &hover);
  events.clear();

  host.movePointer(kInside);

  EXPECT_EQ(takeEvents(), Lines{"button.setNeedsDisplay()"});
  EXPECT_EQ(painted(), (Lines{"button.drawBase(0, 0, 100, 24)",
                              "drawImage(close-2 of 18 x 18; 0, 0, 100, 24; from whole; operation 2; fraction 1)",
                              "button.invalidateCursorRects()"}));
  EXPECT_EQ(host.cursorAt(kInside), CursorShape::arrow);
}

TEST_F(SmallImageButtonLevel2, HoversBelowALaterOverlayButShowsNoHand) {
  attachOverlay().setviewsOverlaidCount(1);
  show();

  host.movePointer(kInside);

  EXPECT_TRUE(button.hovering());
  painted();
  EXPECT_EQ(host.cursorAt(kInside), CursorShape::arrow);
}

TEST_F(SmallImageButtonLevel2, OnTheTopmostOverlayTheHandIsShown) {
  attachOverlay();
  show();

  host.movePointer(kInside);

  EXPECT_TRUE(button.hovering());
  painted();
  EXPECT_EQ(host.cursorAt(kInside), CursorShape::pointingHand);
}

TEST_F(SmallImageButtonLevel2, LeavingBringsTheNormalImageBack) {
  button.setImageNormal(&normal, &hover);
  show();
  host.movePointer(kInside);

  host.movePointer(kOutside);

  EXPECT_THAT(painted(), Contains("drawImage(close-1 of 18 x 18; 0, 0, 100, 24; from whole; operation 2; fraction 1)"));
}

TEST_F(SmallImageButtonLevel2, TellsItsOverlay) {
  EXPECT_EQ(button.viewTransparent(), nullptr);

  const controls::ViewTransparent& attached = attachOverlay();

  EXPECT_EQ(button.viewTransparent(), &attached);
}

TEST_F(SmallImageButtonLevel2, TheTrackingAreaIsActiveInTheActiveApplication) {
  host.resynchronise();

  EXPECT_THAT(takeEvents(), Contains("button.addTrackingArea(0, 0, 100, 24; 577)"));
}

TEST_F(SmallImageButtonLevel2, AwakeItShowsNoPress) {
  button.awakeFromNib();

  EXPECT_EQ(takeEvents(), Lines{"base.setHighlightsBy(0)"});
}

}  // namespace
}  // namespace zelvo::tests
