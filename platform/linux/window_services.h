/// What the window stands on besides: the bundle, the network, other programs, the log. In the order in which it is
/// made.
#pragma once

#include <memory>
#include <string>

#include "platform/linux/bundle.h"
#include "platform/linux/chooser_files.h"
#include "platform/linux/clock.h"
#include "platform/linux/digest.h"
#include "platform/linux/film_programs.h"
#include "platform/linux/folder_trees.h"
#include "platform/linux/launcher.h"
#include "platform/linux/locked_files.h"
#include "platform/linux/log.h"
#include "platform/linux/loop_waker.h"
#include "platform/linux/print_sink.h"
#include "platform/linux/program_starter.h"
#include "platform/linux/reachability.h"
#include "platform/linux/scratch_paths.h"
#include "platform/linux/services.h"
#include "platform/linux/user.h"
#include "platform/linux/web.h"
#include "platform/path_mapper.h"

namespace zelvo::platform::linux_ {

/// Lines to the system log, and to whoever started the program in a terminal.
class WindowLog final : public Log {
 public:
  explicit WindowLog(const char* name) : system_(name) {}
  void line(std::string_view text) override {
    system_.line(text);
    if (hasTerminal_) terminal_.line(text);
  }

 private:
  SystemLog system_;
  StandardErrorLog terminal_{"", false};
  const bool hasTerminal_ = standardErrorIsTerminal();
};

struct WindowServices : Services {
  /// What the log and the places of the application are called; the texts outlive the services.
  struct Names {
    const char* log = "";
    FixedPath applications;           ///< where the scratch pair lies when this user may write there
    std::string_view settingsFolder;  ///< below the user's settings
  };

  WindowServices(const WebLibrary& webLibrary, const Names& names)
      : Services(LinuxPathProbe::programBeside(LinuxBundle::runningProgram())),
        log(names.log),
        web(webLibrary),
        scratchPaths(std::string(names.applications.text()), cacheFolder(),
                     configFolder() + "/" + std::string(names.settingsFolder) + "/working-folder"),
        applications(paths.mapped(names.applications)) {}

  /// Programs of the command line, which lies beside this one.
  [[nodiscard]] std::unique_ptr<FilmPrograms> makeFilmPrograms() const {
    return std::make_unique<LinuxFilmPrograms>(LinuxFilmPrograms::programBeside(LinuxBundle::runningProgram()));
  }

  const std::string home = homeDirectory();
  WindowLog log;
  LinuxFolderTrees folderTrees;
  LinuxDigest digest;
  LinuxWeb web;
  LinuxReachability reachability;
  LinuxClock clock;
  StandardOutputSink printed;
  LinuxScratchPaths scratchPaths;
  const LinuxBundle bundle{files, propertyLists, LinuxBundle::runningProgram()};
  const PathMapper paths{bundle.prefix().value_or("/opt")};
  const std::string applications;  ///< the folder of the applications on this system
  LinuxLauncher launcher{propertyLists, applications};
  LinuxProgramStarter programStarter;
  LinuxLockedFiles lockedFiles;
  std::shared_ptr<LinuxChooserFiles> chooserFiles = std::make_shared<LinuxChooserFiles>();
};

}  // namespace zelvo::platform::linux_
