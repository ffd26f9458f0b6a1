#include <algorithm>
#include <chrono>
#include <future>

#include "app/write_out.h"
#include "engine/padded_copy.h"
#include "tests/app/app_bench.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;

const char* const kFolder = "/home/user/Repaired";
const char* const kSaved = "/home/user/Repaired/repaired.avi";

/// On the result page, with a rebuilt file of known bytes at the first scratch path.
class Save : public FlowTest {
 protected:
  void arrive(std::size_t rebuiltSize = 100000, std::uint64_t inputSize = 300) {
    app.start();
    runWorkers();
    app.files.putSparse(kInput, inputSize);
    ASSERT_TRUE(app.controller->chooseFile(kInput));
    Bytes rebuilt(rebuiltSize);
    for (std::size_t i = 0; i < rebuilt.size(); ++i) rebuilt[i] = static_cast<std::byte>(i * 7 + i / 251 + 1);
    app.files.put(kScratch1, std::move(rebuilt));
    engine::internalpath.set(kScratch1);
    app.controller->setMovieView(kScratch1);
    app.files.space = 5000000;
    app.events.clear();
  }
  bool saveAs(const std::string& folder) {
    return app.press(app.screen.savebutton) && app.panels.lastSavePanel()->choose(folder);
  }
};

using SaveProgress = Save;
using SaveInProgress = Save;

/// A save after which the rebuilt file does not lie whole at its new place.
class SaveOfLess : public Save {
 protected:
  /// Looks at every place that says so, also once the progress has asked for the completion sheet.
  void expectNotWhole(const std::string& why) {
    EXPECT_EQ(app.screen.savecompletedhead.title(), "The film was not saved whole");
    EXPECT_EQ(app.screen.savecompletedhead.sign(), platform::SheetSign::warning);
    EXPECT_TRUE(app.screen.savecompletedtext.stringValue().starts_with("The copy is incomplete: " + why))
        << app.screen.savecompletedtext.stringValue();
    EXPECT_EQ(app.screen.savedbytestext.stringValue(), app.screen.savecompletedtext.stringValue());
    EXPECT_EQ(app.screen.savedsizelabel.stringValue(), "Not whole");
    runWorkers();
    EXPECT_TRUE(app.isShown(app.screen.savecompletedwindow));
    EXPECT_EQ(app.screen.savecompletedhead.title(), "The film was not saved whole");
  }
};

TEST_F(Save, ThePanelIsPreparedAndShownOverTheMainWindow) {
  arrive();

  app.press(app.screen.savebutton);

  EXPECT_EQ(app.takeEvents(), (Lines{"log: Save", "savebutton.setEnabled(no)", "savePanel()",
                                     "savePanel.setPrompt(Save)", "savePanel.setCanCreateDirectories(yes)",
                                     "savePanel.beginSheet(default folder, Repaired, mainWindow)"}));
  EXPECT_EQ(app.controller->savepanel, app.panels.lastSavePanel());
}

TEST_F(Save, CancellingThePanelEnablesTheButtonAndCreatesNothing) {
  arrive();
  app.press(app.screen.savebutton);
  app.events.clear();

  app.panels.lastSavePanel()->cancel();

  EXPECT_EQ(app.takeEvents(), Lines{"savebutton.setEnabled(yes)"});
}

TEST_F(Save, APanelThatCannotBeMadeLeavesTheButtonUsable) {
  arrive();
  app.panels.makeSavePanels(false);

  app.press(app.screen.savebutton);

  EXPECT_TRUE(app.screen.savebutton.isEnabled());
}

TEST_F(Save, TheCopyIsMadeInTheGivenOrder) {
  arrive();
  app.press(app.screen.savebutton);
  app.events.clear();

  app.panels.lastSavePanel()->choose(kFolder);

  EXPECT_EQ(
      app.takeEvents(),
      (Lines{"savePanel.endSheet()", "savePanel.orderOut()", "createFolder(/home/user/Repaired)", "log: SIZE=5000000",
             "log: Save path=/home/user/Repaired", "log: SIZE=5000000", "log: Save path=/home/user/Repaired",
             "beginSheet(saveprogresspanel, mainWindow)", "log: Repaired file size=100000",
             "createFile(/home/user/Repaired/repaired.avi)", "flush(/home/user/Repaired/repaired.avi)",
             "savecompletedtext.setStringValue(The repaired file was saved as "
             "/home/user/Repaired/repaired.avi.)",
             "durationfield.setIntegerValue(0)", "main3.setEnabled(yes)", "help3.setEnabled(yes)",
             "previewbutton.setEnabled(yes)"}));
  EXPECT_EQ(app::savepath, kFolder);
  EXPECT_EQ(app.controller->savingNameFromUser, kSaved);
  EXPECT_EQ(app.controller->outputFileManager, &app.fileManager);
  EXPECT_EQ(workers.waiting(), 1U);  // the progress
}

