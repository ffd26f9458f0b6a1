// zelvo-avi-repair, the window: joins the controller with the system and with a window that people see.

#include <QApplication>
#include <QIcon>
#include <QUrl>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "app/application_main.h"
#include "app/controller.h"
#include "app/texts.h"
#include "app/window_controls.h"
#include "app/wire.h"
#include "platform/linux/linux_bundle.h"
#include "platform/linux/linux_clock.h"
#include "platform/linux/linux_digest.h"
#include "platform/linux/linux_file_manager.h"
#include "platform/linux/linux_files.h"
#include "platform/linux/linux_folder_trees.h"
#include "platform/linux/linux_launcher.h"
#include "platform/linux/linux_log.h"
#include "platform/linux/linux_main_queue.h"
#include "platform/linux/linux_path_probe.h"
#include "platform/linux/linux_print_sink.h"
#include "platform/linux/linux_property_lists.h"
#include "platform/linux/linux_reachability.h"
#include "platform/linux/linux_scratch_paths.h"
#include "platform/linux/linux_storage.h"
#include "platform/linux/linux_user.h"
#include "platform/linux/linux_web.h"
#include "platform/linux/linux_workers.h"
#include "platform/qt/appearance.h"
#include "platform/qt/main_window.h"
#include "platform/qt/movie_preview.h"
#include "platform/qt/movie_widget.h"
#include "platform/qt/panel_frame.h"
#include "platform/qt/pictures.h"
#include "platform/qt/qt_actions.h"
#include "platform/qt/qt_alert_panels.h"
#include "platform/qt/qt_application.h"
#include "platform/qt/qt_file_panels.h"
#include "platform/qt/qt_movie_view.h"
#include "platform/qt/qt_wait_panels.h"
#include "platform/qt/qt_workspace.h"
#include "platform/qt/window_texts.h"
#include "update/updates.h"

namespace {

namespace app = zelvo::app;
namespace platform = zelvo::platform;
namespace qt = zelvo::platform::qt;
namespace system_ = zelvo::platform::linux_;

/// Of the desktop's icon theme, where the program is installed.
const QString kIconName = QStringLiteral("zelvo-avi-repair");

constexpr const char* kHelp =
    "Usage: zelvo-avi-repair [--appearance light|dark] [FILE]\n"
    "\n"
    "Opens the window of Zelvo AVI Repair, with FILE chosen when it is given.\n"
    "\n"
    "  --appearance light|dark   how the window looks; as the desktop asks without it\n"
    "  --help                    this text\n"
    "  --version                 the version\n"
    "\n"
    "Without a window: zelvo-avi repair FILE\n";

struct Options {
  std::optional<qt::Appearance> appearance;
  std::optional<std::string> file;
  std::optional<int> exit;  ///< there is nothing more to do
};

Options wrongUse(const std::string& what) {
  std::fprintf(stderr, "zelvo-avi-repair: %s\n%s", what.c_str(), kHelp);
  constexpr int kWrongUse = 2;
  return {.appearance = {}, .file = {}, .exit = kWrongUse};
}

/// Reads the program's own options; what the toolkit understands (-platform, -style) it has taken away by then, unless
/// there is nothing to show.
Options readOptions(int argc, char** argv) {
  Options options;
  bool onlyFiles = false;
  for (int i = 1; i < argc; ++i) {
    const std::string_view one = argv[i];
    if (!onlyFiles && one == "--") {
      onlyFiles = true;
    } else if (!onlyFiles && one == "--help") {
      std::fputs(kHelp, stdout);
      options.exit = 0;
    } else if (!onlyFiles && one == "--version") {
      std::puts("zelvo-avi-repair " ZELVO_VERSION);
      options.exit = 0;
    } else if (!onlyFiles && one == "--appearance") {
      const std::string_view value = i + 1 < argc ? argv[++i] : "";
      if (value != "light" && value != "dark") return wrongUse("--appearance is \"light\" or \"dark\".");
      options.appearance = value == "dark" ? qt::Appearance::dark : qt::Appearance::light;
    } else if (!onlyFiles && one.starts_with("-") && one.size() > 1) {
      return wrongUse("there is no option " + std::string(one) + ".");
    } else if (options.file) {
      return wrongUse("one film at a time.");
    } else {
      std::error_code error;
      const auto whole = std::filesystem::absolute(std::filesystem::path(one), error);
      options.file = error ? std::string(one) : whole.string();
    }
  }
  return options;
}

/// True when the program only has to say something and needs no display for it.
bool asksForWordsOnly(int argc, char** argv) {
  for (int i = 1; i < argc; ++i) {
    const std::string_view one = argv[i];
    if (one == "--") return false;
    if (one == "--help" || one == "--version") return true;
  }
  return false;
}

/// Lines to the system log, and to whoever started the program in a terminal.
class WindowLog final : public platform::Log {
 public:
  void line(std::string_view text) override {
    system_.line(text);
    if (hasTerminal_) terminal_.line(text);
  }

