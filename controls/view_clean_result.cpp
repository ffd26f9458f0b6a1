#include "controls/view_clean_result.h"

namespace zelvo::controls {

namespace {

constexpr platform::Colour kFrame{0.0118, 0.3725, 0.5608, 1.0};
constexpr double kFrameWidth = 4.0;

}  // namespace

void ViewCleanResult::drawRect(platform::Canvas& canvas, const platform::Rect& rect) {
  HostedView::drawRect(canvas, rect);
  canvas.setFillColour(platform::kWhite);
  canvas.fillRect(host().bounds());
  strokeInnerFrame(canvas, host().bounds(), kFrameWidth, kFrame);
}

}  // namespace zelvo::controls
