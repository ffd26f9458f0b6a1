#include "app/window_controls.h"

#include <utility>

#include "controls/button_startup_issues.h"
#include "controls/hover_button_settings_apply.h"
#include "controls/no_drag_movie_view.h"
#include "controls/view_clean_result.h"

namespace zelvo::app {

namespace {

/// The control follows its element, whoever enables or disables it.
void follow(controls::FilledButton& control, platform::BaseButton& base) {
  // The control tells its element before it notes its own state, and the element tells this again.
  base.setEnabledObserver([&control, isFollowing = false](bool enabled) mutable {
    if (isFollowing || control.disabled() == !enabled) return;
    isFollowing = true;
    control.setDisabled(!enabled);
    isFollowing = false;
  });
}

/// Makes an overlay and has it carried by `host`.
controls::ViewTransparent* carryOverlay(platform::ViewHost& host, const platform::Rect& frame,
                                        platform::NotificationCentre& centre) {
  auto overlay = controls::ViewTransparent::initWithFrame(frame, &host, centre);
  controls::ViewTransparent* const made = overlay.get();
  host.carry(std::move(overlay));
  return made;
}

}  // namespace

void WindowControls::dress(const platform::HostedViews& views) {
  // The pages lie on an overlay of their own, below all others, so that their buttons are gated like those of a panel.
  controls::ViewTransparent* const ground = carryOverlay(views.content, views.content.bounds(), centre_);
  for (const platform::HostedButton& button : views.pageButtons) {
    auto& control = platform::makeCarried<controls::ButtonStartupIssues>(button.host, button.base);
    control.setViewTransparent(ground);
    follow(control, button.base);
  }
  platform::makeCarried<controls::ViewCleanResult>(views.result);
  platform::makeCarried<controls::NoDragMovieView>(views.movie);
}

void WindowControls::buttonMade(const platform::HostedButton& button) {
  auto& control = platform::makeCarried<controls::HoverButtonSettingsApply>(button.host, button.base);
  control.setTitle(button.base.title());
  follow(control, button.base);
  panelButtons_[&button.host] = &control;
}

void WindowControls::buttonDestroyed(const platform::HostedButton& button) {
  button.base.setEnabledObserver({});
  panelButtons_.erase(&button.host);
}

void WindowControls::panelBegins(platform::ViewHost& overlay, const platform::Rect& frame,
                                 const std::vector<platform::ViewHost*>& buttons) {
  controls::ViewTransparent* const made = carryOverlay(overlay, frame, centre_);
  shownOverlays_[&overlay] = made;
  for (const platform::ViewHost* button : buttons) {
    const auto found = panelButtons_.find(button);
    if (found == panelButtons_.end()) continue;
    found->second->setViewTransparent(made);
    found->second->mouseExited({});
  }
}

void WindowControls::panelEnds(platform::ViewHost& overlay) {
  const auto found = shownOverlays_.find(&overlay);
  if (found == shownOverlays_.end()) return;
  found->second->postRemovedNotification();
  shownOverlays_.erase(found);
}

}  // namespace zelvo::app
