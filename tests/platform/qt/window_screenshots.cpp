// window_screenshots FOLDER: writes a picture of every page and panel of the window, light and dark, as PNG files. What
// they show is the program at work on a film. LANGUAGE=de shows them in German, as the window chooses its language.
#include <QApplication>
#include <QDir>
#include <QLocale>
#include <QPixmap>
#include <QTimer>
#include <cstdio>
#include <string>
#include <utility>

#include "app/shown_size.h"
#include "app/texts.h"
#include "platform/qt/drawing/appearance.h"
#include "platform/qt/language.h"
#include "platform/qt/panels/panel_frame.h"
#include "tests/platform/qt/deep_shots.h"
#include "tests/platform/qt/window_bench.h"
#include "tests/support/ffmpeg.h"

namespace {

namespace app = zelvo::app;
namespace platform = zelvo::platform;
namespace qt = zelvo::platform::qt;

/// As the application says it.
std::string said(std::string_view english, std::initializer_list<std::string_view> values = {}) {
  return platform::filled(qt::QtTranslator().translated(english), values);
}

std::string size(std::uint64_t bytes) { return app::shownSize(bytes, qt::QtTranslator()); }

/// A calm film of four seconds.
std::string makeFilm(const zelvo::tests::TempFolder& folder) {
  const std::string path = folder.path("MVI_0042.AVI");
  const bool made = zelvo::tests::runFfmpeg(
      "-y -f lavfi -i "
      "gradients=size=640x360:rate=25:c0=0x0b3c5d:c1=0xf2b134:x0=0:y0=360:x1=640:y1=0:nb_colors=2:speed=0.02 "
      "-f lavfi -i sine=frequency=440 -t 4 -c:v mjpeg -q:v 2 -c:a libmp3lame -b:a 128k -f avi '" +
      path + "'");
  if (!made) std::fprintf(stderr, "ffmpeg could not make a film\n");
  return path;
}

class Photographer {
 public:
  Photographer(QString folder, QString suffix) : folder_(std::move(folder)), suffix_(std::move(suffix)) {
    bench_.window->resize(960, 620);  // whatever the screen's size
  }

  void takeAll() {
    const std::string film = makeFilm(bench_.temp);
    take("choose");
    bench_.window->choosePage().browsebutton->click();
    take("open");
    bench_.key(Qt::Key_Escape);
    takeAbout();
    takePanel("no-film", panels_.filenotselectedwindow);
    takeAlert("cannot-be-chosen", [&] { bench_.window->offerFile(bench_.temp.put("letter.txt", "x")); });
    takeAlert("quit", [&] { bench_.window->close(); });
    bench_.window->offerFile(film);
    bench_.until([this] { return bench_.window->choosePage().dropArea->facts().contains(QChar(0xb7)); });
    take("chosen");
    takeRepairing();
    bench_.repair(film);
    takeResult();
    takeDeepRepair(film);
  }

 private:
  /// At each scale, and at the smallest size.
  void takeDeepRepair(const std::string& film) {
    bench_.window->controllerOutlets().tabview.selectFirstTabViewItem();
    const auto takeScaled = [this](const char* name) {
      take(name);
      for (const double scale : {1.5, 2.0}) takeAt(scale, name);
    };
    zelvo::tests::showDeepStates(bench_, film, takeScaled);
    const QSize usual = bench_.window->size();
    bench_.window->setMinimumSize(640, 420);
    bench_.window->resize(640, 420);
    const auto takeSmall = [this](const char* name) { take((std::string(name) + "-small").c_str()); };
    zelvo::tests::showDeepStates(bench_, film, takeSmall);
    bench_.window->resize(usual);
  }

