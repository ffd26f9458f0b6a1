// A redraw is asked for after what it is to show has been stored: a host that draws at once shows the new look.
#include "controls/hover_button_settings_apply.h"
#include "controls/small_image_button.h"
#include "platform/headless/recording_canvas.h"
#include "tests/controls/button_bench.h"

namespace zelvo::tests {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::Not;

class HostThatDrawsAtOnce final : public platform::headless::RecordingViewHost {
 public:
  using RecordingViewHost::RecordingViewHost;
  void setNeedsDisplay() override {
    RecordingViewHost::setNeedsDisplay();
    paint();
  }
};

template <class Client>
class DrawnAtOnce : public ::testing::Test {
 protected:
  DrawnAtOnce() {
    button.setViewTransparent(overlay.view);
    events.clear();
  }
  Lines takeEvents() {
    Lines lines = events.lines();
    events.clear();
    return lines;
  }

  platform::headless::Events events;
  platform::NotificationCentre centre;
  CarriedOverlay overlay{centre, events};
  platform::headless::RecordingBaseButton base{"base", &events};
  HostThatDrawsAtOnce host{"button", events, {0, 0, 100, 24}, true};
  Client& button = platform::makeCarried<Client>(host, base);
};

using FilledButtonDrawnAtOnce = DrawnAtOnce<controls::HoverButtonSettingsApply>;
using ImageButtonDrawnAtOnce = DrawnAtOnce<controls::SmallImageButton>;

TEST_F(FilledButtonDrawnAtOnce, IsGreyWhenItIsDisabledAndBlueWhenItIsEnabled) {
  button.setDisabled(true);
  EXPECT_THAT(takeEvents(), Contains("setFillColour(0.5, 0.5, 0.5, 1)"));

  button.setDisabled(false);
  EXPECT_THAT(takeEvents(), Contains("setFillColour(0.0627, 0.5373, 0.8353, 1)"));
}

TEST_F(FilledButtonDrawnAtOnce, HasItsFrameWhenThePointerComesAndNoneWhenItGoes) {
  button.mouseEntered({});
  EXPECT_THAT(takeEvents(), Contains(HasSubstr("strokeRectWithWidth")));

  button.mouseExited({});
  EXPECT_THAT(takeEvents(), Not(Contains(HasSubstr("strokeRectWithWidth"))));
}

TEST_F(ImageButtonDrawnAtOnce, ShowsTheImagesThatItWasGiven) {
  platform::headless::RecordingImage normal{"close-1"};
  platform::headless::RecordingImage hover{"close-2"};
  button.setImageNormal(&normal, &hover);
  EXPECT_THAT(takeEvents(), Contains(HasSubstr("drawImage(close-1")));

  button.mouseEntered({});
  EXPECT_THAT(takeEvents(), Contains(HasSubstr("drawImage(close-2")));

  button.setImageNormal(nullptr, nullptr);
  EXPECT_THAT(takeEvents(), Not(Contains(HasSubstr("drawImage"))));
}

}  // namespace
}  // namespace zelvo::tests
