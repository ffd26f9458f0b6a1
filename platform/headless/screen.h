/// A whole window without a display: every element under its outlet's name, sheets that open and close at once, and a
/// log that lands in the same list of events.
#pragma once

#include <string>
#include <vector>

#include "platform/headless/elements.h"
#include "platform/headless/events.h"
#include "platform/headless/own_elements.h"
#include "platform/log.h"
#include "platform/main_queue.h"
#include "platform/outlets.h"
#include "platform/sheets.h"

namespace zelvo::platform::headless {

/// Log lines as events "log: TEXT".
class HeadlessLog final : public Log {
 public:
  explicit HeadlessLog(Events* events, bool tracesPositions = false)
      : events_(events), tracesPositions_(tracesPositions) {}
  void line(std::string_view text) override {
    if (events_ != nullptr) events_->add("log: " + std::string(text));
  }
  [[nodiscard]] bool tracesPositions() const override { return tracesPositions_; }

 private:
  Events* events_;
  bool tracesPositions_;
};

/// Sheets whose openings and ends are taken to the main queue, as a window would.
class HeadlessSheets final : public Sheets {
 public:
  HeadlessSheets(MainQueue& queue, Events* events) : queue_(queue), events_(events) {}
  void beginSheet(Window& sheet, Window& over, std::function<bool()> stillWanted) override;
  void endSheet(Window& sheet) override;
  /// Names of the sheets that are up, the oldest first.
  [[nodiscard]] std::vector<std::string> shown() const;

 private:
  MainQueue& queue_;
  Events* events_;
  mutable std::mutex mutex_;
  std::vector<const HeadlessWindow*> shown_;
};

/// Without a list of events (nullptr) the elements only keep their state.
class Screen {
 public:
  explicit Screen(Events* events = nullptr);
  Screen(const Screen&) = delete;
  Screen& operator=(const Screen&) = delete;

  HeadlessTextField status;  ///< the job's `textfield`
  HeadlessTextField videocodecfield;
  HeadlessTextField audiocodecfield;
  HeadlessTextField pathfield;
  HeadlessWindow mainWindow;
  HeadlessWindow filenotsupportedwindow;
  HeadlessWindow invalidfilewindow;
  HeadlessWindow repaircompletedwindow;
  HeadlessWindow stoprepairwindow;
  HeadlessButton stopbutton;
  HeadlessTabView tabview;
  HeadlessMovieView movieview1;
  HeadlessButton filenotsupportedokbutton;
  HeadlessButton invalidfileokbutton;
  HeadlessButton repaircompletedokbutton;
  HeadlessButton previewbutton;
  HeadlessTextField minutestextfield;
  HeadlessTextField secondstextfield;
  HeadlessTextField hourstextfield;

  HeadlessMovieView movieview;
  HeadlessButton browsebutton;
  HeadlessTextField chosenpath;  ///< the controller's `textfield`
  HeadlessButton repairbutton;
  HeadlessTextField pathlabel;
  HeadlessProgressBar progressbar;
  HeadlessButton savebutton;
  HeadlessButton clickherebutton;
  HeadlessTextField downloadmplayertext;
  HeadlessTextField downloadmplayertext1;
  HeadlessTextField downloadmplayertext2;
  HeadlessTextField downloadmplayertext3;
  HeadlessTextField downloadmplayertext4;
  HeadlessTextField durationfield;
  HeadlessButton main1;
  HeadlessButton main2;
  HeadlessButton main3;
  HeadlessButton help1;
  HeadlessButton help2;
  HeadlessButton help3;
  HeadlessButton update1;
  HeadlessButton update2;
  HeadlessButton update3;
  HeadlessWindow filenotselectedwindow;
  HeadlessButton filenotselectedokbutton;
  HeadlessButton stoprepairokbutton;
  HeadlessButton stoprepaircancelbutton;
  HeadlessWindow saveprogresspanel;
  HeadlessProgressBar saveprogressbar;
  HeadlessButton stopsavingbutton;
  HeadlessWindow stopsavingwindow;
  HeadlessButton stopsavingOKbutton;
  HeadlessButton stopsavingCancelbutton;
  HeadlessWindow savecompletedwindow;
  HeadlessButton savecompletedokbutton;
  HeadlessTextField savecompletedtext;
  HeadlessWindow PreviewErrorWindow;
  HeadlessButton PreviewErrorokbutton;

  HeadlessChosenFilm chosenfilm;
  HeadlessRunProgress runprogress;
  HeadlessFilmReport filmreport;
  HeadlessRejection rejectionreason;
  // Elements of ours only keep their state, so that a list of events holds the given steps and nothing else.
  HeadlessTextField workingfoldertext{"workingfoldertext", nullptr};
  HeadlessButton workingfolderbutton{"workingfolderbutton", nullptr};
  HeadlessTextField waitingtext{"waitingtext", nullptr};
  HeadlessTextField savedsizelabel{"savedsizelabel", nullptr};
  HeadlessSheetHead invalidfilehead{"invalidfilehead", nullptr};
  HeadlessTextField invalidfiletext{"invalidfiletext", nullptr};
  HeadlessTextField savedbytestext{"savedbytestext", nullptr};
  HeadlessSheetHead savecompletedhead{"savecompletedhead", nullptr};

  JobOutlets job;
  /// `stoprepairwindow`, `stopbutton`, `pathfield`, `previewbutton`, `tabview` and `mainWindow` are the job's elements.
  ControllerOutlets controller;
};

}  // namespace zelvo::platform::headless
