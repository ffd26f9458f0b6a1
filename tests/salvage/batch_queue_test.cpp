#include "salvage/batch_queue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <deque>
#include <map>

#include "tests/salvage/batch_lines.h"

namespace zelvo::salvage {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Programs that a test decides about. Each film's script is what its program says in each wait until its end.
struct Script {
  std::vector<std::string> says;
  platform::ProgramEnd end{.exit = 0};
  int waits = 0;  ///< after it has said all
  bool obeysStop = true;
  bool obeysKill = true;
  std::size_t prints = 0;  ///< bytes beside its name, into both streams
  int refusals = 0;        ///< so often it cannot be started
};

class ScriptedPrograms final : public platform::FilmPrograms {
 public:
  class Program final : public platform::FilmProgram {
   public:
    Program(ScriptedPrograms& all, std::string film, Script script)
        : all_(all), film_(std::move(film)), script_(std::move(script)), printed_(film_) {
      printed_.resize(printed_.size() + script_.prints, '\0');
      ++all_.running;
      all_.most = std::max(all_.most, all_.running);
      all_.programs.push_back(this);
    }
    ~Program() override {
      std::erase(all_.programs, this);
      --all_.running;
    }
    std::vector<std::string> takeMessages() override { return std::exchange(said_, {}); }
    void answer(std::string_view line) override { all_.answers.push_back(film_ + " " + std::string(line)); }
    const std::string& printed() const override { return printed_; }
    const std::string& complaints() const override { return printed_; }
    void stop() override {
      all_.answers.push_back(film_ + " stop");
      if (script_.obeysStop) end_ = platform::ProgramEnd{.exit = 130};
    }
    void kill() override {
      if (script_.obeysKill) end_ = platform::ProgramEnd{.exit = -1, .signal = 9};
    }
    std::optional<platform::ProgramEnd> end() const override { return end_; }
    void step() {
      if (!script_.says.empty()) {
        said_.push_back(script_.says.front());
        script_.says.erase(script_.says.begin());
      } else if (script_.waits-- <= 0 && !end_) {
        end_ = script_.end;
      }
    }

   private:
    ScriptedPrograms& all_;
    const std::string film_;
    Script script_;
    std::vector<std::string> said_;
    std::string printed_;
    std::optional<platform::ProgramEnd> end_;
  };

  Started start(const platform::FilmProgramRequest& request) override {
    const std::string& film = request.arguments.back();
    started.push_back(film);
    if (scripts[film].refusals > 0) {
      --scripts[film].refusals;
      return {nullptr, std::make_error_code(std::errc::resource_unavailable_try_again)};
    }
    return {std::make_unique<Program>(*this, film, scripts[film]), {}};
  }
  void wait(std::chrono::milliseconds) override {
    ++waits;
    if (onWait) onWait();
    for (Program* one : programs) one->step();
  }

  std::map<std::string, Script> scripts;
  std::vector<Program*> programs;
  std::vector<std::string> started;
  std::vector<std::string> answers;
  std::function<void()> onWait;
  int waits = 0;
  int running = 0;
  int most = 0;
};

class NotingQueue final : public FilmQueue {
 public:
  explicit NotingQueue(std::size_t films) : films_(films) {}
  std::size_t films() const override { return films_; }
  std::optional<std::vector<std::string>> begin(std::size_t film) override {
    begun.push_back(std::to_string(film));
    if (film == leftOut) return std::nullopt;
    return std::vector<std::string>{std::to_string(film)};
  }
  bool mayName(std::size_t film, const BatchLine&) override { return film != unnamed; }
  void end(std::size_t film, const FilmResult& result) override {
    ended.push_back(std::to_string(film) + (result.end ? "" : " not started") + (result.isLast ? " last" : ""));
  }
  void tell(std::size_t film, const FilmResult* result) override {
    const bool isMixedUp = result != nullptr && result->end && !result->printed.starts_with(std::to_string(film));
    told.push_back(std::to_string(film) + (result == nullptr ? " left out" : "") + (isMixedUp ? " mixed up" : ""));
  }
  void look(const std::vector<RunningFilm>& running) override {
    for (const RunningFilm& one : running) {
      if (!one.progress.empty()) progress.push_back(one.progress);
    }
  }
  bool isStopped() const override { return stopped; }

