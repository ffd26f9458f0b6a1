#include "tests/cli/engine_run.h"

#include "cli/console.h"
#include "cli/job_progress.h"
#include "engine/globals.h"
#include "engine/repair_file.h"
#include "platform/headless/main_queue.h"
#include "platform/headless/screen.h"
#include "platform/linux/linux_file_manager.h"
#include "platform/linux/linux_files.h"
#include "platform/linux/linux_workers.h"

namespace zelvo::test {

bool repairWithEngine(const std::string& input, const std::string& output) {
  platform::linux_::LinuxFiles files;
  platform::linux_::LinuxFileManager fileManager;
  platform::linux_::LinuxWorkers workers;
  platform::headless::HeadlessMainQueue queue;
  queue.holdRequests(false);
  platform::headless::HeadlessMovieLoader movies;
  platform::headless::HeadlessSheets sheets(queue, nullptr);
  platform::headless::HeadlessLog log(nullptr);
  platform::headless::Screen screen;
  cli::LastPercent relay;
  engine::RepairFile job({files, fileManager, movies, workers, queue, sheets, log}, screen.job);
  job.controll = &relay;
  engine::resetGlobals();
  engine::path.set(input);
  engine::inputfilesize = fileManager.attributesFollowingLinks(input)->size;
  engine::internalpath.set(output);
  job.retrieveAudioVideoSamples(engine::RepairFile::newRun());
  queue.pump();
  return job.runEnd == engine::RunEnd::rebuilt;
}

}  // namespace zelvo::test
