// The headless platform: elements that remember, sheets, a queue that is pumped by hand, workers that run when told.
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "platform/headless/elements.h"
#include "platform/headless/main_queue.h"
#include "platform/headless/screen.h"
#include "platform/headless/workers.h"

namespace zelvo::tests {
namespace {

using namespace platform::headless;
using Lines = std::vector<std::string>;

TEST(HeadlessElements, RememberAndNoteEveryChange) {
  Events events;
  HeadlessTextField field("field", &events);
  HeadlessButton button("button", &events);
  HeadlessProgressBar bar("bar", &events);

  field.setStringValue("text");
  field.setIntegerValue(-3);
  button.setEnabled(false);
  button.setHidden(true);
  button.setState(platform::Button::State::on);
  button.setImage("save_hover");
  bar.setDoubleValue(12.5);
  bar.setUsesThreadedAnimation(true);

  EXPECT_EQ(field.stringValue(), "-3");
  EXPECT_FALSE(button.isEnabled());
  EXPECT_TRUE(button.isHidden());
  EXPECT_EQ(button.state(), platform::Button::State::on);
  EXPECT_EQ(button.image(), "save_hover");
  EXPECT_EQ(bar.doubleValue(), 12.5);
  EXPECT_TRUE(bar.usesThreadedAnimation());
  EXPECT_EQ(events.lines(), (Lines{"field.setStringValue(text)", "field.setIntegerValue(-3)", "button.setEnabled(no)",
                                   "button.setHidden(yes)", "button.setState(on)", "button.setImage(save_hover)",
                                   "bar.setDoubleValue(12.5)", "bar.setUsesThreadedAnimation(yes)"}));
}

TEST(HeadlessElements, NeedNoListOfEvents) {
  HeadlessTextField field("field", nullptr);
  field.setStringValue("text");
  EXPECT_EQ(field.stringValue(), "text");
}

TEST(HeadlessTabView, StaysOnItsFirstAndLastPage) {
  HeadlessTabView tabs("tabs", nullptr);
  EXPECT_EQ(tabs.page(), 1);
  tabs.selectPreviousTabViewItem();
  EXPECT_EQ(tabs.page(), 1);
  for (int i = 0; i < 5; ++i) tabs.selectNextTabViewItem();
  EXPECT_EQ(tabs.page(), 3);
  tabs.selectFirstTabViewItem();
  EXPECT_EQ(tabs.page(), 1);
}

TEST(HeadlessMovies, LoaderMakesAMovieOfAnyPathButTheOneToldToFail) {
  Events events;
  HeadlessMovieLoader loader(&events);
  loader.fail("/bad", "cannot");
  EXPECT_NE(loader.movieWithFile("/good").movie, nullptr);
  const platform::LoadedMovie bad = loader.movieWithFile("/bad");
  EXPECT_EQ(bad.movie, nullptr);
  EXPECT_EQ(bad.error, "cannot");
}

TEST(HeadlessMovies, ViewKeepsWhatItShows) {
  HeadlessMovieView view("view", nullptr);
  const auto movie = std::make_shared<HeadlessMovie>("movie", nullptr);
  movie->play();
  view.setMovie(movie);
  EXPECT_EQ(view.movie(), movie);
  EXPECT_TRUE(movie->isPlaying());
  view.setMovie(nullptr);
  EXPECT_EQ(view.movie(), nullptr);
}

class HeadlessSheetsTest : public testing::Test {
 protected:
  Events events;
  HeadlessMainQueue queue;
  HeadlessSheets headless{queue, &events};
  platform::Sheets& sheets = headless;
  HeadlessWindow main{"main", &events};
  HeadlessWindow sheet{"sheet", &events};
};

TEST_F(HeadlessSheetsTest, SheetIsShownUntilItIsEndedAndVisibleUntilItIsOrderedOut) {
  sheets.beginSheet(sheet, main);
  EXPECT_EQ(headless.shown(), Lines{"sheet"});
  sheets.endSheet(sheet);
  EXPECT_TRUE(headless.shown().empty());
  EXPECT_TRUE(sheet.isVisible());
  sheet.orderOut();
  EXPECT_FALSE(sheet.isVisible());
}

TEST_F(HeadlessSheetsTest, SheetOfAWorkerOpensOnTheMainThread) {
  std::thread([&] { sheets.beginSheet(sheet, main); }).join();
  EXPECT_TRUE(headless.shown().empty());
  queue.pump();
  EXPECT_EQ(headless.shown(), Lines{"sheet"});
}

TEST_F(HeadlessSheetsTest, WhetherItIsStillWantedIsAskedWhenItWouldOpen) {
  bool wanted = true;
  std::thread([&] { sheets.beginSheet(sheet, main, [&] { return wanted; }); }).join();
  wanted = false;
  queue.pump();
  EXPECT_TRUE(headless.shown().empty());
  EXPECT_FALSE(sheet.isVisible());
}

TEST_F(HeadlessSheetsTest, EndingASheetThatIsNotShownDoesNothing) {
  sheets.endSheet(sheet);
  EXPECT_TRUE(headless.shown().empty());
}

TEST(HeadlessMainQueue, WorkOfAWorkerWaitsForThePump) {
  HeadlessMainQueue queue;
  std::vector<int> order;
  std::thread([&] {
    queue.perform([&] { order.push_back(1); });
    queue.perform([&] {
      order.push_back(2);
      queue.perform([&] { order.push_back(3); });  // of the main thread: at once
    });
  }).join();
  EXPECT_TRUE(order.empty());
  EXPECT_EQ(queue.waiting(), 2U);
  queue.pump();
  EXPECT_EQ(order, (std::vector{1, 2, 3}));
  EXPECT_EQ(queue.waiting(), 0U);
}

TEST(HeadlessMainQueue, PerformAndWaitOfAWorkerEndsWithThePump) {
  HeadlessMainQueue queue;
  std::atomic<bool> returned = false;
  std::thread worker([&] {
    queue.performAndWait([] {});
    returned = true;
  });
  while (!returned) queue.pump();
  worker.join();
  EXPECT_EQ(queue.waiting(), 0U);
}

TEST(HeadlessMainQueue, EndOfTheWaitsLetsAWaiterGoWithoutItsWork) {
  HeadlessMainQueue queue;
  bool ran = false;
  std::thread worker([&] { queue.performAndWait([&] { ran = true; }); });
  while (queue.waiting() == 0) std::this_thread::yield();
  queue.endWaits();
  worker.join();
  queue.pump();
  EXPECT_FALSE(ran);
}

TEST(HeadlessMainQueue, TakesEveryRequestWithoutCoalescing) {
  HeadlessMainQueue queue;
  int runs = 0;
  platform::CoalescedOperation operation(queue, [&] { ++runs; });
  for (int i = 0; i < 5; ++i) operation.request();
  EXPECT_EQ(runs, 0);
  queue.pump();
  EXPECT_EQ(runs, 5);
}

TEST(HeadlessMainQueue, RunsRequestsAtOnceWhenTheyAreNotHeld) {
  HeadlessMainQueue queue;
  queue.holdRequests(false);
  int runs = 0;
  platform::CoalescedOperation operation(queue, [&] { ++runs; });
  operation.request();
  operation.request();
  EXPECT_EQ(runs, 2);
}

TEST(HeadlessWorkers, BodiesWaitInOrderOfTheirStart) {
  HeadlessWorkers workers;
  std::vector<int> order;
  const auto mark = std::make_shared<platform::CancelMark>();
  workers.start(mark, [&] { order.push_back(1); });
  workers.start(mark, [&] { order.push_back(2); });
  EXPECT_EQ(workers.waiting(), 2U);
  EXPECT_TRUE(workers.runNext());
  EXPECT_EQ(order, std::vector{1});
  EXPECT_TRUE(workers.runNext());
  EXPECT_FALSE(workers.runNext());
  EXPECT_EQ(order, (std::vector{1, 2}));
}

TEST(HeadlessWorkers, JoiningAWorkerRunsItsBodyOnce) {
  HeadlessWorkers workers;
  int runs = 0;
  const auto worker = workers.start(std::make_shared<platform::CancelMark>(), [&] { ++runs; });
  EXPECT_FALSE(worker->finished());
  worker->join();
  worker->join();
  EXPECT_TRUE(worker->finished());
  EXPECT_FALSE(workers.runNext());
  EXPECT_EQ(runs, 1);
}

TEST(HeadlessWorkers, JoinAllRunsWhatTheBodiesStartToo) {
  HeadlessWorkers workers;
  int runs = 0;
  const auto mark = std::make_shared<platform::CancelMark>();
  workers.start(mark, [&] {
    ++runs;
    workers.start(mark, [&] { ++runs; });
  });
  workers.joinAll();
  EXPECT_EQ(runs, 2);
  EXPECT_EQ(workers.waiting(), 0U);
}

TEST(HeadlessWorkers, CancelSetsTheMark) {
  HeadlessWorkers workers;
  const auto mark = std::make_shared<platform::CancelMark>();
  workers.start(mark, [] {})->cancel();
  EXPECT_TRUE(mark->cancelled());
}

TEST(HeadlessWorkers, HelperIsARealThread) {
  HeadlessWorkers workers;
  std::thread::id id;
  workers.startHelper([&] { id = std::this_thread::get_id(); })->join();
  EXPECT_NE(id, std::this_thread::get_id());
}

TEST(HeadlessWorkers, HaveAsManyProcessorsAsATestSays) {
  HeadlessWorkers workers;
  EXPECT_EQ(workers.processors(), 2U);
  workers.setProcessors(1);
  EXPECT_EQ(workers.processors(), 1U);
}

TEST(HeadlessScreen, JobOutletsAreItsElements) {
  Screen screen;
  screen.job.textfield.setStringValue("status");
  screen.job.stopbutton.setEnabled(false);
  EXPECT_EQ(screen.status.stringValue(), "status");
  EXPECT_FALSE(screen.stopbutton.isEnabled());
}

TEST(HeadlessLog, LinesAreEvents) {
  Events events;
  HeadlessLog log(&events, true);
  log.line("Sector=1");
  EXPECT_EQ(events.lines(), Lines{"log: Sector=1"});
  EXPECT_TRUE(log.tracesPositions());
}

}  // namespace
}  // namespace zelvo::tests