TEST_F(Save, TheBarStartsAtZero) {
  arrive();
  app.screen.saveprogressbar.setDoubleValue(88);

  saveAs(kFolder);

  EXPECT_EQ(app.screen.saveprogressbar.doubleValue(), 0.0);
}

TEST_F(Save, APlaceThatDoesNotAnswerEndsLikeACancelledPanelWithANotice) {
  arrive();
  app.pathProbe.dead = {"/mnt/gone"};
  app.press(app.screen.savebutton);
  app.events.clear();

  EXPECT_TRUE(app.panels.lastSavePanel()->choose("/mnt/gone/Repaired"));

  EXPECT_EQ(
      app.takeEvents(),
      (Lines{"savePanel.endSheet()", "savePanel.orderOut()",
             "alert(\"The film cannot be saved there\", \"The disk or server does not answer. Nothing was changed. "
             "Please try again when it is back, or choose another place.\", \"OK\", nothing, nothing)",
             "savebutton.setEnabled(yes)"}));
  EXPECT_FALSE(app.fileManager.hasFolder("/mnt/gone/Repaired"));
  EXPECT_EQ(app::savepath, "");
  EXPECT_EQ(workers.waiting(), 0U);
}

TEST_F(Save, AFileThereThatDoesNotAnswerEndsItToo) {
  arrive();
  app.pathProbe.dead = {kSaved};

  EXPECT_TRUE(saveAs(kFolder));

  EXPECT_FALSE(app.fileManager.hasFolder(kFolder));
  EXPECT_TRUE(app.screen.savebutton.isEnabled());
}

TEST_F(Save, AnInputThatDoesNotAnswerIsNotComparedAndDoesNotHinderTheSave) {
  arrive();
  // The file that is there passes for the input, were that looked at.
  app.files.put(kInput, app.files.content(kScratch1));
  app.fileManager.links[kSaved] = kInput;
  app.pathProbe.dead = {"/films"};

  app.press(app.screen.savebutton);
  app.panels.lastSavePanel()->choose(kFolder, true);

  EXPECT_NE(app.screen.savecompletedtext.stringValue().find("was saved as"), std::string::npos)
      << app.screen.savecompletedtext.stringValue();
}

TEST_F(Save, ThePlaceIsAskedBeforeItsNameIsJudged) {
  arrive();
  app.fileManager.links["/mnt/gone/Repaired"] = kInput;  // a file, which a look would have refused
  app.pathProbe.dead = {"/mnt/gone"};

  EXPECT_EQ(app.controller->judgeSaveName("/mnt/gone/Repaired").kind, platform::NameVerdict::Kind::taken);
}

TEST_F(Save, AFolderOfTheChosenNameHoldsTheFile) {
  arrive();

  saveAs(kFolder);

  EXPECT_TRUE(app.fileManager.hasFolder(kFolder));
  EXPECT_TRUE(app.files.has(kSaved));
}

TEST_F(Save, ARemainderIsPaddedAndItsFrontWrittenAgain) {
  arrive(100000);

  saveAs(kFolder);

  const Bytes rebuilt = app.files.content(kScratch1);
  Bytes expected = rebuilt;
  expected.resize(131072);
  expected.insert(expected.end(), rebuilt.begin() + 98304, rebuilt.end());
  EXPECT_EQ(expected.size(), 132768U);
  EXPECT_EQ(app.files.content(kSaved), expected);
}

TEST_F(Save, WholeBlocksAreSavedByteForByte) {
  arrive(65536);

  saveAs(kFolder);

  EXPECT_EQ(app.files.content(kSaved), app.files.content(kScratch1));
}

TEST_F(Save, TheSizeInMiBIsRoundedDown) {
  arrive(3 * 1048576 - 1);

  saveAs(kFolder);

  EXPECT_EQ(app::oSize, 2U);
  EXPECT_EQ(app.screen.durationfield.stringValue(), "2");
}