 private:
  system_::SystemLog system_{"ZelvoAVIRepair"};
  system_::StandardErrorLog terminal_{"", false};
  const bool hasTerminal_ = system_::standardErrorIsTerminal();
};

/// Everything that the controller stands on, in the order in which it is made.
class Program {
 public:
  Program(const system_::WebLibrary& webLibrary, const Options& options) : options_(options), web_(webLibrary) {
    window_.panels().setControls(&windowControls_);
    windowControls_.dress(window_.hostedViews());
    app::wire(controller_, window_.jobOutlets(), actions_, application_);
    window_.setFileReceiver([this](const std::string& file) {
      panels_.noteInput(file);
      controller_.offerFile(file);
    });
    window_.setHelpPage(QUrl::fromEncoded(QByteArray::fromStdString(paths_.mapped(app::texts::kHelpPage1))));
    workspace_.setUnopenedReceiver([this](const QUrl& address) { window_.showUnopened(address); });
    tellOfUpdates();
    if (!QIcon::hasThemeIcon(kIconName)) QApplication::setWindowIcon(pictures_.icon("zelvo-avi-repair"));
    if (options_.file) application_.setStartHandler([this] { window_.offerFile(*options_.file); });
  }
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;
  ~Program() { window_.panels().setControls(nullptr); }

  int run() { return app::applicationMain(application_, controller_); }

 private:
  /// The buttons say beforehand what a press cannot come to.
  void tellOfUpdates() {
    switch (updates_.means()) {
      case zelvo::update::UpdateMeans::noAddress:
        window_.setUpdateRemark(qt::texts::noUpdateAddress());
        break;
      case zelvo::update::UpdateMeans::noUpdater:
        window_.setUpdateRemark(qt::texts::noUpdater());
        break;
      case zelvo::update::UpdateMeans::all:
        break;
    }
  }

  Options options_;
  const std::string home_ = system_::homeDirectory();
  WindowLog log_;
  system_::LinuxMainQueue mainQueue_;
  system_::LinuxWorkers workers_;
  system_::LinuxFiles files_;
  system_::LinuxFileManager fileManager_;
  system_::LinuxFolderTrees folderTrees_;
  system_::LinuxPropertyLists propertyLists_;
  system_::LinuxDigest digest_;
  system_::LinuxWeb web_;
  system_::LinuxReachability reachability_;
  system_::LinuxClock clock_;
  system_::StandardOutputSink printed_;
  system_::LinuxScratchPaths scratchPaths_{std::string(app::texts::kApplications.text()), system_::cacheFolder(),
                                           system_::configFolder() + "/zelvo-avi-repair/working-folder"};
  const system_::LinuxBundle bundle_{files_, propertyLists_, system_::LinuxBundle::runningProgram()};
  const platform::PathMapper paths_{bundle_.prefix().value_or("/opt")};
  const std::string applications_ = paths_.mapped(app::texts::kApplications);
  system_::LinuxPathProbe pathProbe_{system_::LinuxPathProbe::programBeside(system_::LinuxBundle::runningProgram())};
  system_::LinuxLauncher launcher_{propertyLists_, applications_};

