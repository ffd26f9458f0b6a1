#include "platform/headless/screen.h"

#include <algorithm>
#include <utility>

namespace zelvo::platform::headless {

namespace {

/// On the headless screen every window is a HeadlessWindow.
HeadlessWindow& headless(Window& window) { return dynamic_cast<HeadlessWindow&>(window); }

}  // namespace

void HeadlessSheets::beginSheet(Window& sheet, Window& over, std::function<bool()> stillWanted) {
  queue_.perform([this, &sheet = headless(sheet), &over = headless(over), wanted = std::move(stillWanted)] {
    if (wanted && !wanted()) {
      if (events_ != nullptr) events_->add("beginSheet(" + sheet.name() + ") dropped");
      return;
    }
    if (events_ != nullptr) events_->add("beginSheet(" + sheet.name() + ", " + over.name() + ")");
    sheet.setVisible(true);
    const std::lock_guard lock(mutex_);
    if (std::find(shown_.begin(), shown_.end(), &sheet) == shown_.end()) shown_.push_back(&sheet);
  });
}

void HeadlessSheets::endSheet(Window& sheet) {
  queue_.perform([this, &sheet = headless(sheet)] {
    if (events_ != nullptr) events_->add("endSheet(" + sheet.name() + ")");
    const std::lock_guard lock(mutex_);
    std::erase(shown_, &sheet);
  });
}

std::vector<std::string> HeadlessSheets::shown() const {
  const std::lock_guard lock(mutex_);
  std::vector<std::string> names;
  for (const HeadlessWindow* sheet : shown_) names.push_back(sheet->name());
  return names;
}

Screen::Screen(Events* events)
    : status("textfield", events),
      videocodecfield("videocodecfield", events),
      audiocodecfield("audiocodecfield", events),
      pathfield("pathfield", events),
      mainWindow("mainWindow", events),
      filenotsupportedwindow("filenotsupportedwindow", events),
      invalidfilewindow("invalidfilewindow", events),
      repaircompletedwindow("repaircompletedwindow", events),
      stoprepairwindow("stoprepairwindow", events),
      stopbutton("stopbutton", events),
      tabview("tabview", events),
      movieview1("movieview1", events),
      filenotsupportedokbutton("filenotsupportedokbutton", events),
      invalidfileokbutton("invalidfileokbutton", events),
      repaircompletedokbutton("repaircompletedokbutton", events),
      previewbutton("previewbutton", events),
      minutestextfield("minutestextfield", events),
      secondstextfield("secondstextfield", events),
      hourstextfield("hourstextfield", events),
      movieview("movieview", events),
      browsebutton("browsebutton", events),
      chosenpath("controller.textfield", events),
      repairbutton("repairbutton", events),
      pathlabel("pathlabel", events),
      progressbar("progressbar", events),
      savebutton("savebutton", events),
      clickherebutton("clickherebutton", events),
      downloadmplayertext("downloadmplayertext", events),
      downloadmplayertext1("downloadmplayertext1", events),
      downloadmplayertext2("downloadmplayertext2", events),
      downloadmplayertext3("downloadmplayertext3", events),
      downloadmplayertext4("downloadmplayertext4", events),
      durationfield("durationfield", events),
      main1("main1", events),
      main2("main2", events),
      main3("main3", events),
      help1("help1", events),
      help2("help2", events),
      help3("help3", events),
      update1("update1", events),
      update2("update2", events),
      update3("update3", events),
      filenotselectedwindow("filenotselectedwindow", events),
      filenotselectedokbutton("filenotselectedokbutton", events),
      stoprepairokbutton("stoprepairokbutton", events),
      stoprepaircancelbutton("stoprepaircancelbutton", events),
      saveprogresspanel("saveprogresspanel", events),
      saveprogressbar("saveprogressbar", events),
      stopsavingbutton("stopsavingbutton", events),
      stopsavingwindow("stopsavingwindow", events),
      stopsavingOKbutton("stopsavingOKbutton", events),
      stopsavingCancelbutton("stopsavingCancelbutton", events),
      savecompletedwindow("savecompletedwindow", events),
      savecompletedokbutton("savecompletedokbutton", events),
      savecompletedtext("savecompletedtext", events),
      PreviewErrorWindow("PreviewErrorWindow", events),
      PreviewErrorokbutton("PreviewErrorokbutton", events),
      job{.textfield = status,
          .videocodecfield = videocodecfield,
          .audiocodecfield = audiocodecfield,
          .pathfield = pathfield,
          .window = mainWindow,
          .filenotsupportedwindow = filenotsupportedwindow,
          .invalidfilewindow = invalidfilewindow,
          .repaircompletedwindow = repaircompletedwindow,
          .stoprepairwindow = stoprepairwindow,
          .stopbutton = stopbutton,
          .tabview2 = tabview,
          .movieview1 = movieview1,
          .filenotsupportedokbutton = filenotsupportedokbutton,
          .invalidfileokbutton = invalidfileokbutton,
          .repaircompletedokbutton = repaircompletedokbutton,
          .previewbutton = previewbutton,
          .minutestextfield = minutestextfield,
          .secondstextfield = secondstextfield,
          .hourstextfield = hourstextfield},
      controller{.mainWindow = mainWindow,
                 .tabview = tabview,
                 .movieview = movieview,
                 .browsebutton = browsebutton,
                 .textfield = chosenpath,
                 .pathfield = pathfield,
                 .repairbutton = repairbutton,
                 .pathlabel = pathlabel,
                 .progressbar = progressbar,
                 .stopbutton = stopbutton,
                 .previewbutton = previewbutton,
                 .savebutton = savebutton,
                 .clickherebutton = clickherebutton,
                 .downloadmplayertext = downloadmplayertext,
                 .downloadmplayertext1 = downloadmplayertext1,
                 .downloadmplayertext2 = downloadmplayertext2,
                 .downloadmplayertext3 = downloadmplayertext3,
                 .downloadmplayertext4 = downloadmplayertext4,
                 .durationfield = durationfield,
                 .main1 = main1,
                 .main2 = main2,
                 .main3 = main3,
                 .help1 = help1,
                 .help2 = help2,
                 .help3 = help3,
                 .update1 = update1,
                 .update2 = update2,
                 .update3 = update3,
                 .filenotselectedwindow = filenotselectedwindow,
                 .filenotselectedokbutton = filenotselectedokbutton,
                 .stoprepairwindow = stoprepairwindow,
                 .stoprepairokbutton = stoprepairokbutton,
                 .stoprepaircancelbutton = stoprepaircancelbutton,
                 .saveprogresspanel = saveprogresspanel,
                 .saveprogressbar = saveprogressbar,
                 .stopsavingbutton = stopsavingbutton,
                 .stopsavingwindow = stopsavingwindow,
                 .stopsavingOKbutton = stopsavingOKbutton,
                 .stopsavingCancelbutton = stopsavingCancelbutton,
                 .savecompletedwindow = savecompletedwindow,
                 .savecompletedokbutton = savecompletedokbutton,
                 .savecompletedtext = savecompletedtext,
                 .PreviewErrorWindow = PreviewErrorWindow,
                 .PreviewErrorokbutton = PreviewErrorokbutton,
                 .own = {.chosenfilm = chosenfilm,
                         .runprogress = runprogress,
                         .filmreport = filmreport,
                         .rejectionreason = rejectionreason,
                         .workingfoldertext = workingfoldertext,
                         .workingfolderbutton = workingfolderbutton,
                         .waitingtext = waitingtext,
                         .savedsizelabel = savedsizelabel,
                         .invalidfilehead = invalidfilehead,
                         .invalidfiletext = invalidfiletext,
                         .savedbytestext = savedbytestext,
                         .savecompletedhead = savecompletedhead}} {
  previewbutton.setTwoState(true);
}

}  // namespace zelvo::platform::headless
