// zelvo-avi, the command line: joins the engine with the system.
#include <malloc.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <new>
#include <optional>
#include <span>
#include <string>
#include <system_error>

#include "cli/command_line.h"
#include "cli/environment.h"
#include "cli/told_parent.h"
#include "platform/linux/bundle.h"
#include "platform/linux/checksums.h"
#include "platform/linux/film_player.h"
#include "platform/linux/film_programs.h"
#include "platform/linux/locked_files.h"
#include "platform/linux/memory_view.h"
#include "platform/linux/path_probe_child.h"
#include "platform/linux/services.h"
#include "platform/linux/trial_decoder.h"

namespace {

/// Raised by a signal handler, so it must be free of locks.
/// Decision: command-line, A signal only raises a flag
zelvo::platform::Relaxed<bool> stopRequested;
static_assert(std::atomic<bool>::is_always_lock_free);

void requestStop(int) { stopRequested = true; }

/// Ctrl-C and its kin end a command in order: hidden files are removed, nothing half-written bears a final name.
/// Whoever started the program with one of them ignored (nohup, a shell's background job) is not overruled.
void installSignals() {
  struct sigaction stop {};
  stop.sa_handler = requestStop;
  stop.sa_flags = SA_RESTART;
  sigfillset(&stop.sa_mask);
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction before {};
    if (sigaction(number, nullptr, &before) == 0 && before.sa_handler == SIG_IGN) continue;
    sigaction(number, &stop, nullptr);
  }
  // A reader that went away and a file that may not grow are answers of a write, not the end of the program.
  struct sigaction ignore {};
  ignore.sa_handler = SIG_IGN;
  sigaction(SIGPIPE, &ignore, nullptr);
  sigaction(SIGXFSZ, &ignore, nullptr);
}

/// The system has each large block of memory again as soon as it is freed: otherwise what one stage of a deep repair
/// needed would stay beside what the next one takes.
void giveBackLargeBlocks() {
  constexpr int kLarge = 1 << 22;
  static_cast<void>(mallopt(M_MMAP_THRESHOLD, kLarge));
}

zelvo::cli::Exit runCommand(zelvo::cli::Command& command, zelvo::cli::Console& console,
                            zelvo::platform::linux_::LinuxFilmParent* parent) {
  using zelvo::platform::linux_::LinuxBundle;
  using zelvo::platform::linux_::LinuxFilmPlayer;
  using zelvo::platform::linux_::LinuxPathProbe;
  using zelvo::platform::linux_::LinuxTrialDecoder;
  zelvo::platform::linux_::Services system(LinuxPathProbe::thisProgram());
  zelvo::platform::linux_::LinuxLockedFiles lockedFiles;
  zelvo::platform::linux_::LinuxChecksums checksums;
  zelvo::platform::linux_::LinuxMemoryView memory;
  zelvo::platform::linux_::LinuxFilmPrograms filmPrograms(LinuxBundle::runningProgram());
  if (parent != nullptr) {
    system.workers.useAtMost(parent->threads());
    if (parent->wantsProgress()) {
      console.setProgressTo([parent](std::string_view line, const zelvo::salvage::FilmStep& step) {
        zelvo::cli::tellProgress(*parent, line, step);
      });
    }
  }
  LinuxTrialDecoder decoder(LinuxTrialDecoder::programBeside(LinuxBundle::runningProgram()));
  LinuxFilmPlayer player(LinuxFilmPlayer::programBeside(LinuxBundle::runningProgram()));
  zelvo::cli::Environment environment{
      .files = system.files,
      .fileManager = system.fileManager,
      .newFiles = system.newFiles,
      .workers = system.workers,
      .mainQueue = system.mainQueue,
      .runUntil = [&](const std::function<bool()>& done) { system.mainQueue.runUntil(done); },
      .lookAtStorage = [&] { return system.lookAtStorage(); },
      .propertyLists = system.propertyLists,
      .trialDecoder = decoder,
      .filmPlayer = player,
      .console = console,
      .stopRequested = stopRequested,
      .lockedFiles = &lockedFiles,
      .checksums = &checksums,
      .memory = &memory,
      .filmPrograms = &filmPrograms,
      .parent = parent};
  return command.run(environment);
}

/// What was printed but could not be written counts as a failure too.
zelvo::cli::Exit withResultWritten(zelvo::cli::Exit exit, zelvo::cli::Console& console) {
  if (console.flushResult()) return exit;
  if (console.resultError() != std::errc::broken_pipe) {
    console.error("the result could not be printed: " + console.resultError().message() + ".");
  }
  return zelvo::cli::worse(exit, zelvo::cli::Exit::ioFailed);
}

}  // namespace

int main(int argc, char** argv) {
  const std::span<char* const> arguments(argv, static_cast<std::size_t>(argc));
  if (zelvo::platform::linux_::isProbeChild(arguments)) zelvo::platform::linux_::answerForPaths(arguments);
  installSignals();
  giveBackLargeBlocks();
  // A film's program is a command line like any other, behind one argument of its own.
  std::optional<zelvo::platform::linux_::LinuxFilmParent> parent;
  if (zelvo::platform::linux_::LinuxFilmParent::isAsked(arguments)) {
    parent.emplace(arguments[1]);
    argv[1] = argv[0];
    ++argv;
    --argc;
  }
  zelvo::cli::Console console(::isatty(STDERR_FILENO) == 1, ::isatty(STDOUT_FILENO) == 1);
  zelvo::cli::Exit exit = zelvo::cli::Exit::ioFailed;
  try {
    const zelvo::cli::CommandLine line = zelvo::cli::readCommandLine(argc, argv, console);
    exit = line.command ? runCommand(*line.command, console, parent ? &*parent : nullptr) : line.exit;
  } catch (const std::bad_alloc&) {
    console.error("there is not enough memory.");
  } catch (const std::system_error& error) {
    console.error("the system refused what the program needs: " + error.code().message() + ".");
  }
  return static_cast<int>(withResultWritten(exit, console));
}
