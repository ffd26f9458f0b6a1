// The copy while it goes on: what is shown, what is closed, how it goes out to the medium.
#include <algorithm>
#include <chrono>
#include <future>

#include "tests/app/save_bench.h"

namespace zelvo::tests {
namespace {

using SaveInProgress = SaveTest;

TEST_F(SaveInProgress, TheBytesThatAreCopiedAreShown) {
  arrive(40 * 32768);
  Lines shown;
  app.screen.savedbytestext.onText = [&](std::string_view text) { shown.emplace_back(text); };

  saveAs(kFolder);

  EXPECT_EQ(shown, (Lines{"0 bytes of 1.3 MB copied", "0.3 MB of 1.3 MB copied", "0.5 MB of 1.3 MB copied",
                          "0.8 MB of 1.3 MB copied", "1.0 MB of 1.3 MB copied", "1.3 MB of 1.3 MB copied",
                          "The disk is taking in the last bytes\u2026", "1.3 MB of 1.3 MB copied"}));
}

TEST_F(SaveInProgress, WhatIsDoneInTheBusyWindowIsDropped) {
  arrive(40 * 32768);
  bool wasClosed = true;
  app.application.onDeliverRedraws = [&] { wasClosed = wasClosed && app.application.inputIsClosed(); };
  app.recordingFiles.onFlush = [&] { wasClosed = wasClosed && app.application.inputIsClosed(); };
  app.screen.savecompletedtext.onText = [&](std::string_view) {
    wasClosed = wasClosed && app.application.inputIsClosed();
  };

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
  constexpr std::uint64_t kMaxAhead = 16U << 20U;
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

  EXPECT_GE(mostAhead, kMaxAhead);
  EXPECT_LE(mostAhead, kMaxAhead + (8U << 15U));
  EXPECT_GE(std::uint64_t{sent}, kSize - kMaxAhead);
  EXPECT_EQ(app.screen.savecompletedhead.sign(), platform::SheetSign::done);
}

TEST_F(SaveInProgress, RedrawsGoOnBetweenBlocks) {
  arrive(40 * 32768);

  saveAs(kFolder);

  EXPECT_GE(app.application.redrawsDelivered(), 5);
}

TEST_F(SaveInProgress, ARequestToEndInTheMiddleEndsTheCopy) {
  arrive(40 * 32768);
  app.application.onDeliverRedraws = [this] { app.application.requestTermination(true); };
  bool wasTakingIn = false;
  app.screen.savedbytestext.onText = [&](std::string_view text) {
    wasTakingIn = wasTakingIn || text.starts_with("The disk");
  };

  saveAs(kFolder);

  EXPECT_EQ(app.files.content(kSaved).size(), 8U * 32768U);
  EXPECT_EQ(app.screen.savecompletedtext.stringValue(),
            "The copy is incomplete: the program was asked to end. Please save again, to another place.");
  EXPECT_FALSE(wasTakingIn);
}

}  // namespace
}  // namespace zelvo::tests
