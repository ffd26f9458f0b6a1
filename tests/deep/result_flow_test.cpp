// What can be done with a result: looked at, copied as words, compared, repaired again with another film, left.
#include "deep/result_page.h"

#include "tests/deep/deep_bench.h"

namespace zelvo::tests {

using platform::DeepPage;

using ResultFlow = DeepTest;

namespace {

constexpr const char* kCheck = R"({"outcome":"repairable","streams":[{"kind":"video","chunks":40,"bytes":30000},)"
                               R"({"kind":"audio","chunks":0,"bytes":0}]})";

salvage::SalvageReport headlessReport() {
  salvage::SalvageReport report = hurtReport();
  report.streams[0].origin = salvage::HeaderOrigin::synthesised;
  return report;
}

}  // namespace

TEST_F(ResultFlow, TellsTheStreamsTheHeaderAndThePicture) {
  reachResult();
  const platform::DeepResult& result = *screen.result.result();
  EXPECT_EQ(result.sentence,
            "This film was damaged; 0.1 s of its pictures are lost or hurt, all of its sound is there, in step.");
  ASSERT_EQ(result.lines.size(), 3U);
  EXPECT_EQ(result.lines[0].about, "Pictures");
  EXPECT_EQ(result.lines[1].about, "Sound");
  EXPECT_EQ(result.lines[2], (platform::DeepLine{"Header", "the film's own"}));
  EXPECT_EQ(result.picture.bars.size(), 3U);
  EXPECT_EQ(result.picture.losses.size(), 1U);
}

TEST_F(ResultFlow, ThePictureLeadsThePreview) {
  reachResult();
  ASSERT_NE(screen.movieview.movie(), nullptr);
  events.clear();
  screen.result.pointAt(2.5);
  ASSERT_EQ(events.lines().size(), 1U);
  EXPECT_TRUE(events.lines().front().ends_with("gotoTime(2.500000)")) << events.lines().front();
}

TEST_F(ResultFlow, AFilmThatCannotBeShownHasItsResultAllTheSame) {
  choose("clip.avi");
  press(screen.deeprepairbutton);
  play = [this](Program& program) {
    movies.fail(valueOf(program, "-o"), "no such thing");
    repair(program);
  };
  runWorkers();
  EXPECT_EQ(screen.pages.shown(), DeepPage::result);
  EXPECT_EQ(screen.movieview.movie(), nullptr);
  screen.result.pointAt(1);
  EXPECT_TRUE(screen.savebutton.isEnabled());
}

TEST_F(ResultFlow, TheReportGoesToTheClipboardAsPlainText) {
  reachResult();
  ASSERT_TRUE(press(screen.copyreportbutton));
  EXPECT_TRUE(clipboard.text.starts_with("broken.avi\nThis film was damaged; "));
  EXPECT_NE(clipboard.text.find("\nHeader: the film's own\n"), std::string::npos);
  EXPECT_NE(clipboard.text.find("\nDamage:\n" + screen.result.result()->picture.losses.front().words + "\n"),
            std::string::npos);
}

TEST_F(ResultFlow, AComparisonTellsWhatTheNormalRepairWouldKeep) {
  const std::string path = reachResult();
  play = [](Program& program) {
    program.printed = kCheck;
    end(program, 0);
  };
  ASSERT_TRUE(press(screen.comparebutton));
  EXPECT_FALSE(screen.comparebutton.isEnabled());
  runWorkers();
  EXPECT_EQ(programs.started.back()->arguments, (std::vector<std::string>{"check", "--json", "--", path}));
  ASSERT_TRUE(screen.result.comparison());
  EXPECT_EQ(screen.result.comparison()->sentence, "The deep repair keeps more than the normal one.");
  using Row = platform::DeepComparison::Row;
  EXPECT_EQ(screen.result.comparison()->rows,
            (std::vector<Row>{{"Pictures", "40 pictures (30.0 kB)", "98 pictures (80.7 kB)"},
                              {"Sound", "nothing", "100 pieces (10.0 kB)"}}));
  EXPECT_FALSE(screen.comparebutton.isEnabled());
}

TEST_F(ResultFlow, AComparisonThatCannotBeMadeSaysSoAndCanBeAskedForAgain) {
  reachResult();
  play = [](Program& program) { end(program, 3); };
  press(screen.comparebutton);
  runWorkers();
  ASSERT_TRUE(screen.result.comparison());
  EXPECT_EQ(screen.result.comparison()->sentence, "What the normal repair would keep could not be found out.");
  EXPECT_TRUE(screen.comparebutton.isEnabled());
  workers.refuseNext();
  press(screen.comparebutton);
  EXPECT_TRUE(screen.comparebutton.isEnabled());
}

TEST_F(ResultFlow, AFilmThatTheNormalRepairRefusesHasNothingToCompare) {
  reachResult();
  play = [](Program& program) {
    program.printed = R"({"outcome":"not-supported","streams":[]})";
    end(program, 1);
  };
  press(screen.comparebutton);
  runWorkers();
  EXPECT_EQ(screen.result.comparison()->sentence, "The normal repair does not take this film.");
  EXPECT_TRUE(screen.result.comparison()->rows.empty());
}

TEST_F(ResultFlow, AComparisonIsStoppedWhenThePageIsLeft) {
  reachResult();
  press(screen.comparebutton);
  play = [&](Program& program) {
    if (program.isStopped) return;
    alerts.script({platform::kAlertOther});
    press(screen.resulthome);
  };
  runWorkers();
  EXPECT_TRUE(programs.started.back()->isStopped);
  EXPECT_FALSE(screen.result.comparison());
}

TEST_F(ResultFlow, HomeAsksAboutAFilmThatIsNotSaved) {
  reachResult();
  alerts.script({platform::kAlertAlternate});
  press(screen.resulthome);
  EXPECT_EQ(screen.pages.shown(), DeepPage::result);
  alerts.script({platform::kAlertDefault});
  press(screen.resulthome);
  EXPECT_EQ(screen.pages.shown(), DeepPage::result);
  EXPECT_TRUE(choosers.isAsking());
  EXPECT_EQ(scratchNames().size(), 1U);
  alerts.script({platform::kAlertOther});
  press(screen.resulthome);
  EXPECT_EQ(screen.pages.shown(), DeepPage::none);
  EXPECT_EQ(screen.movieview.movie(), nullptr);
  EXPECT_EQ(takeAlerts().size(), 3U);
  runWorkers();
  EXPECT_EQ(scratchNames(), std::vector<std::string>());
}

// ---- Another film of the same camera ----

TEST_F(ResultFlow, AFilmWithItsOwnHeaderAsksForNoOther) {
  reachResult();
  EXPECT_TRUE(screen.donorbutton.isHidden());
  EXPECT_FALSE(press(screen.donorbutton));
}

TEST_F(ResultFlow, ALostHeaderAsksForAnotherFilmWhichMayBeDeclined) {
  report = headlessReport();
  alerts.script({platform::kAlertAlternate});
  reachResult();
  EXPECT_EQ(takeAlerts(), std::vector<std::string>{"The header of this film is lost"});
  EXPECT_FALSE(choosers.isAsking());
  EXPECT_FALSE(screen.donorbutton.isHidden());
  ASSERT_TRUE(press(screen.donorbutton));
  EXPECT_TRUE(choosers.answerFilm(std::nullopt));
  EXPECT_EQ(screen.pages.shown(), DeepPage::result);
  EXPECT_EQ(programs.started.size(), 1U);
}

TEST_F(ResultFlow, WithAnotherFilmItIsRepairedOnceMore) {
  report = headlessReport();
  alerts.script({platform::kAlertDefault});
  const std::string path = reachResult();
  const std::string donor = temp.put("cards/donor.avi", "a good film");
  ASSERT_TRUE(choosers.answerFilm(donor));
  EXPECT_EQ(screen.pages.shown(), DeepPage::run);
  EXPECT_EQ(settings.value("deep/donor-folder"), temp / "cards");
  report.streams[0].origin = salvage::HeaderOrigin::donor;
  runWorkers();
  ASSERT_EQ(programs.started.size(), 2U);
  EXPECT_EQ(valueOf(*programs.started.back(), "--donor"), donor);
  EXPECT_EQ(programs.started.back()->arguments.back(), path);
  EXPECT_EQ(screen.pages.shown(), DeepPage::result);
  EXPECT_EQ(screen.result.result()->lines[2].words, "the film's own: 1; another film's: 1");
  EXPECT_EQ(takeAlerts().size(), 1U);
  EXPECT_EQ(scratchNames(), std::vector<std::string>{"2"});
  alerts.script({platform::kAlertOther});
  press(screen.resulthome);
  EXPECT_EQ(screen.pages.shown(), DeepPage::none);
}

TEST_F(ResultFlow, ADonorThatDoesNotFitIsTold) {
  report = headlessReport();
  alerts.script({platform::kAlertDefault});
  reachResult();
  report.isDonorUseless = true;
  ASSERT_TRUE(choosers.answerFilm(temp.put("donor.avi", "x")));
  runWorkers();
  const auto& lines = screen.result.result()->lines;
  EXPECT_EQ(lines.back().words, "its header cannot be that of this film, and was not used");
  EXPECT_EQ(takeAlerts().size(), 1U);
}

TEST_F(ResultFlow, ADonorOnADiskThatDoesNotAnswerIsNotTouched) {
  report = headlessReport();
  alerts.script({platform::kAlertDefault});
  reachResult();
  pathProbe.dead = {"/dead"};
  ASSERT_TRUE(choosers.answerFilm("/dead/donor.avi"));
  EXPECT_EQ(screen.pages.shown(), DeepPage::result);
  EXPECT_EQ(takeAlerts().back(), "The film does not answer");
  runWorkers();
  EXPECT_EQ(programs.started.size(), 1U);
}

TEST_F(ResultFlow, TheFirstResultStaysWhenTheSecondRunFailsOrIsStopped) {
  report = headlessReport();
  alerts.script({platform::kAlertAlternate});
  reachResult();
  const auto first = screen.movieview.movie();
  play = [](Program& program) { end(program, 3, "donor.avi cannot be read."); };
  press(screen.donorbutton);
  choosers.answerFilm(temp.put("donor.avi", "x"));
  runWorkers();
  EXPECT_EQ(screen.pages.shown(), DeepPage::result);
  EXPECT_EQ(screen.movieview.movie(), first);
  EXPECT_EQ(takeAlerts().size(), 2U);
  press(screen.donorbutton);
  choosers.answerFilm(temp / "donor.avi");
  EXPECT_EQ(screen.pages.shown(), DeepPage::run);
  press(screen.runstopbutton);
  EXPECT_EQ(screen.pages.shown(), DeepPage::result);
  runWorkers();
  EXPECT_TRUE(screen.savebutton.isEnabled());
  EXPECT_EQ(scratchNames(), std::vector<std::string>{"1"});
}

// ---- The window closes ----

TEST_F(ResultFlow, TheWindowMayCloseWhenThereIsNothingToLose) {
  EXPECT_TRUE(deepRepair->mayClose());
  report = hopelessReport();
  reachResult();
  EXPECT_TRUE(deepRepair->mayClose());
  EXPECT_EQ(takeAlerts(), std::vector<std::string>());
}

TEST_F(ResultFlow, AnUnsavedFilmAndARunAreAskedAboutBeforeTheWindowCloses) {
  choose();
  press(screen.deeprepairbutton);
  EXPECT_FALSE(deepRepair->mayClose());
  EXPECT_EQ(takeAlerts(), std::vector<std::string>{"The deep repair is still at work"});
  EXPECT_EQ(screen.pages.shown(), DeepPage::run);
  runWorkers();
  EXPECT_FALSE(deepRepair->mayClose());
  EXPECT_EQ(takeAlerts(), std::vector<std::string>{"The repaired film is not saved"});
  alerts.script({platform::kAlertOther});
  EXPECT_TRUE(deepRepair->mayClose());
}

TEST_F(ResultFlow, TheEndOfTheProgramAsksNothingAndLeavesNothing) {
  reachResult();
  choose("second.avi");
  press(screen.comparebutton);
  deepRepair->programEnds();
  runWorkers();
  press(screen.deeprepairbutton);
  EXPECT_EQ(workers.waiting(), 0U);
  EXPECT_EQ(programs.started.size(), 1U);
  deepRepair.reset();
  EXPECT_EQ(fileManager.list(temp / "cache"), std::vector<std::string>());
}

TEST_F(ResultFlow, TheEndOfTheProgramStopsARunThatWorks) {
  choose();
  press(screen.deeprepairbutton);
  play = [&](Program& program) {
    if (!program.isStopped) deepRepair->programEnds();
  };
  runWorkers();
  EXPECT_TRUE(programs.started.front()->isStopped);
  EXPECT_EQ(takeAlerts(), std::vector<std::string>());
  deepRepair.reset();
  EXPECT_EQ(fileManager.list(temp / "cache"), std::vector<std::string>());
}

}  // namespace zelvo::tests
