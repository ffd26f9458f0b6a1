/// Which self-drawn control each element of the window carries, and what the overlays between the window's content and
/// its panels mean to the buttons: those of a page or a panel light up only while nothing later lies above it.
#pragma once

#include <map>

#include "controls/filled_button.h"
#include "controls/view_transparent.h"
#include "platform/hosted_views.h"
#include "platform/notification_centre.h"
#include "platform/panel_controls.h"

namespace zelvo::app {

/// Thread: main.
class WindowControls final : public platform::PanelControls {
 public:
  /// `centre` outlives the elements.
  explicit WindowControls(platform::NotificationCentre& centre) : centre_(centre) {}

  /// Has the controls of the pages carried. Once.
  void dress(const platform::HostedViews& views);

  void buttonMade(const platform::HostedButton& button) override;
  void buttonDestroyed(const platform::HostedButton& button) override;
  void panelBegins(platform::ViewHost& overlay, const platform::Rect& frame,
                   const std::vector<platform::ViewHost*>& buttons) override;
  void panelEnds(platform::ViewHost& overlay) override;

 private:
  platform::NotificationCentre& centre_;
  std::map<const platform::ViewHost*, controls::HoveringButton*> panelButtons_;
  std::map<const platform::ViewHost*, controls::ViewTransparent*> shownOverlays_;
};

}  // namespace zelvo::app
