#include "controls/no_drag_movie_view.h"

namespace zelvo::controls {

using platform::MouseEventFate;

MouseEventFate NoDragMovieView::mouseDown(const platform::MouseEvent&) { return MouseEventFate::stopsHere; }
MouseEventFate NoDragMovieView::mouseDragged(const platform::MouseEvent&) { return MouseEventFate::stopsHere; }
MouseEventFate NoDragMovieView::mouseUp(const platform::MouseEvent&) { return MouseEventFate::stopsHere; }

}  // namespace zelvo::controls
