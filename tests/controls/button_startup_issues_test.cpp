#include "controls/button_startup_issues.h"

#include "tests/controls/button_bench.h"

namespace zelvo::tests {
namespace {

using platform::CursorShape;
using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::Not;

using ButtonStartupIssues = ButtonTest<controls::ButtonStartupIssues>;

TEST_F(ButtonStartupIssues, ShowsTheBaseButtonsTitle) {
  base.setTitle("Details");

  EXPECT_EQ(painted(),
            (Lines{"button.drawBase(0, 0, 100, 24)", "setFillColour(0.0627, 0.5373, 0.8353, 1)",
                   "fillRect(0, 0, 100, 24)", "sizeWithAttributes(\"Details\"; " + kCaptionLooks,
                   "drawInRect(\"Details\"; 2, 4, 96, 16.25; " + kCaptionLooks, "button.invalidateCursorRects()"}));
}

TEST_F(ButtonStartupIssues, ReadsTheTitleAnewAtEachDrawing) {
  base.setTitle("Before");
  host.paint();
  base.setTitle("After");

  EXPECT_THAT(painted(), Contains("drawInRect(\"After\"; 2, 4, 96, 16.25; " + kCaptionLooks));
}

/// Its own drawing changes the button's title.
class RetitlingHost final : public platform::headless::RecordingViewHost {
 public:
  RetitlingHost(platform::headless::RecordingBaseButton& base, platform::headless::Events& events)
      : RecordingViewHost("button", events, {0, 0, 100, 24}, true), base_(base) {}
  void drawBase(platform::Canvas&, const platform::Rect&) override { base_.setTitle("Later"); }

 private:
  platform::headless::RecordingBaseButton& base_;
};

TEST_F(ButtonStartupIssues, ReadsTheTitleBeforeTheBaseButtonDraws) {
  base.setTitle("Details");
  RetitlingHost retitling(base, events);
  platform::makeCarried<controls::ButtonStartupIssues>(retitling, base);

  retitling.paint();

  EXPECT_THAT(takeEvents(), Contains("drawInRect(\"Details\"; 2, 4, 96, 16.25; " + kCaptionLooks));
}

TEST_F(ButtonStartupIssues, AnEmptyTitleIsDrawnAllTheSame) {
  EXPECT_THAT(painted(), Contains("drawInRect(\"\"; 2, 4, 96, 16.25; " + kCaptionLooks));
}

TEST_F(ButtonStartupIssues, TheTrackingAreaIsActiveInTheActiveApplication) {
  host.resynchronise();

  EXPECT_THAT(takeEvents(), Contains("button.addTrackingArea(0, 0, 100, 24; 577)"));
}

TEST_F(ButtonStartupIssues, WithoutOverlayThePointerChangesNothing) {
  show();

  host.movePointer(kInside);

  EXPECT_EQ(takeEvents(), Lines{});
  EXPECT_THAT(painted(), Not(Contains(HasSubstr("stroke"))));
  EXPECT_EQ(host.cursorAt(kInside), CursorShape::arrow);
}

TEST_F(ButtonStartupIssues, OnTheTopmostOverlayThePointerBringsFrameAndHand) {
  attachOverlay();
  show();

  host.movePointer(kInside);

  EXPECT_THAT(painted(), Contains(kHoverFrame));
  EXPECT_EQ(host.cursorAt(kInside), CursorShape::pointingHand);
}

TEST_F(ButtonStartupIssues, BelowALaterOverlayItStaysDark) {
  attachOverlay().setviewsOverlaidCount(1);
  show();

  host.movePointer(kInside);

  EXPECT_THAT(painted(), Not(Contains(kHoverFrame)));
  EXPECT_EQ(host.cursorAt(kInside), CursorShape::arrow);
}

TEST_F(ButtonStartupIssues, DisabledItIsGreyWithoutFrameOrHand) {
  base.setTitle("Details");
  attachOverlay();
  show();
  host.movePointer(kInside);
  events.clear();

  button.setDisabled(true);

  EXPECT_EQ(takeEvents(), (Lines{"base.setEnabled(no)", "button.setNeedsDisplay()"}));
  EXPECT_EQ(painted(),
            (Lines{"button.drawBase(0, 0, 100, 24)", "setFillColour(0.5, 0.5, 0.5, 1)", "fillRect(0, 0, 100, 24)",
                   "sizeWithAttributes(\"Details\"; system 13; 0.875, 0.875, 0.875, 1; truncating tail; centred)",
                   "drawInRect(\"Details\"; 2, 4, 96, 16.25; system 13; 0.875, 0.875, 0.875, 1; truncating tail; "
                   "centred)",
                   "button.invalidateCursorRects()"}));
  EXPECT_EQ(host.cursorAt(kInside), CursorShape::arrow);
}

}  // namespace
}  // namespace zelvo::tests
