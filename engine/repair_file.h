/// The repair job of the window: the stages of repair_stages.h, told to labels, bars and sheets in their given order.
/// Blocks are 1024 bytes and numbered from 1; offsets and sizes are in bytes; progress is in percent.
///
/// The run that joins the stages is in repair_file.cpp; the progress animation and the sheets' buttons are in
/// repair_progress.cpp.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>

#include "avi/input_file.h"
#include "avi/write_failure.h"
#include "engine/globals.h"
#include "engine/progress_relay.h"
#include "engine/repair_report.h"
#include "engine/repair_stages.h"
#include "engine/repair_state.h"
#include "platform/bytes.h"
#include "platform/file_manager.h"
#include "platform/files.h"
#include "platform/film_report.h"
#include "platform/guarded.h"
#include "platform/log.h"
#include "platform/main_queue.h"
#include "platform/movies.h"
#include "platform/outlets.h"
#include "platform/rejection.h"
#include "platform/relaxed.h"
#include "platform/sheets.h"
#include "platform/workers.h"

namespace zelvo::engine {

/// What a repair uses of the platform, by reference.
struct RepairServices {
  platform::Files& files;
  platform::FileManager& fileManager;
  platform::MovieLoader& movies;
  platform::Workers& workers;
  platform::MainQueue& mainQueue;
  platform::Sheets& sheets;
  platform::Log& log;
};

/// One run of the job: what it works on, copied when it was started, and the mark that ends it.
/// Decision: runs, Each run has its own mark and copies
struct Run {
  std::optional<std::string> path;
  std::uint64_t inputfilesize = 0;
  std::string internalpath;
  std::shared_ptr<platform::CancelMark> cancel = std::make_shared<platform::CancelMark>();
  /// Asked, when set, before the output is created, with the bytes that will be written. On false the run ends.
  /// Decision: writer, The need is told before the output exists
  /// Thread: the repair worker.
  std::function<bool(std::uint64_t)> mayWrite;
  /// Told, when set, what is kept of the film: once it has been searched, before the animation, and again once the
  /// rebuilt file is written.
  /// Thread: the repair worker.
  std::function<void(const platform::FilmReport&)> found;
  /// Told, when set, why the film is not supported, before the sheet.
  /// Thread: the repair worker.
  std::function<void(platform::Rejection)> rejected;
};

/// The repair job. One object serves every repair; each run resets what it depends on. 32 MiB of tables hang on it.
class RepairFile : public RepairState {
 public:
  RepairFile(const RepairServices& services, const platform::JobOutlets& outlets);
  RepairFile(const RepairFile&) = delete;
  RepairFile& operator=(const RepairFile&) = delete;
  ~RepairFile();

  // ---- Running ----

  /// Copies the globals `path`, `inputfilesize` and `internalpath` for a run.
  /// Thread: main, when the run is started.
  [[nodiscard]] static std::shared_ptr<Run> newRun();

  /// `retrieveAudioVideoSamples`: the whole run. A lack of memory or threads ends it as a failed write does, whatever
  /// the stage: it is kept in `writeFailure`. First waits for the run before it to end, however long its copy takes; a
  /// run that was cancelled while it waited does nothing.
  /// Thread: repair worker.
  void retrieveAudioVideoSamples(std::shared_ptr<Run> run);

  /// Makes `run` the one that the stages below work on. For a stage on its own; a whole run does it itself.
  void beginRun(std::shared_ptr<Run> run);

  // ---- Byte helpers; they use no field ----

  /// `fourByteRead:` the little-endian number in four bytes, 0 to 4,294,967,295.
  [[nodiscard]] static std::uint64_t fourByteRead(std::span<const std::byte, 4> bytes);
  /// `convertIntToData:` the value's low 32 bits, least significant byte first: 4 bytes.
  [[nodiscard]] static platform::Bytes convertIntToData(std::uint64_t value);
  /// `convertIntTo8byteData:` the value's low 32 bits, then four zero bytes: 8 bytes.
  /// Deliberate: the value is cut to 32 bits before it is widened, so the upper half is always zero.
  [[nodiscard]] static platform::Bytes convertIntTo8byteData(std::uint64_t value);

  // ---- Stages: those of repair_stages.h, told to the elements. Thread: repair worker ----

