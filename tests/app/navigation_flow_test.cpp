#include "tests/app/app_bench.h"

namespace zelvo::tests {
namespace {

using Home = FlowTest;
using Help = FlowTest;
using Alert = FlowTest;
using Hover = FlowTest;
using app::Orlin_Repair_AVIAppDelegate;

const Lines kNormalPictures = {"repairbutton.setImage(repair_button_normal)",
                               "main2.setImage(home-1)",
                               "main3.setImage(home-1)",
                               "help1.setImage(help-1)",
                               "help2.setImage(help-1)",
                               "help3.setImage(help-1)",
                               "update1.setImage(update-1)",
                               "update2.setImage(update-1)",
                               "update3.setImage(update-1)"};

TEST_F(Home, DeletesTheScratchFileAndGoesBackInOrder) {
  reachResultPage();
  app.watchVariables();

  app.press(app.screen.main3);

  EXPECT_EQ(app.takeEvents(),
            (Lines{"negvalue = 0", "remove(/Applications/testfile1.avi)", "tabview.selectFirstTabViewItem()",
                   "path = ", "pathfield.setStringValue()", "path = nothing"}));
  EXPECT_EQ(app::negvalue, 0);
  EXPECT_EQ(engine::path.get(), std::nullopt);
  EXPECT_FALSE(app.files.has(kScratch1));
}

TEST_F(Home, TheNextRunUsesTheOtherScratchPath) {
  reachResultPage();
  app.press(app.screen.main3);
  app.choose(smallAvi());

  repairWhole();

  EXPECT_EQ(app.controller->unipath(), kScratch2);
  EXPECT_FALSE(app.files.has(kScratch1));
  EXPECT_TRUE(app.files.has(kScratch2));
}

TEST_F(Home, AFolderThatCameToStandAtTheScratchPathStays) {
  reachResultPage();
  ASSERT_FALSE(app.fileManager.createFolder(kScratch1));
  app.events.clear();

  app.press(app.screen.main3);

  EXPECT_TRUE(app.takeEvents({"remove"}).empty());
}

TEST_F(Home, ALinkThatCameToStandAtTheScratchPathStays) {
  reachResultPage();
  app.fileManager.links[kScratch1] = kInput;
  app.events.clear();

  app.press(app.screen.main3);

  EXPECT_TRUE(app.takeEvents({"remove"}).empty());
}

TEST_F(Home, OnPagesOneAndTwoItIsAMarkWithoutAction) {
  EXPECT_FALSE(app.actions.isConnected(app.screen.main1));
  EXPECT_FALSE(app.actions.isConnected(app.screen.main2));
  EXPECT_TRUE(app.actions.isConnected(app.screen.main3));
}

TEST_F(Help, PageOneLooksInTheExtraFolderAndLogsNothing) {
  app.press(app.screen.help1);

  EXPECT_EQ(app.takeEvents(),
            Lines{"openURL(file:///Applications/Zelvo%20AVI%20Repair/Zelvo%20AVI%20Repair.app/Contents/MacOS/Manual/"
                  "Zelvo%20AVI%20Repair/HTML/index.html)"});
}

TEST_F(Help, PagesTwoAndThreeLookDirectlyBelowApplicationsAndLog) {
  const Lines expected = {"log: Help clicked",
                          "openURL(file:///Applications/Zelvo%20AVI%20Repair.app/Contents/MacOS/Manual/"
                          "Zelvo%20AVI%20Repair/HTML/index.html)"};
  app.press(app.screen.help2);
  EXPECT_EQ(app.takeEvents(), expected);
  app.press(app.screen.help3);
  EXPECT_EQ(app.takeEvents(), expected);
}

TEST_F(Help, AddressesAreMappedBelowThePrefix) {
  app.paths = platform::PathMapper("/opt");

  app.press(app.screen.help2);

  EXPECT_EQ(app.takeEvents({"openURL"}),
            Lines{"openURL(file:///opt/zelvo/avi-repair/Applications/Zelvo%20AVI%20Repair.app/Contents/MacOS/Manual/"
                  "Zelvo%20AVI%20Repair/HTML/index.html)"});
}

TEST_F(Help, EachUpdateButtonAsksWithItselfAsSender) {
  app.press(app.screen.update1);
  app.press(app.screen.update2);
  app.press(app.screen.update3);

  EXPECT_EQ(app.takeEvents(), (Lines{"checkForUpdateClicked(update1)", "checkForUpdateClicked(update2)",
                                     "checkForUpdateClicked(update3)"}));
}

TEST_F(Alert, ShowsTheElementsOfTheDictionaryInOrder) {
  app.alerts.script({platform::kAlertOther});

  app.controller->showAlertPanelWithData(
      {{"title", "T"}, {"body", "B"}, {"defaultButton", "D"}, {"alternateButton", "A"}, {"otherButton", "O"}});

  EXPECT_EQ(app.takeEvents(), Lines{R"(alert("T", "B", "D", "A", "O"))"});
  EXPECT_EQ(app.controller->alertResultValue, -1);
}

TEST_F(Alert, AMissingKeyPassesNothing) {
  app.controller->showAlertPanelWithData({{"body", "B"}});

  EXPECT_EQ(app.takeEvents(), Lines{R"(alert(nothing, "B", nothing, nothing, nothing))"});
  EXPECT_EQ(app.controller->alertResultValue, 1);
}

TEST(StringIsNumeric, OnlyDigitsCount) {
  EXPECT_TRUE(Orlin_Repair_AVIAppDelegate::stringIsNumeric(""));
  EXPECT_TRUE(Orlin_Repair_AVIAppDelegate::stringIsNumeric("0"));
  EXPECT_TRUE(Orlin_Repair_AVIAppDelegate::stringIsNumeric("0123456789"));
  EXPECT_FALSE(Orlin_Repair_AVIAppDelegate::stringIsNumeric("12a"));
  EXPECT_FALSE(Orlin_Repair_AVIAppDelegate::stringIsNumeric("-1"));
  EXPECT_FALSE(Orlin_Repair_AVIAppDelegate::stringIsNumeric(" 1"));
  EXPECT_FALSE(Orlin_Repair_AVIAppDelegate::stringIsNumeric("1.5"));
  EXPECT_FALSE(Orlin_Repair_AVIAppDelegate::stringIsNumeric("\xD9\xA3"));  // a digit of another script
}

TEST_F(Hover, EnteringShowsTheHoverPictureOfThatControl) {
  app.start();
  const std::vector<std::pair<platform::headless::HeadlessButton*, std::string>> pictures = {
      {&app.screen.repairbutton, "repair_button_hover"},
      {&app.screen.main2, "home-2"},
      {&app.screen.main3, "home-2"},
      {&app.screen.help1, "help-2"},
      {&app.screen.help2, "help-2"},
      {&app.screen.help3, "help-2"},
      {&app.screen.update1, "update-2"},
      {&app.screen.update2, "update-2"},
      {&app.screen.update3, "update-2"}};
  for (const auto& [button, picture] : pictures) {
    app.tracking.enter(*button);
    EXPECT_EQ(app.takeEvents(), Lines{button->name() + ".setImage(" + picture + ")"});
  }
}

TEST_F(Hover, LeavingAnyControlShowsTheNormalPictureOfAll) {
  app.start();
  for (auto* button : {&app.screen.repairbutton, &app.screen.main1, &app.screen.update3}) {
    app.tracking.exit(*button);
    EXPECT_EQ(app.takeEvents(), kNormalPictures);
  }
}

TEST_F(Hover, EnteringTheHomeMarkOfPageOneChangesNothing) {
  app.start();

  app.tracking.enter(app.screen.main1);

  EXPECT_TRUE(app.takeEvents().empty());
}

TEST_F(Hover, TheLinkGetsThePointingHandAndKeepsItWhenLeft) {
  app.start();

  app.tracking.enter(app.screen.clickherebutton);
  EXPECT_EQ(app.takeEvents(), (Lines{"cursor.setPointingHand()", "log: Close hand"}));

  app.tracking.exit(app.screen.clickherebutton);
  EXPECT_EQ(app.takeEvents(), kNormalPictures);
}

TEST_F(Hover, AnIdentifierWithoutARowOrOutOfRangeDoesNothing) {
  for (const std::int64_t identifier : {1, 2, 3, 13, 14, 15, 16, -1, 1000}) {
    const platform::TrackingDictionary dictionary = {{"whichTracker", identifier}};
    app.controller->handleEnteredExited(true, &dictionary);
    EXPECT_TRUE(app.takeEvents().empty()) << identifier;
  }
}

TEST_F(Hover, TheFlagIsNotConsulted) {
  const platform::TrackingDictionary dictionary = {{"whichTracker", 6}};
  app.controller->handleEnteredExited(false, &dictionary);
  EXPECT_EQ(app.takeEvents(), Lines{"help1.setImage(help-2)"});
}

TEST_F(Hover, ADictionaryWithoutItsKeyStandsForTheRepairButton) {
  for (const platform::TrackingDictionary& dictionary :
       {platform::TrackingDictionary{}, platform::TrackingDictionary{{"anotherKey", 6}}}) {
    app.controller->handleEnteredExited(true, &dictionary);
    EXPECT_EQ(app.takeEvents(), Lines{"repairbutton.setImage(repair_button_hover)"});
  }
}

TEST_F(Hover, AMissingDictionaryDoesNothing) {
  app.controller->handleEnteredExited(true, nullptr);
  EXPECT_TRUE(app.takeEvents().empty());
}

TEST_F(Hover, AMarkedControlKeepsItsPictureWhenLeft) {
  app.start();
  app.controller->inTrackArea1 = 1;
  app.controller->inTrackArea13 = 1;

  app.tracking.exit(app.screen.help1);

  EXPECT_EQ(app.takeEvents(), Lines(kNormalPictures.begin() + 1, kNormalPictures.end() - 1));
}

TEST_F(Hover, DraggingIsOnlyLogged) {
  app.controller->mouseDragged({});
  EXPECT_EQ(app.takeEvents(), Lines{"log: Mouse dragged"});
}

}  // namespace
}  // namespace zelvo::tests
