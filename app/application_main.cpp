#include "app/application_main.h"

namespace zelvo::app {

int applicationMain(platform::Application& application, Orlin_Repair_AVIAppDelegate& controller) {
  controller.init();
  controller.awakeFromNib();
  application.showMainWindow();
  controller.applicationDidFinishLaunching();
  const int status = application.run();
  controller.applicationWillTerminate();
  application.drainMainQueue();
  return status;
}

}  // namespace zelvo::app
