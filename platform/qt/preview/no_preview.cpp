#include "platform/qt/preview/no_preview.h"

#include "platform/qt/language.h"
#include "platform/qt/preview/shown_movie.h"

namespace zelvo::platform::qt {

namespace {

class UnshownMovie final : public ShownMovie {
 public:
  UnshownMovie(MainQueue& mainQueue, NotificationCentre& notifications)
      : mainQueue_(mainQueue), notifications_(notifications) {}

  void play() override {
    mainQueue_.perform([movie = shared_from_this(), &centre = notifications_] {
      centre.post({kMovieDidEndNotification, movie.get()});
    });
  }
  void stop() override {}
  void gotoBeginning() override {}
  void gotoTime(double) override {}

  void beginShow(std::function<void()>) override {}
  void pauseShow() override {}
  void endShow() override {}
  QSize shape() const override { return {}; }
  QImage picture(QSize) override { return {}; }
  QString remark() const override {
    return translated("No preview in this build. You can save the film and open it in a player.");
  }
  bool isPlaying() const override { return false; }
  void setPaused(bool) override {}
  bool isPaused() const override { return false; }
  double position() const override { return 0; }
  std::optional<double> duration() const override { return std::nullopt; }
  void setLoudness(const Loudness&) override {}

 private:
  MainQueue& mainQueue_;
  NotificationCentre& notifications_;
};

}  // namespace

LoadedMovie NoPreviewLoader::movieWithFile(const std::string&) {
  return {std::make_shared<UnshownMovie>(mainQueue_, notifications_), std::nullopt};
}

}  // namespace zelvo::platform::qt
