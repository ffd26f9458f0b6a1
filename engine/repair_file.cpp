// The run:
// 1. Wait for the run before this one.
// 2. Validity check; on no the invalid-file sheet.
// 3. Header harvest; on no the not-supported sheet.
// 4. Sample scan.
// 5. Progress animation on a worker of its own, and beside it the rebuilt file.
#include "engine/repair_file.h"

#include <utility>

#include "avi/byte_order.h"
#include "engine/globals.h"
#include "engine/low32.h"
#include "platform/ran_out.h"

namespace zelvo::engine {

using platform::logLine;

namespace {

/// Fresh pages stay untouched; only entry 0, where the sums start, is set. // Decision 0016
std::unique_ptr<SampleTables> untouchedTables() {
  auto tables = std::make_unique_for_overwrite<SampleTables>();
  tables->videosamplesizearray[0] = 0;
  tables->videosampleoffsetarray[0] = 0;
  tables->audiosampleoffsetarray[0] = 0;
  tables->audiosamplesizearray[0] = 0;
  return tables;
}

}  // namespace

RepairFile::RepairFile(const RepairServices& services, const platform::JobOutlets& jobOutlets)
    : tables_(untouchedTables()),
      videosamplesizearray(tables_->videosamplesizearray),
      videosampleoffsetarray(tables_->videosampleoffsetarray),
      audiosampleoffsetarray(tables_->audiosampleoffsetarray),
      audiosamplesizearray(tables_->audiosamplesizearray),
      outlets(jobOutlets),
      services_(services),
      updateProgressBar_(services.mainQueue, [this] { controll->updateProgressBar(); }),
      updateSaveProgressBar_(services.mainQueue, [this] { controll->updateSaveProgressBar(); }) {}

RepairFile::~RepairFile() = default;

std::uint64_t RepairFile::fourByteRead(std::span<const std::byte, 4> bytes) { return avi::loadLittleEndian32(bytes); }

platform::Bytes RepairFile::convertIntToData(std::uint64_t value) {
  platform::Bytes bytes(4);
  avi::storeLittleEndian32(std::span(bytes).first<4>(), low32(value));
  return bytes;
}

platform::Bytes RepairFile::convertIntTo8byteData(std::uint64_t value) {
  platform::Bytes bytes = convertIntToData(value);
  bytes.resize(8);
  return bytes;
}

std::shared_ptr<Run> RepairFile::newRun() {
  auto run = std::make_shared<Run>();
  run->path = path.get();
  run->inputfilesize = engine::inputfilesize;
  run->internalpath = internalpath.get();
  return run;
}

void RepairFile::beginRun(std::shared_ptr<Run> run) {
  run_ = std::move(run);
  runEnd = RunEnd::none;
  readFailures.set({});
  writeFailure.set(std::nullopt);
  filmReport.set({});
  tally_ = {};
  filmRange_ = {};
}

void RepairFile::retrieveAudioVideoSamples(std::shared_ptr<Run> run) {
  const std::lock_guard turn(turn_);  // Decision 0012
  if (run->cancel->cancelled()) return;
  beginRun(std::move(run));
  if (const std::error_code shortage = platform::ranOut([this] { runStages(); })) failRun({0, shortage});
  if (inputfilehandle) {
    const avi::ReadFailures failures = inputfilehandle->failures();
    readFailures.set(failures);
    if (failures.count > 0) {
      logLine(services_.log, "Reads failed=%llu, the first at %llu: %@", failures.count, failures.firstOffset,
              failures.firstCause.message());
    }
    inputfilehandle.reset();
  }
}

void RepairFile::failRun(const avi::WriteFailure& failure) {
  if (!writeFailure.get()) {
    writeFailure.set(failure);
    // A line that memory is lacking for is not worth another failure.
    static_cast<void>(platform::ranOut(
        [&] { logLine(services_.log, "Write failed at %llu: %@", failure.offset, failure.cause.message()); }));
  }
  run_->cancel->cancel();
}

void RepairFile::runStages() {
  if (!fileValidityCheck()) {
    logLine(services_.log, "Val==No");
    runEnd = RunEnd::invalid;
    services_.sheets.beginSheet(outlets.invalidfilewindow, outlets.window);
    return;
  }
  if (!harvestHeaders()) {
    runEnd = RunEnd::notSupported;
    if (run_->rejected) run_->rejected(rejection());
    services_.sheets.beginSheet(outlets.filenotsupportedwindow, outlets.window);
    return;
  }
  scanSamples();
  judgeFilm();
  const auto animation = services_.workers.start(run_->cancel, [this, run = run_] { progressupdation(*run); });
  // Without it no sheet would ever tell the run's end.
  if (!animation) failRun({0, platform::noThread()});
  const std::error_code shortage = platform::ranOut([this] { constructRIFFList(); });
  if (shortage) failRun({0, shortage});
  // What the copy could not read is known only now.
  if (runEnd == RunEnd::rebuilt && !stopRequested(*run_)) tellFound();
  // The next run resets what the animation counts by, so this one ends only after it.
  if (!animation) return;
  animation->join();
  if (const std::error_code cutShort = animation->failure()) failRun({0, cutShort});
}

void RepairFile::judgeFilm() {
  if (stopRequested(*run_)) return;
  filmRange_ = filmRange(*inputfilehandle, tally_);
  tellFound();
}

void RepairFile::countBlocks() {
  constexpr std::uint64_t kBlockSize = avi::InputFile::kBlockSize;
  mod = static_cast<std::uint32_t>(run_->inputfilesize % kBlockSize);
  std::uint64_t blocks = run_->inputfilesize / kBlockSize;
  if (run_->inputfilesize <= kBlockSize) {
    blocks = 1;
  } else if (mod != 0) {
    ++blocks;
  }
  numberofsectors = low32(blocks);
}

}  // namespace zelvo::engine
