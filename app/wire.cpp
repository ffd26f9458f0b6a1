#include "app/wire.h"

namespace zelvo::app {

namespace {

/// Connects buttons to members of the controller.
class Wiring {
 public:
  Wiring(platform::Actions& actions, Orlin_Repair_AVIAppDelegate& target) : actions_(actions), target_(target) {}
  void connect(platform::Button& button, void (Orlin_Repair_AVIAppDelegate::*action)(platform::Button*)) {
    actions_.connect(button, [&target = target_, action](platform::Button& sender) { (target.*action)(&sender); });
  }

 private:
  platform::Actions& actions_;
  Orlin_Repair_AVIAppDelegate& target_;
};

}  // namespace

void wire(Orlin_Repair_AVIAppDelegate& controller, const platform::JobOutlets& job, platform::Actions& actions,
          platform::Application& application) {
  using Controller = Orlin_Repair_AVIAppDelegate;
  const platform::ControllerOutlets& outlets = controller.outlets;
  Wiring window(actions, controller);

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

  window.connect(job.repaircompletedokbutton, &Controller::answerCompletion);
  const auto connectRefusal = [&](platform::Button& button, void (engine::RepairFile::*answer)(platform::Button*)) {
    actions.connect(button,
                    [&controller, answer](platform::Button& sender) { controller.answerRefusal(answer, &sender); });
  };
  connectRefusal(job.filenotsupportedokbutton, &engine::RepairFile::fileNotSupportedokOk);
  connectRefusal(job.invalidfileokbutton, &engine::RepairFile::invalidFileOk);

  application.setTerminationHandler([&controller] { controller.terminateApplication(nullptr); });
}

}  // namespace zelvo::app
