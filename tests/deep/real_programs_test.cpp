// The whole flow with the real program of the command line, on real threads: nothing is played here.
#include <chrono>
#include <cstdlib>

#include "platform/linux/film_programs.h"
#include "platform/linux/main_queue.h"
#include "platform/linux/workers.h"
#include "tests/deep/deep_bench.h"
#include "tests/support/avi_builder.h"

namespace zelvo::tests {

using platform::DeepPage;
using platform::DeepVerdict;
using State = platform::QueuedFilm::State;

struct RealThreads {
  platform::linux_::LinuxMainQueue queue;
  platform::linux_::LinuxWorkers workers;
  std::string program = ZELVO_AVI;
};

namespace {

/// Far more than anything here takes.
constexpr std::chrono::minutes kPatience(2);

}  // namespace

class RealPrograms : public testing::Test, protected RealThreads, protected DeepBench {
 protected:
  RealPrograms()
      : DeepBench(queue, workers, [this] { return std::make_unique<platform::linux_::LinuxFilmPrograms>(program); }) {}
  ~RealPrograms() override {
    deepRepair->programEnds();
    workers.joinAll();
    queue.runUntil([] { return true; });
    deepRepair.reset();
  }

  void until(const std::function<bool()>& condition) {
    const auto end = std::chrono::steady_clock::now() + kPatience;
    queue.runUntil([&] { return condition() || std::chrono::steady_clock::now() > end; });
    ASSERT_TRUE(condition());
  }
  void untilShown(DeepPage page) {
    until([&] { return screen.pages.shown() == page; });
  }

