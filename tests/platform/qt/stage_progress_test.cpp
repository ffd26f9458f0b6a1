#include "platform/qt/deep/stage_progress.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "tests/platform/qt/bounded_wait.h"
#include "tests/platform/qt/element_bench.h"

namespace zelvo::tests {
namespace {

using platform::DeepProgress;
using platform::TimeLeft;

class StageProgressTest : public testing::Test {
 protected:
  void at(int seconds, DeepProgress progress) {
    progress_ = std::move(progress);
    view.showProgress(TimeLeft::Clock::time_point(std::chrono::hours(1) + std::chrono::seconds(seconds)));
  }
  [[nodiscard]] std::string stage() const { return view.stage().toStdString(); }
  [[nodiscard]] std::string figures() const { return view.figures().toStdString(); }

  DeepProgress progress_;
  platform::qt::StageProgress view;
};

TEST_F(StageProgressTest, StartsBusyAndSaysSo) {
  EXPECT_EQ(stage(), "Starting…");
  EXPECT_EQ(figures(), "");
  EXPECT_TRUE(view.bar().isBusy());
}

TEST_F(StageProgressTest, TellsStageBytesAndTheTimeThatIsLeft) {
  view.follow([this] { return progress_; });
  at(0, {"Reading", 0, 1000000000});
  EXPECT_EQ(stage(), "Reading");
  EXPECT_EQ(figures(), "0.0 MB of 1,000.0 MB");
  at(10, {"Reading", 250000000, 1000000000});
  EXPECT_EQ(figures(), "250.0 MB of 1,000.0 MB · about 30 s left");
  EXPECT_EQ(view.bar().percent(), 25);
  EXPECT_FALSE(view.bar().isBusy());
}

TEST_F(StageProgressTest, TimeBeginsAgainWithAnotherStage) {
  view.follow([this] { return progress_; });
  at(0, {"Reading", 0, 1000000000});
  at(10, {"Reading", 250000000, 1000000000});
  at(11, {"Writing", 300000000, 1000000000});
  EXPECT_EQ(figures(), "300.0 MB of 1,000.0 MB");
  at(12, {"Reading", 0, 1000000000});
  EXPECT_EQ(figures(), "0.0 MB of 1,000.0 MB");
}

TEST_F(StageProgressTest, IsBusyWhileNobodyKnowsHowMuchThereIs) {
  view.follow([this] { return progress_; });
  at(0, {"Reading", 500, 1000});
  at(1, {"Listening", 7000000, 0});
  EXPECT_TRUE(view.bar().isBusy());
  EXPECT_EQ(figures(), "7.0 MB");
  at(2, {"Reading", 500, 1000});
  EXPECT_FALSE(view.bar().isBusy());
  EXPECT_EQ(view.bar().percent(), 50);
}

TEST_F(StageProgressTest, MoreThanAllIsAll) {
  view.follow([this] { return progress_; });
  at(0, {"Reading", 3000000, 2000000});
  EXPECT_EQ(figures(), "2.0 MB of 2.0 MB");
  EXPECT_EQ(view.bar().percent(), 100);
}

TEST_F(StageProgressTest, LooksAgainAndAgainWhileItIsShownAndNeverOtherwise) {
  int looks = 0;
  view.follow([&looks] {
    ++looks;
    return DeepProgress{};
  });
  const int before = looks;
  QTest::qWait(600);
  EXPECT_EQ(looks, before);
  view.show();
  waitUntil([&] { return looks > before + 3; }, settle, [] { return std::string("no look"); });
  view.hide();
  const int shown = looks;
  QTest::qWait(600);
  EXPECT_EQ(looks, shown);
}

TEST_F(StageProgressTest, BusyBarMovesWhileItIsShown) {
  view.resize(400, 100);
  view.show();
  const QImage before = view.bar().grab().toImage();
  waitUntil([&] { return view.bar().grab().toImage() != before; }, settle, [] { return std::string("a still bar"); });
}

}  // namespace
}  // namespace zelvo::tests