TEST_F(Save, SpaceForExactlyTheFileIsEnough) {
  arrive(65536);
  app.files.space = 65536;

  saveAs(kFolder);

  EXPECT_TRUE(app.alerts.shown().empty());
  EXPECT_TRUE(app.files.has(kSaved));
}

TEST_F(Save, TooLittleSpaceIsRefusedAfterTheFolderIsMade) {
  arrive(65536);
  app.files.space = 65535;
  app.press(app.screen.savebutton);
  app.events.clear();

  app.panels.lastSavePanel()->choose(kFolder);

  EXPECT_EQ(app.takeEvents(),
            (Lines{"savePanel.endSheet()", "savePanel.orderOut()", "createFolder(/home/user/Repaired)",
                   "log: SIZE=65535", "log: Save path=/home/user/Repaired",
                   "alert(\"! Not enough free disk space\", \"The volume you have chosen to save data does not have "
                   "enough free space to save the repaired file.\", \"OK\", nothing, nothing)"}));
  EXPECT_TRUE(app.fileManager.hasFolder(kFolder));
  EXPECT_FALSE(app.files.has(kSaved));
  EXPECT_FALSE(app.screen.savebutton.isEnabled());
  EXPECT_EQ(workers.waiting(), 0U);
}

TEST_F(Save, AFolderThatCannotBeMadeHasNoSpace) {
  arrive();
  app.fileManager.refusedFolders = {kFolder};

  saveAs(kFolder);

  EXPECT_EQ(app.alerts.shown().size(), 1U);
  EXPECT_EQ(app.takeEvents({"log: SIZE"}), Lines{"log: SIZE=0"});
}

TEST_F(Save, AWholeCopyIsSaidToBeDone) {
  arrive();
  app.screen.savecompletedhead.setTitle("of an earlier save");
  app.screen.savecompletedhead.setSign(platform::SheetSign::warning);

  saveAs(kFolder);

  EXPECT_EQ(app.screen.savecompletedhead.title(), "Saving is done");
  EXPECT_EQ(app.screen.savecompletedhead.sign(), platform::SheetSign::done);
  EXPECT_EQ(app.screen.savedsizelabel.stringValue(), "Last saved");
  EXPECT_EQ(app.screen.savedbytestext.stringValue(), "0.1 MB of 0.1 MB copied");
}

TEST_F(SaveOfLess, ARebuiltFileThatCannotBeReadIsSavedAsZerosAndNotCalledSaved) {
  arrive(65536);
  app.files.refuse(kScratch1, std::make_error_code(std::errc::permission_denied));

  saveAs(kFolder);

  EXPECT_EQ(app.files.content(kSaved), Bytes(65536));
  expectNotWhole("0.1 MB of the repaired file could not be read: Permission denied. ");
}

TEST_F(SaveOfLess, ARebuiltFileThatIsGoneIsNotCalledSaved) {
  arrive(65536);
  ASSERT_FALSE(app.files.remove(kScratch1));

  saveAs(kFolder);

  EXPECT_TRUE(app.files.content(kSaved).empty());
  expectNotWhole("the repaired file is no longer there. ");
}

TEST_F(SaveOfLess, NoRebuiltFileAtAllIsNotCalledSaved) {
  arrive(65536);
  const std::optional<std::string> none;
  app.controller->setUnipath(none);

  saveAs(kFolder);

  expectNotWhole("the repaired file is no longer there. ");
}

TEST_F(SaveOfLess, ARebuiltFileThatBecameShorterIsNotCalledSaved) {
  arrive(300000);
  app.files.put(kScratch1, app.files.content(kScratch1)).bytes.resize(65536);
  app.files.at(kScratch1).size = 65536;

  saveAs(kFolder);

  EXPECT_EQ(app.files.content(kSaved), app.files.content(kScratch1));
  expectNotWhole("0.2 MB of the repaired file are no longer there. ");
}

TEST_F(SaveOfLess, AReadThatFailsIsToldAndTheRestIsCopied) {
  arrive(400000);
  MemoryFile& rebuilt = app.files.at(kScratch1);
  rebuilt.badReadStart = 70000;
  rebuilt.badReadEnd = 70001;
  rebuilt.readError = std::make_error_code(std::errc::io_error);

  saveAs(kFolder);

  const Bytes saved = app.files.content(kSaved);
  const Bytes whole = rebuilt.bytes;
  EXPECT_TRUE(std::equal(whole.begin() + 98304, whole.end(), saved.begin() + 98304));
  expectNotWhole("28304 bytes of the repaired file could not be read: Input/output error. ");
}

