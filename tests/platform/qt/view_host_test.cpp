#include "platform/qt/drawing/view_host.h"

#include <QApplication>
#include <QMouseEvent>
#include <memory>
#include <string>
#include <vector>

#include "platform/qt/drawing/hosted_widget.h"
#include "tests/platform/qt/element_bench.h"

namespace zelvo::tests {
namespace {

using platform::MouseEvent;
using platform::MouseEventFate;
using platform::Rect;
using platform::TrackingArea;
using platform::TrackingEvent;
using platform::qt::HostedWidget;

using Lines = std::vector<std::string>;

/// Writes down what it is told, and does as it is bidden.
class RecordingClient final : public platform::ViewClient {
 public:
  RecordingClient(platform::ViewHost& host, Lines& lines, std::string name = "")
      : host_(host), lines_(lines), name_(std::move(name)) {}
  RecordingClient(const RecordingClient&) = delete;
  RecordingClient& operator=(const RecordingClient&) = delete;
  ~RecordingClient() override { note("gone"); }

  void awakeFromNib() override { note("awakeFromNib"); }
  void drawRect(platform::Canvas&, const Rect&) override {
    note("drawRect");
    host_.invalidateCursorRects();
  }
  void updateTrackingAreas() override { note("updateTrackingAreas"); }
  void resetCursorRects() override {
    note("resetCursorRects");
    for (const auto& [rect, shape] : cursorRects) host_.addCursorRect(rect, shape);
  }
  [[nodiscard]] std::optional<bool> acceptsFirstResponder() const override { return std::nullopt; }
  void mouseEntered(const TrackingEvent& event) override { noteCrossing("mouseEntered", event); }
  void mouseExited(const TrackingEvent& event) override { noteCrossing("mouseExited", event); }
  [[nodiscard]] MouseEventFate mouseDown(const MouseEvent& event) override { return noteMouse("mouseDown", event); }
  [[nodiscard]] MouseEventFate mouseDragged(const MouseEvent& event) override {
    return noteMouse("mouseDragged", event);
  }
  [[nodiscard]] MouseEventFate mouseUp(const MouseEvent& event) override { return noteMouse("mouseUp", event); }
  [[nodiscard]] MouseEventFate mouseMoved(const MouseEvent& event) override { return noteMouse("mouseMoved", event); }
  [[nodiscard]] std::optional<std::uint32_t> draggingSourceOperationMaskForLocal(bool) const override {
    return std::nullopt;
  }

  std::vector<std::pair<Rect, platform::CursorShape>> cursorRects;
  MouseEventFate fate = MouseEventFate::leftToElement;

 private:
  void note(const std::string& line) { lines_.push_back(name_ + line); }
  void noteCrossing(const std::string& what, const TrackingEvent& event) {
    note(event.userData == nullptr ? what : what + " " + std::to_string(event.userData->at("which")));
  }
  MouseEventFate noteMouse(const std::string& what, const MouseEvent& event) {
    note(what + " " + std::to_string(static_cast<int>(event.location.x)) + "," +
         std::to_string(static_cast<int>(event.location.y)));
    return fate;
  }

  platform::ViewHost& host_;
  Lines& lines_;
  std::string name_;
};

/// Counts the presses that no child kept.
class Page final : public QWidget {
 public:
  int presses = 0;

 protected:
  void mousePressEvent(QMouseEvent*) override { ++presses; }
};

/// A view of 100 x 40 points at (50, 60) in a window that is shown and active.
class QtViewHost : public testing::Test {
 protected:
  QtViewHost() {
    movePointerAway();
    window.resize(300, 200);
    view.setGeometry(50, 60, 100, 40);
  }
  ~QtViewHost() override { movePointerAway(); }

