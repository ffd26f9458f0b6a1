#include "app/wire.h"

namespace zelvo::app {

namespace {

/// Connects buttons to members of one target.
template <class Target>
class Wiring {
 public:
  Wiring(platform::Actions& actions, Target& target) : actions_(actions), target_(target) {}
  void connect(platform::Button& button, void (Target::*action)(platform::Button*)) {
    actions_.connect(button, [&target = target_, action](platform::Button& sender) { (target.*action)(&sender); });
  }

 private:
  platform::Actions& actions_;
  Target& target_;
};

}  // namespace

void wire(Orlin_Repair_AVIAppDelegate& controller, const platform::JobOutlets& job, platform::Actions& actions,
          platform::Application& application) {
  using Controller = Orlin_Repair_AVIAppDelegate;
  const platform::ControllerOutlets& outlets = controller.outlets;
  Wiring<Controller> window(actions, controller);

  window.connect(outlets.browsebutton, &Controller::openFinderWindow);
  window.connect(outlets.own.workingfolderbutton, &Controller::chooseWorkingFolder);
  window.connect(outlets.repairbutton, &Controller::repair);
  window.connect(outlets.filenotselectedokbutton, &Controller::fileNotSelectedOk);
  window.connect(outlets.stopbutton, &Controller::stopProgress);
  window.connect(outlets.stoprepairokbutton, &Controller::stopRepairOk);
  window.connect(outlets.stoprepaircancelbutton, &Controller::stopRepairCancel);
  window.connect(outlets.previewbutton, &Controller::preview);
  window.connect(outlets.clickherebutton, &Controller::clickhere);
  window.connect(outlets.PreviewErrorokbutton, &Controller::PreviewErrorOk);
  window.connect(outlets.savebutton, &Controller::save);
  window.connect(outlets.stopsavingbutton, &Controller::stopSaving);
  window.connect(outlets.stopsavingOKbutton, &Controller::stopSavingOk);
  window.connect(outlets.stopsavingCancelbutton, &Controller::continueSaving);
  window.connect(outlets.savecompletedokbutton, &Controller::saveCompletedOk);
  window.connect(outlets.main3, &Controller::main3);
  window.connect(outlets.help1, &Controller::help1);
  window.connect(outlets.help2, &Controller::help2);
  window.connect(outlets.help3, &Controller::help3);
  window.connect(outlets.update1, &Controller::checkForUpdateClicked);
  window.connect(outlets.update2, &Controller::checkForUpdateClicked);
  window.connect(outlets.update3, &Controller::checkForUpdateClicked);

  Wiring<engine::RepairFile> repair(actions, *controller.repair1);
  repair.connect(job.repaircompletedokbutton, &engine::RepairFile::repairCompletedOk);
  repair.connect(job.filenotsupportedokbutton, &engine::RepairFile::fileNotSupportedokOk);
  repair.connect(job.invalidfileokbutton, &engine::RepairFile::invalidFileOk);

  application.setTerminationHandler([&controller] { controller.terminateApplication(nullptr); });
}

}  // namespace zelvo::app