  /// Opens the input, and its movie for later, and judges whether it looks like an AVI file (`checkValidity`); the
  /// answer is also left in the global `validitycheck1`. A missing file answers false.
  bool fileValidityCheck();

  /// Gathers the headers (`engine::harvestHeaders`).
  bool harvestHeaders();

  /// Walks the whole input for data chunks (`engine::scanSamples`).
  void scanSamples();

  /// Judges what the scan has kept of the film, and tells it (`filmReport`, `Run::found`). A stopped run is not judged.
  /// \pre    the scan is done and the input is still open
  void judgeFilm();

  /// Length in bytes of the file that would be written now (`engine::bytesToWrite`).
  /// \pre    the scan is done and `inputfilehandle` is open
  [[nodiscard]] std::uint64_t bytesToWrite();

  /// Writes the rebuilt file to the run's scratch path (`constructRebuiltFile`), closes it and hands it to the
  /// controller.
  /// Failure: a write error, or a lack of memory or threads, is kept in `writeFailure`, sets the run's cancel mark and
  /// ends the writing.
  void constructRIFFList();

  /// The progress animation: ten steps per block, then the repair-completed sheet unless the run was stopped.
  /// Thread:  a worker of its own, beside the repair worker.
  void progressupdation(const Run& run);

  // ---- Progress routines that no flow calls ----

  /// 1024 steps of save progress, 0 to 99.90234375.
  void saveprogress();
  /// One step per block of the input; leaves `sector` at `numberofsectors` + 1.
  void progressBar();
  /// `setMovieView:` shows the input's own movie; the argument is ignored.
  void setMovieView(const std::string& ignored);

  // ---- Sheet buttons. Thread: main ----

  /// `repairCompletedOk:`
  void repairCompletedOk(platform::Button* sender);
  /// `fileNotSupportedokOk:` also raises `stopflag`.
  void fileNotSupportedokOk(platform::Button* sender);
  /// `invalidFileOk:` leaves `stopflag` as it is.
  void invalidFileOk(platform::Button* sender);

  // ---- Input and output ----

  std::unique_ptr<avi::InputFile> inputfilehandle;
  platform::FileManager* outputfilemanager = nullptr;
  std::unique_ptr<platform::WritableFile> outputfile;

  // ---- References that are set when the interface is loaded ----

  ProgressRelay* controll = nullptr;
  platform::JobOutlets outlets;
  std::shared_ptr<platform::Movie> video1;  ///< movie of the input, opened when something first looks at it

  // ---- Declared with the job; no stage uses them, though the harvest sets two ----

  std::uint32_t buffersize = 0;  ///< the block step, 1024
  bool nextHeader = false;
  bool isfile = false;
  bool modelcheckflag = false;
  platform::Bytes avihscaleratedata;
  std::shared_ptr<platform::Worker> repairthread;
  std::uint32_t numberofsectors2 = 0;
  platform::Bytes movieData;
  double movieTime = 0;
  std::uint32_t seconds = 0;
  std::uint32_t minutes = 0;
  std::uint32_t hours = 0;
  platform::Bytes repairedmoviedata;
  std::shared_ptr<platform::Movie> MOV;

  // ---- What a run reports beyond its sheets ----

  platform::Relaxed<RunEnd> runEnd;
  platform::Guarded<avi::ReadFailures> readFailures;
  platform::Guarded<platform::FilmReport> filmReport;  ///< what `Run::found` was told last

 private:
  class Elements;  // hears the stages, and tells the window's elements
  class Output;    // makes the file at the run's scratch path

  /// True when the run, or every run, is asked to stop. Asked per step, so it costs two loads.
  [[nodiscard]] static bool stopRequested(const Run& run) { return stopflag || run.cancel->cancelled(); }
  /// What the stages work with; the input must be open.
  [[nodiscard]] RepairContext context();
  void runStages();
  /// Keeps the first failure of the run and cancels the run.
  void failRun(const avi::WriteFailure& failure);
  /// Judges what is kept, and tells it.
  void reportFound();
  void endAndHide(platform::Window& sheet);
  void forgetPath();

  RepairServices services_;
  std::mutex turn_;           ///< held by the run whose turn it is
  std::shared_ptr<Run> run_;  ///< the run the stages work on
  std::unique_ptr<Elements> elements_;
  platform::CoalescedOperation updateProgressBar_;
  platform::CoalescedOperation updateSaveProgressBar_;
};

}  // namespace zelvo::engine
