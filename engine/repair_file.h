/// One repair of one damaged AVI file: checks it, gathers what its header lists still say, walks the whole file for
/// video and audio chunks, and writes a new file with an OpenDML index. Blocks are 1024 bytes and numbered from 1;
/// offsets and sizes are in bytes; progress is in percent.
///
/// Each stage has a source of its own: validity_check.cpp, header_harvest.cpp, sample_scan.cpp, rebuilt_file.cpp,
/// repair_progress.cpp; the run that joins them is in repair_file.cpp.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>

#include "avi/chunk_run.h"
#include "avi/input_file.h"
#include "avi/write_failure.h"
#include "engine/film_tally.h"
#include "engine/format_payload.h"
#include "engine/globals.h"
#include "engine/progress_relay.h"
#include "engine/rebuilt_layout.h"
#include "engine/sample_tables.h"
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

namespace zelvo::avi {
class StagedOutput;
}

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

/// How far a run came.
enum class RunEnd {
  none,          ///< it has not ended, was cancelled before its first step, or ran out of memory or threads
  invalid,       ///< no AVI code in the first ten blocks
  notSupported,  ///< a header is missing, or the file is 512 KiB or less
  rebuilt,       ///< the file was written as far as no stop or write error cut it short
  refused,       ///< `Run::mayWrite` said no; no file was created
  abandoned,     ///< nobody waits for it any more
};

/// One run of the job: what it works on, copied when it was started, and the mark that ends it. // Decision 0012
struct Run {
  std::optional<std::string> path;
  std::uint64_t inputfilesize = 0;
  std::string internalpath;
  std::shared_ptr<platform::CancelMark> cancel = std::make_shared<platform::CancelMark>();
  /// Asked, when set, before the output is created, with the bytes that will be written. On false the run ends.
  /// Decision 0019.
  /// Thread: the repair worker.
  std::function<bool(std::uint64_t)> mayWrite;
  /// Told, when set, what is kept of the film: once it has been searched, before the animation, and again once the rebuilt
  /// file is written.
  /// Thread: the repair worker.
  std::function<void(const platform::FilmReport&)> found;
  /// Told, when set, why the film is not supported, before the sheet.
  /// Thread: the repair worker.
  std::function<void(platform::Rejection)> rejected;
};

/// The repair job. One object serves every repair; each run resets what it depends on. 32 MiB of tables hang on it.
class RepairFile {
 public:
  RepairFile(const RepairServices& services, const platform::JobOutlets& outlets);
  RepairFile(const RepairFile&) = delete;
  RepairFile& operator=(const RepairFile&) = delete;
  ~RepairFile();

  // ---- Running ----

  /// Copies the globals `path`, `inputfilesize` and `internalpath` for a run.
  /// Thread: main, when the run is started.
  [[nodiscard]] static std::shared_ptr<Run> newRun();

  /// `retrieveAudioVideoSamples`: the whole run. A lack of memory or threads ends it as a failed write does, whatever the
  /// stage: it is kept in `writeFailure`. First waits for the run before it to end, however long its copy
  /// takes; a run that was cancelled while it waited does nothing.
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

  // ---- Stages ----

  /// An input of this size or a smaller one is not repaired.
  static constexpr std::uint64_t kLargestUnsupported = 524288;

  /// Judges whether the input looks like an AVI file: searches its first ten 1024-byte blocks for twelve codes. Bytes
  /// past a short read count as zero, and so do those past the end of a block.
  /// \post   the five harvest flags are false; `db` is true when the first code met is "00db"
  /// \return true when a code starts in those blocks; also left in `validitycheck`
  /// Failure: none is reported; a missing or unreadable file answers false.
  /// Thread:  repair worker.
  bool fileValidityCheck();

  /// Gathers the main header, the stream headers and the stream formats from the first 50 blocks.
  /// \return whether the file can be repaired: all five harvest flags are true and it is larger than 524,288 bytes
  /// Thread:  repair worker.
  bool harvestHeaders();

  /// Walks the whole input for data chunks and fills the sample tables.
  /// \pre    `numberofsectors` and `mod` are those of the input
  /// Thread:  repair worker.
  void scanSamples();

  /// Judges what the scan has kept of the film, and tells it (`filmReport`, `Run::found`). A stopped run is not judged.
  /// \pre    the scan is done and the input is still open
  /// Thread:  repair worker.
  void judgeFilm();

  /// Length in bytes of the file that would be written now: what the size fields and chunks claim, as far as the input
  /// holds it. Once a stop is asked for, that of the headers and indexes alone.
  /// \pre    the scan is done and `inputfilehandle` is open
  /// Thread:  repair worker.
  [[nodiscard]] std::uint64_t bytesToWrite() const;

  /// Computes `layout`, writes the rebuilt file, unless the run has failed already, to the run's scratch path, closes it and hands it to the controller.
  /// Failure: a write error, or a lack of memory or threads, is kept in `writeFailure`, sets the run's cancel mark and
  /// ends the writing.
  /// Thread:  repair worker.
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

  // ---- Input and scan cursor ----

