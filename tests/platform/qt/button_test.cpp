#include <QFontMetricsF>
#include <QPainter>
#include <QPushButton>
#include <memory>
#include <string>
#include <vector>

#include "controls/button_startup_issues.h"
#include "platform/qt/drawing/appearance.h"
#include "platform/qt/drawing/button.h"
#include "platform/qt/window/actions.h"
#include "tests/platform/qt/drawn_pictures.h"
#include "tests/platform/qt/element_bench.h"
#include "tests/platform/qt/pixels.h"

namespace zelvo::tests {
namespace {

using platform::Button;
using Look = platform::qt::QtButton::Look;

/// A button beside an ordinary one, in a window that is shown and active.
class QtButtonTest : public testing::Test {
 protected:
  QtButtonTest() {
    movePointerAway();
    window.resize(400, 200);
    other.setGeometry(10, 10, 80, 30);
    other.setFocusPolicy(Qt::StrongFocus);
  }
  ~QtButtonTest() override { movePointerAway(); }

  platform::qt::QtButton& make(const char* title, Look look = Look::push) {
    auto* const made = new platform::qt::QtButton(queue, pictures.all(), QString::fromUtf8(title), look, &window);
    made->setGeometry(100, 60, 120, 36);
    actions.connect(*made, [this](Button& sender) {
      presses.push_back(sender.state() == Button::State::on ? "on" : "off");
      senders.push_back(&sender);
    });
    return *made;
  }
  platform::qt::QtButton& shown(const char* title, Look look = Look::push) {
    platform::qt::QtButton& made = make(title, look);
    showActive(window);
    return made;
  }
  void onWorker(const std::function<void()>& work) {
    std::thread(work).join();
    while (queue.serve()) {
    }
  }
  static QImage drawn(QWidget& widget, double scale = 1) {
    QImage picture = blankPicture(widget.width(), widget.height(), scale);
    widget.render(&picture, QPoint(), QRegion(), QWidget::DrawChildren);
    return picture;
  }

