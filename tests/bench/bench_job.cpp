// What the benchmarks time, as one program of small commands; tools/bench.py pairs them with their yardsticks.
//   make KIND FILE BYTES   writes an input: "frames" (10 to 100 KB), "small" (about 1 KB), "dense" (a candidate every
//                          8 bytes), "full" (more small chunks of both kinds than the tables hold)
//   scan FILE              the engine up to the end of its sample scan
//   scan-literal FILE      the same scan, word for word: one small read per block, copied, a loop over its bytes; it tells
//                          the same elements of its progress, once per block
//   repair IN OUT          a whole repair, without waiting for the disk
//   progress BLOCKS        the progress animation of an input of that many blocks; prints nanoseconds a step
// Each prints its own peak memory, in KiB, on its last line.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "engine/globals.h"
#include "engine/progress_relay.h"
#include "engine/repair_file.h"
#include "platform/headless/screen.h"
#include "platform/linux/linux_file_manager.h"
#include "platform/linux/linux_files.h"
#include "platform/linux/linux_main_queue.h"
#include "platform/linux/linux_workers.h"
#include "tests/bench/bench_inputs.h"
#include "tests/support/literal_scan.h"

namespace {

using namespace zelvo;

/// Elements that nobody watches.
class NoTextField final : public platform::TextField {
 public:
  void setStringValue(std::string_view) override {}
  void setIntegerValue(std::int64_t) override {}
};
class NoButton final : public platform::Button {
 public:
  void setEnabled(bool) override {}
  void setHidden(bool) override {}
  void setState(State) override {}
  [[nodiscard]] State state() const override { return State::off; }
  void setImage(std::string_view) override {}
};
class NoRelay final : public engine::ProgressRelay {
 public:
  void setProgressBarValue(double percent) override { value_ = percent; }
  void updateProgressBar() override {}
  void updateSaveProgressBar() override {}
  void updateSaveProgressBar2() override {}
  void setMovieView(const std::string&) override {}

 private:
  platform::Relaxed<double> value_;
};
class NoLog final : public platform::Log {
 public:
  void line(std::string_view) override {}
};

/// A job as the command line runs it.
struct Bench {
  Bench() : outlets(screen.job) { job.controll = &relay; }