  std::unique_ptr<avi::InputFile> inputfilehandle;
  platform::Relaxed<std::uint32_t> sector;           ///< block examined now, from 1
  std::uint32_t mod = 0;                             ///< `inputfilesize` modulo 1024
  std::uint32_t buffersize = 0;                      ///< the block step, 1024
  platform::Relaxed<std::uint32_t> numberofsectors;  ///< blocks in the input, the last partial one included
  std::uint64_t currentoffset = 0;                   ///< start of the block examined now
  bool validitycheck = false;
  bool db = false;  ///< the first code met was "00db"
  bool nextHeader = false;
  bool isfile = false;
  bool modelcheckflag = false;

  // ---- Harvested header data ----

  platform::Bytes avihdata1;  ///< avih cb, dwMicroSecPerFrame, dwMaxBytesPerSec, dwPaddingGranularity, dwFlags
  platform::Bytes avihdata2;  ///< dwInitialFrames, dwStreams, dwSuggestedBufferSize, dwWidth, dwHeight, dwReserved[4]
  platform::Bytes avihscaleratedata;
  platform::Bytes videocodec;  ///< fccHandler of the video stream header
  platform::Guarded<std::optional<std::string>> videocodecstring;
  platform::Bytes videoscaleratedata;  ///< dwScale, dwRate
  platform::Bytes videoscaledata;      ///< dwStart
  std::uint64_t videostrfsize = 0;     ///< strf cb
  FormatPayload videostrfdata;
  platform::Bytes videostrfcodecdata;  ///< biCompression
  platform::Bytes audiocodec;          ///< fccHandler of the audio stream header
  platform::Guarded<std::optional<std::string>> audiocodecstring;
  platform::Bytes audioscaleratedata;
  platform::Bytes audioscaledata;
  std::uint64_t audiostrfsize = 0;
  FormatPayload audiostrfdata;
  platform::Bytes audiostrfcodecdata;  ///< the four bytes at offset 16 of the audio format

  // ---- Harvest flags ----

  bool avihscaleratedatafound = false;
  bool videocodecfound = false;
  bool videostrfcodecfound = false;
  bool audiocodecfound = false;
  bool audiostrfcodecfound = false;

  // ---- Sample tables: entries 1 to the count ----

  std::uint64_t videosamplesize = 0;  ///< size field of the candidate judged last, video and audio alike
  std::uint64_t videosamplecount = 0;
  std::uint64_t videosampleoffset = 0;
  std::uint64_t audiosamplecount = 0;
  std::uint64_t audiosampleoffset = 0;
  std::uint64_t audiosamplesize = 0;
  std::uint64_t samplesleftout = 0;  ///< chunks of both kinds that were accepted and found their table full

 private:
  std::unique_ptr<SampleTables> tables_;

 public:
  SampleTable& videosamplesizearray;
  SampleTable& videosampleoffsetarray;
  SampleTable& audiosampleoffsetarray;
  SampleTable& audiosamplesizearray;

  // ---- Output ----

  RebuiltLayout layout;
  platform::FileManager* outputfilemanager = nullptr;
  std::unique_ptr<platform::WritableFile> outputfile;

  // ---- References that are set when the interface is loaded ----

  ProgressRelay* controll = nullptr;
  platform::JobOutlets outlets;
  std::shared_ptr<platform::Movie> video1;  ///< movie of the input, opened when something first looks at it

  // ---- Declared with the job; no stage uses them ----

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
  platform::Guarded<std::optional<avi::WriteFailure>> writeFailure;
  platform::Guarded<platform::FilmReport> filmReport;  ///< what `Run::found` was told last

 private:
  friend class SampleScan;

  /// True when the run, or every run, is asked to stop. Asked per block and per step, so it costs two loads.
  [[nodiscard]] static bool stopRequested(const Run& run) { return stopflag || run.cancel->cancelled(); }
  void countBlocks();
  void harvestPosition(std::span<const std::byte> code, std::uint32_t position);
  void harvestMainHeader(std::uint32_t position);
  void harvestVideoHeader(std::uint32_t position);
  void harvestAudioHeader(std::uint32_t position);
  [[nodiscard]] FormatPayload readFormat(std::uint32_t position, std::uint64_t size);
  [[nodiscard]] bool allHeadersFound() const;
  void runStages();
  /// Keeps the first failure of the run and cancels the run.
  void failRun(const avi::WriteFailure& failure);
  /// Judges what is kept, and tells it.
  void tellFound();
  /// Why the harvest's answer was no.
  [[nodiscard]] platform::Rejection rejection() const;
  [[nodiscard]] avi::ChunkRun videoChunks() const;
  [[nodiscard]] avi::ChunkRun audioChunks() const;
  [[nodiscard]] std::optional<avi::WriteFailure> openOutput();
  [[nodiscard]] std::optional<avi::WriteFailure> writeRebuiltFile();
  void writeHeaderLists(avi::StagedOutput& out);
  void writeFormat(avi::StagedOutput& out, const FormatPayload& format);
  void showAudioCodec();
  void endAndHide(platform::Window& sheet);
  void forgetPath();

  RepairServices services_;
  std::mutex turn_;           ///< held by the run whose turn it is
  std::shared_ptr<Run> run_;  ///< the run the stages work on
  FilmTally tally_;
  FilmRange filmRange_;
  platform::CoalescedOperation updateProgressBar_;
  platform::CoalescedOperation updateSaveProgressBar_;
};

}  // namespace zelvo::engine
