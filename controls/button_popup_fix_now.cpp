#include "controls/button_popup_fix_now.h"

#include <string_view>

namespace zelvo::controls {

namespace {

constexpr std::string_view kWhiteTitle = "Fix Now";
constexpr platform::Colour kOtherTitles = platform::blendedColour(platform::kBlack, 0.25, platform::kWhite);
constexpr double kTitlePoints = 12.0;

}  // namespace

void ButtonPopupFixNow::awakeFromNib() { base().setHighlightsBy(platform::kHighlightNone); }

void ButtonPopupFixNow::initialize() {
  const std::string title = base().title();
  platform::TextAttributes attributes;
  attributes.foreground = platform::kWhite;
  attributes.font = platform::Font{platform::kBoldSystemFont, kTitlePoints};
  attributes.underline = platform::UnderlineStyle::single;
  attributes.paragraph =
      platform::ParagraphStyle{platform::LineBreakMode::truncatingTail, platform::TextAlignment::left};
  if (title != kWhiteTitle) attributes.foreground = kOtherTitles;
  base().setAttributedTitle({{{title, attributes}}});
}

void ButtonPopupFixNow::mouseEntered(const platform::TrackingEvent&) { host().setNeedsDisplay(); }

void ButtonPopupFixNow::mouseExited(const platform::TrackingEvent&) { host().setNeedsDisplay(); }

}  // namespace zelvo::controls