  platform::linux_::LinuxFiles files;
  platform::linux_::LinuxFileManager fileManager;
  platform::linux_::LinuxMainQueue queue;
  platform::linux_::LinuxWorkers workers;
  platform::headless::Screen screen;
  platform::headless::HeadlessSheets sheets{queue, nullptr};
  platform::headless::HeadlessMovieLoader movies;
  NoLog log;
  NoRelay relay;
  NoTextField text;
  NoButton button;
  platform::JobOutlets outlets;
  engine::RepairFile job{{files, fileManager, movies, workers, queue, sheets, log},
                         {.textfield = text,
                          .videocodecfield = text,
                          .audiocodecfield = text,
                          .pathfield = text,
                          .window = screen.mainWindow,
                          .filenotsupportedwindow = screen.filenotsupportedwindow,
                          .invalidfilewindow = screen.invalidfilewindow,
                          .repaircompletedwindow = screen.repaircompletedwindow,
                          .stoprepairwindow = screen.stoprepairwindow,
                          .stopbutton = button,
                          .tabview2 = screen.tabview,
                          .movieview1 = screen.movieview1,
                          .filenotsupportedokbutton = button,
                          .invalidfileokbutton = button,
                          .repaircompletedokbutton = button,
                          .previewbutton = button,
                          .minutestextfield = text,
                          .secondstextfield = text,
                          .hourstextfield = text}};
};

void choose(Bench& bench, const std::string& in, const std::string& out) {
  engine::path.set(in);
  engine::inputfilesize = bench.fileManager.attributesFollowingLinks(in).value_or(platform::FileAttributes{}).size;
  engine::internalpath.set(out);
}

/// Does `body` on a worker whose end wakes the main thread, as the command line does.
void serveUntilEnd(Bench& bench, const std::shared_ptr<platform::CancelMark>& mark, std::function<void()> body) {
  bool ended = false;
  const auto worker = bench.workers.start(mark, [&, work = std::move(body)] {
    work();
    bench.queue.perform([&] { ended = true; });
  });
  bench.queue.runUntil([&] { return ended; });
  worker->join();
}

int scan(const std::string& in) {
  auto bench = std::make_unique<Bench>();
  choose(*bench, in, "");
  bench->job.beginRun(engine::RepairFile::newRun());
  if (!bench->job.fileValidityCheck() || !bench->job.harvestHeaders()) return 1;
  bench->job.scanSamples();
  std::printf("video %llu audio %llu\n", static_cast<unsigned long long>(bench->job.videosamplecount),
              static_cast<unsigned long long>(bench->job.audiosamplecount));
  return 0;
}

int scanLiterally(const std::string& in) {
  auto bench = std::make_unique<Bench>();
  const auto opened = bench->files.openForReading(in);
  if (!opened.file) return 1;
  tests::literal::Input input(opened.file.get());
  engine::ProgressRelay& relay = bench->relay;
  platform::TextField& status = bench->text;
  platform::CoalescedOperation redraw(bench->queue, [&] { relay.updateProgressBar(); });
  tests::literal::ScanOptions options;
  options.inputfilesize = opened.file->size();
  options.stopped = [](std::uint64_t) { return static_cast<bool>(engine::stopflag); };
  options.progress = [&](double percent) {
    relay.setProgressBarValue(percent);
    redraw.request();
    status.setStringValue("Retrieving audio/ video data forks..");
  };
  const tests::literal::Tables tables = tests::literal::scanSamples(input, options);
  std::printf("video %llu audio %llu\n", static_cast<unsigned long long>(tables.video.count),
              static_cast<unsigned long long>(tables.audio.count));
  return 0;
}

int repair(const std::string& in, const std::string& out) {
  auto bench = std::make_unique<Bench>();
  choose(*bench, in, out);
  const auto run = engine::RepairFile::newRun();
  serveUntilEnd(*bench, run->cancel, [&] { bench->job.retrieveAudioVideoSamples(run); });
  return bench->job.runEnd == engine::RunEnd::rebuilt && !bench->job.writeFailure.get() ? 0 : 1;
}

int progress(std::uint32_t blocks) {
  auto bench = std::make_unique<Bench>();
  bench->job.numberofsectors = blocks;
  const auto run = engine::RepairFile::newRun();
  const auto start = std::chrono::steady_clock::now();
  serveUntilEnd(*bench, run->cancel, [&] { bench->job.progressupdation(*run); });
  const std::chrono::duration<double, std::nano> spent = std::chrono::steady_clock::now() - start;
  std::printf("%.3f\n", spent.count() / (10.0 * blocks));
  return 0;
}

void printPeakMemory() {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with("VmHWM:")) std::printf("%lld\n", std::atoll(line.c_str() + std::strlen("VmHWM:")));
  }
}

}  // namespace

int main(int argc, char** argv) {
  const std::string command = argc > 1 ? argv[1] : "";
  int result = 2;
  if (command == "make" && argc == 5) {
    result = zelvo::bench::makeInput(argv[2], argv[3], std::strtoull(argv[4], nullptr, 10)) ? 0 : 2;
  } else if (command == "scan" && argc == 3) {
    result = scan(argv[2]);
  } else if (command == "scan-literal" && argc == 3) {
    result = scanLiterally(argv[2]);
  } else if (command == "repair" && argc == 4) {
    result = repair(argv[2], argv[3]);
  } else if (command == "progress" && argc == 3) {
    result = progress(static_cast<std::uint32_t>(std::strtoul(argv[2], nullptr, 10)));
  }
  printPeakMemory();
  return result;
}