TEST_F(SaveOfLess, TheNextWholeCopyIsSaidToBeDoneAgain) {
  arrive(65536);
  app.recordingFiles.flushError = std::make_error_code(std::errc::io_error);
  saveAs(kFolder);
  EXPECT_EQ(app.screen.savecompletedhead.sign(), platform::SheetSign::warning);
  app.recordingFiles.flushError = {};
  app.screen.savebutton.setEnabled(true);

  saveAs(kFolder);

  EXPECT_EQ(app.screen.savecompletedhead.title(), "Saving is done");
  EXPECT_EQ(app.screen.savecompletedhead.sign(), platform::SheetSign::done);
  EXPECT_EQ(app.screen.savedsizelabel.stringValue(), "Last saved");
}

TEST_F(SaveInProgress, TheBytesThatAreCopiedAreShown) {
  arrive(40 * 32768);
  Lines shown;
  app.application.onDeliverRedraws = [&] { shown.push_back(app.screen.savedbytestext.stringValue()); };

  saveAs(kFolder);

  ASSERT_GE(shown.size(), 5U);
  EXPECT_EQ(Lines(shown.begin(), shown.begin() + 5),
            (Lines{"0.3 MB of 1.3 MB copied", "0.5 MB of 1.3 MB copied", "0.8 MB of 1.3 MB copied",
                   "1.0 MB of 1.3 MB copied", "1.3 MB of 1.3 MB copied"}));
}

TEST_F(SaveInProgress, WhatIsDoneInTheBusyWindowIsDropped) {
  arrive(40 * 32768);
  bool wasClosed = true;
  app.application.onDeliverRedraws = [&] { wasClosed = wasClosed && app.application.inputIsClosed(); };
  app.recordingFiles.onFlush = [&] { wasClosed = wasClosed && app.application.inputIsClosed(); };

  saveAs(kFolder);

  EXPECT_TRUE(wasClosed);
  EXPECT_EQ(app.application.inputClosings(), 1);
  EXPECT_FALSE(app.application.inputIsClosed());
  EXPECT_FALSE(app.isShown(app.screen.savecompletedwindow));  // nothing of the queue ran before the window answered
}

TEST_F(SaveInProgress, RedrawsGoOnWhileTheDiskTakesInTheLastBytes) {
  arrive(65536);
  std::promise<void> redrawn;
  app.recordingFiles.onFlush = [&, seen = redrawn.get_future().share()] {
    EXPECT_EQ(seen.wait_for(std::chrono::seconds(60)), std::future_status::ready) << "no redraw during the flush";
  };
  bool told = false;
  app.application.onDeliverRedraws = [&] {
    if (told || app.screen.savedbytestext.stringValue() != "The disk is taking in the last bytes\u2026") return;
    told = true;
    redrawn.set_value();
  };

  saveAs(kFolder);

  EXPECT_TRUE(told);
  EXPECT_EQ(app.screen.savedbytestext.stringValue(), "0.1 MB of 0.1 MB copied");
}

TEST_F(SaveInProgress, WhatIsWrittenGoesOutAsTheCopyGoesAndTheCopyWaitsForIt) {
  constexpr std::uint64_t kSize = 40U << 20U;
  arrive(kSize);
  app.files.space = 2 * kSize;
  platform::Relaxed<std::uint64_t> written;
  platform::Relaxed<std::uint64_t> sent;
  app.files.put(kSaved, {}).onWrite = [&](std::uint64_t offset, std::size_t size) { written = offset + size; };
  // The medium takes nothing before the copy stands still, or is through.
  std::promise<void> standing;
  app.recordingFiles.onWriteOut = [&, seen = standing.get_future().share()](std::uint64_t offset, std::uint64_t size) {
    EXPECT_EQ(seen.wait_for(std::chrono::seconds(60)), std::future_status::ready) << "the copy never stood still";
    EXPECT_EQ(offset, std::uint64_t{sent});
    EXPECT_LE(offset + size, std::uint64_t{written});
    sent = offset + size;
  };
  std::uint64_t mostAhead = 0;
  std::uint64_t before = 0;
  bool told = false;
  app.application.onDeliverRedraws = [&] {
    mostAhead = std::max(mostAhead, written - sent);
    const std::uint64_t now = written;
    if (!told && (now == before || now == kSize)) {
      told = true;
      standing.set_value();
    }
    before = now;
  };

  saveAs(kFolder);

  EXPECT_GE(mostAhead, app::WriteOut::kMostAhead);
  EXPECT_LE(mostAhead, app::WriteOut::kMostAhead + (8U << 15U));
  EXPECT_GE(std::uint64_t{sent}, kSize - app::WriteOut::kMostAhead);
  EXPECT_EQ(app.screen.savecompletedhead.sign(), platform::SheetSign::done);
}

