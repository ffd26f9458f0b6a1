// window_loop_gap [BYTES]: repairs a sparse film of that size (4 GiB less one block without it) in the window, and
// prints the longest time for which the event loop served nothing, in milliseconds, and the peak memory, in MiB.
#include <sys/resource.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "platform/qt/panels/panel_frame.h"
#include "tests/platform/qt/window_bench.h"
#include "tests/support/avi_builder.h"

namespace {

constexpr std::uintmax_t kDefaultSize = (std::uintmax_t{4} << 30U) - 1024;
constexpr double kKibibytesPerMebibyte = 1024.0;

double peakMemory() {
  rusage usage{};
  ::getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_maxrss) / kKibibytesPerMebibyte;
}

}  // namespace

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  const std::uintmax_t size = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : kDefaultSize;

  zelvo::tests::WindowBench bench;
  const auto bytes = zelvo::tests::AviBuilder().interleaved(45, 10000, 1800).build();
  std::string text(bytes.size(), '\0');
  std::transform(bytes.begin(), bytes.end(), text.begin(), [](std::byte one) { return static_cast<char>(one); });
  const std::string film = bench.temp.put("sparse.avi", text);
  std::filesystem::resize_file(film, size);
  bench.window->offerFile(film);

  QElapsedTimer sinceLast;
  qint64 longest = 0;
  QTimer beat;
  QObject::connect(&beat, &QTimer::timeout, &beat, [&] { longest = std::max(longest, sinceLast.restart()); });
  beat.start(1);
  sinceLast.start();
  QElapsedTimer whole;
  whole.start();
  bench.window->choosePage().repairbutton->click();
  bench.until([&] { return bench.isShown(bench.window->fixedPanels().repaircompletedwindow); });
  std::printf("%lld ms longest gap, %.1f MiB peak, %.2f s for %ju bytes\n", static_cast<long long>(longest),
              peakMemory(), static_cast<double>(whole.elapsed()) / 1000, size);
  return 0;
}
