#include <algorithm>
#include <utility>

#include "tests/app/app_bench.h"

namespace zelvo::tests {
namespace {

using State = platform::Button::State;

/// A run whose animation, and so the completion sheet, comes before its file is whole.
class Writing : public FlowTest {
 protected:
  /// Presses Repair and, in the middle of the writing, runs `duringWriting`.
  void repairWith(std::function<void()> duringWriting) {
    app.start();
    workers.runNext();  // the empty thread
    app.choose(smallAvi());
    app.files.onTouch = [this, act = std::move(duringWriting)](const std::string& what) {
      if (what != "openForWriting(/Applications/testfile1.avi)") return;
      workers.runNext();  // the animation
      ASSERT_TRUE(app.press(app.screen.repaircompletedokbutton));
      app.events.clear();
      act();
    };
    app.press(app.screen.repairbutton);
    workers.runNext();
  }
};

using Waiting = Writing;

/// A run whose rebuilt file cannot be written whole.
class WriteError : public Writing {
 protected:
  void failWrites() {
    app.files.put(kScratch1, {});
    app.files.at(kScratch1).badWriteFrom = 100000;
    app.files.at(kScratch1).writeError = std::make_error_code(std::errc::no_space_on_device);
    app.files.space = 12345678;
  }
};

TEST_F(Waiting, ASaveAskedForTooEarlyWaitsBeforeItsFirstStep) {
  repairWith([this] {
    app.waits.onWait = [](const platform::WaitPanel& notice) {
      EXPECT_EQ(notice.title, "Finishing the repaired file");
      EXPECT_EQ(notice.cancelButton, "Cancel");
      EXPECT_FALSE(notice.finished());
      return false;
    };
    app.press(app.screen.savebutton);
    EXPECT_EQ(app.takeEvents(), (Lines{"wait(Finishing the repaired file)", "wait cancelled"}));
    EXPECT_TRUE(app.screen.savebutton.isEnabled());
  });
}

TEST_F(Waiting, APreviewThatIsNotWaitedForGetsItsStateBack) {
  repairWith([this] {
    app.press(app.screen.previewbutton);
    EXPECT_EQ(app.takeEvents(),
              (Lines{"wait(Finishing the repaired file)", "wait cancelled", "previewbutton.setState(off)"}));
  });
  app.press(app.screen.previewbutton);
  EXPECT_EQ(app.screen.previewbutton.state(), State::on);
}

TEST_F(Waiting, APreviewThatWasOnIsOnAgain) {
  repairWith([this] {
    app.screen.previewbutton.setState(State::on);
    app.events.clear();
    app.press(app.screen.previewbutton);
    EXPECT_EQ(app.takeEvents(),
              (Lines{"wait(Finishing the repaired file)", "wait cancelled", "previewbutton.setState(on)"}));
  });
}

TEST_F(Waiting, ASecondRequestWhileTheNoticeIsUpIsDropped) {
  repairWith([this] {
    app.waits.onWait = [this](const platform::WaitPanel&) {
      app.press(app.screen.savebutton);
      return false;
    };
    app.press(app.screen.savebutton);
    EXPECT_EQ(app.takeEvents(), (Lines{"wait(Finishing the repaired file)", "wait cancelled"}));
  });
}

TEST_F(Waiting, TheNoticeShowsRealProgressAndTheSaveGoesOnWhenTheFileIsWhole) {
  app.start();
  app.choose(smallAvi());
  app.press(app.screen.repairbutton);
  double before = -1;
  double after = -1;
  app.waits.onWait = [&](const platform::WaitPanel& notice) {
    before = notice.percent();
    runWorkers();
    after = notice.percent();
    return notice.finished();
  };
  app.events.clear();

  app.press(app.screen.savebutton);

  EXPECT_EQ(before, 0.0);
  EXPECT_EQ(after, 100.0);
  EXPECT_EQ(app.takeEvents({"wait", "log: Save", "savePanel("}),
            (Lines{"wait(Finishing the repaired file)", "wait finished", "log: Save", "savePanel()"}));
}

TEST_F(Waiting, AStopWhileTheNoticeIsUpEndsTheWaitWithoutASave) {
  app.start();
  app.choose(smallAvi());
  app.press(app.screen.repairbutton);
  app.waits.onWait = [&](const platform::WaitPanel& notice) {
    app.press(app.screen.stoprepairokbutton);
    return notice.finished();
  };
  app.events.clear();

  app.press(app.screen.savebutton);

  EXPECT_TRUE(app.takeEvents({"log: Save"}).empty());
}

TEST_F(Waiting, AFinishedFileIsNotWaitedFor) {
  reachResultPage();

  app.press(app.screen.savebutton);

  EXPECT_TRUE(app.takeEvents({"wait"}).empty());
}

TEST_F(Waiting, HomeWhileTheWriterWorksAbandonsTheRunAndThenDoesItsSteps) {
  repairWith([this] {
    app.press(app.screen.main3);
    EXPECT_EQ(app.takeEvents(), (Lines{"remove(/Applications/testfile1.avi)", "tabview.selectFirstTabViewItem()",
                                       "pathfield.setStringValue()"}));
  });

  EXPECT_EQ(app.controller->repair1->runEnd, engine::RunEnd::abandoned);
  EXPECT_FALSE(app.files.has(kScratch1));
  EXPECT_EQ(app.controller->unipath(), std::nullopt);
  EXPECT_EQ(app.screen.tabview.page(), 1);
}

TEST_F(Waiting, AfterHomeAFilmCanBeChosenThoughTheWriterStillWorks) {
  repairWith([this] {
    app.press(app.screen.main3);
    EXPECT_TRUE(app.controller->chooseFile("/films/second.avi"));
  });
  EXPECT_EQ(engine::path.get(), "/films/second.avi");
}

TEST_F(Waiting, WhatAnAbandonedRunStillWroteIsRemovedWhenItEnds) {
  app.start();
  workers.runNext();
  app.choose(smallAvi());
  app.press(app.screen.repairbutton);
  bool gone = false;
  app.files.onTouch = [&](const std::string& what) {
    if (what != "createFile(/Applications/testfile1.avi)" || std::exchange(gone, true)) return;
    app.press(app.screen.main3);  // just before the file comes into being
  };

  runWorkers();

  EXPECT_TRUE(gone);
  EXPECT_FALSE(app.files.has(kScratch1));
}

TEST_F(Waiting, AnAbandonedRunDoesNotTakeTheFileOfTheNextOneAway) {
  reachResultPage();
  app.choose(smallAvi());
  app.press(app.screen.repairbutton);
  app.press(app.screen.repairbutton);  // the same path; the first of the two is abandoned

  runWorkers();

  EXPECT_TRUE(app.files.has(kScratch1));
}

TEST_F(WriteError, TakesTheWindowBackAndIsTold) {
  failWrites();
  app.start();
  app.choose(smallAvi());
  app.press(app.screen.repairbutton);
  app.events.clear();

  runWorkers();

  const Lines events = app.takeAllEvents();
  const auto begin = std::find(events.begin(), events.end(), "endSheet(stoprepairwindow)");
  const auto end = std::find_if(begin, events.end(), [](const auto& line) { return line.starts_with("alert("); });
  ASSERT_NE(end, events.end());
  EXPECT_EQ(Lines(begin, end),
            (Lines{"endSheet(stoprepairwindow)", "stoprepairwindow.orderOut()", "endSheet(repaircompletedwindow)",
                   "repaircompletedwindow.orderOut()", "progressbar.setDoubleValue(0)",
                   "tabview.selectFirstTabViewItem()", "remove(/Applications/testfile1.avi)"}));
  EXPECT_EQ(app.controller->progressbarValue, 0.0);
  const platform::AlertPanel alert = app.alerts.shown().at(0);
  EXPECT_EQ(alert.title, "The repaired file could not be written");
  EXPECT_EQ(alert.defaultButton, "OK");
  EXPECT_TRUE(
      alert.message->starts_with("No space left on device. 12.3 MB are free in /Applications, and the repaired "
                                 "file takes 0."))
      << *alert.message;
  EXPECT_EQ(app.screen.progressbar.doubleValue(), 0.0);
  EXPECT_FALSE(app.files.has(kScratch1));
}

TEST_F(WriteError, TheFreeSpaceIsThatOfTheFolderWithoutTheScratchFile) {
  failWrites();
  app.start();
  app.choose(smallAvi());
  app.press(app.screen.repairbutton);
  Lines asked;
  app.fileManager.onFreeSpace = [&](const std::string& path) {
    asked.push_back(path + (app.files.has(kScratch1) ? " with the file" : ""));
  };

  runWorkers();

  EXPECT_EQ(asked, Lines{"/Applications"});
}

TEST_F(WriteError, IsNotToldAgainForTheNextRunThatIsRejected) {
  failWrites();
  app.start();
  app.choose(smallAvi());
  repairWhole();
  app.choose(platform::Bytes(600000), "/films/second.avi");

  repairWhole();

  EXPECT_TRUE(app.isShown(app.screen.invalidfilewindow));
  EXPECT_EQ(app.alerts.shown().size(), 1U);
}

TEST_F(WriteError, MetWhileTheNoticeIsUpIsToldOnce) {
  failWrites();
  app.start();
  app.waits.onWait = [&](const platform::WaitPanel& notice) {
    runWorkers();
    return notice.finished();
  };
  for (int i = 0; i < 2; ++i) {
    app.choose(smallAvi());
    app.press(app.screen.repairbutton);
    app.press(app.screen.savebutton);
  }

  EXPECT_EQ(app.alerts.shown().size(), 1U);
  EXPECT_EQ(app.takeEvents({"wait", "log: Save"}),
            (Lines{"wait(Finishing the repaired file)", "wait finished", "log: Save"}));
}

TEST_F(WriteError, ThePathStaysChosenAndRepairWorksAgain) {
  failWrites();
  app.start();
  app.choose(smallAvi());
  repairWhole();
  EXPECT_EQ(engine::path.get(), kInput);
  EXPECT_EQ(app.screen.pathfield.stringValue(), kInput);
  EXPECT_FALSE(engine::stopflag);

  repairWhole();

  EXPECT_TRUE(app.isShown(app.screen.repaircompletedwindow));
  EXPECT_EQ(app.alerts.shown().size(), 1U);
}

TEST_F(WriteError, AfterTheCompletionSheetItEndsThatSheetToo) {
  failWrites();
  app.start();
  workers.runNext();
  app.choose(smallAvi());
  app.files.onTouch = [this](const std::string& what) {
    if (what != "openForWriting(/Applications/testfile1.avi)") return;
    workers.runNext();  // the animation
    EXPECT_TRUE(app.isShown(app.screen.repaircompletedwindow));
    EXPECT_EQ(app.controller->progressbarValue, 100.0);
  };

  repairWhole();

  EXPECT_EQ(app.controller->progressbarValue, 0.0);
  EXPECT_FALSE(app.isShown(app.screen.repaircompletedwindow));
  EXPECT_EQ(app.screen.tabview.page(), 1);
}

TEST_F(WriteError, MetWhileTheNoticeIsUpIsToldAfterIt) {
  failWrites();
  app.start();
  app.choose(smallAvi());
  app.press(app.screen.repairbutton);
  app.waits.onWait = [&](const platform::WaitPanel& notice) {
    runWorkers();
    return notice.finished();
  };
  app.events.clear();

  app.press(app.screen.previewbutton);

  const Lines events = app.takeEvents({"wait", "alert", "previewbutton", "log: path"});
  ASSERT_EQ(events.size(), 4U);
  EXPECT_EQ(events[1], "wait finished");
  EXPECT_TRUE(events[2].starts_with("alert(\"The repaired file could not be written\""));
  EXPECT_EQ(events[3], "previewbutton.setState(off)");
}

TEST_F(WriteError, OfAStoppedRunIsNotTold) {
  failWrites();
  app.start();
  workers.runNext();
  app.choose(smallAvi());
  app.files.onTouch = [this](const std::string& what) {
    if (what == "openForWriting(/Applications/testfile1.avi)") app.press(app.screen.stoprepairokbutton);
  };

  repairWhole();

  EXPECT_TRUE(app.alerts.shown().empty());
}

TEST_F(WriteError, OfAFileThatCannotBeCreatedIsTold) {
  app.files.refuse(kScratch1, std::make_error_code(std::errc::permission_denied));
  app.start();
  app.choose(smallAvi());

  repairWhole();

  ASSERT_EQ(app.alerts.shown().size(), 1U);
  EXPECT_TRUE(app.alerts.shown()[0].message->starts_with("Permission denied."));
}

}  // namespace
}  // namespace zelvo::tests
