#include "controls/button_hover.h"

#include "tests/controls/button_bench.h"

namespace zelvo::tests {
namespace {

using platform::CursorShape;

using ButtonHover = ButtonTest<controls::ButtonHover>;

TEST_F(ButtonHover, ShowsTheOtherPictureFromTheFirstEntryOn) {
  base.setImage("help-1");
  show();

  host.movePointer(kInside);
  EXPECT_EQ(base.element().image(), "help-2");

  host.movePointer(kOutside);
  EXPECT_EQ(base.element().image(), "help-2");
}

TEST_F(ButtonHover, LeavingSetsTheSamePictureToo) {
  host.placePointer(kInside);
  host.resynchronise();
  events.clear();

  host.movePointer(kOutside);

  EXPECT_EQ(takeEvents(), Lines{"base.setImage(help-2)"});
}

TEST_F(ButtonHover, RebuildsItsTrackingAreaEachTime) {
  host.resynchronise();
  const auto first = host.trackingAreas().at(0);
  host.resynchronise();

  EXPECT_EQ(takeEvents(), (Lines{"button.addTrackingArea(0, 0, 0, 0; 545)", "button.removeTrackingArea()",
                                 "button.addTrackingArea(0, 0, 0, 0; 545)"}));
  ASSERT_EQ(host.trackingAreas().size(), 1U);
  EXPECT_NE(host.trackingAreas()[0], first);
  EXPECT_EQ(&host.trackingAreas()[0]->owner, &button);
}

TEST_F(ButtonHover, ResynchronisingDoesNotLookForThePointer) {
  base.setImage("help-1");
  host.placePointer(kInside);

  host.resynchronise();

  EXPECT_EQ(base.element().image(), "help-1");
}

TEST_F(ButtonHover, DrawsOnlyTheBaseButtonAndLeavesTheCursorAlone) {
  EXPECT_EQ(painted(), Lines{"button.drawBase(0, 0, 100, 24)"});

  host.invalidateCursorRects();

  EXPECT_EQ(host.cursorAt(kInside), CursorShape::arrow);
}

}  // namespace
}  // namespace zelvo::tests
