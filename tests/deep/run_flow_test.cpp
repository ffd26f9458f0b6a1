// One film from its button to its result, and every way in which nothing comes of it.
#include <gmock/gmock.h>

#include <csignal>
#include <filesystem>

#include "tests/deep/deep_bench.h"

namespace zelvo::tests {

using platform::DeepPage;
using platform::DeepVerdict;

using RunFlow = DeepTest;

TEST_F(RunFlow, AChosenFilmIsRepairedByAProgramOfItsOwn) {
  const std::string path = choose("clip.avi");
  ASSERT_TRUE(press(screen.deeprepairbutton));
  EXPECT_EQ(screen.pages.shown(), DeepPage::run);
  EXPECT_EQ(screen.runpathlabel.stringValue(), path);
  runWorkers();
  ASSERT_EQ(programs.started.size(), 1U);
  const Program& program = *programs.started.front();
  EXPECT_EQ(program.arguments.front(), "salvage");
  EXPECT_EQ(program.arguments.back(), path);
  EXPECT_TRUE(valueOf(program, "-o").ends_with("/clip-salvaged.avi"));
  EXPECT_EQ(valueOf(program, "--donor"), "");
  EXPECT_EQ(screen.pages.shown(), DeepPage::result);
  ASSERT_TRUE(screen.result.result());
  EXPECT_EQ(screen.result.result()->film, "clip.avi");
  EXPECT_EQ(screen.result.result()->verdict, DeepVerdict::partial);
  EXPECT_EQ(takeAlerts(), std::vector<std::string>());
}

TEST_F(RunFlow, TheFilmChosenLastIsTakenAndNoneWithoutAChoice) {
  choose("first.avi");
  const std::string last = choose("last.avi");
  press(screen.deeprepairbutton);
  runWorkers();
  EXPECT_EQ(programs.started.back()->arguments.back(), last);
  deepRepair->choiceCleared();
  EXPECT_FALSE(press(screen.deeprepairbutton));
}

TEST_F(RunFlow, OffersRepairTheFilmThatTheyAreAbout) {
  const std::string refused = temp.put("refused.avi", "x");
  deepRepair->choiceCleared();
  deepRepair->filmRefused(refused);
  ASSERT_TRUE(press(screen.refusedofferbutton));
  runWorkers();
  EXPECT_EQ(programs.started.back()->arguments.back(), refused);
  alerts.script({platform::kAlertOther});
  ASSERT_TRUE(press(screen.resulthome));
  const std::string judged = temp.put("judged.avi", "x");
  deepRepair->filmJudged(judged, platform::FilmVerdict::partly);
  ASSERT_TRUE(press(screen.partlyofferbutton));
  runWorkers();
  EXPECT_EQ(programs.started.back()->arguments.back(), judged);
}

TEST_F(RunFlow, TheProgressIsWhatTheProgramTold) {
  choose();
  press(screen.deeprepairbutton);
  EXPECT_EQ(screen.runprogress.look().stage, "");
  int waits = 0;
  play = [&](Program& program) {
    if (++waits == 1) return tell(program, "searching", 30, 100);
    if (waits < 4) return;
    const platform::DeepProgress told = screen.runprogress.look();
    EXPECT_EQ(told.stage, "searching");
    EXPECT_EQ(told.done, 30U);
    EXPECT_EQ(told.all, 100U);
    repair(program);
  };
  runWorkers();
  EXPECT_EQ(screen.pages.shown(), DeepPage::result);
  EXPECT_EQ(screen.runprogress.look().stage, "");
}

TEST_F(RunFlow, AStopTakesThePageAwayAtOnceAndTheProgramIsAskedToEnd) {
  choose();
  press(screen.deeprepairbutton);
  play = [&](Program& program) {
    if (program.isStopped) return;
    EXPECT_EQ(screen.pages.shown(), DeepPage::run);
    EXPECT_TRUE(press(screen.runstopbutton));
    EXPECT_EQ(screen.pages.shown(), DeepPage::none);
  };
  runWorkers();
  ASSERT_EQ(programs.started.size(), 1U);
  EXPECT_TRUE(programs.started.front()->isStopped);
  EXPECT_TRUE(programs.started.front()->isGone);
  EXPECT_EQ(screen.pages.shown(), DeepPage::none);
  EXPECT_FALSE(screen.result.result());
  EXPECT_EQ(takeAlerts(), std::vector<std::string>());
  EXPECT_EQ(scratchNames(), std::vector<std::string>());
}

TEST_F(RunFlow, AfterAStopNoFilmGetsItsName) {
  choose();
  press(screen.deeprepairbutton);
  int waits = 0;
  play = [&](Program& program) {
    const auto ask = [&] {
      salvage::BatchLine line;
      line.command = "salvage";
      line.input = "/films/some.avi";
      line.outcome = "repaired";
      program.messages.push_back(salvage::filmMessage({salvage::FilmMessage::Kind::naming, {}, line}));
    };
    if (++waits == 1) return ask();
    if (waits == 2) {
      EXPECT_EQ(program.answers, std::vector<std::string>{"go"});
      press(screen.runstopbutton);
      return ask();
    }
    EXPECT_EQ(program.answers, (std::vector<std::string>{"go", "no"}));
    end(program, 130);
  };
  // A program that was stopped has its time to end.
  programs.onWait = [&] { play(*programs.started.front()); };
  runWorkers();
  EXPECT_EQ(programs.started.front()->answers.size(), 2U);
}

TEST_F(RunFlow, AProgramThatDoesNotEndIsKilled) {
  choose();
  press(screen.deeprepairbutton);
  bool isDeaf = false;
  programs.onWait = [&] {
    Program& program = *programs.started.front();
    if (!isDeaf) press(screen.runstopbutton);
    isDeaf = true;
    if (program.isKilled) program.end = platform::ProgramEnd{.exit = -1, .signal = SIGKILL};
  };
  runWorkers();
  EXPECT_TRUE(programs.started.front()->isKilled);
  EXPECT_EQ(screen.pages.shown(), DeepPage::none);
  EXPECT_EQ(takeAlerts(), std::vector<std::string>());
}

TEST_F(RunFlow, AFilmThatIsDoneJustWhenItIsStoppedIsNotShown) {
  choose();
  press(screen.deeprepairbutton);
  play = [&](Program& program) {
    repair(program);
    press(screen.runstopbutton);
  };
  runWorkers();
  EXPECT_EQ(screen.pages.shown(), DeepPage::none);
  EXPECT_FALSE(screen.result.result());
  EXPECT_EQ(scratchNames(), std::vector<std::string>());
}

TEST_F(RunFlow, HomeAsksWhileTheProgramWorks) {
  choose();
  press(screen.deeprepairbutton);
  int waits = 0;
  play = [&](Program&) {
    if (++waits == 1) {
      press(screen.runhome);
      EXPECT_EQ(screen.pages.shown(), DeepPage::run);
    } else if (waits == 2) {
      alerts.script({platform::kAlertOther});
      press(screen.runhome);
      EXPECT_EQ(screen.pages.shown(), DeepPage::none);
    }
  };
  runWorkers();
  EXPECT_EQ(takeAlerts(), (std::vector<std::string>{"The deep repair is still at work",
                                                    "The deep repair is still at "
                                                    "work"}));
  EXPECT_TRUE(programs.started.front()->isStopped);
}

TEST_F(RunFlow, AFilmThatIsHopelessHasAResultAndNothingToSave) {
  report = hopelessReport();
  reachResult();
  EXPECT_EQ(screen.result.result()->verdict, DeepVerdict::hopeless);
  EXPECT_FALSE(screen.savebutton.isEnabled());
  EXPECT_EQ(screen.movieview.movie(), nullptr);
  ASSERT_TRUE(press(screen.resulthome));
  EXPECT_EQ(screen.pages.shown(), DeepPage::none);
  EXPECT_EQ(takeAlerts(), std::vector<std::string>());
}

TEST_F(RunFlow, AHopelessEndWithoutReportSaysWhy) {
  play = [](Program& program) { end(program, 1, "empty.avi is empty."); };
  reachResult();
  EXPECT_EQ(screen.result.result()->verdict, DeepVerdict::hopeless);
  ASSERT_EQ(screen.result.result()->lines.size(), 1U);
  EXPECT_EQ(screen.result.result()->lines.front().words, "empty.avi is empty.");
}

/// Ways of a program to bring nothing, and what is said of each.
class FailedRun : public DeepTest {
 protected:
  /// The message of the one alert.
  std::string failWith(std::function<void(Program&)> how) {
    choose();
    play = std::move(how);
    press(screen.deeprepairbutton);
    runWorkers();
    EXPECT_EQ(screen.pages.shown(), DeepPage::none);
    EXPECT_EQ(takeAlerts(), std::vector<std::string>{"The deep repair did not come to its end"});
    EXPECT_EQ(scratchNames(), std::vector<std::string>());
    EXPECT_FALSE(screen.result.result());
    return alerts.shown().empty() ? std::string() : alerts.shown().back().message.value_or("");
  }
};

TEST_F(FailedRun, ByItsOwnSentence) {
  const std::string said = failWith([](Program& program) { end(program, 3, "writing failed: No space left."); });
  EXPECT_EQ(said, "The reason: writing failed: No space left. Nothing was changed in your file.");
}

// What a look tells is told in the user's language.
TEST_F(FailedRun, ByAFilmThatIsGone) {
  const std::string said = failWith([](Program& program) {
    std::filesystem::remove(program.arguments.back());
    end(program, 3, "cannot open it: No such file.");
  });
  EXPECT_EQ(said, "broken.avi is not there any more. Nothing was changed in your file.");
}

TEST_F(FailedRun, ByAFullDisk) {
  const std::string said = failWith([&](Program& program) {
    const std::uintmax_t free = std::filesystem::space(temp.path()).available;
    std::filesystem::resize_file(program.arguments.back(), free + (std::uintmax_t{1} << 30U));
    end(program, 3, "writing failed: No space left.");
  });
  EXPECT_THAT(said, testing::StartsWith("There is not enough room: the film takes "));
  EXPECT_THAT(said, testing::HasSubstr(temp / "cache"));
}

TEST_F(FailedRun, ByADiskThatDoesNotAnswer) {
  const std::string said = failWith([this](Program& program) {
    pathProbe.dead = {program.arguments.back()};
    end(program, 3, "cannot read it.");
  });
  EXPECT_THAT(said, testing::StartsWith("The disk or server does not answer."));
}

TEST_F(FailedRun, ByItsOwnSentenceWithoutOptionsThatTheWindowHasNot) {
  const std::string said = failWith([](Program& program) {
    end(program, 3, "it would be 9 GB large, and no more than 1 GB can be right; use --allow-growth to have it.");
  });
  EXPECT_EQ(
      said,
      "The reason: it would be 9 GB large, and no more than 1 GB can be right. Nothing was changed in your file.");
}

TEST_F(FailedRun, ByALineOfItsComplaints) {
  const std::string said = failWith([](Program& program) {
    program.complaints = "zelvo-avi: warning: this.\nzelvo-avi: donor.avi: no such file.\n";
    program.end = platform::ProgramEnd{.exit = 3};
  });
  EXPECT_EQ(said, "The reason: donor.avi: no such file. Nothing was changed in your file.");
}

TEST_F(FailedRun, ByASignal) {
  const std::string said =
      failWith([](Program& program) { program.end = platform::ProgramEnd{.exit = -1, .signal = SIGSEGV}; });
  EXPECT_EQ(said,
            "The program that worked on it was ended before it was done (signal 11). Nothing was changed in your "
            "file.");
}

TEST_F(FailedRun, ByEndingWithoutAWord) {
  const std::string said = failWith([](Program& program) { program.end = platform::ProgramEnd{.exit = 0}; });
  EXPECT_EQ(said, "The program that worked on it ended without a word. Nothing was changed in your file.");
}

TEST_F(FailedRun, ByAReportThatIsNoReport) {
  const std::string said = failWith([this](Program& program) {
    writeFile(valueOf(program, "-o"), repairedBytes);
    end(program, 0);
  });
  EXPECT_EQ(said, "What it wrote is not there, or cannot be read. Nothing was changed in your file.");
}

TEST_F(FailedRun, ByAFilmThatIsNotThere) {
  const std::string said = failWith([this](Program& program) {
    repair(program);
    EXPECT_FALSE(fileManager.remove(valueOf(program, "-o")));
  });
  EXPECT_EQ(said, "What it wrote is not there, or cannot be read. Nothing was changed in your file.");
}

TEST_F(FailedRun, ByAProgramThatIsMissing) {
  programs.startError = std::make_error_code(std::errc::no_such_file_or_directory);
  const std::string said = failWith([](Program&) {});
  EXPECT_TRUE(said.starts_with("The program zelvo-avi, which does the deep repair")) << said;
}

TEST_F(FailedRun, ByASystemWithoutRoomForAProgram) {
  programs.startError = std::make_error_code(std::errc::resource_unavailable_try_again);
  EXPECT_TRUE(failWith([](Program&) {}).starts_with("The system has no room for more work at once."));
}

TEST_F(RunFlow, WithoutAThreadNothingBegins) {
  choose();
  workers.refuseNext();
  press(screen.deeprepairbutton);
  EXPECT_EQ(screen.pages.shown(), DeepPage::none);
  EXPECT_EQ(takeAlerts(), std::vector<std::string>{"The deep repair did not come to its end"});
  runWorkers();
  EXPECT_EQ(scratchNames(), std::vector<std::string>());
  ASSERT_TRUE(press(screen.deeprepairbutton));
  EXPECT_EQ(screen.pages.shown(), DeepPage::run);
}

TEST_F(RunFlow, ADiskThatDoesNotAnswerIsNotTouched) {
  const std::string path = choose();
  pathProbe.dead = {path};
  press(screen.deeprepairbutton);
  EXPECT_EQ(screen.pages.shown(), DeepPage::none);
  EXPECT_EQ(takeAlerts(), std::vector<std::string>{"The film does not answer"});
  EXPECT_EQ(workers.waiting(), 0U);
}

TEST_F(RunFlow, WithoutAPlaceForTheFilmNothingBegins) {
  choose();
  temp.put("cache", "a file in the place of the folder");
  press(screen.deeprepairbutton);
  EXPECT_EQ(screen.pages.shown(), DeepPage::none);
  EXPECT_EQ(takeAlerts(), std::vector<std::string>{"There is no place for the repaired film"});
}

}  // namespace zelvo::tests
