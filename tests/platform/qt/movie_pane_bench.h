/// A pane with a movie, as a window of its own that real events of the mouse and the keyboard reach.
#pragma once

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QTest>
#include <QWindow>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/qt/preview/movie_pane.h"

namespace zelvo::tests {

/// Writes down what is asked of it, and is where it is told to be.
class ToldMovie final : public platform::qt::ShownMovie {
 public:
  void play() override {
    deeds.push_back("play");
    playing = true;
    tell();
  }
  void stop() override {
    deeds.push_back("stop");
    playing = paused = false;
    tell();
  }
  void gotoBeginning() override { gotoTime(0); }
  void gotoTime(double seconds) override {
    deeds.push_back("to " + QString::number(seconds, 'f', 3).toStdString());
    at = seconds;
    tell();
  }
  void beginShow(std::function<void()> told) override { changed_ = std::move(told); }
  void pauseShow() override { changed_ = nullptr; }
  void endShow() override { changed_ = nullptr; }
  QSize shape() const override { return {}; }
  QImage picture(QSize) override { return {}; }
  QString remark() const override { return {}; }
  bool isPlaying() const override { return playing; }
  void setPaused(bool wanted) override {
    deeds.push_back(wanted ? "pause" : "go on");
    paused = wanted;
    tell();
  }
  bool isPaused() const override { return paused; }
  double position() const override { return at; }
  std::optional<double> duration() const override { return length; }
  void setLoudness(const platform::qt::Loudness& wanted) override { loudness = wanted; }

  void tell() const {
    if (changed_) changed_();
  }

  std::vector<std::string> deeds;
  bool playing = false;
  bool paused = false;
  double at = 0;
  std::optional<double> length = 100.0;
  std::optional<platform::qt::Loudness> loudness;

 private:
  std::function<void()> changed_;
};

class RememberedSettings final : public platform::Settings {
 public:
  [[nodiscard]] std::optional<std::string> value(std::string_view key) const override {
    const auto found = values.find(std::string(key));
    return found == values.end() ? std::nullopt : std::optional(found->second);
  }
  void setValue(std::string_view key, std::string_view value) override { values[std::string(key)] = value; }

  std::map<std::string, std::string> values;
};

class MoviePaneBench {
 public:
  explicit MoviePaneBench(int width = 480, int height = 300) {
    pane.resize(width, height);
    pane.show();
    pane.activateWindow();
    settle();
  }

  static void settle() {
    for (int turn = 0; turn < 3; ++turn) QCoreApplication::processEvents();
  }
  /// Through the window, so that what lies uppermost there takes it.
  void click(QWidget& widget) {
    QTest::mouseClick(pane.windowHandle(), Qt::LeftButton, {}, widget.mapTo(&pane, widget.rect().center()));
    settle();
  }
  [[nodiscard]] QPoint placeOf(platform::qt::MovieSlider& slider, double share) {
    const int value = static_cast<int>(share * slider.maximum());
    return slider.mapTo(&pane, QPoint(static_cast<int>(slider.placeOf(value)), slider.height() / 2));
  }
  void clickAt(platform::qt::MovieSlider& slider, double share) {
    QTest::mouseClick(pane.windowHandle(), Qt::LeftButton, {}, placeOf(slider, share));
    settle();
  }
  void press(platform::qt::MovieSlider& slider, double share) {
    QTest::mousePress(pane.windowHandle(), Qt::LeftButton, {}, placeOf(slider, share));
    settle();
  }
  void drag(platform::qt::MovieSlider& slider, double share) {
    QTest::mouseMove(pane.windowHandle(), placeOf(slider, share));
    settle();
  }
  void release(platform::qt::MovieSlider& slider, double share) {
    QTest::mouseRelease(pane.windowHandle(), Qt::LeftButton, {}, placeOf(slider, share));
    settle();
  }
  void key(Qt::Key key) {
    QTest::keyClick(pane.windowHandle(), key);
    settle();
  }
  /// The keyboard's focus, as by Tab.
  void focus(QWidget& widget) {
    widget.setFocus(Qt::TabFocusReason);
    settle();
    ASSERT_TRUE(widget.hasFocus());
  }

  platform::qt::MoviePane pane;
  platform::qt::MovieBar& bar{pane.bar()};
};

}  // namespace zelvo::tests
