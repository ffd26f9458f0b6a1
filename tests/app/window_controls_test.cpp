#include "app/window_controls.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "controls/button_startup_issues.h"
#include "controls/hover_button_settings_apply.h"
#include "controls/no_drag_movie_view.h"
#include "controls/view_clean_result.h"
#include "platform/headless/view_host.h"

namespace zelvo::tests {
namespace {

using controls::ViewTransparent;
using platform::headless::RecordingBaseButton;
using platform::headless::RecordingViewHost;

/// A button as a window makes it: a host and what is pressed.
struct MadeButton {
  MadeButton(const std::string& name, platform::headless::Events& events)
      : host(name, events, {0, 0, 100, 24}, true), base(name + ".base", &events) {}
  [[nodiscard]] platform::HostedButton hosted() { return {host, base}; }

  RecordingViewHost host;
  RecordingBaseButton base;
};

template <class Client>
bool carries(const RecordingViewHost& host) {
  return dynamic_cast<const Client*>(host.client()) != nullptr;
}
template <class Client>
Client& carriedBy(const RecordingViewHost& host) {
  return dynamic_cast<Client&>(*host.client());
}

class WindowControls : public testing::Test {
 protected:
  WindowControls() {
    browse.base.setTitle("Choose");
    yes.base.setTitle("Yes");
    no.base.setTitle("No");
  }
  void dress() { controls.dress({content, result, movie, {browse.hosted(), save.hosted()}}); }
  void makePanelButtons() {
    controls.buttonMade(yes.hosted());
    controls.buttonMade(no.hosted());
  }
  void begin(RecordingViewHost& overlay, const std::vector<platform::ViewHost*>& buttons) {
    controls.panelBegins(overlay, {0, 0, 400, 300}, buttons);
  }
  /// Lets the pointer come to a button, and answers whether that lit it.
  template <class Button>
  static bool lights(const MadeButton& made) {
    auto& button = carriedBy<Button>(made.host);
    button.mouseExited({});
    button.mouseEntered({});
    return button.hovering();
  }
  bool pageLights() { return lights<controls::ButtonStartupIssues>(browse); }
  bool panelLights() { return lights<controls::HoverButtonSettingsApply>(yes); }

