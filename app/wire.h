/// Which button does what.
#pragma once

#include "app/controller.h"
#include "platform/actions.h"
#include "platform/application.h"
#include "platform/outlets.h"

namespace zelvo::app {

/// Connects every button of both outlet groups to its action, and the system's request to end to
/// `terminateApplication:`. `main1` and `main2` have no action: they are marks of their pages.
/// Thread: main.
void wire(Orlin_Repair_AVIAppDelegate& controller, const platform::JobOutlets& job, platform::Actions& actions,
          platform::Application& application);

}  // namespace zelvo::app