  platform::linux_::LinuxMainQueue queue;
  DrawnPictures pictures;
  platform::qt::QtActions actions;
  std::vector<std::string> presses;
  std::vector<Button*> senders;
  QWidget window;
  QPushButton& other = *new QPushButton(&window);
};

TEST_F(QtButtonTest, IsPressedByAClick) {
  platform::qt::QtButton& button = shown("OK");
  clickOn(button);
  EXPECT_EQ(presses.size(), 1U);
  EXPECT_EQ(senders.front(), &button);
}

TEST_F(QtButtonTest, IsPressedInItsCornersToo) {
  platform::qt::QtButton& button = shown("OK");
  clickAt(button, {0, 0});
  clickAt(button, {119, 35});
  EXPECT_EQ(presses.size(), 2U);
}

TEST_F(QtButtonTest, IsNotPressedWhenTheMouseIsReleasedElsewhere) {
  platform::qt::QtButton& button = shown("OK");
  QWindow* const handle = window.windowHandle();
  QTest::mousePress(handle, Qt::LeftButton, {}, button.geometry().center());
  QTest::mouseMove(handle, {300, 180});
  QTest::mouseRelease(handle, Qt::LeftButton, {}, {300, 180});
  settle();
  EXPECT_TRUE(presses.empty());
}

TEST_F(QtButtonTest, IsPressedBySpaceAndByBothEnterKeys) {
  platform::qt::QtButton& button = shown("OK");
  button.setFocus();
  pressKey(button, Qt::Key_Space);
  EXPECT_EQ(presses.size(), 1U);
  pressKey(button, Qt::Key_Return);
  EXPECT_EQ(presses.size(), 2U);
  pressKey(button, Qt::Key_Enter);
  EXPECT_EQ(presses.size(), 3U);
}

TEST_F(QtButtonTest, IsNotPressedWhileDisabled) {
  platform::qt::QtButton& button = shown("OK");
  button.setFocus();
  button.setEnabled(false);
  clickOn(button);
  button.click();
  pressKey(button, Qt::Key_Space);
  pressKey(button, Qt::Key_Return);
  EXPECT_TRUE(presses.empty());
}

TEST_F(QtButtonTest, IsNotPressedWhileHidden) {
  platform::qt::QtButton& button = shown("OK");
  button.setFocus();
  button.setHidden(true);
  settle();
  clickAt(window, button.geometry().center());
  pressKey(button, Qt::Key_Space);
  pressKey(button, Qt::Key_Return);
  EXPECT_TRUE(presses.empty());
  button.setHidden(false);
  settle();
  clickOn(button);
  EXPECT_EQ(presses.size(), 1U);
}

TEST_F(QtButtonTest, IsNotPressedByAScreenReaderThatFoundItBeforeItsPageWent) {
  platform::qt::QtButton& button = shown("Mute");
  button.setTwoState(QStringLiteral("Sound on"));
  button.setHidden(true);
  settle();
  button.click();
  EXPECT_TRUE(presses.empty());
  EXPECT_EQ(button.state(), Button::State::off);
  button.setHidden(false);
  settle();
  button.click();
  EXPECT_EQ(presses, std::vector<std::string>{"on"});
}

TEST_F(QtButtonTest, TwoStatesHaveChangedBeforeTheActionRuns) {
  platform::qt::QtButton& button = shown("Preview");
  button.setTwoState(QStringLiteral("Stop preview"));
  std::vector<std::string> titles;
  button.setAction([&](Button& sender) {
    titles.push_back(button.title() + (sender.state() == Button::State::on ? " on" : " off"));
  });
  clickOn(button);
  button.setFocus();
  pressKey(button, Qt::Key_Space);
  EXPECT_EQ(titles, (std::vector<std::string>{"Stop preview on", "Preview off"}));
}

TEST_F(QtButtonTest, StateThatIsSetShowsItsTitleAndPressesNothing) {
  platform::qt::QtButton& button = shown("Preview");
  button.setTwoState(QStringLiteral("Stop preview"));
  actions.connect(button, [this](Button&) { presses.emplace_back("pressed"); });
  button.setState(Button::State::on);
  EXPECT_EQ(button.title(), "Stop preview");
  button.setState(Button::State::off);
  EXPECT_EQ(button.title(), "Preview");
  EXPECT_TRUE(presses.empty());
  clickOn(button);
  EXPECT_EQ(button.state(), Button::State::on) << "a press goes on from the state that was set";
}

TEST_F(QtButtonTest, ButtonOfOneStateKeepsItsTitleAndState) {
  platform::qt::QtButton& button = shown("OK");
  clickOn(button);
  EXPECT_EQ(presses, (std::vector<std::string>{"off"}));
  button.setState(Button::State::on);
  EXPECT_EQ(button.title(), "OK");
  EXPECT_EQ(button.state(), Button::State::on);
}

TEST_F(QtButtonTest, CallsOfAWorkerTakeEffectOnTheMainThreadInOrder) {
  platform::qt::QtButton& button = shown("Preview");
  button.setTwoState(QStringLiteral("Stop preview"));
  std::vector<std::string> seen;
  button.setEnabledObserver([&](bool enabled) {
    seen.push_back(std::string(enabled ? "enabled " : "disabled ") + button.title() + " " + button.imageName());
    EXPECT_TRUE(queue.isMainThread());
  });
  seen.clear();
  std::thread([&] {
    button.setImage("home-1");
    button.setState(Button::State::on);
    button.setEnabled(false);
    button.setImage("help-1");
    button.setState(Button::State::off);
    button.setEnabled(true);
    button.setHidden(true);
  }).join();
  EXPECT_TRUE(seen.empty()) << "nothing happens before the main thread takes it over";
  EXPECT_FALSE(button.isHidden());
  while (queue.serve()) {
  }
  EXPECT_EQ(seen, (std::vector<std::string>{"disabled Stop preview home-1", "enabled Preview help-1"}));
  EXPECT_TRUE(button.isHidden());
}

TEST_F(QtButtonTest, StateThatAWorkerSetIsKnownAtOnce) {
  platform::qt::QtButton& button = shown("Preview");
  Button::State seen = Button::State::off;
  std::thread([&] {
    button.setState(Button::State::on);
    seen = button.state();
  }).join();
  EXPECT_EQ(seen, Button::State::on);
  while (queue.serve()) {
  }
}

TEST_F(QtButtonTest, ObserverIsToldHowItIsNowAndOfEveryChange) {
  platform::qt::QtButton& button = shown("OK");
  std::vector<bool> told;
  button.setEnabledObserver([&](bool enabled) { told.push_back(enabled); });
  button.setEnabled(false);
  window.setEnabled(false);
  button.setEnabled(true);
  window.setEnabled(true);
  EXPECT_EQ(told, (std::vector{true, false, true}));
}

TEST_F(QtButtonTest, PictureButtonShowsItsNamedPicture) {
  platform::qt::QtButton& button = make("Home", Look::picture);
  button.setGeometry(100, 60, 16, 16);
  button.setImage("home-1");
  for (const double scale : kScales) {
    QImage expected = blankPicture(16, 16, scale);
    setPixels(expected, 0, 0, expected.width(), expected.height(), DrawnPictures::kHome1);
    EXPECT_TRUE(samePixels(drawn(button, scale), expected)) << scale;
  }
}

TEST_F(QtButtonTest, PictureThatIsNotThereShowsNothing) {
  platform::qt::QtButton& button = make("Home", Look::picture);
  button.setImage("no such picture");
  EXPECT_TRUE(samePixels(drawn(button), blankPicture(120, 36, 1)));
}

TEST_F(QtButtonTest, DisabledPictureIsPaler) {
  platform::qt::QtButton& button = make("Home", Look::picture);
  button.setGeometry(100, 60, 16, 16);
  button.setImage("home-1");
  button.setEnabled(false);
  const QRgb shownNow = drawn(button).pixel(8, 8);
  EXPECT_NE(shownNow, DrawnPictures::kHome1);
  EXPECT_NE(shownNow, kUnpainted);
}

TEST_F(QtButtonTest, PictureButtonTellsItsTitleInATooltip) {
  EXPECT_EQ(make("Look for an update", Look::picture).toolTip(), QStringLiteral("Look for an update"));
}

TEST_F(QtButtonTest, TitleOnAPictureIsShownOnlyWhenAskedFor) {
  platform::qt::QtButton& button = make("Repair", Look::picture);
  button.setImage("home-1");
  const QImage without = drawn(button);
  button.showTitle();
  EXPECT_FALSE(samePixels(drawn(button), without));
}

TEST_F(QtButtonTest, LinkIsUnderlinedTextOnNothing) {
  platform::qt::QtButton& button = make("click here", Look::link);
  QImage expected = blankPicture(120, 36, 1);
  QPainter painter(&expected);
  QFont font = button.font();
  font.setUnderline(true);
  painter.setFont(font);
  painter.setPen(button.palette().color(QPalette::Link));
  painter.drawText(QRectF(0, 0, 120, 36), Qt::AlignCenter, QStringLiteral("click here"));
  painter.end();
  EXPECT_TRUE(samePixels(drawn(button), expected));
}

TEST_F(QtButtonTest, FramedButtonIsDarkerWhilePressed) {
  platform::qt::QtButton& button = make("OK");
  button.setDown(true);
  EXPECT_EQ(drawn(button).pixel(5, 5), platform::qt::line(button.palette()).rgba());
  button.setHighlightsBy(platform::kHighlightNone);
  EXPECT_EQ(drawn(button).pixel(5, 5), platform::qt::surface(button.palette()).rgba());
}

// ---- The ring that shows where the keyboard is ----

/// Whether the outermost pixels have the colour of the focus.
bool hasRing(const QImage& picture, const QPalette& palette) {
  const QRgb colour = platform::qt::focusColour(palette).rgba();
  return picture.pixel(0, 0) == colour && picture.pixel(picture.width() - 1, picture.height() - 1) == colour;
}

TEST_F(QtButtonTest, KeyboardsFocusIsShownByARing) {
  platform::qt::QtButton& button = shown("OK");
  button.setFocus(Qt::TabFocusReason);
  EXPECT_TRUE(hasRing(drawn(button), button.palette()));
  other.setFocus(Qt::TabFocusReason);
  EXPECT_FALSE(hasRing(drawn(button), button.palette()));
}

TEST_F(QtButtonTest, ClickShowsNoRing) {
  platform::qt::QtButton& button = shown("OK");
  clickOn(button);
  ASSERT_TRUE(button.hasFocus());
  EXPECT_FALSE(hasRing(drawn(button), button.palette()));
}

TEST_F(QtButtonTest, RingIsAsItWasWhenTheWindowComesBack) {
  platform::qt::QtButton& button = shown("OK");
  clickOn(button);
  QWidget elsewhere;
  elsewhere.setGeometry(600, 500, 80, 80);
  elsewhere.show();
  elsewhere.activateWindow();
  settle();
  window.activateWindow();
  settle();
  ASSERT_TRUE(button.hasFocus());
  EXPECT_FALSE(hasRing(drawn(button), button.palette())) << "after a click";

  button.clearFocus();
  button.setFocus(Qt::TabFocusReason);
  elsewhere.activateWindow();
  settle();
  window.activateWindow();
  settle();
  ASSERT_TRUE(button.hasFocus());
  EXPECT_TRUE(hasRing(drawn(button), button.palette())) << "after the keyboard";
}

TEST_F(QtButtonTest, RingLiesAboveTheFillOfASelfDrawnButton) {
  platform::qt::QtButton& button = shown("OK");
  platform::makeCarried<controls::ButtonStartupIssues>(button.host(), button);
  button.setFocus(Qt::TabFocusReason);
  EXPECT_TRUE(hasRing(drawn(button), button.palette()));
}

TEST_F(QtButtonTest, RingIsTwoSharpRingsOfTwoPointsAtEveryScale) {
  platform::qt::QtButton& button = shown("");
  button.setFocus(Qt::TabFocusReason);
  for (const double scale : kScales) {
    const QPalette palette = button.palette();
    QImage expected = blankPicture(120, 36, scale);
    const int outer = pixelOf(2, scale);
    const int inner = pixelOf(4, scale);
    setPixels(expected, 0, 0, expected.width(), expected.height(), platform::qt::surface(palette).rgba());
    setFrame(expected, inner, platform::qt::surface(palette).rgba());
    setFrame(expected, outer, platform::qt::focusColour(palette).rgba());
    EXPECT_TRUE(samePixels(drawn(button, scale), expected)) << scale;
  }
}

}  // namespace
}  // namespace zelvo::tests
