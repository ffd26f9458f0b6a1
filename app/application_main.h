/// The life of the program once its window is built.
#pragma once

#include "app/controller.h"
#include "platform/application.h"

namespace zelvo::app {

/// Wakes the controller, shows the window, lets the application finish launching, serves events until it is terminated,
/// and ends every thread. The window is on the screen before the update check of the start-up can keep it waiting.
/// Decision: update, The window is painted before the check
/// \return the exit status
/// Thread: main.
int applicationMain(platform::Application& application, Orlin_Repair_AVIAppDelegate& controller);

}  // namespace zelvo::app