  platform::NotificationCentre notifications_;
  qt::Pictures pictures_{bundle_.bundlePath() + "/Contents/Resources"};
  app::WindowControls windowControls_{notifications_};
  std::unique_ptr<platform::MovieLoader> movies_ =
      qt::makeMovieLoader({.mainQueue = mainQueue_, .workers = workers_, .notifications = notifications_, .log = log_});
  qt::MovieWidget* const movie_ = new qt::MovieWidget;  // the window takes it over
  qt::QtMovieView movieView_{mainQueue_, *movie_};
  qt::MainWindow window_{mainQueue_, pictures_, movie_, movieView_};
  qt::QtApplication application_{mainQueue_, window_};
  qt::QtSheets sheets_{window_.panels(), mainQueue_};
  qt::QtAlertPanels alertPanels_{window_.panels(), application_};
  qt::QtWaitPanels waitPanels_{window_.panels(), application_};
  qt::QtPanels panels_{window_.panels(), alertPanels_, &pathProbe_};
  qt::QtActions actions_;
  qt::QtTracking tracking_;
  qt::QtCursor cursor_;
  qt::QtWorkspace workspace_{window_, launcher_, applications_, std::string(app::texts::kBundleIdentifier)};

  zelvo::update::Updates updates_{{.reachability = reachability_,
                                   .web = web_,
                                   .propertyLists = propertyLists_,
                                   .digest = digest_,
                                   .launcher = launcher_,
                                   .alertPanels = alertPanels_,
                                   .files = files_,
                                   .fileManager = fileManager_,
                                   .folderTrees = folderTrees_,
                                   .workers = workers_,
                                   .clock = clock_,
                                   .bundle = bundle_,
                                   .paths = paths_}};
  app::Orlin_Repair_AVIAppDelegate controller_{
      app::AppServices{
          .application = application_,
          .files = files_,
          .openUnattended = [](const std::string& path) { return system_::LinuxFiles().openForReading(path); },
          .fileManager = fileManager_,
          .scratchPaths = scratchPaths_,
          .workers = workers_,
          .mainQueue = mainQueue_,
          .clock = clock_,
          .log = log_,
          .sheets = sheets_,
          .panels = panels_,
          .alertPanels = alertPanels_,
          .waitPanels = waitPanels_,
          .movies = *movies_,
          .notifications = notifications_,
          .tracking = tracking_,
          .cursor = cursor_,
          .workspace = workspace_,
          .bundle = bundle_,
          .paths = paths_,
          .pathProbe = pathProbe_,
          .updateCheck = updates_,
          .lookAtStorage =
              [this] {
                const auto snapshot = std::make_shared<system_::LinuxStorageSnapshot>(pathProbe_);
                return platform::StorageView{snapshot, snapshot};
              },
          .printed = printed_,
          .homeDirectory = home_},
      window_.controllerOutlets(), window_.jobOutlets()};
};

}  // namespace

int main(int argc, char** argv) {
  if (asksForWordsOnly(argc, argv)) return readOptions(argc, argv).exit.value_or(0);
  const system_::WebLibrary webLibrary;  // before any thread
  QApplication application(argc, argv);
  const Options options = readOptions(argc, argv);
  if (options.exit) return *options.exit;
  QApplication::setDesktopFileName(QStringLiteral("zelvo-avi-repair"));
  QApplication::setWindowIcon(QIcon::fromTheme(kIconName));
  qt::apply(options.appearance.value_or(qt::desktopAppearance()));
  qt::installPanelAccessibility();
  return Program(webLibrary, options).run();
}