  /// A film with a stretch of zeros.
  std::string putDamaged(const std::string& name) {
    platform::Bytes bytes = AviBuilder().interleaved(60, 9000, 1800).build();
    for (std::size_t i = 200'000; i < 230'000; ++i) bytes[i] = std::byte{0};
    return put(name, bytes);
  }
  std::string put(const std::string& name, const platform::Bytes& bytes) {
    std::string text;
    for (const std::byte one : bytes) text += static_cast<char>(one);
    return temp.put(name, text);
  }
  void choose(const std::string& path) {
    deepRepair->filmChosen(path);
    ASSERT_TRUE(press(screen.deeprepairbutton));
  }
  /// What the command line makes of it.
  [[nodiscard]] std::string salvaged(const std::string& path) {
    const std::string output = temp / "expected.avi";
    const std::string line = std::string("'") + ZELVO_AVI + "' salvage -q -o '" + output + "' '" + path + "'";
    EXPECT_EQ(std::system(line.c_str()), 0);  // NOLINT: no other thread runs programs
    std::string bytes = readFile(output);
    EXPECT_FALSE(fileManager.remove(output));
    return bytes;
  }
};

TEST_F(RealPrograms, ADamagedFilmIsRepairedComparedAndSaved) {
  const std::string path = putDamaged("clip.avi");
  const std::string before = readFile(path);
  choose(path);
  untilShown(DeepPage::result);
  const platform::DeepResult& result = *screen.result.result();
  EXPECT_EQ(result.verdict, DeepVerdict::partial);
  EXPECT_EQ(result.picture.bars.size(), 3U);
  EXPECT_FALSE(result.picture.losses.empty());
  ASSERT_TRUE(press(screen.comparebutton));
  until([&] { return screen.result.comparison().has_value(); });
  EXPECT_EQ(screen.result.comparison()->rows.size(), 2U);
  ASSERT_TRUE(press(screen.savebutton));
  ASSERT_TRUE(choosers.answerFile(platform::NewFileAnswer{temp / "mine.avi", true}));
  until([&] { return !alerts.shown().empty(); });
  EXPECT_EQ(takeAlerts(), std::vector<std::string>{"The film is saved"});
  EXPECT_TRUE(readFile(temp / "mine.avi") == salvaged(path));
  const std::string page = temp.content("mine.html");
  EXPECT_NE(page.find("<html"), std::string::npos);
  EXPECT_NE(page.find(">Written: "), std::string::npos);
  EXPECT_EQ(page.find(">Written: /"), std::string::npos);  // it lies elsewhere by now
  EXPECT_TRUE(readFile(path) == before);
  ASSERT_TRUE(press(screen.resulthome));
  EXPECT_EQ(screen.pages.shown(), DeepPage::none);
}

TEST_F(RealPrograms, AQueueWithAHopelessFilmAndAMissingOneComesToItsEnd) {
  const std::string good = putDamaged("a.avi");
  const std::string hopeless = put("b.avi", platform::Bytes(100'000));
  const std::string other = putDamaged("d.avi");
  ASSERT_TRUE(deepRepair->takeFilms({good, hopeless, temp / "missing.avi", other}));
  ASSERT_TRUE(press(screen.queuestartbutton));
  until([&] { return !alerts.shown().empty(); });
  const auto& films = screen.queue.films();
  ASSERT_EQ(films.size(), 4U);
  EXPECT_EQ(films[0].verdict, DeepVerdict::partial);
  EXPECT_EQ(films[1].verdict, DeepVerdict::hopeless);
  EXPECT_EQ(films[2].state, State::failed);
  EXPECT_NE(films[2].words.find("missing.avi"), std::string::npos) << films[2].words;
  EXPECT_EQ(films[3].verdict, DeepVerdict::partial);
  EXPECT_TRUE(temp.content("a-salvaged.avi") == salvaged(good));
  EXPECT_EQ(temp.names(),
            (std::vector<std::string>{"a-salvaged.avi", "a.avi", "b.avi", "cache", "d-salvaged.avi", "d.avi"}));
  screen.queue.open(1);
  EXPECT_EQ(screen.result.result()->verdict, DeepVerdict::hopeless);
}

TEST_F(RealPrograms, AStopLeavesNothingBehind) {
  choose(putDamaged("clip.avi"));
  ASSERT_TRUE(press(screen.runstopbutton));
  EXPECT_EQ(screen.pages.shown(), DeepPage::none);
  until([&] { return scratchNames().empty(); });
  EXPECT_EQ(takeAlerts(), std::vector<std::string>());
  EXPECT_FALSE(screen.result.result());
}

TEST_F(RealPrograms, AProgramThatIsMissingIsNamed) {
  program = temp / "zelvo-avi";
  choose(putDamaged("clip.avi"));
  until([&] { return !alerts.shown().empty(); });
  EXPECT_TRUE(alerts.shown().back().message->starts_with("The program zelvo-avi, which does the deep repair"))
      << *alerts.shown().back().message;
  EXPECT_EQ(screen.pages.shown(), DeepPage::none);
}

TEST_F(RealPrograms, AProgramThatCrashesIsTold) {
  program = temp.put("crash", "#!/bin/sh\nkill -SEGV $$\n");
  ASSERT_FALSE(newFiles.setPermissions(program, 0755));
  choose(putDamaged("clip.avi"));
  until([&] { return !alerts.shown().empty(); });
  EXPECT_TRUE(alerts.shown().back().message->starts_with(
      "The program that worked on it was ended before it was done (signal 11)."))
      << *alerts.shown().back().message;
  until([&] { return scratchNames().empty(); });
}

TEST_F(RealPrograms, AProgramThatHeedsNoStopIsKilled) {
  program = temp.put("deaf", "#!/bin/sh\ntrap '' TERM\nwhile :; do sleep 0.05; done\n");
  ASSERT_FALSE(newFiles.setPermissions(program, 0755));
  choose(putDamaged("clip.avi"));
  ASSERT_TRUE(press(screen.runstopbutton));
  EXPECT_EQ(screen.pages.shown(), DeepPage::none);
  until([&] { return scratchNames().empty(); });
  EXPECT_EQ(takeAlerts(), std::vector<std::string>());
}

}  // namespace zelvo::tests
