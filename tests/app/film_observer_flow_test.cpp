// What the observer of the chosen film hears, and that nothing else waits for it.
#include "tests/app/app_bench.h"
#include "tests/support/avi_builder.h"

namespace zelvo::tests {

using platform::FilmVerdict;

class FilmObserverFlow : public FlowTest {
 protected:
  [[nodiscard]] Lines heard() { return std::exchange(app.films.heard, {}); }
};

namespace {

std::string judged(FilmVerdict verdict) {
  return std::string("judged ") + kInput + " " + std::to_string(static_cast<int>(verdict));
}

}  // namespace

TEST_F(FilmObserverFlow, AChoiceIsHeardAndItsEndToo) {
  app.start();
  app.choose(smallAvi());
  EXPECT_EQ(heard(), Lines{std::string("chosen ") + kInput});
  app.press(app.screen.repairbutton);
  app.press(app.screen.stopbutton);
  app.press(app.screen.stoprepairokbutton);
  EXPECT_EQ(heard(), Lines{"cleared"});
}

TEST_F(FilmObserverFlow, AResultIsJudgedOnceItsPageIsShown) {
  app.start();
  app.choose(smallAvi());
  repairWhole();
  EXPECT_EQ(heard(), Lines{std::string("chosen ") + kInput});
  app.press(app.screen.repaircompletedokbutton);
  EXPECT_EQ(app.screen.tabview.page(), 3);
  EXPECT_EQ(heard(), Lines{judged(FilmVerdict::good)});
  app.press(app.screen.main3);
  EXPECT_EQ(heard(), Lines{"cleared"});
}

TEST_F(FilmObserverFlow, ARefusedFilmIsToldByItsPathAfterTheChoiceIsGone) {
  app.start();
  app.choose(platform::Bytes(600'000));
  repairWhole();
  ASSERT_TRUE(app.isShown(app.screen.invalidfilewindow));
  static_cast<void>(heard());
  app.press(app.screen.invalidfileokbutton);
  EXPECT_EQ(heard(), (Lines{"cleared", std::string("refused ") + kInput}));
  EXPECT_EQ(app.screen.tabview.page(), 1);

  app.choose(AviBuilder().interleaved(3, 100, 100).build());
  repairWhole();
  ASSERT_TRUE(app.isShown(app.screen.filenotsupportedwindow));
  static_cast<void>(heard());
  app.press(app.screen.filenotsupportedokbutton);
  EXPECT_EQ(heard(), (Lines{"cleared", std::string("refused ") + kInput}));
}

TEST_F(FilmObserverFlow, TheWindowStaysWhenItMayNotCloseAndDoesNotAskThen) {
  app.start();
  app.films.allowsClosing = false;
  EXPECT_FALSE(app.application.closeMainWindow());
  EXPECT_TRUE(app.alerts.shown().empty());
  app.films.allowsClosing = true;
  EXPECT_FALSE(app.application.closeMainWindow());
  EXPECT_EQ(app.alerts.shown().size(), 1U);
  EXPECT_EQ(heard(), (Lines{"may close", "may close"}));
}

TEST_F(FilmObserverFlow, TerminationAsksNothing) {
  app.start();
  app.films.allowsClosing = false;
  app.application.requestTermination();
  EXPECT_TRUE(app.application.terminated());
  EXPECT_EQ(heard(), Lines{});
  app.controller->applicationWillTerminate();
  EXPECT_EQ(heard(), Lines{"ends"});
}

}  // namespace zelvo::tests
