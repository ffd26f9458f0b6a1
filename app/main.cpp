// zelvo-avi-repair, the window: joins the controller with the system and with a window that people see.

#include <QApplication>
#include <QIcon>
#include <QLocale>
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
#include "deep/deep_repair.h"
#include "platform/linux/user.h"
#include "platform/linux/window_services.h"
#include "platform/qt/chooser/file_panels.h"
#include "platform/qt/chooser/film_choosers.h"
#include "platform/qt/deep/deep_pages.h"
#include "platform/qt/drawing/appearance.h"
#include "platform/qt/drawing/pictures.h"
#include "platform/qt/language.h"
#include "platform/qt/panels/alert_panels.h"
#include "platform/qt/panels/panel_frame.h"
#include "platform/qt/panels/sheets.h"
#include "platform/qt/panels/wait_panels.h"
#include "platform/qt/preview/movie_pane.h"
#include "platform/qt/preview/movie_preview.h"
#include "platform/qt/preview/movie_view.h"
#include "platform/qt/texts.h"
#include "platform/qt/window/actions.h"
#include "platform/qt/window/application.h"
#include "platform/qt/window/clipboard.h"
#include "platform/qt/window/main_window.h"
#include "platform/qt/window/settings.h"
#include "platform/qt/window/workspace.h"
#include "update/updates.h"

namespace {

namespace app = zelvo::app;
namespace deep = zelvo::deep;
namespace platform = zelvo::platform;
namespace qt = zelvo::platform::qt;
namespace linux_ = zelvo::platform::linux_;

/// Of the desktop's icon theme, where the program is installed.
const QString kIconName = QStringLiteral("zelvo-avi-repair");

/// Below the folder of the user's settings.
constexpr const char* kSettingsFolder = "zelvo-avi-repair";

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

/// Everything that the controller stands on, in the order in which it is made.
class Program {
 public:
  Program(const linux_::WebLibrary& webLibrary, const Options& options)
      : options_(options),
        system_(
            webLibrary,
            {.log = "ZelvoAVIRepair", .applications = app::texts::kApplications, .settingsFolder = kSettingsFolder}) {
    window_.panels().setControls(&windowControls_);
    windowControls_.dress(window_.hostedViews());
    app::wire(controller_, window_.jobOutlets(), actions_, application_);
    window_.setFileReceiver([this](const std::string& file) {
      panels_.noteInput(file);
      controller_.offerFile(file);
    });
    deepRepair_.wire(actions_);
    window_.setFilesReceiver([this](const std::vector<std::string>& files) { deepRepair_.takeFilms(files); });
    window_.setHelpPage(QUrl::fromEncoded(QByteArray::fromStdString(system_.paths.mapped(app::texts::kHelpPage1))));
    workspace_.setUnopenedReceiver([this](const QUrl& address) { window_.showUnopened(address); });
    window_.setSettings(settings_);
    for (qt::MoviePane* pane : {movie_, deepMovie_}) pane->setSettings(settings_);
    window_.setVersion(QStringLiteral(ZELVO_VERSION));
    reportUpdates();
    if (!QIcon::hasThemeIcon(kIconName)) QApplication::setWindowIcon(pictures_.icon("zelvo-avi-repair"));
    if (options_.file) application_.setStartHandler([this] { window_.offerFile(*options_.file); });
  }
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;
  ~Program() { window_.panels().setControls(nullptr); }

  int run() {
    deepRepair_.start();
    return app::applicationMain(application_, controller_);
  }

