#include "controls/button_popup_fix_now.h"

#include "tests/controls/button_bench.h"

namespace zelvo::tests {
namespace {

using platform::CursorShape;

using ButtonPopupFixNow = ButtonTest<controls::ButtonPopupFixNow>;

/// A title as `initialize` styles it.
platform::AttributedText styled(const std::string& title, const platform::Colour& foreground) {
  platform::TextAttributes attributes;
  attributes.foreground = foreground;
  attributes.font = platform::Font{"bold system", 12.0};
  attributes.underline = platform::UnderlineStyle{1};
  attributes.paragraph = platform::ParagraphStyle{platform::LineBreakMode{4}, platform::TextAlignment{0}};
  return {{{title, attributes}}};
}

TEST_F(ButtonPopupFixNow, DrawsOnlyTheBaseButtonAndAlwaysShowsTheHand) {
  EXPECT_EQ(painted(), (Lines{"button.drawBase(0, 0, 100, 24)", "button.invalidateCursorRects()",
                              "button.addCursorRect(0, 0, 100, 24; pointing hand)"}));
  EXPECT_EQ(host.cursorAt(kInside), CursorShape::pointingHand);
}

TEST_F(ButtonPopupFixNow, EnteringAndLeavingOnlyAskForARedraw) {
  show();

  host.movePointer(kInside);
  host.movePointer(kOutside);

  EXPECT_EQ(takeEvents(), (Lines{"button.setNeedsDisplay()", "button.setNeedsDisplay()"}));
}

TEST_F(ButtonPopupFixNow, TheTrackingAreaIsActiveInTheActiveApplication) {
  host.resynchronise();

  EXPECT_EQ(takeEvents(), (Lines{"button.addTrackingArea(0, 0, 100, 24; 577)", "button.setNeedsDisplay()"}));
}

TEST_F(ButtonPopupFixNow, AwakeItShowsNoPressAndKeepsItsTitle) {
  button.awakeFromNib();

  EXPECT_EQ(takeEvents(), Lines{"base.setHighlightsBy(0)"});
}

TEST_F(ButtonPopupFixNow, InitializeStylesItsOwnTitleWhite) {
  base.setTitle("Fix Now");

  button.initialize();

  EXPECT_EQ(base.attributedTitle(), styled("Fix Now", {1, 1, 1, 1}));
}

TEST_F(ButtonPopupFixNow, InitializeStylesAnyOtherTitleDark) {
  for (const char* title : {"Fix now", "FIX NOW", "Fix Now ", " Fix Now", "Fix Now!", "Fix", "FixNow", ""}) {
    base.setTitle(title);

    button.initialize();

    EXPECT_EQ(base.attributedTitle(), styled(title, {0.25, 0.25, 0.25, 1}));
  }
}

TEST_F(ButtonPopupFixNow, MakingAndShowingItLeavesTheTitleUnstyled) {
  base.setTitle("Fix Now");

  button.awakeFromNib();
  show();
  host.paint();

  EXPECT_EQ(base.attributedTitle(), (platform::AttributedText{{{"Fix Now", {}}}}));
}

}  // namespace
}  // namespace zelvo::tests
