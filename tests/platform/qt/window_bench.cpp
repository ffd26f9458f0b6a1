#include "tests/platform/qt/window_bench.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>
#include <QPointer>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <fstream>

#include "app/globals.h"
#include "engine/globals.h"
#include "platform/headless/screen.h"
#include "platform/qt/panels/panel_frame.h"
#include "tests/platform/qt/bounded_wait.h"
#include "tests/support/ffmpeg.h"

namespace zelvo::tests {

namespace qt = platform::qt;

WindowBench::WindowBench() : scratchPaths(temp.path("none"), temp.path("cache")), paths(temp.path()) {
  engine::resetGlobals();
  app::resetGlobals();
  movies = qt::makeMovieLoader({.mainQueue = queue, .workers = workers, .notifications = notifications, .log = log});
  movie = new qt::MoviePane;
  movieView = std::make_unique<qt::QtMovieView>(queue, movie->movie());
  window = std::make_unique<qt::MainWindow>(queue, pictures, movie, *movieView);
  deepMovie = new qt::MoviePane;
  deepMovieView = std::make_unique<qt::QtMovieView>(queue, deepMovie->movie());
  deep = std::make_unique<qt::QtDeepPages>(*window, deepMovie, *deepMovieView);
  application = std::make_unique<qt::QtApplication>(queue, *window, platform::linux_::loopWakers());
  sheets = std::make_unique<qt::QtSheets>(window->panels(), queue);
  alerts = std::make_unique<qt::QtAlertPanels>(window->panels(), *application);
  waits = std::make_unique<qt::QtWaitPanels>(window->panels(), *application);
  panels = std::make_unique<qt::QtPanels>(window->panels(), *alerts,
                                          std::make_shared<platform::linux_::LinuxChooserFiles>());
  filmChoosers = std::make_unique<qt::QtFilmChoosers>(window->panels(), *alerts,
                                                      std::make_shared<platform::linux_::LinuxChooserFiles>());
  controller = std::make_unique<app::Orlin_Repair_AVIAppDelegate>(
      app::AppServices{
          .application = *application,
          .files = files,
          .openUnattended = [](const std::string& path) { return platform::linux_::LinuxFiles().openForReading(path); },
          .fileManager = fileManager,
          .scratchPaths = scratchPaths,
          .workers = workers,
          .mainQueue = queue,
          .clock = clock,
          .log = log,
          .sheets = *sheets,
          .panels = *panels,
          .alertPanels = *alerts,
          .waitPanels = *waits,
          .movies = *movies,
          .notifications = notifications,
          .tracking = tracking,
          .cursor = cursor,
          .workspace = workspace,
          .bundle = bundle,
          .paths = paths,
          .pathProbe = pathProbe,
          .updateCheck = updates,
          .films = films,
          .lookAtStorage = [] { return platform::StorageView{}; },
          .printed = printed,
          .homeDirectory = temp.path(),
          .translator = translator},
      window->controllerOutlets(), window->jobOutlets());
  window->panels().setControls(&windowControls);
  windowControls.dress(window->hostedViews());
  app::wire(*controller, window->jobOutlets(), actions, *application);
  window->setFileReceiver([this](const std::string& file) { controller->offerFile(file); });
  window->setHelpPage(QUrl::fromLocalFile(QStringLiteral(ZELVO_HELP_PAGE)));
  controller->init();
  controller->awakeFromNib();
  application->showMainWindow();
  controller->applicationDidFinishLaunching();
  window->activateWindow();
  settle();
}

WindowBench::~WindowBench() {
  controller->applicationWillTerminate();
  application->drainMainQueue();
  controller.reset();
  window->panels().setControls(nullptr);
  application.reset();
  deep.reset();
  window.reset();
  workers.joinAll();
  engine::resetGlobals();
  app::resetGlobals();
  // A program that was ended runs no event loop again, until one was run to its end.
  QTimer::singleShot(0, QCoreApplication::instance(), [] { QCoreApplication::exit(0); });
  QCoreApplication::exec();
}

void WindowBench::until(const std::function<bool()>& condition, const ::zelvo::tests::CodePlace& where) {
  constexpr int kLookAgainMilliseconds = 20;
  waitUntil(
      condition,
      [this] {
        QTimer::singleShot(kLookAgainMilliseconds, window.get(), [] {});
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
      },
      [this] { return looks(); }, where);
}

std::string WindowBench::looks() const {
  std::string all = "page " + std::to_string(window->page() + 1);
  if (const qt::PanelFrame* const panel = window->panels().top()) {
    all += ", panel \"" + panel->title().toStdString() + "\" \"" + panel->message().text().toStdString() + "\"";
  }
  if (const QWidget* const focused = window->focusWidget()) {
    all += ", keyboard with " + std::string(focused->metaObject()->className()) + " \"" +
           focused->accessibleName().toStdString() + "\"";
  }
  const std::vector<std::string> lines = events.lines();
  constexpr std::size_t kLastLines = 5;
  for (std::size_t at = lines.size() - std::min(lines.size(), kLastLines); at < lines.size(); ++at) {
    all += "; " + lines[at];
  }
  return all;
}

void WindowBench::settle() {
  for (int turn = 0; turn < 3; ++turn) QCoreApplication::processEvents();
}

void WindowBench::onceAPanelIsUp(std::function<void(qt::PanelFrame& panel)> deed) {
  constexpr int kLookAgainMilliseconds = 5;
  auto* const timer = new QTimer(window.get());
  QObject::connect(timer, &QTimer::timeout, window.get(),
                   [this, timer, before = window->panels().top(), deed = std::move(deed)] {
                     qt::PanelFrame* const panel = window->panels().top();
                     if (panel == nullptr || panel == before) return;
                     timer->stop();
                     timer->deleteLater();
                     deed(*panel);
                   });
  timer->start(kLookAgainMilliseconds);
}

void WindowBench::click(QWidget& widget) {
  // Sent through the window, so that what lies above the widget takes it.
  QTest::mouseClick(window->windowHandle(), Qt::LeftButton, {}, widget.mapTo(window.get(), widget.rect().center()));
  settle();
}

void WindowBench::key(Qt::Key key, Qt::KeyboardModifiers modifiers) {
  QTest::keyClick(window->windowHandle(), key, modifiers);
  settle();
}

void WindowBench::type(const QString& text) {
  QWidget* const focused = QApplication::focusWidget();
  ASSERT_NE(focused, nullptr);
  QTest::keyClicks(focused, text);
  settle();
}

void WindowBench::chooseByTyping(const std::string& path) {
  key(Qt::Key_O, Qt::ControlModifier);
  until([this] { return !window->panels().isEmpty(); });
  type(QString::fromStdString(path));
  key(Qt::Key_Return);
  until([this] { return window->panels().isEmpty(); });
}

void WindowBench::repair(const std::string& path) {
  chooseByTyping(path);
  key(Qt::Key_R, Qt::ControlModifier);
  until([this] { return isShown(window->fixedPanels().repaircompletedwindow); });
  key(Qt::Key_Return);
  until([this] { return window->page() == 2; });
}

std::string damagedFilm(const TempFolder& folder, const std::string& name) {
  const std::string path = folder.path(name);
  EXPECT_TRUE(
      runFfmpeg("-y -f lavfi -i testsrc2=size=320x240:rate=25 -f lavfi -i sine=frequency=440 -t 2 -c:v mpeg4 "
                "-b:v 3000k -minrate 3000k -maxrate 3000k -bufsize 1000k -c:a libmp3lame -b:a 128k -f avi '" +
                path + "'"));
  std::string bytes = folder.content(name);
  const std::size_t index = bytes.rfind("idx1");
  EXPECT_NE(index, std::string::npos);
  bytes.resize(index);
  constexpr std::size_t kZeros = 4096;
  std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(bytes.size() / 2), kZeros, '\0');
  EXPECT_GT(bytes.size(), 524288U);
  return folder.put(name, bytes);
}

}  // namespace zelvo::tests