 private:
  /// The buttons say beforehand what a press cannot come to.
  void reportUpdates() {
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
  linux_::WindowServices system_;

  qt::QtTranslator translator_;
  qt::QtSettings settings_{linux_::configFolder() + "/" + kSettingsFolder + "/window.ini"};
  platform::NotificationCentre notifications_;
  qt::Pictures pictures_{system_.bundle.bundlePath() + "/Contents/Resources"};
  app::WindowControls windowControls_{notifications_};
  std::unique_ptr<platform::MovieLoader> movies_ = qt::makeMovieLoader({.mainQueue = system_.mainQueue,
                                                                        .workers = system_.workers,
                                                                        .notifications = notifications_,
                                                                        .log = system_.log});
  qt::MoviePane* const movie_ = new qt::MoviePane;  // the window takes it over
  qt::QtMovieView movieView_{system_.mainQueue, movie_->movie()};
  qt::MainWindow window_{system_.mainQueue, pictures_, movie_, movieView_};
  qt::MoviePane* const deepMovie_ = new qt::MoviePane;  // the window takes it over
  qt::QtMovieView deepMovieView_{system_.mainQueue, deepMovie_->movie()};
  qt::QtDeepPages deepPages_{window_, deepMovie_, deepMovieView_};
  qt::QtApplication application_{system_.mainQueue, window_, linux_::loopWakers()};
  qt::QtSheets sheets_{window_.panels(), system_.mainQueue};
  qt::QtAlertPanels alertPanels_{window_.panels(), application_};
  qt::QtWaitPanels waitPanels_{window_.panels(), application_};
  qt::QtPanels panels_{window_.panels(), alertPanels_, system_.chooserFiles, &system_.pathProbe};
  qt::QtActions actions_;
  qt::QtTracking tracking_;
  qt::QtCursor cursor_;
  qt::QtWorkspace workspace_{window_, system_.launcher, system_.programStarter, system_.applications,
                             std::string(app::texts::kBundleIdentifier)};

  zelvo::update::Updates updates_{{.reachability = system_.reachability,
                                   .web = system_.web,
                                   .propertyLists = system_.propertyLists,
                                   .digest = system_.digest,
                                   .launcher = system_.launcher,
                                   .alertPanels = alertPanels_,
                                   .files = system_.files,
                                   .fileManager = system_.fileManager,
                                   .folderTrees = system_.folderTrees,
                                   .workers = system_.workers,
                                   .clock = system_.clock,
                                   .bundle = system_.bundle,
                                   .paths = system_.paths}};
  /// The ends of its movies are nobody's business but its own: the given preview hears of every end in its centre.
  platform::NotificationCentre deepNotifications_;
  std::unique_ptr<platform::MovieLoader> deepMovies_ = qt::makeMovieLoader({.mainQueue = system_.mainQueue,
                                                                            .workers = system_.workers,
                                                                            .notifications = deepNotifications_,
                                                                            .log = system_.log});
  qt::QtFilmChoosers filmChoosers_{window_.panels(), alertPanels_, system_.chooserFiles, &system_.pathProbe};
  qt::QtClipboard clipboard_;
  deep::DeepRepair deepRepair_{
      deep::DeepServices{.files = system_.files,
                         .fileManager = system_.fileManager,
                         .newFiles = system_.newFiles,
                         .lockedFiles = system_.lockedFiles,
                         .workers = system_.workers,
                         .mainQueue = system_.mainQueue,
                         .clock = system_.clock,
                         .log = system_.log,
                         .sheets = sheets_,
                         .alertPanels = alertPanels_,
                         .choosers = filmChoosers_,
                         .movies = *deepMovies_,
                         .workspace = workspace_,
                         .clipboard = clipboard_,
                         .settings = settings_,
                         .pathProbe = system_.pathProbe,
                         .translator = translator_,
                         .makePrograms = [this] { return system_.makeFilmPrograms(); },
                         .scratchFolders = [this] { return system_.scratchPaths.privateFolders(); },
                         .process = QApplication::applicationPid()},
      deepPages_.outlets()};
  app::Orlin_Repair_AVIAppDelegate controller_{
      app::AppServices{
          .application = application_,
          .files = system_.files,
          .openUnattended = [](const std::string& path) { return linux_::LinuxFiles().openForReading(path); },
          .fileManager = system_.fileManager,
          .scratchPaths = system_.scratchPaths,
          .workers = system_.workers,
          .mainQueue = system_.mainQueue,
          .clock = system_.clock,
          .log = system_.log,
          .sheets = sheets_,
          .panels = panels_,
          .alertPanels = alertPanels_,
          .waitPanels = waitPanels_,
          .movies = *movies_,
          .notifications = notifications_,
          .tracking = tracking_,
          .cursor = cursor_,
          .workspace = workspace_,
          .bundle = system_.bundle,
          .paths = system_.paths,
          .pathProbe = system_.pathProbe,
          .updateCheck = updates_,
          .films = deepRepair_,
          .lookAtStorage = [this] { return system_.lookAtStorage(); },
          .printed = system_.printed,
          .homeDirectory = system_.home,
          .translator = translator_},
      window_.controllerOutlets(), window_.jobOutlets()};
};

}  // namespace

int main(int argc, char** argv) {
  if (asksForWordsOnly(argc, argv)) return readOptions(argc, argv).exit.value_or(0);
  const linux_::WebLibrary webLibrary;  // before any thread
  QApplication application(argc, argv);
  const Options options = readOptions(argc, argv);
  if (options.exit) return *options.exit;
  std::optional<qt::Language> language;
  if (const auto name = qt::knownLanguage(QLocale::system().uiLanguages())) language.emplace(*name);
  QApplication::setDesktopFileName(QStringLiteral("zelvo-avi-repair"));
  QApplication::setWindowIcon(QIcon::fromTheme(kIconName));
  qt::apply(options.appearance.value_or(qt::desktopAppearance()));
  qt::installPanelAccessibility();
  return Program(webLibrary, options).run();
}
