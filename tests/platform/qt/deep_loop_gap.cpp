// deep_loop_gap [BYTES]: deep-repairs a dense film of about that size (4 GiB without it) in the window, and prints the
// longest time for which the event loop served nothing and the longest work between two of its turns, in milliseconds,
// and the peak memory of the window and of the largest of its programs, in MiB. The film is written to the folder for
// temporary files, and so is the repaired one; both are removed.
#include <sys/resource.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <utility>

#include "deep/deep_repair.h"
#include "platform/headless/film_choosers.h"
#include "platform/headless/settings.h"
#include "platform/linux/bundle.h"
#include "platform/linux/film_programs.h"
#include "platform/linux/locked_files.h"
#include "platform/linux/new_files.h"
#include "tests/platform/qt/window_bench.h"
#include "tests/support/ffmpeg.h"

namespace {

namespace linux_ = zelvo::platform::linux_;
using zelvo::platform::DeepPage;

constexpr std::uintmax_t kDefaultSize = std::uintmax_t{4} << 30U;
constexpr double kKibibytesPerMebibyte = 1024.0;

double peakMemory(int who) {
  rusage usage{};
  ::getrusage(who, &usage);
  return static_cast<double>(usage.ru_maxrss) / kKibibytesPerMebibyte;
}

/// What the processor has done for this thread, in milliseconds: on a busy machine a gap is mostly others' work.
double workedSoFar() {
  timespec time{};
  ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  constexpr double kMillisecond = 1e6;
  return static_cast<double>(time.tv_sec) * 1000 + static_cast<double>(time.tv_nsec) / kMillisecond;
}

/// A film of many small pictures and sound, without its index and with a stretch of zeros in its middle.
bool makeDenseFilm(const std::string& path, std::uintmax_t size) {
  const std::string piece = path + ".piece.avi";
  if (!zelvo::tests::runFfmpeg("-y -f lavfi -i testsrc2=size=320x240:rate=30 -f lavfi -i sine=frequency=440 -t 60 "
                               "-c:v mpeg4 -b:v 1500k -c:a libmp3lame -b:a 128k -f avi '" +
                               piece + "'")) {
    return false;
  }
  const std::uintmax_t times = size / std::filesystem::file_size(piece);
  const bool isMade = zelvo::tests::runFfmpeg("-y -stream_loop " + std::to_string(times) + " -i '" + piece +
                                              "' -c copy -f avi '" + path + "'");
  std::filesystem::remove(piece);
  if (!isMade) return false;
  constexpr std::streamoff kZeros = 1 << 20;
  const auto whole = static_cast<std::streamoff>(std::filesystem::file_size(path));
  std::fstream film(path, std::ios::in | std::ios::out | std::ios::binary);
  film.seekp(whole / 2);
  film << std::string(kZeros, '\0');
  film.close();
  std::filesystem::resize_file(path, static_cast<std::uintmax_t>(whole - whole / 50));
  return true;
}

/// Makes the film in a process of its own, so that what that took counts for none of ours.
bool makeApart(const std::string& path, std::uintmax_t size) {
  const pid_t maker = ::fork();
  if (maker == 0) ::_exit(makeDenseFilm(path, size) ? 0 : 1);
  int status = 0;
  return maker > 0 && ::waitpid(maker, &status, 0) == maker && status == 0;
}

}  // namespace

int main(int argc, char** argv) {
  const std::uintmax_t size = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : kDefaultSize;
  zelvo::tests::TempFolder films;
  const std::string film = films.path("dense.avi");
  if (!makeApart(film, size)) {
    std::fprintf(stderr, "deep_loop_gap: the film could not be made\n");
    return 1;
  }
  const double makersPeak = peakMemory(RUSAGE_CHILDREN);

  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  zelvo::tests::WindowBench bench;
  linux_::LinuxNewFiles newFiles;
  linux_::LinuxLockedFiles lockedFiles;
  zelvo::platform::headless::HeadlessFilmChoosers choosers;
  zelvo::platform::headless::HeadlessClipboard clipboard;
  zelvo::platform::headless::HeadlessSettings settings;
  zelvo::deep::DeepRepair repair(
      {.files = bench.files,
       .fileManager = bench.fileManager,
       .newFiles = newFiles,
       .lockedFiles = lockedFiles,
       .workers = bench.workers,
       .mainQueue = bench.queue,
       .clock = bench.clock,
       .log = bench.log,
       .sheets = *bench.sheets,
       .alertPanels = *bench.alerts,
       .choosers = choosers,
       .movies = *bench.movies,
       .workspace = bench.workspace,
       .clipboard = clipboard,
       .settings = settings,
       .pathProbe = bench.pathProbe,
       .translator = bench.translator,
       .makePrograms =
           [] {
             return std::make_unique<linux_::LinuxFilmPrograms>(
                 linux_::LinuxFilmPrograms::programBeside(linux_::LinuxBundle::runningProgram()));
           },
       .scratchFolders = [&films] { return std::vector<std::string>{films.path("scratch")}; },
       .process = ::getpid()},
      bench.deep->outlets());
  repair.wire(bench.actions);
  repair.start();
  repair.filmChosen(film);
  bench.settle();

  QElapsedTimer sinceLast;
  QElapsedTimer whole;
  qint64 longest = 0;
  qint64 endOfLongest = 0;
  QTimer beat;
  double worked = workedSoFar();
  double longestWork = 0;
  QObject::connect(&beat, &QTimer::timeout, &beat, [&] {
    const double before = std::exchange(worked, workedSoFar());
    longestWork = std::max(longestWork, worked - before);
    const qint64 gap = sinceLast.restart();
    if (gap <= longest) return;
    longest = gap;
    endOfLongest = whole.elapsed();
  });
  beat.start(1);
  sinceLast.start();
  whole.start();
  bench.deep->outlets().pages.show(DeepPage::none);
  auto& button = dynamic_cast<zelvo::platform::qt::QtButton&>(bench.deep->outlets().deeprepairbutton);
  button.click();
  // A run of minutes: the bench's own patience is for what takes moments.
  while (bench.deep->shown() != DeepPage::result && bench.deep->shown() != DeepPage::none &&
         whole.elapsed() < 600'000) {
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }
  const bool isDone = bench.deep->shown() == DeepPage::result;
  const double seconds = static_cast<double>(whole.elapsed()) / 1000;
  // The result with its picture of the damage and the preview counts as well.
  for (QElapsedTimer shown; isDone && (shown.isValid() || (shown.start(), true)) && shown.elapsed() < 3000;) {
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }
  const double programs = peakMemory(RUSAGE_CHILDREN);
  std::printf(
      "%lld ms longest gap (at %.2f s), %.0f ms longest work, %.1f MiB peak of the window, %s%.1f MiB of its largest "
      "program, %.2f s for %ju "
      "bytes\n",
      static_cast<long long>(longest), static_cast<double>(endOfLongest) / 1000, longestWork, peakMemory(RUSAGE_SELF),
      programs > makersPeak ? "" : "at most ", programs, seconds, std::filesystem::file_size(film));
  if (!isDone) std::fprintf(stderr, "deep_loop_gap: no result: %s\n", bench.looks().c_str());
  return isDone ? 0 : 1;
}
