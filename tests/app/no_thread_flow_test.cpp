// The window where the system has no thread or no memory to give: an alert as of a failed write, never a run or a save
// that nobody ends.
#include <new>
#include <string>

#include "tests/app/app_bench.h"

namespace zelvo::tests {
namespace {

class NoThread : public FlowTest {
 protected:
  void SetUp() override {
    app.start();
    runWorkers();  // the empty thread
    app.files.space = 12345678;
  }
  void expectAlert(const std::string& message) {
    ASSERT_EQ(app.alerts.shown().size(), 1U);
    EXPECT_EQ(app.alerts.shown()[0].title, "The repaired file could not be written");
    EXPECT_EQ(app.alerts.shown()[0].message, message);
    EXPECT_FALSE(app.isShown(app.screen.repaircompletedwindow));
  }

  const std::string noThread_ =
      "The system has no room for more work at once. Closing other programs helps. Nothing was changed in your file, "
      "and it is still chosen: you can press Repair again.";
};

TEST_F(NoThread, ARunThatCannotStartIsToldAfterAllStepsOfThePress) {
  app.choose(smallAvi());
  app.events.clear();
  workers.refuseNext();

  app.press(app.screen.repairbutton);

  expectAlert(noThread_);
  EXPECT_EQ(app.controller->mythread, nullptr);
  EXPECT_EQ(app.screen.tabview.page(), 1);
  const Lines steps = app.takeEvents({"tabview", "durationfield", "alert"});
  ASSERT_EQ(steps.size(), 4U);
  EXPECT_EQ(steps[0], "tabview.selectNextTabViewItem()");
  EXPECT_EQ(steps[1], "durationfield.setIntegerValue(0)");
  EXPECT_EQ(steps[2], "tabview.selectFirstTabViewItem()");
}

TEST_F(NoThread, TheNextPressRepairs) {
  app.choose(smallAvi());
  workers.refuseNext();
  app.press(app.screen.repairbutton);

  repairWhole();

  EXPECT_TRUE(app.isShown(app.screen.repaircompletedwindow));
  EXPECT_EQ(app.alerts.shown().size(), 1U);
}

TEST_F(NoThread, TheNextRunStillWaitsForTheOneBefore) {
  app.choose(smallAvi());
  app.press(app.screen.repairbutton);
  const auto before = app.controller->mythread;
  app.press(app.screen.stoprepairokbutton);
  app.choose(smallAvi());
  workers.refuseNext();
  app.press(app.screen.repairbutton);
  app.press(app.screen.repairbutton);
  const auto after = app.controller->mythread;
  ASSERT_NE(after, nullptr);

  after->join();

  EXPECT_TRUE(before->finished());
}

TEST_F(NoThread, AMissingAnimationIsToldTheSameWay) {
  app.choose(smallAvi());
  app.press(app.screen.repairbutton);
  workers.refuseNext();
  runWorkers();

  expectAlert(noThread_);
  EXPECT_FALSE(app.files.has(kScratch1));
}

TEST_F(NoThread, MemoryThatLacksInARunHasWordsOfItsOwn) {
  app.choose(smallAvi()).onRead = [](std::uint64_t offset, std::size_t) {
    if (offset > 100000) throw std::bad_alloc();
  };
  app.press(app.screen.repairbutton);
  runWorkers();

  expectAlert(
      "There is not enough memory. Closing other programs helps. Nothing was changed in your file, and it is still "
      "chosen: you can press Repair again.");
}

TEST_F(NoThread, TheEndOfARunIsToldAgainUntilThereIsMemoryForIt) {
  app.choose(smallAvi());
  app.press(app.screen.repairbutton);
  app.press(app.screen.stoprepairokbutton);  // so that its end is all that it tells
  queue.refuseNext();
  app.events.clear();

  runWorkers();

  EXPECT_EQ(app.takeEvents(), Lines{"sleep(100 ms)"});
}

TEST_F(NoThread, ASaveWithoutItsProgressIsNotBegun) {
  reachResultPage();
  app.files.space = 5000000;
  app.press(app.screen.savebutton);
  workers.refuseNext();

  app.panels.lastSavePanel()->choose("/home/user/Repaired");

  expectAlert(
      "The system has no room for more work at once. Closing other programs helps. Nothing was saved, and the repaired "
      "file is still there: you can press Save again.");
  EXPECT_FALSE(app.files.has("/home/user/Repaired/repaired.avi"));
  EXPECT_FALSE(app.isShown(app.screen.saveprogresspanel));
  EXPECT_TRUE(app.screen.savebutton.isEnabled());
}

TEST_F(NoThread, StopIsAskedForWithoutAThreadOfItsOwn) {
  workers.refuseNext();
  app.controller->stopit();
  queue.pump();
  EXPECT_TRUE(app.isShown(app.screen.stoprepairwindow));
}

}  // namespace
}  // namespace zelvo::tests