  std::size_t leftOut = 99;
  std::size_t unnamed = 99;
  bool stopped = false;
  std::vector<std::string> begun;
  std::vector<std::string> ended;
  std::vector<std::string> told;
  std::vector<std::string> progress;

 private:
  const std::size_t films_;
};

QueueChoices jobs(unsigned number) { return {.jobs = number, .request = {}, .patience = std::chrono::milliseconds(0)}; }

TEST(BatchQueue, FilmsAreToldInOrderHoweverTheyEnd) {
  ScriptedPrograms programs;
  programs.scripts["0"].waits = 10;
  NotingQueue queue(4);
  runQueue(programs, queue, jobs(2));
  EXPECT_THAT(queue.ended, ElementsAre("1", "2", "3", "0"));
  EXPECT_THAT(queue.told, ElementsAre("0", "1", "2", "3"));
  EXPECT_EQ(programs.most, 2);
}

TEST(BatchQueue, NoMoreRunAtOnceThanAskedFor) {
  ScriptedPrograms programs;
  NotingQueue queue(9);
  runQueue(programs, queue, jobs(3));
  EXPECT_EQ(programs.most, 3);
  EXPECT_EQ(programs.started.size(), 9U);
}

TEST(BatchQueue, FilmThatIsLeftOutIsToldInItsPlace) {
  ScriptedPrograms programs;
  NotingQueue queue(3);
  queue.leftOut = 1;
  runQueue(programs, queue, jobs(1));
  EXPECT_THAT(queue.told, ElementsAre("0", "1 left out", "2"));
  EXPECT_THAT(programs.started, ElementsAre("0", "2"));
}

TEST(BatchQueue, OutputGetsItsNameOnlyWithLeave) {
  ScriptedPrograms programs;
  const std::string naming = filmMessage({FilmMessage::Kind::naming, {}, tests::fullLine()});
  const std::string end = filmMessage({FilmMessage::Kind::end, {}, tests::fullLine()});
  programs.scripts["0"].says = {"nonsense", naming, end};
  programs.scripts["1"].says = {naming};
  NotingQueue queue(2);
  queue.unnamed = 1;
  runQueue(programs, queue, jobs(2));
  EXPECT_THAT(programs.answers, ElementsAre("1 no", "0 go"));
  EXPECT_THAT(queue.ended, testing::UnorderedElementsAre("0 last", "1"));
}

TEST(BatchQueue, ProgressIsPassedOn) {
  ScriptedPrograms programs;
  programs.scripts["0"].says = {filmMessage({FilmMessage::Kind::progress, "half\nway", {}})};
  NotingQueue queue(1);
  runQueue(programs, queue, jobs(1));
  EXPECT_THAT(queue.progress, testing::Contains("half way"));
}

TEST(BatchQueue, StepsArePassedOn) {
  const salvage::FilmStep step{"sear\tching", 17, 40};
  const auto told = readFilmMessage(filmMessage({FilmMessage::Kind::progress, "42 %\tof it", {}, step}));
  ASSERT_TRUE(told);
  EXPECT_EQ(told->step, (salvage::FilmStep{"sear ching", 17, 40}));
  EXPECT_EQ(told->progress, "42 %\tof it");
  for (const char* wrong :
       {"progress 1\t2\t3", "progress 1\tx\tsearching\t", "progress -1\t2\tsearching\t", "progress 5"}) {
    EXPECT_FALSE(readFilmMessage(wrong)) << wrong;
  }
}

TEST(BatchQueue, ProgramThatCannotBeStartedIsTriedAgainWhenAnotherHasEnded) {
  ScriptedPrograms programs;
  NotingQueue queue(2);
  programs.scripts["1"].refusals = 1;
  programs.scripts["0"].waits = 3;
  runQueue(programs, queue, jobs(1));
  EXPECT_THAT(queue.ended, ElementsAre("0", "1 not started"));  // nothing else ran by then

  ScriptedPrograms busy;
  NotingQueue three(3);
  busy.scripts["0"].waits = 3;
  busy.scripts["1"].refusals = 1;
  runQueue(busy, three, jobs(2));
  EXPECT_THAT(three.begun, ElementsAre("0", "1", "2"));
  EXPECT_THAT(busy.started, testing::IsSupersetOf({"0", "1", "1", "2"}));
  EXPECT_THAT(three.ended, testing::UnorderedElementsAre("0", "1", "2"));
  EXPECT_THAT(three.told, ElementsAre("0", "1", "2"));
}

TEST(BatchQueue, NothingIsBegunWhileVeryMuchWaitsToBeTold) {
  ScriptedPrograms programs;
  NotingQueue queue(6);
  programs.scripts["0"].waits = 20;
  for (const char* film : {"1", "2", "3", "4", "5"}) programs.scripts[film].prints = std::size_t{17} << 20U;
  std::size_t startedBefore = 0;
  programs.onWait = [&] {
    if (programs.scripts["0"].waits > 0 && queue.told.empty()) startedBefore = programs.started.size();
  };
  runQueue(programs, queue, jobs(2));
  EXPECT_EQ(startedBefore, 3U);
  EXPECT_EQ(queue.told.size(), 6U);
}

TEST(BatchQueue, NoOutputGetsItsNameAfterAStop) {
  ScriptedPrograms programs;
  programs.scripts["0"] = {.says = {filmMessage({FilmMessage::Kind::naming, {}, tests::fullLine()})},
                           .end = {},
                           .waits = 5,
                           .obeysStop = false};
  NotingQueue queue(1);
  programs.onWait = [&] { queue.stopped = true; };
  runQueue(programs, queue, {.jobs = 1, .request = {}, .patience = std::chrono::hours(1)});
  EXPECT_THAT(programs.answers, ElementsAre("0 no", "0 stop"));
}

TEST(BatchQueue, ProgramThatCannotEvenBeKilledIsLeftBehind) {
  ScriptedPrograms programs;
  programs.scripts["0"] = {.says = {}, .end = {}, .waits = 2'000'000'000, .obeysStop = false, .obeysKill = false};
  NotingQueue queue(1);
  programs.onWait = [&] { queue.stopped = true; };
  runQueue(programs, queue, jobs(1));
  EXPECT_THAT(queue.ended, IsEmpty());
}

TEST(BatchQueue, AStopEndsWhatRunsAndBeginsNothing) {
  ScriptedPrograms programs;
  programs.scripts["0"].waits = 1000;
  NotingQueue queue(3);
  programs.onWait = [&] { queue.stopped = true; };
  runQueue(programs, queue, jobs(1));
  EXPECT_THAT(programs.started, ElementsAre("0"));
  EXPECT_THAT(programs.answers, ElementsAre("0 stop"));
  EXPECT_THAT(queue.told, ElementsAre("0"));
}

TEST(BatchQueue, ProgramThatDoesNotObeyIsKilled) {
  ScriptedPrograms programs;
  programs.scripts["0"] = {.says = {}, .end = {}, .waits = 1'000'000'000, .obeysStop = false};
  NotingQueue queue(1);
  programs.onWait = [&] { queue.stopped = true; };
  runQueue(programs, queue, jobs(1));
  EXPECT_THAT(queue.told, ElementsAre("0"));
}

TEST(BatchQueue, NoFilmsAreNoWork) {
  ScriptedPrograms programs;
  NotingQueue queue(0);
  runQueue(programs, queue, jobs(4));
  EXPECT_THAT(queue.told, IsEmpty());
  EXPECT_EQ(programs.waits, 0);
}

TEST(QueueWidth, IsWhatMemoryAllowsAndAtLeastOne) {
  EXPECT_EQ(queueWidth(8, std::nullopt).jobs, 8U);
  EXPECT_FALSE(queueWidth(8, 8 * kMemoryOfFilm).isLowered);
  EXPECT_EQ(queueWidth(8, 8 * kMemoryOfFilm - 1).jobs, 7U);
  EXPECT_TRUE(queueWidth(8, 8 * kMemoryOfFilm - 1).isLowered);
  EXPECT_EQ(queueWidth(8, 0).jobs, 1U);
  EXPECT_FALSE(queueWidth(1, 0).isLowered);
}

TEST(FilmMessageTest, ComesBackAsItWas) {
  for (const auto kind : {FilmMessage::Kind::naming, FilmMessage::Kind::end}) {
    const auto message = readFilmMessage(filmMessage({kind, {}, tests::fullLine()}));
    ASSERT_TRUE(message);
    EXPECT_EQ(message->kind, kind);
    EXPECT_EQ(message->line, tests::fullLine());
  }
  EXPECT_FALSE(readFilmMessage("end {}"));
  EXPECT_FALSE(readFilmMessage(""));
}

}  // namespace
}  // namespace zelvo::salvage
