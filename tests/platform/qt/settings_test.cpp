#include "platform/qt/window/settings.h"

#include <gtest/gtest.h>

#include <QScreen>
#include <filesystem>
#include <fstream>
#include <memory>

#include "platform/headless/main_queue.h"
#include "platform/headless/settings.h"
#include "platform/qt/drawing/pictures.h"
#include "platform/qt/preview/movie_pane.h"
#include "platform/qt/preview/movie_view.h"
#include "platform/qt/window/main_window.h"
#include "tests/support/temp_folder.h"

namespace zelvo::tests {
namespace {

using platform::qt::QtSettings;

class RememberedSettings : public testing::Test {
 protected:
  TempFolder temp_;
  const std::string file_ = temp_.path("config/zelvo/window.ini");
};

TEST_F(RememberedSettings, WhatWasNeverSetIsNothing) {
  EXPECT_EQ(QtSettings(file_).value("deep/save-folder"), std::nullopt);
  EXPECT_FALSE(std::filesystem::exists(file_)) << "nothing is written before something is to be remembered";
}

TEST_F(RememberedSettings, ValuesAreThereAtTheNextStart) {
  {
    QtSettings settings(file_);
    settings.setValue("deep/save-folder", "/home/anna/Videos");
    settings.setValue("deep/saves-report", "");
    EXPECT_EQ(settings.value("deep/save-folder"), "/home/anna/Videos");
  }
  const QtSettings settings(file_);
  EXPECT_EQ(settings.value("deep/save-folder"), "/home/anna/Videos");
  EXPECT_EQ(settings.value("deep/saves-report"), "");
}

TEST_F(RememberedSettings, APathOfAnyBytesComesBack) {
  const std::string path = "/media/M\xfcll, \"a\";=%\n\\\xe2\x82\xac";
  { QtSettings(file_).setValue("folder", path); }
  EXPECT_EQ(QtSettings(file_).value("folder"), path);
}

TEST_F(RememberedSettings, WhatAPersonWroteIsRead) {
  std::filesystem::create_directories(std::filesystem::path(file_).parent_path());
  std::ofstream(file_) << "[deep]\nsaves-report=yes\n";
  EXPECT_EQ(QtSettings(file_).value("deep/saves-report"), "yes");
}

TEST_F(RememberedSettings, AFileThatIsNoneOfOursHarmsNothing) {
  std::filesystem::create_directories(std::filesystem::path(file_).parent_path());
  std::ofstream(file_) << std::string(4096, '\xff') << "\n[[[=\n";
  EXPECT_EQ(QtSettings(file_).value("deep/saves-report"), std::nullopt);
}

TEST_F(RememberedSettings, WhereNothingCanBeWrittenNothingIsRemembered) {
  temp_.put("config", "a file where the folder should be");
  {
    QtSettings settings(file_);
    settings.setValue("key", "value");
    EXPECT_EQ(settings.value("key"), "value");
  }
  EXPECT_EQ(QtSettings(file_).value("key"), std::nullopt);
}

/// The window without the application, as often as it is started.
class RememberedPlace : public testing::Test {
 protected:
  std::unique_ptr<platform::qt::MainWindow> started() {
    movie_ = new platform::qt::MoviePane;
    view_ = std::make_unique<platform::qt::QtMovieView>(queue_, movie_->movie());
    auto window = std::make_unique<platform::qt::MainWindow>(queue_, pictures_, movie_, *view_);
    window->setSettings(settings_);
    window->fitInto({1920, 1080});
    window->show();
    return window;
  }

  platform::headless::HeadlessSettings settings_;
  platform::headless::HeadlessMainQueue queue_;
  platform::qt::Pictures pictures_{ZELVO_PICTURES};
  platform::qt::MoviePane* movie_ = nullptr;
  std::unique_ptr<platform::qt::QtMovieView> view_;
};

TEST_F(RememberedPlace, TheWindowIsAsItWasWhenItEnded) {
  const QSize usual = started()->size();
  const QRect place(30, 40, 700, 500);
  ASSERT_NE(usual, place.size());
  started()->setGeometry(place);
  EXPECT_EQ(started()->geometry(), place);
}

TEST_F(RememberedPlace, AClosedWindowIsRememberedToo) {
  const QRect place(30, 40, 700, 500);
  {
    const auto window = started();
    window->setGeometry(place);
    window->close();
    EXPECT_EQ(settings_.values.size(), 1U);
  }
  EXPECT_EQ(started()->geometry(), place);
}

TEST_F(RememberedPlace, NonsenseIsNotFollowed) {
  const QSize usual = started()->size();
  for (const char* nonsense : {"", "?", "AdnQywADAAAAAAAA"}) {
    settings_.values["window/place"] = nonsense;
    EXPECT_EQ(started()->size(), usual) << nonsense;
  }
}

TEST_F(RememberedPlace, APlaceThatNoScreenHasIsBroughtBack) {
  started()->setGeometry(QRect(20000, 20000, 700, 500));
  const auto window = started();
  EXPECT_TRUE(window->screen()->availableGeometry().intersects(window->geometry()));
}

TEST_F(RememberedPlace, AWindowOfTheWholeScreenIsOneAgain) {
  started()->showMaximized();
  EXPECT_TRUE(started()->isMaximized());
}

}  // namespace
}  // namespace zelvo::tests