  RecordingClient& carryRecording() { return platform::makeCarried<RecordingClient>(view.host(), lines); }
  void track(RecordingClient& client, std::uint32_t options,
             std::optional<platform::TrackingDictionary> dictionary = std::nullopt) {
    view.host().addTrackingArea(std::make_shared<const TrackingArea>(
        TrackingArea{platform::kTrackingMouseEnteredAndExited | options, client, std::move(dictionary)}));
  }
  Lines takeLines(const std::string& beginning = "") {
    Lines taken;
    for (const std::string& line : lines) {
      if (line.starts_with(beginning)) taken.push_back(line);
    }
    lines.clear();
    return taken;
  }

  Lines lines;
  Page window;
  HostedWidget& view = *new HostedWidget(&window);
};

TEST_F(QtViewHost, PointerThatComesAndGoesIsTold) {
  RecordingClient& client = carryRecording();
  track(client, platform::kTrackingActiveAlways, platform::TrackingDictionary{{"which", 7}});
  showActive(window);
  lines.clear();
  movePointerOver(view);
  EXPECT_EQ(takeLines("mouseE"), (Lines{"mouseEntered 7"}));
  movePointer(window, {5, 5});
  EXPECT_EQ(takeLines("mouseE"), (Lines{"mouseExited 7"}));
}

TEST_F(QtViewHost, AreaThatWasTakenAwayIsToldNothing) {
  RecordingClient& client = carryRecording();
  const auto area = std::make_shared<const TrackingArea>(TrackingArea{
      platform::kTrackingMouseEnteredAndExited | platform::kTrackingActiveAlways, client, std::nullopt, Rect{}});
  view.host().addTrackingArea(area);
  EXPECT_EQ(view.host().trackingAreas().size(), 1U);
  view.host().removeTrackingArea(area);
  showActive(window);
  movePointerOver(view);
  EXPECT_TRUE(takeLines("mouseE").empty());
}

TEST_F(QtViewHost, AreaThatDoesNotAskForCrossingsIsNotToldOfThem) {
  RecordingClient& client = carryRecording();
  view.host().addTrackingArea(std::make_shared<const TrackingArea>(
      TrackingArea{platform::kTrackingActiveAlways, client, std::nullopt, Rect{}}));
  showActive(window);
  movePointerOver(view);
  EXPECT_TRUE(takeLines("mouseEntered").empty());
}

TEST_F(QtViewHost, AreaOfTheKeyWindowIsToldOnlyWhileItsWindowIsActive) {
  RecordingClient& client = carryRecording();
  track(client, platform::kTrackingActiveInKeyWindow);
  showActive(window);
  QWidget other;
  other.setGeometry(500, 500, 100, 100);
  other.show();
  other.activateWindow();
  settle();
  ASSERT_FALSE(window.isActiveWindow());
  lines.clear();

  movePointerOver(view);
  EXPECT_TRUE(takeLines("mouseEntered").empty());
  movePointer(window, {5, 5});
  window.activateWindow();
  settle();
  lines.clear();
  movePointerOver(view);
  EXPECT_EQ(takeLines("mouseEntered"), (Lines{"mouseEntered"}));
}

TEST_F(QtViewHost, AreaOfTheActiveProgramIsToldInEachOfItsWindows) {
  RecordingClient& client = carryRecording();
  track(client, platform::kTrackingActiveInActiveApp);
  showActive(window);
  QWidget other;
  other.setGeometry(500, 500, 100, 100);
  other.show();
  other.activateWindow();
  settle();
  ASSERT_FALSE(window.isActiveWindow());
  movePointerOver(view);
  EXPECT_EQ(takeLines("mouseEntered"), (Lines{"mouseEntered"}));
}

TEST_F(QtViewHost, OnlyTheAreaThatIsAlwaysActiveIsToldWhileTheProgramIsInactive) {
  RecordingClient& client = carryRecording();
  track(client, platform::kTrackingActiveInActiveApp, platform::TrackingDictionary{{"which", 1}});
  track(client, platform::kTrackingActiveInKeyWindow, platform::TrackingDictionary{{"which", 2}});
  track(client, platform::kTrackingActiveAlways, platform::TrackingDictionary{{"which", 3}});
  if (QGuiApplication::applicationState() == Qt::ApplicationActive) {
    GTEST_SKIP() << "the program was active before; a process of its own can be inactive";
  }
  // No display makes a tip the active window.
  window.setWindowFlags(Qt::ToolTip);
  window.move(100, 100);
  window.show();
  settle();
  ASSERT_NE(QGuiApplication::applicationState(), Qt::ApplicationActive);
  lines.clear();
  movePointerOver(view);
  EXPECT_EQ(takeLines("mouseEntered"), (Lines{"mouseEntered 3"}));
}

TEST_F(QtViewHost, LeavingIsToldAlsoToTheOnesThatWereNotToldOfEntering) {
  RecordingClient& client = carryRecording();
  track(client, platform::kTrackingActiveInKeyWindow);
  showActive(window);
  movePointerOver(view);
  QWidget other;
  other.setGeometry(500, 500, 100, 100);
  other.show();
  other.activateWindow();
  settle();
  lines.clear();
  movePointer(window, {5, 5});
  EXPECT_EQ(takeLines("mouseExited"), (Lines{"mouseExited"}));
}

TEST_F(QtViewHost, ClientIsResynchronisedWhenItIsShown) {
  carryRecording();
  EXPECT_TRUE(takeLines("updateTrackingAreas").empty()) << "before";
  showActive(window);
  EXPECT_FALSE(takeLines("updateTrackingAreas").empty());
}

TEST_F(QtViewHost, ClientThatCameToAShownViewIsResynchronised) {
  showActive(window);
  carryRecording();
  EXPECT_EQ(takeLines("updateTrackingAreas"), (Lines{"updateTrackingAreas"}));
}

TEST_F(QtViewHost, ClientIsResynchronisedWhenItMovesOrItsSizeChanges) {
  carryRecording();
  showActive(window);
  lines.clear();
  view.move(60, 70);
  EXPECT_FALSE(takeLines("updateTrackingAreas").empty()) << "moved";
  view.resize(110, 44);
  EXPECT_FALSE(takeLines("updateTrackingAreas").empty()) << "resized";
}

TEST_F(QtViewHost, ClientIsResynchronisedWhenItMovesTogetherWithWhatHoldsIt) {
  QWidget outer(&window);
  outer.setGeometry(0, 0, 300, 200);
  QWidget inner(&outer);
  inner.setGeometry(0, 0, 300, 200);
  view.setParent(&inner);
  view.show();
  carryRecording();
  showActive(window);
  lines.clear();
  inner.move(5, 0);
  EXPECT_FALSE(takeLines("updateTrackingAreas").empty()) << "with its parent";
  outer.move(0, 5);
  EXPECT_FALSE(takeLines("updateTrackingAreas").empty()) << "with its parent's parent";
  view.setParent(&window);
}

TEST_F(QtViewHost, ClientIsResynchronisedWhenItsWindowMovesOrItsSizeChanges) {
  carryRecording();
  showActive(window);
  lines.clear();
  window.move(120, 130);
  settle();
  EXPECT_FALSE(takeLines("updateTrackingAreas").empty()) << "moved";
  window.resize(320, 220);
  settle();
  EXPECT_FALSE(takeLines("updateTrackingAreas").empty()) << "resized";
}

TEST_F(QtViewHost, ClientIsResynchronisedWhenItsWindowBecomesActiveOrInactive) {
  carryRecording();
  showActive(window);
  lines.clear();
  QWidget other;
  other.setGeometry(500, 500, 100, 100);
  other.show();
  other.activateWindow();
  settle();
  EXPECT_FALSE(takeLines("updateTrackingAreas").empty()) << "inactive";
  window.activateWindow();
  settle();
  EXPECT_FALSE(takeLines("updateTrackingAreas").empty()) << "active";
}

TEST_F(QtViewHost, HiddenClientIsLeftInPeace) {
  carryRecording();
  showActive(window);
  view.hide();
  lines.clear();
  view.move(60, 70);
  window.move(120, 130);
  settle();
  EXPECT_TRUE(takeLines("updateTrackingAreas").empty());
}

TEST_F(QtViewHost, PointerIsUnknownToAViewThatIsNotShown) {
  EXPECT_EQ(view.host().mouseLocationOutsideOfEventStream(), std::nullopt);
}

TEST_F(QtViewHost, PointerIsToldInTheViewsOwnPoints) {
  showActive(window);
  movePointer(view, {12, 34});
  EXPECT_EQ(view.host().mouseLocationOutsideOfEventStream(), (platform::Point{12, 34}));
}

TEST_F(QtViewHost, ClientIsWokenOnceBeforeItsFirstDrawing) {
  carryRecording();
  showActive(window);
  view.repaint();
  const Lines all = takeLines();
  EXPECT_EQ(std::count(all.begin(), all.end(), "awakeFromNib"), 1);
  const auto firstDrawing = std::find(all.begin(), all.end(), "drawRect");
  EXPECT_LT(std::find(all.begin(), all.end(), "awakeFromNib"), firstDrawing);
  EXPECT_NE(firstDrawing, all.end());
}

TEST_F(QtViewHost, EachClientIsWokenForItself) {
  platform::makeCarried<RecordingClient>(view.host(), lines, "a.");
  showActive(window);
  platform::makeCarried<RecordingClient>(view.host(), lines, "b.");
  settle();
  EXPECT_EQ(std::count(lines.begin(), lines.end(), "a.awakeFromNib"), 1);
  EXPECT_EQ(std::count(lines.begin(), lines.end(), "b.awakeFromNib"), 1);
}

TEST_F(QtViewHost, ReplacedClientIsReleasedAndHearsNothingMore) {
  RecordingClient& first = platform::makeCarried<RecordingClient>(view.host(), lines, "a.");
  track(first, platform::kTrackingActiveAlways);
  showActive(window);
  RecordingClient& second = platform::makeCarried<RecordingClient>(view.host(), lines, "b.");
  EXPECT_EQ(std::count(lines.begin(), lines.end(), "a.gone"), 1);
  EXPECT_TRUE(view.host().trackingAreas().empty());
  lines.clear();
  track(second, platform::kTrackingActiveAlways);
  movePointerOver(view);
  EXPECT_TRUE(takeLines("a.").empty());
}

TEST_F(QtViewHost, CursorRectanglesOfAReplacedClientAreGone) {
  carryRecording().cursorRects = {{{0, 0, 100, 40}, platform::CursorShape::pointingHand}};
  showActive(window);
  ASSERT_EQ(view.cursor().shape(), Qt::PointingHandCursor);
  view.host().carry(nullptr);
  settle();
  EXPECT_EQ(view.cursor().shape(), Qt::ArrowCursor);
}

TEST_F(QtViewHost, CursorIsShapedAtTheEndOfADrawingAndOnTheViewAlone) {
  RecordingClient& client = carryRecording();
  showActive(window);
  EXPECT_EQ(view.cursor().shape(), Qt::ArrowCursor);
  client.cursorRects = {{{0, 0, 100, 40}, platform::CursorShape::pointingHand}};
  lines.clear();
  view.repaint();
  EXPECT_EQ(takeLines(), (Lines{"drawRect", "resetCursorRects"}));
  EXPECT_EQ(view.cursor().shape(), Qt::PointingHandCursor);
  EXPECT_EQ(window.cursor().shape(), Qt::ArrowCursor);
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(QtViewHost, CursorRectanglesAreMadeAnewAtOnceOutsideOfADrawing) {
  RecordingClient& client = carryRecording();
  showActive(window);
  client.cursorRects = {{{0, 0, 100, 40}, platform::CursorShape::pointingHand}};
  lines.clear();
  view.host().invalidateCursorRects();
  EXPECT_EQ(takeLines("resetCursorRects"), (Lines{"resetCursorRects"}));
  EXPECT_EQ(view.cursor().shape(), Qt::PointingHandCursor);
}

TEST_F(QtViewHost, CursorFollowsTheRectangleThatThePointerIsIn) {
  carryRecording().cursorRects = {{{0, 0, 20, 40}, platform::CursorShape::pointingHand}};
  showActive(window);
  movePointer(view, {10, 20});
  EXPECT_EQ(view.cursor().shape(), Qt::PointingHandCursor);
  movePointer(view, {30, 20});
  EXPECT_EQ(view.cursor().shape(), Qt::ArrowCursor);
}

TEST_F(QtViewHost, CursorRectangleThatWasAddedLastHolds) {
  carryRecording().cursorRects = {{{0, 0, 100, 40}, platform::CursorShape::pointingHand},
                                  {{0, 0, 100, 40}, platform::CursorShape::arrow}};
  showActive(window);
  EXPECT_EQ(view.cursor().shape(), Qt::ArrowCursor);
}

TEST_F(QtViewHost, MouseEventsAreToldInTheViewsOwnPoints) {
  carryRecording();
  showActive(window);
  lines.clear();
  movePointer(view, {10, 11});
  EXPECT_EQ(takeLines("mouseMoved").back(), "mouseMoved 10,11");
  QWindow* const handle = window.windowHandle();
  QTest::mousePress(handle, Qt::LeftButton, {}, {60, 71});
  EXPECT_EQ(takeLines("mouseDown"), (Lines{"mouseDown 10,11"}));
  QMouseEvent drag(QEvent::MouseMove, QPointF(20, 21), view.mapToGlobal(QPointF(20, 21)), Qt::NoButton, Qt::LeftButton,
                   {});
  QCoreApplication::sendEvent(&view, &drag);
  EXPECT_EQ(takeLines("mouseD"), (Lines{"mouseDragged 20,21"}));
  QTest::mouseRelease(handle, Qt::LeftButton, {}, {62, 73});
  EXPECT_EQ(takeLines("mouseUp"), (Lines{"mouseUp 12,13"}));
}

TEST_F(QtViewHost, MouseEventThatIsLeftToAPlainViewReachesWhatLiesBelow) {
  carryRecording();
  showActive(window);
  clickOn(view);
  EXPECT_EQ(window.presses, 1);
}

TEST_F(QtViewHost, MouseEventThatIsStoppedGoesNoFurther) {
  carryRecording().fate = MouseEventFate::stopsHere;
  showActive(window);
  clickOn(view);
  EXPECT_EQ(window.presses, 0);
  EXPECT_EQ(takeLines("mouseDown").size(), 1U);
}

TEST_F(QtViewHost, ViewWithoutAClientLetsTheMouseThrough) {
  showActive(window);
  clickOn(view);
  EXPECT_EQ(window.presses, 1);
}

TEST_F(QtViewHost, FrameIsPlacedInWhatHoldsTheView) {
  view.host().setFrame({10, 20, 30, 40});
  EXPECT_EQ(view.geometry(), QRect(10, 20, 30, 40));
  EXPECT_EQ(view.host().bounds(), (Rect{0, 0, 30, 40}));
}

TEST_F(QtViewHost, AskingForRedrawsOftenDrawsOnceAndLater) {
  carryRecording();
  showActive(window);
  lines.clear();
  for (int times = 0; times < 5; ++times) view.host().setNeedsDisplay();
  EXPECT_TRUE(lines.empty()) << "within the calls";
  settle();
  EXPECT_EQ(takeLines("drawRect"), (Lines{"drawRect"}));
}

}  // namespace
}  // namespace zelvo::tests
