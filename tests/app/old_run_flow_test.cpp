#include <functional>
#include <utility>

#include "tests/app/app_bench.h"

namespace zelvo::tests {
namespace {

/// A run that is stopped, and another one started, from inside the first one's own work.
class OldRun : public FlowTest {
 protected:
  /// Stops a run whose input is no film at its first read, and then does what `afterwards` says.
  void stopWhenNoFilmIsRead(const std::function<void()>& afterwards) {
    app.start();
    bool stopped = false;
    app.choose(platform::Bytes(2000)).onRead = [&](std::uint64_t, std::size_t) {
      if (std::exchange(stopped, true)) return;
      app.press(app.screen.stoprepairokbutton);
      afterwards();
    };
    app.press(app.screen.repairbutton);
    runWorkers();
    EXPECT_TRUE(stopped);
  }
  void stopAndStartAnotherWhenTheFirstIsRead(bool startAnother) {
    app.start();
    app.choose(smallAvi());
    app.press(app.screen.repairbutton);
    app.files.onTouch = [this, startAnother](const std::string& what) {
      if (what != "openForWriting(/Applications/testfile1.avi)") return;
      app.press(app.screen.stoprepairokbutton);
      if (!startAnother) return;
      app.choose(smallAvi(), "/films/second.avi");
      app.press(app.screen.repairbutton);
      app.events.clear();
    };
  }
};

TEST_F(OldRun, HasEndedBeforeTheNextOneReads) {
  app.start();
  workers.runNext();
  app.choose(smallAvi());
  app.press(app.screen.repairbutton);
  const auto before = app.controller->mythread;
  app.press(app.screen.stoprepairokbutton);
  platform::Relaxed<int> early;
  platform::Relaxed<int> reads;
  app.choose(smallAvi(), "/films/second.avi").onRead = [&](std::uint64_t, std::size_t) {
    reads.add(1);
    if (!before->finished()) early.add(1);
  };
  app.press(app.screen.repairbutton);

  app.controller->mythread->join();

  EXPECT_GT(reads, 0);
  EXPECT_EQ(early, 0);
}

TEST_F(OldRun, WhatItWroteIsRemovedThoughItWasStoppedAfterItsEnd) {
  app.start();
  workers.runNext();
  app.choose(smallAvi());
  app.press(app.screen.repairbutton);
  runNextOnAThread();
  ASSERT_TRUE(app.files.has(kScratch1));

  app.press(app.screen.stoprepairokbutton);
  queue.pump();

  EXPECT_FALSE(app.files.has(kScratch1));
}

TEST_F(OldRun, AnEndThatIsToldLateLeavesTheFileThatTheNextOneWroteAtThatPath) {
  app.start();
  workers.runNext();
  app.choose(smallAvi());
  for (int i = 0; i < 2; ++i) {
    app.press(app.screen.repairbutton);
    runNextOnAThread();
  }

  queue.pump();

  EXPECT_TRUE(app.files.has(kScratch1));
  EXPECT_TRUE(app.isShown(app.screen.repaircompletedwindow));
}

using WaitingRun = OldRun;

TEST_F(OldRun, NeitherItsFileNorItsSheetReachesTheNewOne) {
  stopAndStartAnotherWhenTheFirstIsRead(true);

  ASSERT_TRUE(workers.runNext());  // the empty thread
  ASSERT_TRUE(workers.runNext());  // the first run

  EXPECT_EQ(app.controller->unipath(), std::nullopt);
  EXPECT_TRUE(app.takeEvents({"beginSheet", "movieview", "stopbutton.setEnabled(no)"}).empty());
  runWorkers();
  EXPECT_EQ(app.controller->unipath(), kScratch2);
  EXPECT_TRUE(app.isShown(app.screen.repaircompletedwindow));
}

TEST_F(OldRun, ProgressOfAStoppedRunIsNotShown) {
  stopAndStartAnotherWhenTheFirstIsRead(false);

  runWorkers();

  EXPECT_EQ(app.controller->progressbarValue, 0.0);
  EXPECT_EQ(app.screen.progressbar.doubleValue(), 0.0);
  EXPECT_EQ(app.controller->unipath(), kScratch1);  // stopped, but no newer run: handed over as ever
  EXPECT_FALSE(app.isShown(app.screen.repaircompletedwindow));
}

TEST_F(OldRun, ItsRejectionIsNotShownOnceAnotherFilmWasChosen) {
  stopWhenNoFilmIsRead([this] { app.choose(smallAvi(), "/films/second.avi"); });
  EXPECT_FALSE(app.isShown(app.screen.invalidfilewindow));
  EXPECT_EQ(engine::path.get(), "/films/second.avi");
}

TEST_F(OldRun, ItsRejectionComesWithoutANewChoice) {
  stopWhenNoFilmIsRead([] {});
  EXPECT_TRUE(app.isShown(app.screen.invalidfilewindow));
}

TEST_F(OldRun, WhatItWroteIsRemovedBeforeTheNextOneWrites) {
  stopAndStartAnotherWhenTheFirstIsRead(true);
  bool wasThere = true;
  app.files.onTouch = [&, before = app.files.onTouch](const std::string& what) {
    before(what);
    if (what == "createFile(/Applications/testfile2.avi)") wasThere = app.files.has(kScratch1);
  };

  runWorkers();

  EXPECT_FALSE(wasThere);
  EXPECT_FALSE(app.files.has(kScratch1));
  EXPECT_TRUE(app.files.has(kScratch2));
}

TEST_F(OldRun, WhatItWroteIsRemovedOnlyWhenItHasEnded) {
  app.start();
  app.choose(smallAvi());
  app.press(app.screen.repairbutton);
  app.files.onTouch = [this](const std::string& what) {
    if (what != "openForWriting(/Applications/testfile1.avi)") return;
    app.events.clear();
    app.press(app.screen.stoprepairokbutton);
    EXPECT_TRUE(app.takeEvents({"remove"}).empty());
    EXPECT_TRUE(app.files.has(kScratch1));
  };

  runWorkers();

  EXPECT_EQ(app.takeEvents({"remove", "movieview.setMovie"}),
            (Lines{"movieview.setMovie(movie)", "remove(/Applications/testfile1.avi)"}));
  EXPECT_FALSE(app.files.has(kScratch1));
}

TEST_F(OldRun, AFileOfTheSamePathThatIsWrittenAgainStays) {
  app.start();
  app.choose(smallAvi());
  for (int i = 0; i < 2; ++i) {
    app.press(app.screen.repairbutton);
    workers.runNext();
    app.press(app.screen.stoprepairokbutton);
    app.choose(smallAvi());
  }

  repairWhole();

  EXPECT_TRUE(app.files.has(kScratch1));
  EXPECT_TRUE(app.isShown(app.screen.repaircompletedwindow));
}

TEST_F(WaitingRun, SaysThatItWaitsUntilItsTurnComes) {
  Lines shown;
  app.start();
  workers.runNext();
  app.choose(smallAvi());
  app.press(app.screen.repairbutton);
  EXPECT_EQ(app.screen.waitingtext.stringValue(), "");
  app.files.onTouch = [&](const std::string& what) {
    if (what == "openForWriting(/Applications/testfile1.avi)") {
      app.press(app.screen.stoprepairokbutton);
      app.choose(smallAvi(), "/films/second.avi");
      app.press(app.screen.repairbutton);
      shown.push_back(app.screen.waitingtext.stringValue());
    }
    if (what == "createFile(/Applications/testfile2.avi)") shown.push_back(app.screen.waitingtext.stringValue());
  };

  runWorkers();

  EXPECT_EQ(shown,
            (Lines{"Waiting until the repair before this one has ended. Its last step cannot be cut short.", ""}));
}

TEST_F(WaitingRun, ItIsNotSaidForTheNextOneWhenOneThatWasStoppedInItsTurnComesToIt) {
  app.start();
  workers.runNext();
  app.choose(smallAvi());
  app.press(app.screen.repairbutton);
  bool stopped = false;
  app.files.onTouch = [&](const std::string& what) {
    if (what != "openForWriting(/Applications/testfile1.avi)" || std::exchange(stopped, true)) return;
    for (int i = 0; i < 2; ++i) {
      app.press(app.screen.stoprepairokbutton);
      app.choose(smallAvi(), "/films/second.avi");
      app.press(app.screen.repairbutton);
    }
  };
  workers.runNext();  // the first
  workers.runNext();  // the second, which has nothing to do any more
  EXPECT_TRUE(app.screen.waitingtext.stringValue().starts_with("Waiting"));

  runWorkers();

  EXPECT_EQ(app.screen.waitingtext.stringValue(), "");
}

TEST_F(OldRun, AStopBeforeTheHarvestStillBringsTheNotSupportedSheet) {
  app.start();
  app.choose(smallAvi());
  app.press(app.screen.repairbutton);
  engine::stopflag = true;

  runWorkers();

  EXPECT_TRUE(app.isShown(app.screen.filenotsupportedwindow));
}

}  // namespace
}  // namespace zelvo::tests
