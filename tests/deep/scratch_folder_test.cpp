#include "deep/scratch_folder.h"

#include "tests/deep/deep_bench.h"

namespace zelvo::tests {

class ScratchFolderTest : public DeepTest {
 protected:
  [[nodiscard]] std::vector<std::string> folders() { return fileManager.list(temp / "cache"); }
};

TEST_F(ScratchFolderTest, IsThisUsersAloneAndGoesWithTheWindow) {
  reachResult();
  EXPECT_EQ(folders(), std::vector<std::string>{"deep-4711-1"});
  EXPECT_EQ(fileManager.attributes(temp / "cache/deep-4711-1")->permissions, 0700U);
  deepRepair.reset();
  EXPECT_EQ(folders(), std::vector<std::string>());
}

TEST_F(ScratchFolderTest, WhatWindowsThatAreNoMoreLeftBehindIsRemovedAtTheStart) {
  writeFile(temp / "cache/deep-7-1/lock", "");
  writeFile(temp / "cache/deep-7-1/1/film.avi", "a film that was not saved");
  writeFile(temp / "cache/deep-8-1/without-lock", "x");
  writeFile(temp / "cache/deep-9-1/lock", "");
  writeFile(temp / "cache/deep-9-1/1/film.avi", "another window's");
  writeFile(temp / "cache/slot1/testfile1.avi", "no business of ours");
  writeFile(temp / "cache/deep-file", "no folder");
  const auto otherWindow = lockedFiles.lockFile(temp / "cache/deep-9-1/lock");
  ASSERT_NE(otherWindow, nullptr);
  deepRepair->start();
  runWorkers();
  EXPECT_EQ(folders(), (std::vector<std::string>{"deep-9-1", "deep-file", "slot1"}));
  EXPECT_EQ(temp.content("cache/deep-9-1/1/film.avi"), "another window's");
}

TEST_F(ScratchFolderTest, AProgramThatOutlivesItsWindowForAMomentIsWaitedFor) {
  writeFile(temp / "cache/deep-7-1/lock", "");
  auto dying = lockedFiles.lockFile(temp / "cache/deep-7-1/lock");
  ASSERT_NE(dying, nullptr);
  clock.onSleep = [&] { dying.reset(); };
  deepRepair->start();
  runWorkers();
  EXPECT_EQ(folders(), std::vector<std::string>());
}

TEST_F(ScratchFolderTest, CopiesThatAKilledWindowDidNotEndAreRemovedWhereItWroteLast) {
  const std::string hidden = "/.zelvo-avi-0123456789abcdef01234567.part";
  for (const char* const folder : {"saved", "written", "elsewhere"}) writeFile(temp / folder + hidden, "half a film");
  writeFile(temp / "saved/film.avi", "a film");
  settings.setValue("deep/save-folder", temp / "saved");
  settings.setValue("deep/written-folder", temp / "written");
  const auto living = lockedFiles.lockFile(temp / "written" + hidden);
  deepRepair->start();
  runWorkers();
  EXPECT_EQ(fileManager.list(temp / "saved"), std::vector<std::string>{"film.avi"});
  EXPECT_EQ(fileManager.list(temp / "written").size(), 1U);
  EXPECT_EQ(fileManager.list(temp / "elsewhere").size(), 1U);
}

TEST_F(ScratchFolderTest, AWindowDoesNotRemoveItsOwn) {
  reachResult();
  deepRepair->start();
  runWorkers();
  EXPECT_EQ(folders(), std::vector<std::string>{"deep-4711-1"});
}

TEST_F(ScratchFolderTest, ADiskThatDoesNotAnswerIsLeftAlone) {
  writeFile(temp / "cache/deep-7-1/lock", "");
  pathProbe.dead = {temp / "cache"};
  deepRepair->start();
  runWorkers();
  EXPECT_EQ(folders(), std::vector<std::string>{"deep-7-1"});
}

TEST_F(ScratchFolderTest, WhatAnEarlierProgramOfTheSameNumberLeftIsNotUsed) {
  writeFile(temp / "cache/deep-4711-1/lock", "");
  reachResult();
  EXPECT_EQ(folders(), (std::vector<std::string>{"deep-4711-1", "deep-4711-2"}));
}

TEST_F(ScratchFolderTest, TheChosenDiskComesFirstAndNothingIsMadeInItsPlaceWhileItIsGone) {
  scratchFolders = {temp / "disk/private", temp / "cache/private"};
  choose();
  press(screen.deeprepairbutton);
  runWorkers();
  EXPECT_FALSE(fileManager.exists(temp / "disk"));
  EXPECT_TRUE(valueOf(*programs.started.back(), "-o").starts_with(temp / "cache/private/deep-4711-1/"));
  EXPECT_EQ(fileManager.attributes(temp / "cache/private")->permissions, 0700U);
  alerts.script({platform::kAlertOther});
  press(screen.resulthome);
  runWorkers();
  ASSERT_FALSE(fileManager.createFolder(temp / "disk"));
  ASSERT_FALSE(fileManager.remove(temp / "cache"));
  press(screen.deeprepairbutton);
  runWorkers();
  EXPECT_TRUE(valueOf(*programs.started.back(), "-o").starts_with(temp / "disk/private/deep-4711-1/"));
}

TEST_F(ScratchFolderTest, AFolderThatSomebodyTidiedAwayIsMadeAgain) {
  reachResult();
  ASSERT_FALSE(fileManager.remove(temp / "cache"));
  alerts.script({platform::kAlertOther});
  press(screen.resulthome);
  reachResult();
  EXPECT_EQ(folders(), std::vector<std::string>{"deep-4711-1"});
}

}  // namespace zelvo::tests
