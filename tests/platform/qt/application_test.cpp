// The event loop: how the system ends the program, and what goes on while the main thread is busy.
#include <gtest/gtest.h>

#include <QApplication>
#include <QSessionManager>
#include <QTimer>
#include <QWidget>
#include <array>
#include <csignal>
#include <thread>

#include "tests/platform/qt/bounded_wait.h"
#include "tests/platform/qt/window_bench.h"

namespace zelvo::tests {
namespace {

constexpr std::array kEndingSignals = {SIGTERM, SIGINT, SIGHUP};

/// What the program does with a signal.
auto handlerOf(int number) {
  struct sigaction action {};
  EXPECT_EQ(::sigaction(number, nullptr, &action), 0);
  return action.sa_handler;
}

class QtApplicationEnd : public testing::Test {
 protected:
  /// Serves events until the program is ended; answers its exit status.
  int run() {
    constexpr int kLongestMilliseconds = 60000;
    QTimer::singleShot(kLongestMilliseconds, bench.application.get(), [] {
      ADD_FAILURE() << "the event loop did not end";
      QCoreApplication::exit(1);
    });
    return bench.application->run();
  }
  void countRequests() {
    bench.application->setTerminationHandler([this] { ++requests; });
  }

  WindowBench bench;
  int requests = 0;
};

class QtApplicationEndBySignal : public QtApplicationEnd, public testing::WithParamInterface<int> {};

TEST_P(QtApplicationEndBySignal, TheRequestIsKnownAtOnceAndHandledInTheEventLoop) {
  countRequests();
  EXPECT_FALSE(bench.application->terminationRequested());
  ::raise(GetParam());
  EXPECT_TRUE(bench.application->terminationRequested());
  EXPECT_EQ(requests, 0);
  bench.until([this] { return requests > 0; });
  bench.settle();
  EXPECT_EQ(requests, 1);
}

TEST_P(QtApplicationEndBySignal, TheProgramEndsWithoutAQuestionAndInGoodOrder) {
  bench.application->setStartHandler([] { ::raise(GetParam()); });
  EXPECT_EQ(run(), 0);
  EXPECT_TRUE(bench.application->terminated());
  EXPECT_TRUE(bench.window->panels().isEmpty());
}

INSTANTIATE_TEST_SUITE_P(Signals, QtApplicationEndBySignal, testing::ValuesIn(kEndingSignals));

TEST_F(QtApplicationEnd, ALogOutIsHandledBeforeTheSessionIsToldThatItMayGoOn) {
  auto* const session = qApp->findChild<QSessionManager*>();
  ASSERT_NE(session, nullptr);
  countRequests();
  Q_EMIT qApp->commitDataRequest(*session);
  EXPECT_TRUE(bench.application->terminationRequested());
  EXPECT_EQ(requests, 1);
}

TEST_F(QtApplicationEnd, ALogOutEndsTheProgramWithoutAQuestion) {
  bench.application->setStartHandler([] { Q_EMIT qApp->commitDataRequest(*qApp->findChild<QSessionManager*>()); });
  EXPECT_EQ(run(), 0);
  EXPECT_TRUE(bench.application->terminated());
  EXPECT_TRUE(bench.window->panels().isEmpty());
}

TEST_F(QtApplicationEnd, ASignalWithoutAHandlerIsKnownAllTheSame) {
  bench.application->setTerminationHandler({});
  ::raise(SIGTERM);
  bench.settle();
  EXPECT_TRUE(bench.application->terminationRequested());
}

TEST_F(QtApplicationEnd, WhoWasEndedBeforeItRanDoesNotRun) {
  bool started = false;
  bench.application->setStartHandler([&started] { started = true; });
  bench.application->terminate();
  EXPECT_EQ(run(), 0);
  bench.settle();
  EXPECT_FALSE(started);
}

TEST(QtApplicationSignals, AreTakenOverAndGivenBack) {
  {
    const WindowBench bench;
    for (const int number : kEndingSignals) EXPECT_NE(handlerOf(number), SIG_DFL) << number;
  }
  for (const int number : kEndingSignals) EXPECT_EQ(handlerOf(number), SIG_DFL) << number;
}

TEST(QtApplicationSignals, IgnoredOnesStayIgnored) {
  ::signal(SIGHUP, SIG_IGN);
  {
    const WindowBench bench;
    EXPECT_EQ(handlerOf(SIGHUP), SIG_IGN);
    EXPECT_NE(handlerOf(SIGTERM), SIG_DFL);
  }
  EXPECT_EQ(handlerOf(SIGHUP), SIG_IGN);
  ::signal(SIGHUP, SIG_DFL);
}

TEST(QtApplicationSignals, ANewApplicationKnowsNothingOfAnEarlierRequest) {
  {
    const WindowBench bench;
    bench.application->setTerminationHandler({});
    ::raise(SIGTERM);
    EXPECT_TRUE(bench.application->terminationRequested());
  }
  EXPECT_FALSE(WindowBench().application->terminationRequested());
}

/// Counts how often it was painted.
class PaintedWidget final : public QWidget {
 public:
  using QWidget::QWidget;
  int paintings = 0;

 protected:
  void paintEvent(QPaintEvent*) override { ++paintings; }
};

class QtApplicationRedraws : public testing::Test {
 protected:
  QtApplicationRedraws() {
    widget.resize(5, 5);
    widget.show();
    bench.until([this] { return widget.paintings > 0; });
    bench.settle();
    widget.paintings = 0;
  }

  WindowBench bench;
  PaintedWidget& widget = *new PaintedWidget(bench.window.get());  // NOLINT: the window owns it
  int runs = 0;
  platform::CoalescedOperation redraw{bench.queue, [this] {
                                        ++runs;
                                        widget.update();
                                      }};
};

TEST_F(QtApplicationRedraws, AreRunAndPaintedWhileTheMainThreadIsBusy) {
  std::thread([this] { redraw.request(); }).join();
  // Nothing but this serves events meanwhile.
  waitUntil([this] { return widget.paintings > 0; }, [this] { bench.application->deliverRedraws(); },
            [this] { return std::to_string(runs) + " redraws, nothing painted"; });
  EXPECT_EQ(runs, 1);
}

TEST_F(QtApplicationRedraws, LetNoOtherWorkRunUntilTheLoopServesAgain) {
  bool ran = false;
  std::thread([&] {
    bench.queue.perform([&ran] { ran = true; });
    redraw.request();
  }).join();
  waitUntil([this] { return runs > 0; }, [this] { bench.application->deliverRedraws(); },
            [] { return std::string("no redraw"); });
  EXPECT_FALSE(ran);
  bench.until([&ran] { return ran; });
}

}  // namespace
}  // namespace zelvo::tests
