#include "controls/no_drag_movie_view.h"

#include "tests/controls/button_bench.h"

namespace zelvo::tests {
namespace {

using platform::headless::MouseEventKind;

class NoDragMovieView : public ::testing::Test {
 protected:
  platform::headless::Events events;
  /// The movie's own element, which would play and drag when left alone.
  platform::headless::RecordingViewHost host{"movie", events, {0, 0, 320, 240}, true};
  controls::NoDragMovieView& view = platform::makeCarried<controls::NoDragMovieView>(host);
};

TEST_F(NoDragMovieView, AllowsNoDragInsideOrOutsideTheProgram) {
  EXPECT_EQ(view.draggingSourceOperationMaskForLocal(true), 0U);
  EXPECT_EQ(view.draggingSourceOperationMaskForLocal(false), 0U);
}

TEST_F(NoDragMovieView, PressingDraggingAndReleasingNeverReachTheMovie) {
  for (const auto kind : {MouseEventKind::down, MouseEventKind::dragged, MouseEventKind::up}) {
    EXPECT_TRUE(host.deliver(kind, {100, 100}));
  }

  EXPECT_EQ(events.lines(), Lines{});
}

TEST_F(NoDragMovieView, TheMovieItselfWouldHaveTakenThem) {
  host.carry(nullptr);

  EXPECT_TRUE(host.deliver(MouseEventKind::down, {100, 100}));

  EXPECT_EQ(events.lines(), Lines{"movie.element.mouseDown()"});
}

TEST_F(NoDragMovieView, DrawsTheMovie) {
  host.paint();

  EXPECT_EQ(events.lines(), Lines{"movie.drawBase(0, 0, 320, 240)"});
}

}  // namespace
}  // namespace zelvo::tests
