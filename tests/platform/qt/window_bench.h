/// The whole application in its real window, on files in a folder of its own: the real engine, threads, panels and
/// preview. Only the desktop (what it is asked to open) and the update check are written down instead of done.
#pragma once

#include <QString>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "app/application_main.h"
#include "app/controller.h"
#include "app/window_controls.h"
#include "app/wire.h"
#include "platform/headless/bundle.h"
#include "platform/headless/film_observer.h"
#include "platform/headless/path_probe.h"
#include "platform/headless/workspace.h"
#include "platform/linux/chooser_files.h"
#include "platform/linux/clock.h"
#include "platform/linux/file_manager.h"
#include "platform/linux/files.h"
#include "platform/linux/loop_waker.h"
#include "platform/linux/main_queue.h"
#include "platform/linux/print_sink.h"
#include "platform/linux/scratch_paths.h"
#include "platform/linux/workers.h"
#include "platform/qt/chooser/file_panels.h"
#include "platform/qt/chooser/film_choosers.h"
#include "platform/qt/deep/deep_pages.h"
#include "platform/qt/language.h"
#include "platform/qt/panels/alert_panels.h"
#include "platform/qt/panels/sheets.h"
#include "platform/qt/panels/wait_panels.h"
#include "platform/qt/preview/movie_pane.h"
#include "platform/qt/preview/movie_preview.h"
#include "platform/qt/preview/movie_view.h"
#include "platform/qt/window/actions.h"
#include "platform/qt/window/application.h"
#include "platform/qt/window/main_window.h"
#include "tests/platform/qt/code_place.h"
#include "tests/support/temp_folder.h"

namespace zelvo::tests {

/// Lines as they came, from any thread.
class EventLog final : public platform::Log {
 public:
  explicit EventLog(platform::headless::Events& events) : events_(events) {}
  void line(std::string_view text) override { events_.add("log: " + std::string(text)); }

 private:
  platform::headless::Events& events_;
};

/// Offers no update.
class NoUpdates final : public update::UpdateOperations {
 public:
  explicit NoUpdates(platform::headless::Events& events) : events_(events) {}
  bool checkForUpdate() override { return false; }
  bool isInternetAvailable() override { return false; }
  void checkForUpdateClicked(platform::Button* sender) override {
    events_.add(sender == nullptr ? "update check at start" : "update check asked for");
  }
  void update() override {}
  void autoUpdateScan(const update::ScanGates&) override {}
  void autoUpdateScanningThread() override {}
  void copyUpdator() override {}
  void updateCleanupThread() override {}
  bool isWriteDeletablePath(const std::string&) override { return false; }
  std::optional<std::string> md5(std::optional<std::span<const std::byte>>) override { return std::nullopt; }
  std::optional<std::string> hashString(const std::string&) override { return std::nullopt; }

 private:
  platform::headless::Events& events_;
};

class WindowBench {
 public:
  WindowBench();
  ~WindowBench();
  WindowBench(const WindowBench&) = delete;
  WindowBench& operator=(const WindowBench&) = delete;

  /// Serves events until `condition` holds. Waiting in vain fails and ends the test, and tells what the window shows.
  void until(const std::function<bool()>& condition,
             const ::zelvo::tests::CodePlace& where = ::zelvo::tests::CodePlace::current());
  /// The page, the panels, the keyboard's place and the last events, in words.
  [[nodiscard]] std::string looks() const;
  /// Serves the events that wait.
  void settle();
  /// Does `deed` as soon as a panel is up that was not when this was called. For what opens a modal panel.
  void onceAPanelIsUp(std::function<void(platform::qt::PanelFrame& panel)> deed);

  void click(QWidget& widget);
  /// A key of the keyboard, sent to what has the focus.
  void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
  void type(const QString& text);
  /// Chooses a film as a user who types its path.
  void chooseByTyping(const std::string& path);
  /// From page 1 to page 3.
  void repair(const std::string& path);
  [[nodiscard]] bool isShown(const platform::qt::PanelFrame& panel) { return window->panels().isShown(panel); }

  TempFolder temp;
  platform::headless::Events events;
  EventLog log{events};
  platform::linux_::LinuxMainQueue queue;
  platform::linux_::LinuxWorkers workers;
  platform::linux_::LinuxFiles files;
  platform::linux_::LinuxFileManager fileManager;
  platform::linux_::LinuxClock clock;
  platform::linux_::StandardOutputSink printed;
  platform::linux_::LinuxScratchPaths scratchPaths;
  platform::headless::HeadlessBundle bundle;
  platform::headless::HeadlessWorkspace workspace{&events};
  platform::PathMapper paths;
  platform::headless::HeadlessPathProbe pathProbe;
  NoUpdates updates{events};
  platform::headless::HeadlessFilmObserver films;
  platform::qt::QtTranslator translator;
  platform::NotificationCentre notifications;
  platform::qt::Pictures pictures{ZELVO_PICTURES};
  app::WindowControls windowControls{notifications};
  std::unique_ptr<platform::MovieLoader> movies;
  platform::qt::MoviePane* movie;
  std::unique_ptr<platform::qt::QtMovieView> movieView;
  std::unique_ptr<platform::qt::MainWindow> window;
  platform::qt::MoviePane* deepMovie;
  std::unique_ptr<platform::qt::QtMovieView> deepMovieView;
  std::unique_ptr<platform::qt::QtDeepPages> deep;
  std::unique_ptr<platform::qt::QtApplication> application;
  std::unique_ptr<platform::qt::QtSheets> sheets;
  std::unique_ptr<platform::qt::QtAlertPanels> alerts;
  std::unique_ptr<platform::qt::QtWaitPanels> waits;
  std::unique_ptr<platform::qt::QtPanels> panels;
  std::unique_ptr<platform::qt::QtFilmChoosers> filmChoosers;
  platform::qt::QtActions actions;
  platform::qt::QtTracking tracking;
  platform::qt::QtCursor cursor;
  std::unique_ptr<app::Orlin_Repair_AVIAppDelegate> controller;
};

/// A film of two seconds, MPEG-4 and MP3, of a little more than 512 KiB, without its index and with a stretch of zeros.
/// Answers its path.
[[nodiscard]] std::string damagedFilm(const TempFolder& folder, const std::string& name = "film.avi");

}  // namespace zelvo::tests
