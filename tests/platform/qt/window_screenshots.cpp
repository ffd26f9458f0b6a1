// window_screenshots FOLDER: writes a picture of every page and panel of the window, light and dark, as PNG files.
#include <QApplication>
#include <QDir>
#include <QPixmap>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "app/window_controls.h"
#include "platform/linux/linux_main_queue.h"
#include "platform/notification_centre.h"
#include "platform/qt/appearance.h"
#include "platform/qt/main_window.h"
#include "platform/qt/pictures.h"

namespace {

namespace app = zelvo::app;
namespace platform = zelvo::platform;
namespace qt = zelvo::platform::qt;

class NoMovieView final : public platform::MovieView {
 public:
  void setMovie(std::shared_ptr<platform::Movie>) override {}
};

class Photographer {
 public:
  Photographer(QString folder, QString suffix) : folder_(std::move(folder)), suffix_(std::move(suffix)) {
    window_.panels().setControls(&controls_);
    controls_.dress(window_.hostedViews());
    window_.show();
  }
  ~Photographer() { window_.panels().setControls(nullptr); }
  Photographer(const Photographer&) = delete;
  Photographer& operator=(const Photographer&) = delete;

  void takeAll() {
    const platform::ControllerOutlets& outlets = window_.controllerOutlets();
    const platform::JobOutlets& job = window_.jobOutlets();
    const char* const film = "/media/camera/DCIM/2019-06-22 wedding of Anna and Paul/MVI_0042.AVI";
    take("choose");
    outlets.textfield.setStringValue(film);
    take("choose-again");
    outlets.pathfield.setStringValue(film);
    take("chosen");
    takePanel("no-film", window_.fixedPanels().filenotselectedwindow);

    outlets.tabview.selectNextTabViewItem();
    outlets.pathlabel.setStringValue(film);
    job.textfield.setStringValue("Retrieving audio/ video data forks..");
    outlets.progressbar.setDoubleValue(38.4);
    take("repairing");
    takePanel("stop-repair", window_.fixedPanels().stoprepairwindow);
    takePanel("invalid", window_.fixedPanels().invalidfilewindow);
    takePanel("not-supported", window_.fixedPanels().filenotsupportedwindow);
    takePanel("completed", window_.fixedPanels().repaircompletedwindow);

    outlets.tabview.selectNextTabViewItem();
    job.videocodecfield.setStringValue("XVID");
    job.audiocodecfield.setStringValue("MP3");
    outlets.downloadmplayertext1.setStringValue("If you are unable to hear the audio or see the video clearly, ");
    outlets.downloadmplayertext2.setStringValue("please");
    outlets.downloadmplayertext3.setStringValue("for more");
    outlets.downloadmplayertext4.setStringValue("information.");
    outlets.clickherebutton.setHidden(false);
    outlets.durationfield.setIntegerValue(0);
    take("result");
    outlets.durationfield.setIntegerValue(217);
    outlets.previewbutton.setState(platform::Button::State::on);
    outlets.savebutton.setEnabled(false);
    outlets.main3.setEnabled(false);
    take("previewing");
    outlets.saveprogressbar.setDoubleValue(62.0);
    qt::PanelStack& panels = window_.panels();
    panels.begin(window_.fixedPanels().saveprogresspanel);
    take("saving");
    takePanel("stop-saving", window_.fixedPanels().stopsavingwindow);
    panels.orderOut(window_.fixedPanels().saveprogresspanel);
    outlets.savecompletedtext.setStringValue("The repaired file was saved as /home/anna/Videos/Repaired/repaired.avi.");
    takePanel("saved", window_.fixedPanels().savecompletedwindow);
    takePanel("preview-error", window_.fixedPanels().PreviewErrorWindow);
  }

 private:
  void takePanel(const char* name, qt::PanelFrame& panel) {
    window_.panels().begin(panel);
    take(name);
    window_.panels().orderOut(panel);
  }

  void take(const char* name) {
    for (int turn = 0; turn < 3; ++turn) QCoreApplication::processEvents();
    const QString file =
        folder_ + QLatin1Char('/') + QLatin1String(name) + QLatin1Char('-') + suffix_ + QStringLiteral(".png");
    if (!window_.grab().save(file)) std::fprintf(stderr, "cannot write %s\n", qPrintable(file));
  }

  QString folder_;
  QString suffix_;
  platform::linux_::LinuxMainQueue queue_;
  platform::NotificationCentre centre_;
  qt::Pictures pictures_{ZELVO_PICTURES};
  app::WindowControls controls_{centre_};
  NoMovieView movieView_;
  qt::MainWindow window_{queue_, pictures_, new qt::HostedWidget, movieView_};
};

}  // namespace

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  if (argc != 2) {
    std::fputs("Usage: window_screenshots FOLDER\n", stderr);
    return 2;
  }
  const QString folder = QString::fromLocal8Bit(argv[1]);
  QDir().mkpath(folder);
  for (const auto& [appearance, name] : {std::pair(qt::Appearance::light, "light"), {qt::Appearance::dark, "dark"}}) {
    qt::apply(appearance);
    Photographer(folder, QString::fromLatin1(name)).takeAll();
  }
  return 0;
}
