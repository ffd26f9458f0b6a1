/// The interface description as data: one borrowed reference per element, under its outlet's name. The window and the
/// headless screen both fill it. Two groups, since the controller and the repair job each have a `textfield` and these
/// are two elements; every other name that both bear is one element under both names.
#pragma once

#include "platform/elements.h"
#include "platform/movies.h"

namespace zelvo::platform {

/// What the repair job touches.
struct JobOutlets {
  TextField& textfield;  ///< the status line of the progress page
  TextField& videocodecfield;
  TextField& audiocodecfield;
  TextField& pathfield;  ///< the controller's `pathfield`
  Window& window;        ///< the controller's `mainWindow`
  Window& filenotsupportedwindow;
  Window& invalidfilewindow;
  Window& repaircompletedwindow;
  Window& stoprepairwindow;  ///< the controller's `stoprepairwindow`
  Button& stopbutton;        ///< the controller's `stopbutton`
  TabView& tabview2;         ///< the controller's `tabview`
  MovieView& movieview1;
  Button& filenotsupportedokbutton;
  Button& invalidfileokbutton;
  Button& repaircompletedokbutton;
  Button& previewbutton;  ///< the controller's `previewbutton`
  TextField& minutestextfield;
  TextField& secondstextfield;
  TextField& hourstextfield;
};

}  // namespace zelvo::platform