  void takeAt(double scale, const char* name) {
    bench_.settle();
    QImage image((QSizeF(bench_.window->size()) * scale).toSize(), QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    bench_.window->render(&image);
    const QString file =
        QStringLiteral("%1/%2-%3-%4.png").arg(folder_, QLatin1String(name), suffix_, QString::number(scale));
    if (!image.save(file)) std::fprintf(stderr, "cannot write %s\n", qPrintable(file));
  }

  void takeAbout() {
    bench_.window->setVersion(QStringLiteral("0.1.0"));
    bench_.window->choosePage().mark->click();
    take("about");
    bench_.key(Qt::Key_Escape);
  }

  void takeRepairing() {
    const platform::ControllerOutlets& outlets = bench_.window->controllerOutlets();
    outlets.tabview.selectNextTabViewItem();
    outlets.pathlabel.setStringValue("/media/camera/DCIM/2019-06-22 wedding of Anna and Paul/MVI_0042.AVI");
    bench_.window->jobOutlets().textfield.setStringValue("Retrieving audio/ video data forks..");
    outlets.progressbar.setDoubleValue(38.4);
    outlets.own.runprogress.follow([] {
      return platform::RunProgress{platform::RunStage::searching, 281900000, 734000000};
    });
    take("repairing");
    takePanel("stop-repair", panels_.stoprepairwindow);
    outlets.own.waitingtext.setStringValue(said(app::texts::kWaitsForOtherRun));
    take("waiting");
    outlets.own.waitingtext.setStringValue("");
    takePanel("invalid", panels_.invalidfilewindow);
    outlets.own.invalidfilehead.setTitle(said(app::texts::kGoneTitle));
    outlets.own.invalidfiletext.setStringValue(said(app::texts::kNoSuchFilmMessage));
    takePanel("film-gone", panels_.invalidfilewindow);
    outlets.own.rejectionreason.show(platform::Rejection::noSound);
    takePanel("not-supported", panels_.filenotsupportedwindow);
    takePanel("completed", panels_.repaircompletedwindow);
    outlets.own.filmreport.show(report(platform::FilmVerdict::partly));
    takePanel("completed-partly", panels_.repaircompletedwindow);
    outlets.own.filmreport.show(report(platform::FilmVerdict::nothing));
    takePanel("completed-nothing", panels_.repaircompletedwindow);
    outlets.own.filmreport.clear();
    takeAlert("write-failed", [&] {
      bench_.alerts->runAlertPanel(
          {.title = said(app::texts::kWriteFailedTitle),
           .message = said(app::texts::kRepairNotWritten,
                           {said(app::texts::kRoomThereAndNeeded,
                                 {"No space left on device", size(12300000),
                                  "/home/anna/.cache/zelvo-avi-repair/scratch-1", size(734000000)})}),
           .defaultButton = app::texts::kOk,
           .alternateButton = std::nullopt,
           .otherButton = std::nullopt});
    });
    takeAlert("no-working-folder", [&] {
      bench_.alerts->runAlertPanel({.title = said(app::texts::kNoWorkingFolderTitle),
                                    .message = said(app::texts::kNoWorkingFolderMessage,
                                                    {"/home/anna/.cache", "Permission denied",
                                                     said(app::texts::kRoom, {size(12300000), size(734000000)})}),
                                    .defaultButton = said(app::texts::kChooseAnotherFolder),
                                    .alternateButton = said(app::texts::kCancel),
                                    .otherButton = std::nullopt});
    });
    takeAlert("finishing", [&] {
      static_cast<void>(bench_.waits->runWaitPanel({.title = said(app::texts::kFinishingTitle),
                                                    .message = said(app::texts::kFinishingMessage),
                                                    .cancelButton = said(app::texts::kCancel),
                                                    .percent = [] { return 71.0; },
                                                    .finished = [] { return false; }}));
    });
    outlets.tabview.selectFirstTabViewItem();
  }

  static platform::FilmReport report(platform::FilmVerdict verdict) {
    platform::FilmReport made;
    made.verdict = verdict;
    made.videoCodec = "Motion JPEG";
    made.audioCodec = "MP3";
    if (verdict == platform::FilmVerdict::nothing) return made;
    made.pictures = 2412;
    made.soundChunks = 2000;
    made.pictureSeconds = 96.48;
    made.soundSeconds = 95.1;
    made.share = 0.87;
    return made;
  }

  /// The result page by each verdict, at the usual size and at the smallest.
  void takeVerdicts() {
    const platform::ControllerOutlets& outlets = bench_.window->controllerOutlets();
    platform::FilmReport partly = report(platform::FilmVerdict::partly);
    outlets.own.filmreport.show(partly);
    take("result-partly");
    partly.failedReads = 4;
    partly.unreadableBytes = 12288;
    partly.firstUnreadable = 104857600;
    partly.blankPictures = 61;
    outlets.own.filmreport.show(partly);
    take("result-failed-reads");
    const QSize usual = bench_.window->size();
    bench_.window->setMinimumSize(640, 420);
    bench_.window->resize(640, 420);
    take("result-small");
    bench_.window->resize(usual);
    outlets.own.filmreport.show(report(platform::FilmVerdict::nothing));
    take("result-nothing");
  }

  void takeResult() {
    qt::ResultPage& page = bench_.window->resultPage();
    bench_.until([this] { return hasPicture(); });
    take("result");
    page.previewbutton->click();
    bench_.settle();
    take("previewing");
    page.previewbutton->click();
    page.savebutton->click();
    bench_.until([this] { return !bench_.window->panels().isEmpty(); });
    take("save");
    bench_.key(Qt::Key_Escape);
    const platform::ControllerOutlets& outlets = bench_.window->controllerOutlets();
    outlets.saveprogressbar.setDoubleValue(62.0);
    outlets.own.savedbytestext.setStringValue(said(app::texts::kCopied, {size(455100000), size(734000000)}));
    bench_.window->panels().begin(panels_.saveprogresspanel);
    bench_.application->closeInput();
    take("saving");
    bench_.application->openInput();
    takePanel("stop-saving", panels_.stopsavingwindow);
    bench_.window->panels().orderOut(panels_.saveprogresspanel);
    outlets.savecompletedtext.setStringValue(
        said(app::texts::kSaveComplete, {"/home/anna/Videos/Repaired/repaired.avi"}));
    outlets.durationfield.setIntegerValue(217);
    takePanel("saved", panels_.savecompletedwindow);
    outlets.own.savecompletedhead.setTitle(said(app::texts::kSaveIncompleteTitle));
    outlets.own.savecompletedhead.setSign(platform::SheetSign::warning);
    outlets.own.savedsizelabel.setStringValue(said(app::texts::kLastNotSaved));
    outlets.savecompletedtext.setStringValue(said(
        app::texts::kSaveIncomplete, {said(app::texts::kRepairAgain, {said(app::texts::kRebuiltFileUnreadable,
                                                                           {size(28300000), "Input/output error"})})}));
    takePanel("saved-in-part", panels_.savecompletedwindow);
    outlets.own.savedsizelabel.setStringValue(said(app::texts::kLastSaved));
    takePanel("preview-error", panels_.PreviewErrorWindow);
    takeVerdicts();
    takeAlert("no-space", [&] {
      bench_.alerts->runAlertPanel({.title = app::texts::kNoSpaceTitle,
                                    .message = app::texts::kNoSpaceMessage,
                                    .defaultButton = app::texts::kOk,
                                    .alternateButton = std::nullopt,
                                    .otherButton = std::nullopt});
    });
  }

  /// True once the film's first picture stands in the middle of the result area.
  [[nodiscard]] bool hasPicture() {
    const QImage shown = bench_.movie->movie().grab().toImage();
    const QColor middle = shown.pixelColor(shown.rect().center());
    return middle != bench_.movie->palette().color(QPalette::Window) && middle != QColor(Qt::white);
  }

  void takePanel(const char* name, qt::PanelFrame& panel) {
    bench_.window->panels().begin(panel);
    take(name);
    bench_.window->panels().orderOut(panel);
  }

  /// `ask` opens a panel and waits for its answer.
  void takeAlert(const char* name, const std::function<void()>& ask) {
    bench_.onceAPanelIsUp([&](qt::PanelFrame&) {
      take(name);
      bench_.key(Qt::Key_Escape);
    });
    ask();
  }

  void take(const char* name) {
    bench_.settle();
    const QString file =
        folder_ + QLatin1Char('/') + QLatin1String(name) + QLatin1Char('-') + suffix_ + QStringLiteral(".png");
    if (!bench_.window->grab().save(file)) std::fprintf(stderr, "cannot write %s\n", qPrintable(file));
  }

  QString folder_;
  QString suffix_;
  zelvo::tests::WindowBench bench_;
  qt::WindowPanels& panels_ = bench_.window->fixedPanels();
};

}  // namespace

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  if (argc != 2) {
    std::fputs("Usage: window_screenshots FOLDER\n", stderr);
    return 2;
  }
  std::optional<qt::Language> language;
  if (const auto name = qt::knownLanguage(QLocale::system().uiLanguages())) language.emplace(*name);
  const QString folder = QString::fromLocal8Bit(argv[1]);
  QDir().mkpath(folder);
  for (const auto& [appearance, name] : {std::pair(qt::Appearance::light, "light"), {qt::Appearance::dark, "dark"}}) {
    qt::apply(appearance);
    Photographer(folder, QString::fromLatin1(name)).takeAll();
  }
  return 0;
}
