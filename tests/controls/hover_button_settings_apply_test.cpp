#include "controls/hover_button_settings_apply.h"

#include "tests/controls/button_bench.h"

namespace zelvo::tests {
namespace {

using platform::CursorShape;
using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::Not;

using HoverButtonSettingsApply = ButtonTest<controls::HoverButtonSettingsApply>;

const std::string kBlueFill = "setFillColour(0.0627, 0.5373, 0.8353, 1)";

TEST_F(HoverButtonSettingsApply, WithoutOverlayThePointerInsideChangesNeitherLookNorCursor) {
  button.setTitle("Apply");
  show();

  host.movePointer(kInside);

  EXPECT_EQ(takeEvents(), Lines{});
  EXPECT_FALSE(button.hovering());
  EXPECT_EQ(painted(),
            (Lines{"button.drawBase(0, 0, 100, 24)", kBlueFill, "fillRect(0, 0, 100, 24)",
                   "sizeWithAttributes(\"Apply\"; " + kCaptionLooks,
                   "drawInRect(\"Apply\"; 2, 4, 96, 16.25; " + kCaptionLooks, "button.invalidateCursorRects()"}));
  EXPECT_EQ(host.cursorAt(kInside), CursorShape::arrow);
}

TEST_F(HoverButtonSettingsApply, OnTheTopmostOverlayThePointerBringsFrameAndHand) {
  attachOverlay();
  show();

  host.movePointer(kInside);

  EXPECT_EQ(takeEvents(), Lines{"button.setNeedsDisplay()"});
  EXPECT_TRUE(button.hovering());
  EXPECT_EQ(painted(), (Lines{"button.drawBase(0, 0, 100, 24)", kBlueFill, "fillRect(0, 0, 100, 24)", "saveState()",
                              "setStrokeColour(0.2314, 0.7412, 0.9333, 1)", kHoverFrame, "restoreState()",
                              "button.invalidateCursorRects()", "button.addCursorRect(0, 0, 100, 24; pointing hand)"}));
  EXPECT_EQ(host.cursorAt(kInside), CursorShape::pointingHand);
}

TEST_F(HoverButtonSettingsApply, TheCaptionLiesAboveTheFrame) {
  button.setTitle("Apply");
  attachOverlay();
  show();

  host.movePointer(kInside);

  EXPECT_EQ(painted(), (Lines{"button.drawBase(0, 0, 100, 24)", kBlueFill, "fillRect(0, 0, 100, 24)", "saveState()",
                              "setStrokeColour(0.2314, 0.7412, 0.9333, 1)", kHoverFrame, "restoreState()",
                              "sizeWithAttributes(\"Apply\"; " + kCaptionLooks,
                              "drawInRect(\"Apply\"; 2, 4, 96, 16.25; " + kCaptionLooks,
                              "button.invalidateCursorRects()", "button.addCursorRect(0, 0, 100, 24; pointing hand)"}));
}

TEST_F(HoverButtonSettingsApply, LeavingTakesTheFrameAwayAndKeepsTheHandRectangle) {
  attachOverlay();
  show();
  host.movePointer(kInside);
  events.clear();

  host.movePointer(kOutside);

  EXPECT_EQ(takeEvents(), Lines{"button.setNeedsDisplay()"});
  EXPECT_FALSE(button.hovering());
  EXPECT_THAT(painted(), Not(Contains(kHoverFrame)));
  EXPECT_EQ(host.cursorAt(kInside), CursorShape::pointingHand);
}

TEST_F(HoverButtonSettingsApply, BelowALaterOverlayEnteringDoesNothing) {
  attachOverlay();
  show();
  const CarriedOverlay later(centre, events);
  events.clear();
  ASSERT_EQ(overlay->view->viewsOverlaidCount(), 1);

  host.movePointer(kInside);

  EXPECT_EQ(takeEvents(), Lines{});
  EXPECT_FALSE(button.hovering());
  EXPECT_THAT(painted(), Not(Contains(HasSubstr("addCursorRect"))));
  EXPECT_EQ(host.cursorAt(kInside), CursorShape::arrow);
}

TEST_F(HoverButtonSettingsApply, WhenTheLaterOverlayIsGoneTheNextResynchronisingLightsIt) {
  attachOverlay();
  show();
  const CarriedOverlay later(centre, events);
  host.movePointer(kInside);
  later.view->postRemovedNotification();
  ASSERT_FALSE(button.hovering());

  host.resynchronise();

  EXPECT_TRUE(button.hovering());
  EXPECT_THAT(painted(), Contains(kHoverFrame));
  EXPECT_EQ(host.cursorAt(kInside), CursorShape::pointingHand);
}

TEST_F(HoverButtonSettingsApply, WhenTheLaterOverlayIsGoneTheNextEntryLightsIt) {
  attachOverlay();
  show();
  const CarriedOverlay later(centre, events);
  later.view->postRemovedNotification();

  host.movePointer(kInside);

  EXPECT_TRUE(button.hovering());
}

TEST_F(HoverButtonSettingsApply, ANegativeCountKeepsItDark) {
  attachOverlay().setviewsOverlaidCount(-1);
  show();

  host.movePointer(kInside);

  EXPECT_FALSE(button.hovering());
  painted();
  EXPECT_EQ(host.cursorAt(kInside), CursorShape::arrow);
}

TEST_F(HoverButtonSettingsApply, LeavingClearsTheHoverEvenBelowALaterOverlay) {
  attachOverlay();
  show();
  host.movePointer(kInside);
  const CarriedOverlay later(centre, events);

  host.movePointer(kOutside);

  EXPECT_FALSE(button.hovering());
}

TEST_F(HoverButtonSettingsApply, ALaterOverlayTakesTheHandAtTheNextDrawing) {
  attachOverlay();
  show();
  host.movePointer(kInside);
  host.paint();
  const CarriedOverlay later(centre, events);
  ASSERT_EQ(host.cursorAt(kInside), CursorShape::pointingHand);

  host.paint();

  EXPECT_EQ(host.cursorAt(kInside), CursorShape::arrow);
}

TEST_F(HoverButtonSettingsApply, DisablingSetsTheBaseButtonFirstAndAsksForARedraw) {
  button.setDisabled(true);

  EXPECT_EQ(takeEvents(), (Lines{"base.setEnabled(no)", "button.setNeedsDisplay()"}));
  EXPECT_TRUE(button.disabled());
  EXPECT_FALSE(base.element().isEnabled());
}

TEST_F(HoverButtonSettingsApply, TheBaseButtonIsToldBeforeTheButtonItself) {
  std::vector<bool> before;
  base.setEnabledObserver([&](bool) { before.push_back(button.disabled()); });
  before.clear();  // told at once how it is

  button.setDisabled(true);
  button.setDisabled(false);

  EXPECT_EQ(before, (std::vector<bool>{false, true}));
}

TEST_F(HoverButtonSettingsApply, EnablingAgainEnablesTheBaseButton) {
  button.setDisabled(true);
  events.clear();

  button.setDisabled(false);

  EXPECT_EQ(takeEvents(), (Lines{"base.setEnabled(yes)", "button.setNeedsDisplay()"}));
  EXPECT_FALSE(button.disabled());
}

TEST_F(HoverButtonSettingsApply, DisabledItIsGreyWithoutFrameOrHandThoughStillHovering) {
  button.setTitle("Apply");
  attachOverlay();
  show();
  host.movePointer(kInside);
  host.paint();

  button.setDisabled(true);

  EXPECT_TRUE(button.hovering());
  EXPECT_EQ(painted(),
            (Lines{"button.drawBase(0, 0, 100, 24)", "setFillColour(0.5, 0.5, 0.5, 1)", "fillRect(0, 0, 100, 24)",
                   "sizeWithAttributes(\"Apply\"; system 13; 0.875, 0.875, 0.875, 1; truncating tail; centred)",
                   "drawInRect(\"Apply\"; 2, 4, 96, 16.25; system 13; 0.875, 0.875, 0.875, 1; truncating tail; "
                   "centred)",
                   "button.invalidateCursorRects()"}));
  EXPECT_EQ(host.cursorAt(kInside), CursorShape::arrow);
}

TEST_F(HoverButtonSettingsApply, EnteringWhileDisabledIsRememberedForLater) {
  attachOverlay();
  show();
  button.setDisabled(true);

  host.movePointer(kInside);
  button.setDisabled(false);

  EXPECT_TRUE(button.hovering());
  EXPECT_THAT(painted(), Contains(kHoverFrame));
}

TEST_F(HoverButtonSettingsApply, ALongCaptionLosesItsTailOnOneLine) {
  button.setTitle("Apply all the settings of this page");  // 35 letters of 6.5 points into 96

  EXPECT_THAT(painted(), Contains("drawInRect(\"Apply all the\u2026\"; 2, 4, 96, 16.25; " + kCaptionLooks));
}

TEST_F(HoverButtonSettingsApply, TheCaptionStandsOnTheNearestWholePoint) {
  button.setTitle("Apply");
  host.setFrame({0, 0, 100, 25});  // 4.375 from the top

  EXPECT_THAT(painted(), Contains("drawInRect(\"Apply\"; 2, 4, 96, 16.25; " + kCaptionLooks));
}

TEST_F(HoverButtonSettingsApply, ACaptionHalfwayBetweenTwoPointsGoesDown) {
  button.setTitle("Apply");
  host.setFrame({0, 0, 100, 25.25});  // 4.5 from the top

  EXPECT_THAT(painted(), Contains("drawInRect(\"Apply\"; 2, 5, 96, 16.25; " + kCaptionLooks));
}

TEST_F(HoverButtonSettingsApply, WithoutTitleNoCaptionIsMeasuredOrDrawn) {
  EXPECT_EQ(button.title(), std::nullopt);
  EXPECT_EQ(painted(), (Lines{"button.drawBase(0, 0, 100, 24)", kBlueFill, "fillRect(0, 0, 100, 24)",
                              "button.invalidateCursorRects()"}));
}

TEST_F(HoverButtonSettingsApply, SettingTheTitleAsksForNoRedraw) {
  button.setTitle("Apply");

  EXPECT_EQ(takeEvents(), Lines{});
  EXPECT_EQ(button.title(), "Apply");
}

TEST_F(HoverButtonSettingsApply, TheTitleIsACopyAndNotTheBaseButtonsTitle) {
  base.setTitle("Base");
  std::string given = "Apply";
  button.setTitle(given);

  given = "Changed";

  EXPECT_EQ(button.title(), "Apply");
  EXPECT_EQ(base.title(), "Base");
}

TEST_F(HoverButtonSettingsApply, ATitleTakenAwayIsNoLongerDrawn) {
  button.setTitle("Apply");

  button.setTitle(std::nullopt);

  EXPECT_THAT(painted(), Not(Contains(HasSubstr("drawInRect"))));
}

TEST_F(HoverButtonSettingsApply, OnlyTheBaseButtonIsToldWhichPartNeedsDrawing) {
  host.paint(platform::Rect{10, 0, 5, 24});

  EXPECT_EQ(takeEvents(), (Lines{"button.drawBase(10, 0, 5, 24)", kBlueFill, "fillRect(0, 0, 100, 24)",
                                 "button.invalidateCursorRects()"}));
}

TEST_F(HoverButtonSettingsApply, TheTrackingAreaIsActiveInTheKeyWindowAndAddedOnce) {
  host.placePointer(kOutside);

  host.resynchronise();
  host.resynchronise();

  EXPECT_EQ(takeEvents(), (Lines{"button.addTrackingArea(0, 0, 100, 24; 545)", "button.setNeedsDisplay()",
                                 "button.setNeedsDisplay()"}));
  ASSERT_EQ(host.trackingAreas().size(), 1U);
  EXPECT_EQ(&host.trackingAreas()[0]->owner, &button);
  EXPECT_EQ(host.trackingAreas()[0]->userInfo, std::nullopt);
}

TEST_F(HoverButtonSettingsApply, TheSameTrackingAreaComesBackWhenTheHostLostIt) {
  host.resynchronise();
  const auto area = host.trackingAreas().at(0);
  host.removeTrackingArea(area);

  host.resynchronise();

  EXPECT_THAT(host.trackingAreas(), ::testing::ElementsAre(area));
}

TEST_F(HoverButtonSettingsApply, EnsuringTheTrackingAreaAttachesNothing) {
  button.ensureTrackingArea();

  EXPECT_EQ(takeEvents(), Lines{});
  EXPECT_TRUE(host.trackingAreas().empty());
}

TEST_F(HoverButtonSettingsApply, TheTrackingAreaKeepsTheBoundsOfItsMaking) {
  button.ensureTrackingArea();
  host.setFrame({0, 0, 200, 48});

  host.resynchronise();

  EXPECT_EQ(host.trackingAreas().at(0)->rect, (platform::Rect{0, 0, 100, 24}));
}

TEST_F(HoverButtonSettingsApply, ResynchronisingLightsItUnderAStillPointer) {
  attachOverlay();
  host.placePointer(kInside);

  host.resynchronise();

  EXPECT_TRUE(button.hovering());
}

TEST_F(HoverButtonSettingsApply, ResynchronisingDarkensItWhenItMovedAway) {
  attachOverlay();
  show();
  host.movePointer(kInside);
  host.placePointer(kOutside);

  host.resynchronise();

  EXPECT_FALSE(button.hovering());
}

TEST_F(HoverButtonSettingsApply, APointerThatNobodyKnowsIsOutside) {
  attachOverlay();
  show();
  host.movePointer(kInside);
  host.placePointer(std::nullopt);

  host.resynchronise();

  EXPECT_FALSE(button.hovering());
}

TEST_F(HoverButtonSettingsApply, TheUpperLeftCornerIsInsideAndTheLowerRightOneIsNot) {
  attachOverlay();
  host.placePointer(platform::Point{0, 0});
  host.resynchronise();
  EXPECT_TRUE(button.hovering());

  host.placePointer(platform::Point{100, 24});
  host.resynchronise();
  EXPECT_FALSE(button.hovering());
}

TEST_F(HoverButtonSettingsApply, APressIsTheBaseButtonsBusiness) {
  EXPECT_TRUE(host.deliver(platform::headless::MouseEventKind::down, kInside));

  EXPECT_EQ(takeEvents(), Lines{"button.element.mouseDown()"});
}

TEST_F(HoverButtonSettingsApply, HasNoSayInTheKeyboard) { EXPECT_EQ(button.acceptsFirstResponder(), std::nullopt); }

}  // namespace
}  // namespace zelvo::tests