  platform::headless::Events events;
  platform::NotificationCentre centre;
  RecordingViewHost lowerOverlay{"lower overlay", events, {0, 0, 0, 0}};
  RecordingViewHost upperOverlay{"upper overlay", events, {0, 0, 0, 0}};
  RecordingViewHost content{"content", events, {0, 0, 960, 620}};
  RecordingViewHost result{"result", events, {0, 0, 500, 400}};
  RecordingViewHost movie{"movie", events, {0, 0, 480, 380}};
  MadeButton browse{"browse", events};
  MadeButton save{"save", events};
  MadeButton yes{"yes", events};
  MadeButton no{"no", events};
  app::WindowControls controls{centre};
};

TEST_F(WindowControls, EachElementOfThePagesCarriesItsControl) {
  dress();
  EXPECT_TRUE(carries<ViewTransparent>(content));
  EXPECT_TRUE(carries<controls::ViewCleanResult>(result));
  EXPECT_TRUE(carries<controls::NoDragMovieView>(movie));
  EXPECT_TRUE(carries<controls::ButtonStartupIssues>(browse.host));
  EXPECT_TRUE(carries<controls::ButtonStartupIssues>(save.host));
}

TEST_F(WindowControls, OverlayOfThePagesCoversTheContent) {
  dress();
  EXPECT_EQ(content.frame(), (platform::Rect{0, 0, 960, 620}));
}

TEST_F(WindowControls, PageButtonLightsUpWhileNoPanelIsShown) {
  dress();
  EXPECT_TRUE(pageLights());
}

TEST_F(WindowControls, PanelButtonShowsTheTitleOfItsElement) {
  controls.buttonMade(yes.hosted());
  ASSERT_TRUE(carries<controls::HoverButtonSettingsApply>(yes.host));
  EXPECT_EQ(carriedBy<controls::HoverButtonSettingsApply>(yes.host).title(), "Yes");
}

TEST_F(WindowControls, PanelButtonStaysDarkUntilItsPanelBegins) {
  makePanelButtons();
  EXPECT_FALSE(panelLights());
  begin(lowerOverlay, {&yes.host, &no.host});
  EXPECT_TRUE(panelLights());
  EXPECT_TRUE(lights<controls::HoverButtonSettingsApply>(no));
}

TEST_F(WindowControls, PanelLiesOnAnOverlayOfItsOwn) {
  makePanelButtons();
  begin(lowerOverlay, {&yes.host});
  ASSERT_TRUE(carries<ViewTransparent>(lowerOverlay));
  EXPECT_EQ(carriedBy<ViewTransparent>(lowerOverlay).viewsOverlaidCount(), 0);
  EXPECT_EQ(lowerOverlay.frame(), (platform::Rect{0, 0, 400, 300}));
}

TEST_F(WindowControls, PanelThatBeginsPutsTheLeftoverLightOfItsButtonsOut) {
  makePanelButtons();
  begin(lowerOverlay, {&yes.host});
  EXPECT_TRUE(panelLights());
  controls.panelEnds(lowerOverlay);

  begin(upperOverlay, {&yes.host});

  EXPECT_FALSE(carriedBy<controls::HoverButtonSettingsApply>(yes.host).hovering());
}

TEST_F(WindowControls, PanelAbovePutsPageAndLowerPanelInTheDark) {
  dress();
  makePanelButtons();
  begin(lowerOverlay, {&yes.host});
  EXPECT_FALSE(pageLights());
  begin(upperOverlay, {&no.host});
  EXPECT_FALSE(panelLights());
  EXPECT_TRUE(lights<controls::HoverButtonSettingsApply>(no));
}

TEST_F(WindowControls, PanelsThatEndInReverseOrderGiveTheLightBack) {
  dress();
  makePanelButtons();
  begin(lowerOverlay, {&yes.host});
  begin(upperOverlay, {&no.host});
  controls.panelEnds(upperOverlay);
  EXPECT_TRUE(panelLights());
  EXPECT_FALSE(pageLights());
  controls.panelEnds(lowerOverlay);
  EXPECT_TRUE(pageLights());
}

// Deliberate: every overlay that lives counts one less for one that goes, also one that came later.
TEST_F(WindowControls, PanelWhoseLowerOneEndedFirstStaysDark) {
  makePanelButtons();
  begin(lowerOverlay, {&yes.host});
  begin(upperOverlay, {&no.host});
  controls.panelEnds(lowerOverlay);
  EXPECT_EQ(carriedBy<ViewTransparent>(upperOverlay).viewsOverlaidCount(), -1);
  EXPECT_FALSE(lights<controls::HoverButtonSettingsApply>(no));
}

TEST_F(WindowControls, EndOfAPanelIsAnnouncedOnce) {
  dress();
  begin(lowerOverlay, {});
  controls.panelEnds(lowerOverlay);
  controls.panelEnds(lowerOverlay);
  EXPECT_EQ(carriedBy<ViewTransparent>(content).viewsOverlaidCount(), 0);
}

TEST_F(WindowControls, EndOfAPanelThatNeverBeganIsNotAnnounced) {
  dress();
  controls.panelEnds(upperOverlay);
  EXPECT_EQ(carriedBy<ViewTransparent>(content).viewsOverlaidCount(), 0);
}

TEST_F(WindowControls, PanelThatBeginsAgainGetsANewOverlay) {
  dress();
  makePanelButtons();
  begin(lowerOverlay, {&yes.host});
  controls.panelEnds(lowerOverlay);
  begin(upperOverlay, {&yes.host});
  EXPECT_TRUE(panelLights());
  EXPECT_EQ(carriedBy<ViewTransparent>(content).viewsOverlaidCount(), 1);
}

TEST_F(WindowControls, ControlsFollowWhoeverEnablesTheirElements) {
  dress();
  makePanelButtons();
  browse.base.setEnabled(false);
  yes.base.setEnabled(false);
  EXPECT_TRUE(carriedBy<controls::ButtonStartupIssues>(browse.host).disabled());
  EXPECT_TRUE(carriedBy<controls::HoverButtonSettingsApply>(yes.host).disabled());
  browse.base.setEnabled(true);
  yes.base.setEnabled(true);
  EXPECT_FALSE(carriedBy<controls::ButtonStartupIssues>(browse.host).disabled());
  EXPECT_FALSE(carriedBy<controls::HoverButtonSettingsApply>(yes.host).disabled());
}

TEST_F(WindowControls, ElementThatIsDisabledAlreadyGetsADisabledControl) {
  save.base.setEnabled(false);
  dress();
  EXPECT_TRUE(carriedBy<controls::ButtonStartupIssues>(save.host).disabled());
}

TEST_F(WindowControls, ElementFollowsItsControl) {
  dress();
  carriedBy<controls::ButtonStartupIssues>(browse.host).setDisabled(true);
  EXPECT_FALSE(browse.base.element().isEnabled());
}

TEST_F(WindowControls, ButtonThatGoesIsForgotten) {
  makePanelButtons();
  controls.buttonDestroyed(yes.hosted());
  yes.host.carry(nullptr);
  yes.base.setEnabled(false);
  begin(lowerOverlay, {&yes.host, &no.host});
  EXPECT_TRUE(lights<controls::HoverButtonSettingsApply>(no));
}

}  // namespace
}  // namespace zelvo::tests