TEST_F(SaveOfLess, AFailureOnTheWayToTheMediumIsTold) {
  arrive(8U << 20U);
  app.files.space = 32U << 20U;
  app.recordingFiles.writeOutError = std::make_error_code(std::errc::io_error);

  saveAs(kFolder);

  expectNotWhole("Input/output error. ");
}

TEST_F(Save, AWriteThatFailsChangesNoStepAndIsTold) {
  arrive(100000);
  app.files.put(kSaved, {});
  app.files.at(kSaved).badWriteFrom = 40000;
  app.files.at(kSaved).writeError = std::make_error_code(std::errc::no_space_on_device);

  saveAs(kFolder);
  runWorkers();

  EXPECT_TRUE(app.isShown(app.screen.savecompletedwindow));
  EXPECT_TRUE(app.alerts.shown().empty());
  EXPECT_EQ(app.screen.savecompletedtext.stringValue(),
            "The copy is incomplete: No space left on device. Please save again, to another place.");
}

TEST_F(Save, ADestinationThatCannotBeOpenedIsTold) {
  arrive();
  app.files.refuse(kSaved, std::make_error_code(std::errc::read_only_file_system));

  saveAs(kFolder);
  runWorkers();

  EXPECT_TRUE(app.isShown(app.screen.savecompletedwindow));
  EXPECT_EQ(app.screen.savecompletedtext.stringValue(),
            "The copy is incomplete: Read-only file system. Please save again, to another place.");
}

TEST_F(Save, AFailureOnClosingIsTold) {
  arrive(65536);
  app.files.put(kSaved, {});
  app.files.at(kSaved).closeError = std::make_error_code(std::errc::io_error);

  saveAs(kFolder);

  EXPECT_EQ(app.screen.savecompletedtext.stringValue(),
            "The copy is incomplete: Input/output error. Please save again, to another place.");
}

TEST_F(Save, AFailureOfTheMediumIsTold) {
  arrive(65536);
  app.recordingFiles.flushError = std::make_error_code(std::errc::io_error);

  saveAs(kFolder);

  EXPECT_EQ(app.screen.savecompletedtext.stringValue(),
            "The copy is incomplete: Input/output error. Please save again, to another place.");
}

TEST_F(Save, TheNameOfTheDamagedFileIsRefused) {
  arrive();
  app.files.put("/films/repaired.avi", Bytes(600));
  app.controller->chooseFile("/films/repaired.avi");
  app.press(app.screen.savebutton);

  EXPECT_FALSE(app.panels.lastSavePanel()->choose("/films"));

  EXPECT_EQ(app.files.content("/films/repaired.avi"), Bytes(600));
}

TEST_F(Save, TheDamagedFileIsNotWrittenEvenWhenItCameToStandThereSince) {
  arrive();
  app.press(app.screen.savebutton);
  app.fileManager.links[kSaved] = kInput;
  app.panels.lastSavePanel()->setNameJudge({});

  app.panels.lastSavePanel()->choose(kFolder);

  EXPECT_EQ(app.takeEvents({"createFile"}), Lines{});
  EXPECT_EQ(app.screen.savecompletedtext.stringValue(),
            "The copy is incomplete: That would overwrite the damaged file itself. Please choose another name or "
            "folder. Please save again, to another place.");
}

TEST_F(Save, AnEarlierSaveIsAskedAbout) {
  arrive();
  app.files.put(kSaved, Bytes(5));
  app.press(app.screen.savebutton);

  EXPECT_FALSE(app.panels.lastSavePanel()->choose(kFolder, false));
  EXPECT_EQ(app.files.content(kSaved), Bytes(5));
  EXPECT_TRUE(app.panels.lastSavePanel()->choose(kFolder, true));
}

