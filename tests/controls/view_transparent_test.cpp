#include "controls/view_transparent.h"

#include <limits>

#include "controls/hover_button_settings_apply.h"
#include "tests/controls/button_bench.h"

namespace zelvo::tests {
namespace {

using platform::headless::MouseEventKind;
using platform::headless::RecordingViewHost;

class ViewTransparent : public ::testing::Test {
 protected:
  platform::headless::Events events;
  platform::NotificationCentre centre;

  std::unique_ptr<CarriedOverlay> madeOverlay() { return std::make_unique<CarriedOverlay>(centre, events); }
};

TEST_F(ViewTransparent, AloneItCountsNothing) { EXPECT_EQ(madeOverlay()->view->viewsOverlaidCount(), 0); }

TEST_F(ViewTransparent, ASecondOneIsCountedByTheFirstOnly) {
  const auto first = madeOverlay();
  const auto second = madeOverlay();

  EXPECT_EQ(first->view->viewsOverlaidCount(), 1);
  EXPECT_EQ(second->view->viewsOverlaidCount(), 0);
}

TEST_F(ViewTransparent, RemovingTheSecondBringsTheFirstBackToZero) {
  const auto first = madeOverlay();
  const auto second = madeOverlay();

  second->view->postRemovedNotification();

  EXPECT_EQ(first->view->viewsOverlaidCount(), 0);
  EXPECT_EQ(second->view->viewsOverlaidCount(), 0);
}

TEST_F(ViewTransparent, ThreeRemovedInReverseOrderLeaveEveryCountAsItWas) {
  const auto first = madeOverlay();
  const auto second = madeOverlay();
  auto third = madeOverlay();
  ASSERT_EQ(first->view->viewsOverlaidCount(), 2);
  ASSERT_EQ(second->view->viewsOverlaidCount(), 1);

  third->view->postRemovedNotification();
  third.reset();
  EXPECT_EQ(first->view->viewsOverlaidCount(), 1);
  EXPECT_EQ(second->view->viewsOverlaidCount(), 0);

  second->view->postRemovedNotification();
  EXPECT_EQ(first->view->viewsOverlaidCount(), 0);
}

TEST_F(ViewTransparent, RemovingTheFirstBeforeTheSecondLeavesTheSecondBelowZeroAndItsButtonDark) {
  const auto a = madeOverlay();
  const auto b = madeOverlay();
  platform::headless::RecordingBaseButton base("base", &events);
  RecordingViewHost host("button", events, {0, 0, 100, 24}, true);
  auto& button = platform::makeCarried<controls::HoverButtonSettingsApply>(host, base);
  button.setViewTransparent(b->view);
  host.resynchronise();

  a->view->postRemovedNotification();
  host.movePointer(platform::Point{5, 5});

  EXPECT_EQ(a->view->viewsOverlaidCount(), 1);
  EXPECT_EQ(b->view->viewsOverlaidCount(), -1);
  EXPECT_FALSE(button.hovering());
}

TEST_F(ViewTransparent, ReleasedWithoutAnnouncementItStaysCounted) {
  const auto first = madeOverlay();
  auto second = madeOverlay();

  second.reset();

  EXPECT_EQ(first->view->viewsOverlaidCount(), 1);
}

TEST_F(ViewTransparent, ReleasedItObservesNothingMore) {
  auto first = madeOverlay();
  first.reset();

  const auto second = madeOverlay();
  second->view->postRemovedNotification();

  EXPECT_EQ(second->view->viewsOverlaidCount(), 0);
}

TEST_F(ViewTransparent, AnnouncementsBearTheOverlayAsTheirObject) {
  std::vector<std::pair<std::string, const platform::NotificationSender*>> heard;
  for (const char* name : {"ViewTransparent added", "ViewTransparent removed"}) {
    centre.addObserver(this, name,
                       [&](const platform::Notification& note) { heard.emplace_back(note.name, note.object); });
  }

  const auto overlay = madeOverlay();
  overlay->view->postRemovedNotification();

  EXPECT_EQ(heard,
            (decltype(heard){{"ViewTransparent added", overlay->view}, {"ViewTransparent removed", overlay->view}}));
}

TEST_F(ViewTransparent, ItAnnouncesItselfBeforeItListens) {
  std::unique_ptr<CarriedOverlay> nested;
  bool isFirst = true;
  // An overlay that comes while the first is being announced is not heard by the first.
  centre.addObserver(this, "ViewTransparent added", [&](const platform::Notification&) {
    if (std::exchange(isFirst, false)) nested = madeOverlay();
  });

  const auto overlay = madeOverlay();

  EXPECT_EQ(overlay->view->viewsOverlaidCount(), 0);
}

TEST_F(ViewTransparent, NotificationsAboutItselfAreNotCounted) {
  const auto overlay = madeOverlay();

  centre.post({"ViewTransparent added", overlay->view});
  centre.post({"ViewTransparent removed", overlay->view});
  centre.post({"ViewTransparent removed", overlay->view});

  EXPECT_EQ(overlay->view->viewsOverlaidCount(), 0);
}

TEST_F(ViewTransparent, NotificationsAboutAnyOtherObjectAreCounted) {
  struct Stranger final : platform::NotificationSender {
  } stranger;
  const auto overlay = madeOverlay();

  centre.post({"ViewTransparent added", &stranger});
  centre.post({"ViewTransparent added", nullptr});

  EXPECT_EQ(overlay->view->viewsOverlaidCount(), 2);
}

TEST_F(ViewTransparent, TheCountCanBeSetAndGoesRoundAtItsEnds) {
  const auto overlay = madeOverlay();
  overlay->view->setviewsOverlaidCount(std::numeric_limits<std::int32_t>::max());
  ASSERT_EQ(overlay->view->viewsOverlaidCount(), 2147483647);

  centre.post({"ViewTransparent added", nullptr});
  EXPECT_EQ(overlay->view->viewsOverlaidCount(), std::numeric_limits<std::int32_t>::min());

  centre.post({"ViewTransparent removed", nullptr});
  EXPECT_EQ(overlay->view->viewsOverlaidCount(), 2147483647);
}

TEST_F(ViewTransparent, IsPlacedAndGivenItsShadowBeforeItIsAnnounced) {
  centre.addObserver(this, "ViewTransparent added", [&](const platform::Notification&) { events.add("announced"); });

  const auto overlay = madeOverlay();

  EXPECT_EQ(events.lines(), (Lines{"overlay.setFrame(0, 0, 400, 300)", "overlay.setWantsLayer(yes)",
                                   "overlay.setShadow(0.5, 0.5, 0.5, 1; offset 0, 0; blur 5)", "announced"}));
}

TEST_F(ViewTransparent, WithoutAHostThereIsNoneAndNothingIsAnnounced) {
  const auto first = madeOverlay();

  EXPECT_EQ(controls::ViewTransparent::initWithFrame({0, 0, 400, 300}, nullptr, centre), nullptr);

  EXPECT_EQ(first->view->viewsOverlaidCount(), 0);
}

TEST_F(ViewTransparent, PaintsNothingOfItsOwn) {
  const auto overlay = madeOverlay();
  events.clear();

  overlay->host.paint();

  EXPECT_EQ(events.lines(), Lines{"overlay.drawBase(0, 0, 400, 300)"});
}

TEST_F(ViewTransparent, TakesTheKeyboard) { EXPECT_EQ(madeOverlay()->view->acceptsFirstResponder(), true); }

TEST_F(ViewTransparent, AClickStopsHereAndNeverReachesTheButtonBelow) {
  platform::headless::RecordingBaseButton base("base", &events);
  RecordingViewHost host("button", events, {20, 30, 100, 24}, true);
  platform::makeCarried<controls::HoverButtonSettingsApply>(host, base);
  const auto overlay = madeOverlay();
  platform::headless::HostPile window;
  window.add(host);
  window.add(overlay->host);
  events.clear();

  for (const auto kind : {MouseEventKind::down, MouseEventKind::dragged, MouseEventKind::up, MouseEventKind::moved}) {
    window.deliver(kind, {25, 35});
  }
  EXPECT_EQ(events.lines(), Lines{});

  window.remove(overlay->host);
  window.deliver(MouseEventKind::down, {25, 35});
  EXPECT_EQ(events.lines(), Lines{"button.element.mouseDown()"});
}

TEST_F(ViewTransparent, EnteringAndLeavingDoNothing) {
  const auto overlay = madeOverlay();
  events.clear();

  overlay->view->mouseEntered({});
  overlay->view->mouseExited({});

  EXPECT_EQ(events.lines(), Lines{});
}

TEST_F(ViewTransparent, AnAbsentOneCountsZero) {
  const auto overlay = madeOverlay();
  overlay->view->setviewsOverlaidCount(3);

  EXPECT_EQ(controls::viewsOverlaidCountOf(nullptr), 0);
  EXPECT_EQ(controls::viewsOverlaidCountOf(overlay->view), 3);
}

}  // namespace
}  // namespace zelvo::tests
