#include "tests/app/app_bench.h"

namespace zelvo::tests {
namespace {

using Preview = FlowTest;
using State = platform::Button::State;
using platform::headless::HeadlessMovie;

const Lines kSentence = {
    "downloadmplayertext1.setStringValue(If you are unable to hear the audio or see the video clearly, )",
    "downloadmplayertext2.setStringValue(please)", "downloadmplayertext3.setStringValue(for more)",
    "downloadmplayertext4.setStringValue(information.)"};

void postEnd(AppBench& app, platform::Movie& movie) {
  app.notifications.post({platform::kMovieDidEndNotification, &movie});
}

TEST_F(Preview, TheRebuiltFileIsLoadedFromTheChosenScratchPath) {
  engine::internalpath.set("/chosen.avi");
  app.watchVariables();

  app.controller->setMovieView("/argument.avi");

  EXPECT_EQ(app.takeEvents(),
            (Lines{"unipath = /argument.avi", "movieWithFile(/chosen.avi)", "video = 1", "movieview.setMovie(movie)"}));
  EXPECT_EQ(app.screen.movieview.movie(), app.controller->video.get());
}

TEST_F(Preview, AFileThatCannotBeLoadedLeavesNoPictureAndALogLine) {
  engine::internalpath.set("/chosen.avi");
  app.movies.fail("/chosen.avi", "no such movie");

  app.controller->setMovieView("/chosen.avi");

  EXPECT_EQ(app.takeEvents(),
            (Lines{"movieWithFile(/chosen.avi)", "log: no such movie", "movieview.setMovie(nothing)"}));
  EXPECT_EQ(app.controller->video.get(), nullptr);
}

TEST_F(Preview, WithoutThePlayerTheFilePlaysHereWithAHint) {
  reachResultPage();
  app.files.put("/home/user/Downloads/MPlayerX.app", {});

  app.press(app.screen.previewbutton);

  EXPECT_EQ(app.takeEvents(),
            joined({{"log: path=/films/broken.avi"},
                    kSentence,
                    {"clickherebutton.setEnabled(yes)", "clickherebutton.setHidden(no)", "main3.setEnabled(no)",
                     "savebutton.setEnabled(no)", "movie(/Applications/testfile1.avi).gotoBeginning()",
                     "movie(/Applications/testfile1.avi).play()"}}));
  EXPECT_EQ(app.screen.previewbutton.state(), State::on);
}

TEST_F(Preview, WithThePlayerTheScratchFileIsHandedOver) {
  reachResultPage();
  app.files.put("/Applications/MPlayerX.app", {});

  app.press(app.screen.previewbutton);

  EXPECT_EQ(app.takeEvents(),
            (Lines{"log: path=/films/broken.avi", "downloadmplayertext1.setStringValue()",
                   "downloadmplayertext2.setStringValue()", "downloadmplayertext3.setStringValue()",
                   "downloadmplayertext4.setStringValue()", "clickherebutton.setEnabled(no)",
                   "clickherebutton.setHidden(yes)", "openFile(/Applications/testfile1.avi, MPlayerX.app)"}));
  EXPECT_EQ(app.screen.previewbutton.state(), State::on);
  EXPECT_TRUE(app.screen.savebutton.isEnabled());
  EXPECT_TRUE(app.screen.main3.isEnabled());
  EXPECT_TRUE(app.controller->mplayerinstalled);
}

TEST_F(Preview, ThePlayerIsLookedForBelowThePrefix) {
  app.paths = platform::PathMapper("/opt");
  app.files.put("/opt/zelvo/avi-repair/Applications/MPlayerX.app", {});
  reachResultPage();
  EXPECT_TRUE(app.controller->existsinApplicationsfolder);

  app.press(app.screen.previewbutton);

  EXPECT_EQ(app.takeEvents({"openFile"}), Lines{"openFile(/Applications/testfile1.avi, MPlayerX.app)"});
}

TEST_F(Preview, PressedAgainItStopsAndEnablesHomeSaveAndPreview) {
  reachResultPage();
  app.press(app.screen.previewbutton);
  app.events.clear();

  app.press(app.screen.previewbutton);

  EXPECT_EQ(app.takeEvents(), (Lines{"movie(/Applications/testfile1.avi).stop()", "main3.setEnabled(yes)",
                                     "savebutton.setEnabled(yes)", "previewbutton.setEnabled(yes)"}));
  EXPECT_EQ(app.screen.previewbutton.state(), State::off);
}

TEST_F(Preview, BeforeAnyRepairThePlayerCountsAsAbsent) {
  app.start();
  app.files.put("/Applications/MPlayerX.app", {});

  app.press(app.screen.previewbutton);

  EXPECT_FALSE(app.controller->mplayerinstalled);
  EXPECT_EQ(app.takeEvents({"log: ", "openFile"}), Lines{"log: path=(null)"});
}

TEST_F(Preview, TheEndOfTheMovieEnablesThePage) {
  reachResultPage();
  app.press(app.screen.previewbutton);
  app.events.clear();

  postEnd(app, *app.controller->video.get());

  EXPECT_EQ(app.takeEvents(), (Lines{"main3.setEnabled(yes)", "help3.setEnabled(yes)", "savebutton.setEnabled(yes)",
                                     "previewbutton.setEnabled(yes)", "previewbutton.setState(off)"}));
}

TEST_F(Preview, TheEndOfAnyMovieCountsAndThatMovieBecomesTheVideo) {
  reachResultPage();
  app.press(app.screen.previewbutton);
  const auto other = std::make_shared<HeadlessMovie>("other", nullptr);

  postEnd(app, *other);

  EXPECT_EQ(app.controller->video.get(), other);
}

TEST_F(Preview, WithoutAMovieItIsStartedAndEndedLikeAnyOther) {
  app.start();
  app.choose(smallAvi());
  app.movies.fail(kScratch1, "no such movie");
  repairWhole();
  app.press(app.screen.repaircompletedokbutton);
  ASSERT_EQ(app.controller->video.get(), nullptr);
  app.events.clear();

  app.press(app.screen.previewbutton);
  EXPECT_EQ(app.takeEvents({"main3", "savebutton", "movie"}),
            (Lines{"main3.setEnabled(no)", "savebutton.setEnabled(no)"}));
  app.press(app.screen.previewbutton);

  EXPECT_EQ(app.takeEvents(),
            (Lines{"main3.setEnabled(yes)", "savebutton.setEnabled(yes)", "previewbutton.setEnabled(yes)"}));
}

/// Posts notifications, and is no movie.
class SomebodyElse final : public platform::NotificationSender {};

TEST_F(Preview, AnEndThatNoMovieTellsLeavesNoVideoAndEnablesThePage) {
  SomebodyElse other;
  for (platform::NotificationSender* sender :
       {static_cast<platform::NotificationSender*>(nullptr), static_cast<platform::NotificationSender*>(&other)}) {
    app.controller->video.set(std::make_shared<HeadlessMovie>("movie", nullptr));

    app.controller->movieDidEnd({platform::kMovieDidEndNotification, sender});

    EXPECT_EQ(app.controller->video.get(), nullptr);
    EXPECT_EQ(app.takeEvents(), (Lines{"main3.setEnabled(yes)", "help3.setEnabled(yes)", "savebutton.setEnabled(yes)",
                                       "previewbutton.setEnabled(yes)", "previewbutton.setState(off)"}));
  }
}

TEST_F(Preview, EveryPressAddsOneRegistration) {
  reachResultPage();
  for (int i = 0; i < 3; ++i) app.press(app.screen.previewbutton);
  app.events.clear();

  postEnd(app, *app.controller->video.get());

  EXPECT_EQ(app.takeEvents({"help3.setEnabled"}), Lines(3, "help3.setEnabled(yes)"));
}

TEST_F(Preview, ARegistrationEndsWithTheController) {
  reachResultPage();
  app.press(app.screen.previewbutton);
  const auto movie = app.controller->video.get();
  app.controller.reset();
  app.events.clear();

  postEnd(app, *movie);

  EXPECT_TRUE(app.takeEvents().empty());
}

TEST_F(Preview, ClickHereOpensTheTipsPage) {
  app.start();

  app.press(app.screen.clickherebutton);

  EXPECT_EQ(app.takeEvents(),
            Lines{"openURL(file:///Applications/Zelvo%20AVI%20Repair/Zelvo%20AVI%20Repair.app/Contents/MacOS/Manual/"
                  "Zelvo%20AVI%20Repair/HTML/tips_for_previewing.htm)"});
}

TEST_F(Preview, TheErrorSheetLeadsToTheDownloadPageOfTheBundle) {
  app.bundle.info["playerDownloadUrl"] = "https://player.example/get";

  app.press(app.screen.PreviewErrorokbutton);

  EXPECT_EQ(app.takeEvents(), (Lines{"endSheet(PreviewErrorWindow)", "PreviewErrorWindow.orderOut()",
                                     "openURL(https://player.example/get)"}));
}

TEST_F(Preview, WithoutADownloadPageNothingIsOpened) {
  app.press(app.screen.PreviewErrorokbutton);
  app.bundle.info["playerDownloadUrl"] = "";
  app.press(app.screen.PreviewErrorokbutton);

  EXPECT_TRUE(app.takeEvents({"openURL"}).empty());
}

TEST_F(Preview, TheLinkHasAllFourAttributes) {
  const auto link = app::Orlin_Repair_AVIAppDelegate::hyperlinkFromString("click here", "http://x.example/");

  ASSERT_EQ(link.runs.size(), 1U);
  EXPECT_EQ(link.text(), "click here");
  EXPECT_EQ(link.runs[0].attributes.link, "http://x.example/");
  EXPECT_EQ(link.runs[0].attributes.font, (platform::Font{"Lucida Grande", 10.0}));
  EXPECT_EQ(link.runs[0].attributes.foreground, (platform::Colour{0, 0, 1, 1}));
  EXPECT_EQ(link.runs[0].attributes.underline, platform::UnderlineStyle::single);
}

}  // namespace
}  // namespace zelvo::tests