TEST_F(Save, TheNameOfAnExistingFileIsRefused) {
  arrive();
  app.files.put(kFolder, Bytes(5));
  app.press(app.screen.savebutton);

  EXPECT_FALSE(app.panels.lastSavePanel()->choose(kFolder));
}

TEST_F(Save, RedrawsGoOnBetweenBlocks) {
  arrive(40 * 32768);

  saveAs(kFolder);

  EXPECT_GE(app.application.redrawsDelivered(), 5);
}

TEST_F(Save, ARequestToEndInTheMiddleEndsTheCopy) {
  arrive(40 * 32768);
  app.application.onDeliverRedraws = [this] { app.application.requestTermination(true); };

  saveAs(kFolder);

  EXPECT_EQ(app.files.content(kSaved).size(), 8U * 32768U);
  EXPECT_NE(app.screen.savecompletedtext.stringValue().find("incomplete"), std::string::npos);
}

TEST_F(SaveProgress, FollowsTheSizeOfTheInput) {
  arrive(65536, 499);
  saveAs(kFolder);
  app.events.clear();

  runWorkers();

  const Lines step = {"saveprogressbar.setDoubleValue", "repairbutton.setState(off)"};
  EXPECT_EQ(
      app.events.lines(),
      (Lines{"saveprogressbar.setDoubleValue(25)", "repairbutton.setState(off)", "saveprogressbar.setDoubleValue(50)",
             "repairbutton.setState(off)", "saveprogressbar.setDoubleValue(75)", "repairbutton.setState(off)",
             "saveprogressbar.setDoubleValue(100)", "repairbutton.setState(off)", "endSheet(stopsavingwindow)",
             "stopsavingwindow.orderOut()", "endSheet(saveprogresspanel)", "saveprogresspanel.orderOut()",
             "beginSheet(savecompletedwindow, mainWindow)", "saveprogressbar.setDoubleValue(100)",
             "saveprogressbar.setDoubleValue(100)", "saveprogressbar.setDoubleValue(100)",
             "saveprogressbar.setDoubleValue(100)"}));
  EXPECT_EQ(app.controller->stopvalue, 0);
}

TEST_F(SaveProgress, AnInputBelowAHundredBytesNeverCompletes) {
  arrive(65536, 99);

  saveAs(kFolder);
  runWorkers();

  EXPECT_FALSE(app.isShown(app.screen.savecompletedwindow));
  EXPECT_TRUE(app.isShown(app.screen.saveprogresspanel));
  app.press(app.screen.stopsavingOKbutton);
  EXPECT_FALSE(app.isShown(app.screen.saveprogresspanel));
}

TEST_F(SaveProgress, TheCompletedSheetsOkEnablesSaving) {
  arrive();
  saveAs(kFolder);
  runWorkers();
  app.events.clear();

  app.press(app.screen.savecompletedokbutton);

  EXPECT_EQ(app.takeEvents(),
            (Lines{"endSheet(savecompletedwindow)", "savecompletedwindow.orderOut()", "savebutton.setEnabled(yes)"}));
}

TEST_F(SaveProgress, StoppingIsAskedInASheetThatIsBroughtToTheFront) {
  arrive();
  saveAs(kFolder);
  app.events.clear();

  app.press(app.screen.stopsavingbutton);

  EXPECT_EQ(app.takeEvents(), (Lines{"log: Stoppped saving", "beginSheet(stopsavingwindow, mainWindow)",
                                     "stopsavingwindow.makeKeyAndOrderFront()"}));
}

TEST_F(SaveProgress, StoppedItEndsBothSheetsLogsTheOtherNameAndDeletesNothing) {
  arrive();
  saveAs(kFolder);
  app.press(app.screen.stopsavingbutton);
  app.events.clear();

  app.press(app.screen.stopsavingOKbutton);

  EXPECT_EQ(app.takeEvents(), (Lines{"endSheet(saveprogresspanel)", "saveprogresspanel.orderOut()",
                                     "endSheet(stopsavingwindow)", "stopsavingwindow.orderOut()",
                                     "log: mutstr=/home/user/Repaired/repaired.mov", "savebutton.setEnabled(yes)"}));
  EXPECT_TRUE(app.files.has(kSaved));
  EXPECT_EQ(app.controller->stopvalue, 1);
}

