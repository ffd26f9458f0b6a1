// Several films, repaired one after the other into one folder.
#include "tests/deep/deep_bench.h"

namespace zelvo::tests {

using platform::DeepPage;
using platform::DeepVerdict;
using State = platform::QueuedFilm::State;

class FilmsFlow : public DeepTest {
 protected:
  /// Puts films there and the queue before them.
  std::vector<std::string> open(const std::vector<std::string>& names) {
    std::vector<std::string> paths;
    for (const std::string& name : names) paths.push_back(temp.put(name, "a damaged film"));
    EXPECT_TRUE(deepRepair->takeFilms(paths));
    return paths;
  }
  [[nodiscard]] std::vector<State> states() const {
    std::vector<State> all;
    for (const platform::QueuedFilm& film : screen.queue.films()) all.push_back(film.state);
    return all;
  }
};

TEST_F(FilmsFlow, DroppedFilmsOpenTheQueueOnTheFirstPageOnly) {
  screen.pages.choosing = false;
  EXPECT_FALSE(deepRepair->takeFilms({temp / "a.avi"}));
  EXPECT_EQ(screen.pages.shown(), DeepPage::none);
  screen.pages.choosing = true;
  EXPECT_FALSE(deepRepair->takeFilms({}));
  const auto paths = open({"a.avi", "b.avi"});
  EXPECT_EQ(screen.pages.shown(), DeepPage::films);
  ASSERT_EQ(screen.queue.films().size(), 2U);
  EXPECT_EQ(screen.queue.films()[1].path, paths[1]);
  EXPECT_EQ(screen.queuefoldertext.stringValue(), temp.path());
  EXPECT_TRUE(screen.queuestartbutton.isEnabled());
  EXPECT_FALSE(screen.queuestopbutton.isEnabled());
}

TEST_F(FilmsFlow, FilmsAreAddedByTheirOwnChooserAndEachOnce) {
  ASSERT_TRUE(press(screen.addfilmsbutton));
  ASSERT_TRUE(choosers.answerFilms({}));
  EXPECT_EQ(screen.pages.shown(), DeepPage::none);
  press(screen.addfilmsbutton);
  const std::string first = temp.put("in/a.avi", "x");
  ASSERT_TRUE(choosers.answerFilms({first, first}));
  EXPECT_EQ(screen.pages.shown(), DeepPage::films);
  ASSERT_TRUE(press(screen.queueaddbutton));
  EXPECT_EQ(choosers.asked.folder, temp / "in");
  ASSERT_TRUE(choosers.answerFilms({temp.put("in/b.avi", "x"), first}));
  EXPECT_EQ(screen.queue.films().size(), 2U);
}

TEST_F(FilmsFlow, TheyAreRepairedOneAfterTheOtherIntoOneFolder) {
  const auto paths = open({"a.avi", "b.avi", "c.avi"});
  writeFile(temp / "out/x", "");
  ASSERT_TRUE(press(screen.queuefolderbutton));
  ASSERT_TRUE(choosers.answerFolder(temp / "out"));
  EXPECT_EQ(screen.queuefoldertext.stringValue(), temp / "out");
  play = [&](Program& program) {
    const std::string film = program.arguments.back();
    if (film == paths[0]) {
      EXPECT_EQ(states(), (std::vector<State>{State::working, State::waiting, State::waiting}));
      EXPECT_FALSE(screen.queuestartbutton.isEnabled());
      EXPECT_TRUE(screen.queuestopbutton.isEnabled());
      EXPECT_FALSE(screen.queuefolderbutton.isEnabled());
    }
    if (film == paths[1]) return end(program, 3, "b.avi cannot be read.");
    report = film == paths[2] ? hopelessReport() : hurtReport();
    repair(program);
  };
  ASSERT_TRUE(press(screen.queuestartbutton));
  runWorkers();
  EXPECT_EQ(programs.started.size(), 3U);
  EXPECT_EQ(states(), (std::vector<State>{State::done, State::failed, State::done}));
  EXPECT_EQ(screen.queue.films()[0].verdict, DeepVerdict::partial);
  EXPECT_EQ(screen.queue.films()[2].verdict, DeepVerdict::hopeless);
  EXPECT_EQ(screen.queue.films()[1].words, "The reason: b.avi cannot be read. Nothing was changed in your file.");
  EXPECT_EQ(temp.content("out/a-salvaged.avi"), "the repaired film");
  EXPECT_EQ(fileManager.list(temp / "out"), (std::vector<std::string>{"a-salvaged.avi", "x"}));
  EXPECT_EQ(takeAlerts(), std::vector<std::string>{"All films are done"});
  EXPECT_EQ(alerts.shown().back().message,
            "1 film repaired, in " + temp / "out" + ". Nothing could be made of 2 films.");
  EXPECT_EQ(settings.value("deep/output-folder"), temp / "out");
  EXPECT_EQ(settings.value("deep/written-folder"), temp / "out");
}

TEST_F(FilmsFlow, WhatFailedCanBeTriedAgainAndWhatIsDoneNeedNot) {
  open({"a.avi", "b.avi"});
  press(screen.queuestartbutton);
  play = [&](Program& program) {
    if (programs.started.size() == 2) return end(program, 3, "there is not enough space.");
    repair(program);
  };
  runWorkers();
  EXPECT_EQ(states(), (std::vector<State>{State::done, State::failed}));
  // Nothing is at work, and nothing waits.
  EXPECT_TRUE(deepRepair->mayClose());
  ASSERT_TRUE(press(screen.queuestartbutton));
  runWorkers();
  EXPECT_EQ(programs.started.size(), 3U);
  EXPECT_EQ(states(), (std::vector<State>{State::done, State::done}));
  EXPECT_FALSE(screen.queuestartbutton.isEnabled());
}

TEST_F(FilmsFlow, AFilmThatWasTakenOutIsNotHeardOfAnyMore) {
  open({"a.avi", "b.avi"});
  press(screen.queuestartbutton);
  play = [&](Program& program) {
    press(screen.queuestopbutton);
    screen.queue.remove(0);
    press(screen.queuestartbutton);
    repair(program);
  };
  ASSERT_TRUE(workers.runNext());
  EXPECT_EQ(states(), std::vector<State>{State::working});
  EXPECT_TRUE(screen.queuestopbutton.isEnabled());
  play = [this](Program& program) { repair(program); };
  runWorkers();
  EXPECT_EQ(states(), std::vector<State>{State::done});
  EXPECT_EQ(scratchNames(), std::vector<std::string>{"2"});
}

TEST_F(FilmsFlow, AFilmThatIsStartedAgainDoesNotHearTheEndOfItsFirstRun) {
  open({"a.avi"});
  press(screen.queuestartbutton);
  bool isRestarted = false;
  play = [&](Program& program) {
    if (std::exchange(isRestarted, true)) return repair(program);
    press(screen.queuestopbutton);
    ASSERT_TRUE(press(screen.queuestartbutton));
    EXPECT_EQ(states(), std::vector<State>{State::working});
  };
  // The first run ends while the second waits for its worker.
  ASSERT_TRUE(workers.runNext());
  EXPECT_EQ(programs.started.size(), 1U);
  EXPECT_EQ(states(), std::vector<State>{State::working});
  EXPECT_TRUE(screen.queuestopbutton.isEnabled());
  runWorkers();
  EXPECT_EQ(programs.started.size(), 2U);
  EXPECT_EQ(states(), std::vector<State>{State::done});
}

TEST_F(FilmsFlow, TheFolderCanBeOpenedWhenAllIsDone) {
  open({"a.avi"});
  press(screen.queuestartbutton);
  alerts.script({platform::kAlertDefault});
  runWorkers();
  EXPECT_EQ(events.lines().back(), "openURL(file://" + temp.path() + ")");
}

TEST_F(FilmsFlow, NothingThatIsThereIsReplaced) {
  temp.put("a-salvaged.avi", "an older one");
  const std::string first = temp.put("x/a.avi", "x");
  const std::string second = temp.put("y/a.avi", "x");
  settings.setValue("deep/output-folder", temp.path());
  deepRepair->takeFilms({first, second});
  press(screen.queuestartbutton);
  runWorkers();
  EXPECT_EQ(temp.content("a-salvaged.avi"), "an older one");
  EXPECT_EQ(temp.content("a-salvaged-2.avi"), "the repaired film");
  EXPECT_EQ(temp.content("a-salvaged-3.avi"), "the repaired film");
}

TEST_F(FilmsFlow, TheOneThatIsWorkedOnTellsHowFarItIs) {
  open({"a.avi", "b.avi"});
  press(screen.queuestartbutton);
  int waits = 0;
  play = [&](Program& program) {
    if (++waits == 1) return tell(program, "searching", 25, 100);
    if (waits == 2) {
      EXPECT_EQ(screen.queue.films()[0].words, "searching");
      EXPECT_EQ(screen.queue.films()[0].share, 0.25);
    }
    repair(program);
  };
  runWorkers();
  EXPECT_FALSE(screen.queue.films()[0].share);
  EXPECT_EQ(screen.queue.films()[0].words, screen.queue.films()[1].words);
}

TEST_F(FilmsFlow, AStoppedFilmCanBeStartedAgain) {
  open({"a.avi", "b.avi"});
  press(screen.queuestartbutton);
  play = [&](Program& program) {
    if (!program.isStopped) press(screen.queuestopbutton);
  };
  runWorkers();
  EXPECT_EQ(states(), (std::vector<State>{State::stopped, State::waiting}));
  EXPECT_EQ(programs.started.size(), 1U);
  EXPECT_EQ(scratchNames(), std::vector<std::string>());
  play = [this](Program& program) { repair(program); };
  ASSERT_TRUE(press(screen.queuestartbutton));
  runWorkers();
  EXPECT_EQ(states(), (std::vector<State>{State::done, State::done}));
}

TEST_F(FilmsFlow, AFilmThatWasDoneWhenTheStopCameCountsAsDone) {
  open({"a.avi", "b.avi"});
  press(screen.queuestartbutton);
  play = [&](Program& program) {
    repair(program);
    press(screen.queuestopbutton);
  };
  runWorkers();
  EXPECT_EQ(states(), (std::vector<State>{State::done, State::waiting}));
  EXPECT_EQ(programs.started.size(), 1U);
  EXPECT_TRUE(screen.queuestartbutton.isEnabled());
}

TEST_F(FilmsFlow, WhereNoProgramCanBeStartedTheQueueStops) {
  open({"a.avi", "b.avi"});
  programs.startError = std::make_error_code(std::errc::no_such_file_or_directory);
  press(screen.queuestartbutton);
  runWorkers();
  EXPECT_EQ(states(), (std::vector<State>{State::failed, State::waiting}));
  EXPECT_EQ(takeAlerts(), std::vector<std::string>{"The deep repair did not come to its end"});
}

TEST_F(FilmsFlow, WithoutAThreadTheQueueStopsAndSaysSo) {
  open({"a.avi", "b.avi"});
  workers.refuseNext();
  press(screen.queuestartbutton);
  runWorkers();
  EXPECT_EQ(states(), (std::vector<State>{State::failed, State::waiting}));
  EXPECT_EQ(takeAlerts(), std::vector<std::string>{"The deep repair did not come to its end"});
  EXPECT_TRUE(programs.started.empty());
  EXPECT_EQ(scratchNames(), std::vector<std::string>());
}

TEST_F(FilmsFlow, AFolderThatCannotBeUsedIsToldBeforeAnythingBegins) {
  open({"a.avi"});
  press(screen.queuefolderbutton);
  choosers.answerFolder(temp / "a.avi");
  press(screen.queuestartbutton);
  EXPECT_EQ(takeAlerts(), std::vector<std::string>{"This folder cannot be used"});
  press(screen.queuefolderbutton);
  choosers.answerFolder("/dead");
  pathProbe.dead = {"/dead"};
  press(screen.queuestartbutton);
  EXPECT_EQ(takeAlerts(), std::vector<std::string>{"This folder cannot be used"});
  EXPECT_EQ(workers.waiting(), 0U);
}

TEST_F(FilmsFlow, AResultIsShownOnAClickAndIsSavedAlready) {
  open({"a.avi", "b.avi"});
  press(screen.queuestartbutton);
  runWorkers();
  screen.queue.open(1);
  EXPECT_EQ(screen.pages.shown(), DeepPage::result);
  EXPECT_EQ(screen.result.result()->film, "b.avi");
  EXPECT_TRUE(deepRepair->mayClose());
  alerts.script({});
  static_cast<void>(takeAlerts());
  press(screen.resulthome);
  EXPECT_EQ(takeAlerts(), std::vector<std::string>());
  EXPECT_EQ(screen.pages.shown(), DeepPage::films);
  screen.queue.open(0);
  EXPECT_EQ(screen.result.result()->film, "a.avi");
}

TEST_F(FilmsFlow, AFilmThatIsNotDoneHasNothingToShow) {
  open({"a.avi"});
  screen.queue.open(0);
  screen.queue.open(7);
  EXPECT_EQ(screen.pages.shown(), DeepPage::films);
}

TEST_F(FilmsFlow, ResultsAreOpenedWhileOthersAreWorkedOn) {
  open({"a.avi", "b.avi"});
  press(screen.queuestartbutton);
  play = [&](Program& program) {
    if (programs.started.size() == 2) {
      screen.queue.open(0);
      EXPECT_EQ(screen.pages.shown(), DeepPage::result);
    }
    repair(program);
  };
  runWorkers();
  EXPECT_EQ(states(), (std::vector<State>{State::done, State::done}));
  EXPECT_EQ(screen.result.result()->film, "a.avi");
  press(screen.resulthome);
  EXPECT_EQ(screen.pages.shown(), DeepPage::films);
}

TEST_F(FilmsFlow, AFilmThatIsAddedMeanwhileIsRepairedToo) {
  open({"a.avi"});
  press(screen.queuestartbutton);
  play = [&](Program& program) {
    if (programs.started.size() == 1) {
      press(screen.queueaddbutton);
      ASSERT_TRUE(choosers.answerFilms({temp.put("b.avi", "x")}));
      EXPECT_EQ(states(), (std::vector<State>{State::working, State::waiting}));
    }
    repair(program);
  };
  runWorkers();
  EXPECT_EQ(states(), (std::vector<State>{State::done, State::done}));
  EXPECT_EQ(takeAlerts(), std::vector<std::string>{"All films are done"});
}

TEST_F(FilmsFlow, FilmsAreTakenOutButNotTheOneThatIsWorkedOn) {
  const auto paths = open({"a.avi", "b.avi", "c.avi"});
  press(screen.queuestartbutton);
  int programsSeen = 0;
  play = [&](Program& program) {
    if (++programsSeen == 1) {
      screen.queue.remove(0);
      EXPECT_EQ(screen.queue.films().size(), 3U);
      screen.queue.remove(1);
      EXPECT_EQ(screen.queue.films().size(), 2U);
    } else {
      // The first one goes while the last one is at work.
      screen.queue.remove(0);
    }
    repair(program);
  };
  runWorkers();
  EXPECT_EQ(programs.started.size(), 2U);
  ASSERT_EQ(screen.queue.films().size(), 1U);
  EXPECT_EQ(screen.queue.films()[0].path, paths[2]);
  EXPECT_EQ(states(), std::vector<State>{State::done});
}

TEST_F(FilmsFlow, LeavingWithWorkUndoneAsks) {
  open({"a.avi", "b.avi"});
  press(screen.queuehome);
  EXPECT_EQ(screen.pages.shown(), DeepPage::films);
  EXPECT_FALSE(deepRepair->mayClose());
  press(screen.queuestartbutton);
  play = [&](Program& program) {
    if (program.isStopped) return;
    alerts.script({platform::kAlertOther});
    press(screen.queuehome);
    EXPECT_EQ(screen.pages.shown(), DeepPage::none);
  };
  runWorkers();
  EXPECT_TRUE(screen.queue.films().empty());
  EXPECT_TRUE(programs.started.front()->isStopped);
  EXPECT_EQ(takeAlerts(), (std::vector<std::string>(3, "Not all films are done")));
  EXPECT_TRUE(deepRepair->mayClose());
  EXPECT_EQ(scratchNames(), std::vector<std::string>());
}

TEST_F(FilmsFlow, LeavingWithAllDoneAsksNothing) {
  open({"a.avi"});
  press(screen.queuestartbutton);
  runWorkers();
  static_cast<void>(takeAlerts());
  press(screen.queuehome);
  EXPECT_EQ(screen.pages.shown(), DeepPage::none);
  EXPECT_EQ(takeAlerts(), std::vector<std::string>());
  runWorkers();
  EXPECT_EQ(scratchNames(), std::vector<std::string>());
}

}  // namespace zelvo::tests
