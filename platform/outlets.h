/// The interface description as data: one borrowed reference per element, under its outlet's name. The window and the
/// headless screen both fill it. Two groups, since the controller and the repair job each have a `textfield` and these
/// are two elements; every other name that both bear is one element under both names.
/// Decision: window, Two groups of outlets share elements
#pragma once

#include "platform/elements.h"
#include "platform/movies.h"
#include "platform/own_outlets.h"

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

/// What the controller touches.
struct ControllerOutlets {
  Window& mainWindow;
  TabView& tabview;
  MovieView& movieview;

  // Page 1: choosing.
  Button& browsebutton;
  TextField& textfield;  ///< the chosen path on the first page; not the job's `textfield`
  TextField& pathfield;
  Button& repairbutton;

  // Page 2: progress.
  TextField& pathlabel;
  ProgressBar& progressbar;
  Button& stopbutton;

  // Page 3: result. The hint reads text1, text2, the button, text3, text4.
  Button& previewbutton;  ///< two states
  Button& savebutton;
  Button& clickherebutton;
  TextField& downloadmplayertext;
  TextField& downloadmplayertext1;
  TextField& downloadmplayertext2;
  TextField& downloadmplayertext3;
  TextField& downloadmplayertext4;
  TextField& durationfield;  ///< size of the file saved last, in MiB

  // One of each on pages 1, 2 and 3.
  Button& main1;
  Button& main2;
  Button& main3;
  Button& help1;
  Button& help2;
  Button& help3;
  Button& update1;
  Button& update2;
  Button& update3;

  // Sheets with their elements.
  Window& filenotselectedwindow;
  Button& filenotselectedokbutton;
  Window& stoprepairwindow;
  Button& stoprepairokbutton;
  Button& stoprepaircancelbutton;
  Window& saveprogresspanel;
  ProgressBar& saveprogressbar;
  Button& stopsavingbutton;
  Window& stopsavingwindow;
  Button& stopsavingOKbutton;
  Button& stopsavingCancelbutton;
  Window& savecompletedwindow;
  Button& savecompletedokbutton;
  TextField& savecompletedtext;  ///< says whether the copy is whole
  Window& PreviewErrorWindow;
  Button& PreviewErrorokbutton;

  OwnOutlets own;
};

}  // namespace zelvo::platform
