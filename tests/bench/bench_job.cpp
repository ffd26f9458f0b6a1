// What the benchmarks time, as one program of small commands; tools/bench.py pairs them with their yardsticks.
//   make KIND FILE BYTES   writes an input: "frames" (10 to 100 KB), "small" (about 1 KB), "dense" (a candidate every
//                          8 bytes), "full" (more small chunks of both kinds than the tables hold)
//   scan FILE              the engine up to the end of its sample scan
//   scan-literal FILE      the same scan, word for word: one small read per block, copied, a loop over its bytes; it
//                          tells the same elements of its progress, once per block
//   repair IN OUT          a whole repair, without waiting for the disk
//   progress BLOCKS        the progress animation of an input of that many blocks; prints nanoseconds a step
//   divide BLOCKS          only what no animation can leave out: a division and a store a step, one after the other
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

#include "avi/input_file.h"
#include "engine/progress_relay.h"
#include "engine/repair.h"
#include "engine/repair_file.h"
#include "engine/repair_stages.h"
#include "platform/headless/screen.h"
#include "platform/linux/file_manager.h"
#include "platform/linux/files.h"
#include "platform/linux/main_queue.h"
#include "platform/linux/workers.h"
#include "tests/bench/bench_inputs.h"
#include "tests/support/literal_scan.h"

namespace {

using namespace zelvo;

class NoLog final : public platform::Log {
 public:
  void line(std::string_view) override {}
};

/// Keeps what it is told last, as the progress line of the command line does.
class LastProgress final : public engine::RepairObserver {
 public:
  [[nodiscard]] platform::Log& log() override { return log_; }
  void stage(engine::RepairStage stage) override { stage_ = stage; }
  void progress(std::uint64_t done, std::uint64_t all) override {
    done_ = done;
    all_ = all;
  }

 private:
  NoLog log_;
  platform::Relaxed<engine::RepairStage> stage_;
  platform::Relaxed<std::uint64_t> done_;
  platform::Relaxed<std::uint64_t> all_;
};

/// A file that is created or emptied.
class NamedOutput final : public engine::OutputMaker {
 public:
  NamedOutput(platform::Files& files, platform::FileManager& fileManager, std::string path)
      : files_(files), fileManager_(fileManager), path_(std::move(path)) {}
  [[nodiscard]] Made make(std::uint64_t) override {
    if (const std::error_code error = fileManager_.createFile(path_)) return {.file = nullptr, .error = error};
    auto opened = files_.openForWriting(path_);
    file_ = std::move(opened.file);
    return {.file = file_.get(), .error = opened.error};
  }
  [[nodiscard]] std::error_code close() override { return file_->close(); }

 private:
  platform::Files& files_;
  platform::FileManager& fileManager_;
  const std::string path_;
  std::unique_ptr<platform::WritableFile> file_;
};

/// A run as the command line does it.
struct Bench {
  explicit Bench(const std::string& in) : input(files.openForReading(in).file) {}
  [[nodiscard]] engine::RepairRun run() { return {*input, input->size(), observer, cancel, workers}; }

  platform::linux_::LinuxFiles files;
  platform::linux_::LinuxFileManager fileManager;
  platform::linux_::LinuxWorkers workers;
  LastProgress observer;
  platform::CancelMark cancel;
  std::unique_ptr<platform::ReadableFile> input;
};

int tell(std::uint64_t video, std::uint64_t audio) {
  std::printf("video %llu audio %llu\n", static_cast<unsigned long long>(video),
              static_cast<unsigned long long>(audio));
  return 0;
}

int scan(const std::string& in) {
  Bench bench(in);
  if (!bench.input) return 1;
  avi::InputFile input(*bench.input);
  const engine::RepairContext run{input, bench.input->size(), bench.observer, bench.cancel, bench.workers};
  engine::RepairState state;
  if (!engine::checkValidity(state, run) || !engine::harvestHeaders(state, run)) return 1;
  engine::scanSamples(state, run);
  return tell(state.videosamplecount, state.audiosamplecount);
}

int scanLiterally(const std::string& in) {
  Bench bench(in);
  if (!bench.input) return 1;
  tests::literal::Input input(bench.input.get());
  engine::RepairObserver& observer = bench.observer;
  tests::literal::ScanOptions options;
  options.inputfilesize = bench.input->size();
  const std::uint64_t blocks = (bench.input->size() + 1023) / 1024;
  options.stopped = [&bench](std::uint64_t) { return bench.cancel.cancelled(); };
  options.progress = [&](double percent) {
    observer.progress(static_cast<std::uint64_t>(percent), blocks);
    observer.stage(engine::RepairStage::searching);
  };
  const tests::literal::Tables tables = tests::literal::scanSamples(input, options);
  return tell(tables.video.count, tables.audio.count);
}

int repair(const std::string& in, const std::string& out) {
  Bench bench(in);
  if (!bench.input) return 1;
  NamedOutput output(bench.files, bench.fileManager, out);
  const engine::RepairReport report = engine::repair(bench.run(), output);
  return report.end == engine::RunEnd::rebuilt && !report.writeFailure ? 0 : 1;
}

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
/// The window's job, of which only the animation is timed.
struct Animation {
  Animation() { job.controll = &relay; }

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

int divide(std::uint32_t blocks) {
  NoRelay relay;
  const std::uint64_t steps = std::uint64_t{blocks} * 10;
  const auto divisor = static_cast<double>(steps);
  const auto start = std::chrono::steady_clock::now();
  for (std::uint64_t step = 1; step <= steps; ++step) {
    relay.setProgressBarValue(static_cast<double>(step) * 100.0 / divisor);
  }
  const std::chrono::duration<double, std::nano> spent = std::chrono::steady_clock::now() - start;
  std::printf("%.3f\n", spent.count() / static_cast<double>(steps));
  return 0;
}

int progress(std::uint32_t blocks) {
  auto bench = std::make_unique<Animation>();
  bench->job.numberofsectors = blocks;
  const auto run = std::make_shared<engine::Run>();
  bool ended = false;
  const auto start = std::chrono::steady_clock::now();
  const auto worker = bench->workers.start(run->cancel, [&] {
    bench->job.progressupdation(*run);
    bench->queue.perform([&] { ended = true; });
  });
  bench->queue.runUntil([&] { return ended; });
  worker->join();
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
    result = zelvo::tests::makeInput(argv[2], argv[3], std::strtoull(argv[4], nullptr, 10)) ? 0 : 2;
  } else if (command == "scan" && argc == 3) {
    result = scan(argv[2]);
  } else if (command == "scan-literal" && argc == 3) {
    result = scanLiterally(argv[2]);
  } else if (command == "repair" && argc == 4) {
    result = repair(argv[2], argv[3]);
  } else if (command == "progress" && argc == 3) {
    result = progress(static_cast<std::uint32_t>(std::strtoul(argv[2], nullptr, 10)));
  } else if (command == "divide" && argc == 3) {
    result = divide(static_cast<std::uint32_t>(std::strtoul(argv[2], nullptr, 10)));
  }
  printPeakMemory();
  return result;
}
