/// The application's controller: every action of the window, one source per flow (start_up, input_selection,
/// run_control, run_end, preview, save, save_progress, navigation, hover, update_check, inventory). Longer than other
/// headers, since it is one class with the members of all flows. Percent is 0 to 100. Main thread, unless a member says
/// otherwise.
///
/// Order of use: construct, `init`, `awakeFromNib`, show the window, `applicationDidFinishLaunching`, serve events,
/// `applicationWillTerminate`, drain the main queue, destroy (see app/application_main.h).
#pragma once

#include <cstdint>
#include <initializer_list>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "app/app_services.h"
#include "app/counted_files.h"
#include "app/explained_sheets.h"
#include "app/run_guard.h"
#include "app/scratch_path.h"
#include "app/shown_size.h"
#include "avi/write_failure.h"
#include "engine/padded_copy.h"
#include "engine/progress_relay.h"
#include "engine/repair_file.h"
#include "platform/attributed_text.h"
#include "platform/guarded.h"
#include "platform/outlets.h"
#include "platform/relaxed.h"
#include "storage/entry.h"

namespace zelvo::app {

class Orlin_Repair_AVIAppDelegate final : public engine::ProgressRelay,
                                          public platform::TrackingOwner,
                                          public platform::WindowDelegate {
 public:
  Orlin_Repair_AVIAppDelegate(const AppServices& services, const platform::ControllerOutlets& controllerOutlets,
                              const platform::JobOutlets& jobOutlets);
  Orlin_Repair_AVIAppDelegate(const Orlin_Repair_AVIAppDelegate&) = delete;
  Orlin_Repair_AVIAppDelegate& operator=(const Orlin_Repair_AVIAppDelegate&) = delete;
  /// Does what `applicationWillTerminate` does, if that was not called.
  ~Orlin_Repair_AVIAppDelegate() override;

  // ---- Start-up, main window, quit (start_up.cpp) ----
  void init();
  /// Does nothing. Thread: one of its own.
  void emptyThread();
  void awakeFromNib();
  /// `applicationDidFinishLaunching:`
  void applicationDidFinishLaunching();
  void makeMainWindowFrontThread();
  void makeMainWindowFront();
  /// `windowShouldClose:` asks; true unless the answer is "Cancel".
  [[nodiscard]] bool windowShouldClose() override;
  /// `windowWillClose:`
  void windowWillClose() override;
  /// `terminateApplication:`
  void terminateApplication(platform::Button* sender);
  void terminateApp();
  /// `applicationWillTerminate:` ends every run and save, waits for all threads and removes the scratch files.
  void applicationWillTerminate();
  [[nodiscard]] platform::Window* window() const { return window_; }
  void setWindow(platform::Window* window) { window_ = window; }
  /// Path of the rebuilt file; nothing before one was handed over. Thread: any.
  [[nodiscard]] std::optional<std::string> unipath() const { return unipath_.get(); }
  void setUnipath(std::optional<std::string> path) { unipath_.set(std::move(path)); }

  // ---- Input selection (input_selection.cpp) ----
  /// `openFinderWindow:` shows the chooser.
  void openFinderWindow(platform::Button* sender);
  /// `openPanelDidEnd:returnCode:contextInfo:` the completion step for delegate-style panels; also logs the size.
  void openPanelDidEnd(platform::OpenPanel& openPanel, int returnCode, void* contextInfo);
  /// Chooses a file without the chooser (dropped on the window, named at the start): the same extensions, the same
  /// step. The window asks on page 1 without a sheet only. False when the file cannot be chosen, or a run is at work.
  /// Decision: window, A dropped film takes the chooser's way
  bool chooseFile(const std::string& file);
  /// The same; says so when it is no film that can be chosen.
  void offerFile(const std::string& file);

  // ---- Run control (run_control.cpp, run_end.cpp) ----
  /// `repair:`
  void repair(platform::Button* sender);
  /// Shows a chooser for the folder that rebuilt files lie in until they are saved.
  void chooseWorkingFolder(platform::Button* sender);
  /// `stopProgress:` asks whether to stop. Thread: any.
  void stopProgress(platform::Button* sender);
  /// Runs `stopProgress` on a thread of its own. No flow calls it.
  void stopit();
  /// The button of a sheet about the run, which does `answer`. A refused film, and what the result page shows from then
  /// on, is told to the observer.
  void answerRefusal(void (engine::RepairFile::*answer)(platform::Button*), platform::Button* sender);
  void answerCompletion(platform::Button* sender);
  /// `stopRepairOk:`
  void stopRepairOk(platform::Button* sender);
  /// `stopRepairCancel:`
  void stopRepairCancel(platform::Button* sender);
  /// `fileNotSelectedOk:`
  void fileNotSelectedOk(platform::Button* sender);
  /// `setProgressBarValue:` Thread: any; from a worker, a store and a look at a mark.
  void setProgressBarValue(double percent) override;
  /// `updateProgressBar:`
  void updateProgressBar() override;
  /// `updateSaveProgressBar:` Deliberate: shows the value in the repair bar.
  void updateSaveProgressBar() override;
  /// `updateSaveProgressBar2:`
  void updateSaveProgressBar2() override;
  /// `updateProgressBarRetrieve:` fills the repair bar step by step. No flow calls it. Thread: any.
  void updateProgressBarRetrieve(platform::Button* sender);
  /// Sleeps a second, then shows the progress and waits for that. No flow calls it. Thread: any.
  void nexttab();
  /// Runs `tabset` on the main thread and waits. No flow calls it. Thread: any.
  void copyfile();
  /// Does nothing.
  void tabset();
  /// Back to the first page after an unsupported file. No flow calls it.
  void methodForFileNotSupported();

  // ---- Preview (preview.cpp) ----
  /// `setMovieView:` Thread: the repair worker.
  void setMovieView(const std::string& path) override;
  /// `preview:`
  void preview(platform::Button* sender);
  /// `movieDidEnd:`
  void movieDidEnd(const platform::Notification& notification);
  /// `clickhere:`
  void clickhere(platform::Button* sender);
  /// `PreviewErrorOk:`
  void PreviewErrorOk(platform::Button* sender);
  /// `hyperlinkFromString:withURL:`
  [[nodiscard]] static platform::AttributedText hyperlinkFromString(std::string_view text, std::string_view withURL);

  // ---- Save (save.cpp, save_progress.cpp) ----
  /// `save:`
  void save(platform::Button* sender);
  /// `savePanelDidEnd:returnCode:contextInfo:`
  void savePanelDidEnd(platform::SavePanel& panel, int returnCode, void* contextInfo);
  /// The copy. Blocks the main thread; redraws go on.
  void saveFile();
  /// The progress of a save; ends early when `cancel` is set. Thread: a worker of its own.
  void savemethod(const std::shared_ptr<platform::CancelMark>& cancel);
  /// `stopSaving:`
  void stopSaving(platform::Button* sender);
  /// `stopSavingOk:`
  void stopSavingOk(platform::Button* sender);
  /// `continueSaving:`
  void continueSaving(platform::Button* sender);
  /// `saveCompletedOk:`
  void saveCompletedOk(platform::Button* sender);
  /// Another progress of a save. No flow calls it. Thread: any.
  void saveProgressbarUpdate();
  /// Another save, of the whole file at once. No flow calls it.
  void savemethod2();
  /// `saveData:` asks for a folder and does nothing with it. No flow calls it.
  void saveData(platform::Button* sender);
  /// What the save panel must know about a name: it may not lead to the damaged file.
  [[nodiscard]] platform::NameVerdict judgeSaveName(const std::string& path);

  // ---- Navigation and help (navigation.cpp) ----
  /// `main3:` Home on the result page.
  void main3(platform::Button* sender);
  /// `help1:`, `help2:`, `help3:`
  void help1(platform::Button* sender);
  void help2(platform::Button* sender);
  void help3(platform::Button* sender);
  /// `showAlertPanelWithData:` keys "title", "body", "defaultButton", "alternateButton", "otherButton".
  void showAlertPanelWithData(const std::map<std::string, std::string>& data);
  /// `stringIsNumeric:` true when every character is one of "0" to "9"; so it is for an empty text.
  [[nodiscard]] static bool stringIsNumeric(std::string_view text);

  // ---- Hover pictures (hover.cpp) ----
  /// `mouseEntered:`, `mouseExited:`, `mouseDragged:`
  void mouseEntered(const platform::TrackingEvent& event) override;
  void mouseExited(const platform::TrackingEvent& event) override;
  void mouseDragged(const platform::TrackingEvent& event);
  /// `handleEnteredExited:withTrackingDict:`
  void handleEnteredExited(bool entered, const platform::TrackingDictionary* withTrackingDict);
  /// `getTrackerIDFromDict:` 0 when the key is missing.
  [[nodiscard]] static std::int64_t getTrackerIDFromDict(const platform::TrackingDictionary& dictionary);

  // ---- Update check (update_check.cpp) ----
  [[nodiscard]] bool checkForUpdate();
  /// `checkForUpdateClicked:`
  void checkForUpdateClicked(platform::Button* sender);
  void update();
  void autoUpdateScan();
  void autoUpdateScanningThread();
  void copyUpdator();
  void updateCleanupThread();
  [[nodiscard]] bool isInternetAvailable();
  /// `isWriteDeletablePath:`
  [[nodiscard]] bool isWriteDeletablePath(const std::string& path);
  /// `md5:` 32 lower-case hexadecimal digits; nothing for absent data.
  [[nodiscard]] std::optional<std::string> md5(std::optional<std::span<const std::byte>> data);
  /// `hashString:`
  [[nodiscard]] std::optional<std::string> hashString(const std::string& text);

  // ---- Inventory (inventory.cpp) ----
  /// Reads the machine's storage again and fills both arrays.
  void initialDriveList();
  /// Appends the mounted volumes to `finalArrayForVolumes`.
  void volumeList();
  /// Tidies the texts of `responseFindMedia`.
  void truncateDriveModelNumber();

  // ---- Fields ----
  const platform::ControllerOutlets outlets;
  std::unique_ptr<engine::RepairFile> repair1;
  std::shared_ptr<platform::OpenPanel> panel;
  std::shared_ptr<platform::SavePanel> savepanel;
  std::shared_ptr<platform::Worker> mythread;
  platform::Relaxed<double> progressbarValue;  ///< last value handed over by a worker
  platform::Button* sendermain = nullptr;      ///< the control that started the last repair
  platform::AttributedText string;             ///< the "click here" link
  std::optional<platform::FixedPath> mplayerpathinApplicationsfolder;
  std::string mplayerpathinDownloadsfolder;
  bool existsinApplicationsfolder = false;
  bool existsinDownloadsfolder = false;
  bool mplayerinstalled = false;
  int result = 0;  ///< answer of the last quit panel
  int alertResultValue = 0;
  platform::FileManager* inputFileManager = nullptr;
  platform::FileManager* outputFileManager = nullptr;
  platform::Guarded<std::shared_ptr<platform::Movie>> video;
  std::string savingNameFromUser;
  platform::Relaxed<std::int32_t> stopvalue;  ///< 1 once the user confirmed that the save be stopped
  bool scanInfoOrSavingNotProcessing = false;
  storage::Entries responseFindMedia;
  storage::Entries finalArrayForVolumes;

  /// Mouse-inside marks. Deliberate: nothing sets them, so leaving one control resets the pictures of all.
  std::uint8_t inTrackArea1 = 0, inTrackArea2 = 0, inTrackArea3 = 0, inTrackArea4 = 0, inTrackArea5 = 0,
               inTrackArea6 = 0, inTrackArea7 = 0, inTrackArea8 = 0, inTrackArea9 = 0, inTrackArea10 = 0,
               inTrackArea11 = 0, inTrackArea12 = 0, inTrackArea13 = 0, inTrackArea14 = 0, inTrackArea15 = 0,
               inTrackArea16 = 0;
  using AreaReference = std::shared_ptr<const platform::TrackingArea>;
  AreaReference trackingAreaRepair, trackingAreaMain1, trackingAreaMain2, trackingAreaMain3, trackingAreaHelp1,
      trackingAreaHelp2, trackingAreaHelp3, trackingAreaUpdate1, trackingAreaUpdate2, trackingAreaUpdate3,
      trackingAreaclickhere;

 private:
  /// The run that the window shows.
  struct ShownRun {
    std::uint64_t number = 0;
    std::shared_ptr<engine::Run> run;
    bool atWork = true;
    std::optional<platform::FilmVerdict> verdict = {};  ///< once it is known
    bool isResultShown = false;
  };

  void openPanelEnded(const platform::OpenPanel& openPanel, int returnCode, bool logsSize);
  void fileChosen(const std::string& file, bool logsSize);
  /// A text of the application's own, in the language of whoever reads it; "%1" and so on are the values.
  [[nodiscard]] std::string translated(std::string_view english,
                                       std::initializer_list<std::string_view> values = {}) const {
    return platform::filled(services_.translator.translated(english), values);
  }
  [[nodiscard]] std::string sizeWords(std::uint64_t bytes) const { return shownSize(bytes, services_.translator); }
  /// An alert with one button: what the user named does not answer.
  void reportNotAnswering(std::string_view title);
  /// Asks the place of a save, and beside it the input, before anything of them is looked at. True when the place
  /// answers; whether the input does is kept in `inputAnswers_`.
  [[nodiscard]] bool placeAnswers(const std::string& folder);
  void forgetPath();
  void endAndHide(platform::Window& sheet);
  void buildTipsLink();
  void lookForPlayer();
  void showHintFor(bool playerIsThere);
  /// Leaves `mythread` empty where the system gives no thread.
  void startRun();
  void runDidNotStart();
  /// Free room in `folder` against what the chosen film needs, in words.
  [[nodiscard]] std::string roomIn(const std::string& folder);
  void showWorkingFolder();
  void reportNoWorkingFolder();
  void useWorkingFolder(const std::string& folder);
  /// Has the invalid-file sheet say why. Thread: the repair worker.
  void explainInvalidInput(const engine::Run& run);
  /// Removes what a run wrote that nobody shows any more; another run may not have begun yet, or writes elsewhere.
  /// Thread: the repair worker, or main.
  void removeLeftover(std::uint64_t number, const engine::Run& run);
  void workOn(std::uint64_t number, const std::shared_ptr<engine::Run>& run);
  void runEnded(std::uint64_t number, const engine::Run& run, const std::optional<avi::WriteFailure>& failure);
  void abandonShownRun();
  /// Tells what the shown run kept, once the result page shows it.
  void tellJudgement();
  void reportWriteFailure(const engine::Run& run, const avi::WriteFailure& failure);
  /// True at once when no rebuilt file is being written; otherwise shows the notice and answers whether the file is
  /// there now.
  [[nodiscard]] bool waitForRebuiltFile();
  [[nodiscard]] double writtenPercent() const;
  /// How far the run of that number is; nothing while it is not at work.
  [[nodiscard]] platform::RunProgress runProgress(std::uint64_t number) const;
  /// Removes a rebuilt file. What stands there and is no regular file stays.
  void removeScratch(const std::string& scratch);
  /// Answers why the copy is not whole, in sentences; nothing when it is.
  [[nodiscard]] std::optional<std::string> copyRebuiltFile(std::uint64_t size);
  /// The same for what could not be read of the rebuilt file.
  [[nodiscard]] std::optional<std::string> missingInCopy(std::uint64_t size, const std::error_code& opening,
                                                         const engine::PaddedCopyEnd& end) const;
  void reportSaved(const std::optional<std::string>& incomplete);
  [[nodiscard]] std::uint64_t sizeOf(const std::string& file);
  void showSaveProgress(double percent);
  void installTrackingAreas();

  AppServices services_;
  platform::Window* window_;
  CountedFiles countedFiles_;
  RunGuard runGuard_;
  ExplainedSheets sheetsOfRuns_;
  const engine::Run* runAtWork_ = nullptr;  ///< Thread: the repair worker
  ScratchPath scratchPath_;
  platform::Guarded<std::optional<std::string>> unipath_;
  platform::Relaxed<std::uint64_t> rebuiltSize_;  ///< bytes of the rebuilt file when it was handed over
  platform::Relaxed<double> saveProgress_;        ///< what the save bar is to show
  platform::Relaxed<std::uint64_t> bytesToWrite_;
  platform::CoalescedOperation repairButtonOff_;
  platform::CoalescedOperation updateSaveProgressBar2_;
  platform::CoalescedOperation saveProgressBar_;
  std::optional<ShownRun> shownRun_;
  std::shared_ptr<platform::Worker> lastWorker_;           ///< of the last run that was started
  std::shared_ptr<platform::CancelMark> saveCancel_;       ///< of the last save that was started
  platform::Guarded<std::set<std::string>> scratchFiles_;  ///< what runs have written
  std::vector<std::weak_ptr<engine::Run>> runs_;           ///< every run that may still be at work
  std::optional<avi::WriteFailure> untoldFailure_;         ///< met while the notice was up
  bool waiting_ = false;                                   ///< the notice is up
  bool terminated_ = false;
  bool inputAnswers_ = true;  ///< at the last save
  int choosersAsked_ = 0;     ///< calls of `openFinderWindow` under way
};

}  // namespace zelvo::app
