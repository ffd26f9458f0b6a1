#include "controls/hosted_view.h"

namespace zelvo::controls {

using platform::MouseEventFate;

void HostedView::drawRect(platform::Canvas& canvas, const platform::Rect& rect) { host_.drawBase(canvas, rect); }

MouseEventFate HostedView::mouseDown(const platform::MouseEvent&) { return MouseEventFate::leftToElement; }
MouseEventFate HostedView::mouseDragged(const platform::MouseEvent&) { return MouseEventFate::leftToElement; }
MouseEventFate HostedView::mouseUp(const platform::MouseEvent&) { return MouseEventFate::leftToElement; }
MouseEventFate HostedView::mouseMoved(const platform::MouseEvent&) { return MouseEventFate::leftToElement; }

void strokeInnerFrame(platform::Canvas& canvas, const platform::Rect& bounds, double width,
                      const platform::Colour& colour) {
  canvas.saveState();
  canvas.setStrokeColour(colour);
  canvas.strokeRectWithWidth(platform::insetRect(bounds, width / 2, width / 2), width);
  canvas.restoreState();
}

}  // namespace zelvo::controls