TEST_F(SaveProgress, AStoppedSaveBreaksAfterItsStepAndShowsNoCompletion) {
  arrive();
  saveAs(kFolder);
  app.press(app.screen.stopsavingOKbutton);
  app.events.clear();

  runWorkers();

  EXPECT_EQ(app.takeEvents(), Lines{"log: Breaking"});
  EXPECT_FALSE(app.isShown(app.screen.savecompletedwindow));
}

TEST_F(SaveProgress, AStoppedSaveDoesNotWakeWhenTheNextBegins) {
  arrive();
  saveAs(kFolder);
  app.press(app.screen.stopsavingOKbutton);
  saveAs("/home/user/Again");
  app.events.clear();

  runWorkers();

  EXPECT_EQ(app.takeEvents({"log: Breaking", "beginSheet"}),
            (Lines{"log: Breaking", "beginSheet(savecompletedwindow, mainWindow)"}));
}

TEST_F(SaveProgress, ContinuedItGoesOn) {
  arrive();
  saveAs(kFolder);
  app.press(app.screen.stopsavingbutton);
  app.events.clear();

  app.press(app.screen.stopsavingCancelbutton);
  EXPECT_EQ(app.takeEvents(), (Lines{"endSheet(stopsavingwindow)", "stopsavingwindow.orderOut()"}));

  runWorkers();
  EXPECT_TRUE(app.isShown(app.screen.savecompletedwindow));
}

TEST_F(SaveProgress, TheOtherProgressLogsEachValueTruncatedAndAsksAgain) {
  arrive(65536, 300);

  app.controller->saveProgressbarUpdate();

  EXPECT_EQ(app.events.lines(),
            (Lines{"saveprogressbar.setDoubleValue(33.3333)", "log: Vale=33", "repairbutton.setState(off)",
                   "saveprogressbar.setDoubleValue(66.6667)", "log: Vale=66", "repairbutton.setState(off)",
                   "saveprogressbar.setDoubleValue(100)", "log: Vale=100", "repairbutton.setState(off)",
                   "log: Vale=100", "endSheet(stopsavingwindow)", "stopsavingwindow.orderOut()",
                   "endSheet(saveprogresspanel)", "saveprogresspanel.orderOut()",
                   "beginSheet(stopsavingwindow, mainWindow)", "saveprogressbar.setDoubleValue(0)"}));
  app.events.clear();
  queue.pump();
  EXPECT_EQ(app.events.lines(), Lines(3, "saveprogressbar.setDoubleValue(100)"));
}

TEST_F(Save, TheOtherSaveWritesTheWholeFileUnderTheOtherName) {
  arrive(100000);
  app::savepath = kFolder;

  app.controller->savemethod2();

  EXPECT_EQ(app.takeEvents(),
            (Lines{"createFolder(/home/user/Repaired)", "createFile(/home/user/Repaired/repaired.mov)"}));
  EXPECT_EQ(app.files.content("/home/user/Repaired/repaired.mov"), app.files.content(kScratch1));
}

TEST_F(Save, TheOtherEntryAsksAndShowsAChooserOfFolders) {
  arrive();
  app.alerts.script({platform::kAlertDefault});

  app.controller->saveData(nullptr);

  EXPECT_EQ(
      app.takeEvents(),
      (Lines{"alert(\"Information\", \"Please ensure that you are not saving recovered data to the same volume from "
             "which you are recovering. Saving the recovered data to the same hard drive/ volume would result in "
             "permanent data loss. Do you want to continue?\", \"Yes\", \"No\", nothing)",
             "openPanel()", "openPanel.setCanCreateDirectories(yes)", "openPanel.setCanChooseDirectories(yes)",
             "openPanel.setCanChooseFiles(no)", "openPanel.setAllowsMultipleSelection(no)", "openPanel.setPrompt(Save)",
             "openPanel.beginSheetModalForWindow(mainWindow)"}));
  app.panels.lastOpenPanel()->choose("/home/user");
  EXPECT_TRUE(app.takeEvents().empty());
}

TEST_F(Save, TheOtherEntryDoesNothingOnNo) {
  arrive();
  app.alerts.script({platform::kAlertAlternate});

  app.controller->saveData(nullptr);

  EXPECT_TRUE(app.takeEvents({"openPanel"}).empty());
}

}  // namespace
}  // namespace zelvo::tests
