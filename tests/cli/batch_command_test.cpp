// Many films at once, from outside.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "platform/json_reader.h"
#include "tests/cli/program.h"
#include "tests/support/small_avi.h"
#include "tests/support/temp_folder.h"

namespace zelvo::tests {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace fs = std::filesystem;

std::string film(std::size_t frames = 20) {
  return SmallAvi{.frames = frames, .frameSize = 500, .soundSize = 100}.bytes();
}

class BatchCommand : public testing::Test {
 protected:
  BatchCommand() {
    writeFile(films_ + "/a.avi", film());
    writeFile(films_ + "/sub/b.divx", film(30));
    writeFile(films_ + "/sub/deep/c.AVI", film(10));
    fs::create_directory(out_);
  }
  [[nodiscard]] Ended salvage(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), "salvage");
    return runZelvoAvi(arguments);
  }
  /// A batch of the whole folder with a journal.
  [[nodiscard]] Ended journaled(std::vector<std::string> more = {}) const {
    std::vector<std::string> arguments{"-r", films_, "--output-dir", out_, "--journal", journal_};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return salvage(arguments);
  }
  /// "done a.avi" for each line of the journal.
  [[nodiscard]] std::vector<std::string> journal() const {
    std::vector<std::string> lines;
    std::istringstream text(readFile(journal_));
    for (std::string line; std::getline(text, line);) {
      const auto value = platform::readJson(line);
      if (!value) return {"no JSON: " + line};
      lines.push_back(*value->member("state")->text() + " " +
                      fs::path(*value->member("input")->path()).filename().string());
    }
    return lines;
  }
  [[nodiscard]] std::vector<std::string> outputs() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::recursive_directory_iterator(out_)) {
      if (entry.is_regular_file()) names.push_back(fs::relative(entry.path(), out_).string());
    }
    std::sort(names.begin(), names.end());
    return names;
  }

  const TempFolder folder_;
  const std::string films_ = folder_ / "films";
  const std::string out_ = folder_ / "out";
  const std::string journal_ = folder_ / "journal";
};

TEST_F(BatchCommand, MirrorsFoldersAndTellsResultsInOrder) {
  const Ended ended = salvage({"-r", films_, "--output-dir", out_, "--jobs", "3"});
  EXPECT_EQ(ended.exit, 0) << ended.err;
  EXPECT_THAT(outputs(), ElementsAre("a-salvaged.avi", "sub/b-salvaged.avi", "sub/deep/c-salvaged.avi"));
  const auto a = ended.out.find("/a.avi: ");
  const auto b = ended.out.find("/b.divx: ");
  const auto c = ended.out.find("/c.AVI: ");
  EXPECT_TRUE(a < b && b < c && c != std::string::npos) << ended.out;
  EXPECT_THAT(ended.out, HasSubstr("3 inputs: 3 repaired.\n"));
  EXPECT_THAT(ended.err, IsEmpty());
}

TEST_F(BatchCommand, OutputIsTheSameHoweverManyWork) {
  EXPECT_EQ(salvage({"-r", films_, "--output-dir", out_, "--jobs", "1"}).exit, 0);
  const std::string one = readFile(out_ + "/sub/b-salvaged.avi");
  EXPECT_EQ(salvage({"-r", films_, "--output-dir", out_, "--jobs", "3", "--force", "--threads", "1"}).exit, 0);
  EXPECT_EQ(readFile(out_ + "/sub/b-salvaged.avi"), one);
}

TEST_F(BatchCommand, JsonHasOneLineForEachFilm) {
  writeFile(films_ + "/z.avi", "no film");
  const Ended ended = salvage({"-r", films_, "--output-dir", out_, "--json"});
  EXPECT_EQ(ended.exit, 1);
  std::istringstream text(ended.out);
  std::size_t lines = 0;
  for (std::string line; std::getline(text, line); ++lines) EXPECT_TRUE(platform::readJson(line)) << line;
  EXPECT_EQ(lines, 4U);
}

TEST_F(BatchCommand, ListsOfPathsAreRead) {
  writeFile(folder_ / "list", films_ + "/a.avi\n\n" + films_ + "/sub/b.divx");
  EXPECT_EQ(salvage({"--inputs-from", folder_ / "list", "--output-dir", out_}).exit, 0);
  EXPECT_THAT(outputs(), ElementsAre("a-salvaged.avi", "b-salvaged.avi"));

  fs::rename(films_ + "/a.avi", films_ + "/line\nend.avi");
  writeFile(folder_ / "zeros", films_ + "/line\nend.avi" + std::string(1, '\0'));
  EXPECT_EQ(salvage({"-0", "--inputs-from", folder_ / "zeros", "--output-dir", out_}).exit, 0);
  EXPECT_THAT(outputs(), testing::Contains("line\nend-salvaged.avi"));
}

TEST_F(BatchCommand, ListThatIsNoneIsRefused) {
  writeFile(folder_ / "list", "one\n" + std::string(5000, 'x') + "\n");
  const Ended ended = salvage({"--inputs-from", folder_ / "list"});
  EXPECT_EQ(ended.exit, 3);
  EXPECT_THAT(ended.err, HasSubstr("line 2"));
  writeFile(folder_ / "list", std::string("a\0b\n", 4));
  EXPECT_THAT(salvage({"--inputs-from", folder_ / "list"}).err, HasSubstr("-0"));
  EXPECT_EQ(salvage({"--inputs-from", folder_ / "missing"}).exit, 3);
}

TEST_F(BatchCommand, OutputsBesideTheirFilmsAreNoFilms) {
  EXPECT_EQ(salvage({"-r", films_}).exit, 0);
  const Ended again = salvage({"-r", films_, "--force"});
  EXPECT_EQ(again.exit, 0);
  EXPECT_THAT(again.out, HasSubstr("3 inputs: 3 repaired."));
  EXPECT_FALSE(fs::exists(films_ + "/a-salvaged-salvaged.avi"));
}

TEST_F(BatchCommand, OneFilmsFailureEndsNothing) {
  fs::create_directory(out_ + "/a-salvaged.avi");
  const Ended ended = salvage({"-r", films_, "missing.avi", "--output-dir", out_, "--jobs", "2"});
  EXPECT_EQ(ended.exit, 3);
  EXPECT_THAT(ended.err, AllOf(HasSubstr("is a folder"), HasSubstr("there is no file named missing.avi.")));
  EXPECT_THAT(outputs(), ElementsAre("sub/b-salvaged.avi", "sub/deep/c-salvaged.avi"));
}

TEST_F(BatchCommand, TwoFilmsOfOneOutputAreNotMixedUp) {
  writeFile(films_ + "/a.xvid", film());
  const Ended ended = salvage({"-r", films_, "--output-dir", out_});
  EXPECT_EQ(ended.exit, 3);
  EXPECT_THAT(ended.err,
              HasSubstr("a.xvid is not repaired: its output would be " + out_ + "/a-salvaged.avi, as that of"));
}

TEST_F(BatchCommand, JournalNamesEachFilmBeforeAndAfter) {
  EXPECT_EQ(journaled({"--jobs", "1", "--checksums"}).exit, 0);
  EXPECT_THAT(journal(),
              ElementsAre("naming a.avi", "done a.avi", "naming b.divx", "done b.divx", "naming c.AVI", "done c.AVI"));
  const std::string text = readFile(journal_);
  const auto line =
      platform::readJson(text.substr(text.find('\n') + 1, text.find('\n', text.find('\n') + 1) - text.find('\n') - 1));
  ASSERT_TRUE(line);
  struct stat status {};
  ASSERT_EQ(::stat((out_ + "/a-salvaged.avi").c_str(), &status), 0);
  EXPECT_EQ(line->member("output")->member("inode")->count(), status.st_ino);
  EXPECT_EQ(line->member("output")->member("size")->count(), static_cast<std::uint64_t>(status.st_size));
  EXPECT_EQ(line->member("output")->member("sha256")->text()->size(), 64U);
  EXPECT_EQ(line->member("verdict")->text(), "clean");
  EXPECT_GT(line->member("peak_memory")->count(), 1'000'000U);
}

TEST_F(BatchCommand, ResumeDoesOnlyWhatIsLeft) {
  EXPECT_EQ(journaled().exit, 0);
  writeFile(films_ + "/d.avi", film());
  fs::remove(out_ + "/sub/b-salvaged.avi");
  const Ended again = journaled({"--resume"});
  EXPECT_EQ(again.exit, 0) << again.err;
  EXPECT_THAT(again.out, AllOf(HasSubstr("b.divx: "), HasSubstr("d.avi: "), Not(HasSubstr("a.avi: "))));
  EXPECT_THAT(again.out, HasSubstr("2 films left out: done before, and unchanged."));
  EXPECT_THAT(outputs(), testing::SizeIs(4));
  EXPECT_EQ(journaled({"--resume"}).out, "4 films left out: done before, and unchanged.\n");
}

TEST_F(BatchCommand, ResumeAdoptsAnOutputWhoseSecondLineIsMissing) {
  EXPECT_EQ(journaled({"--jobs", "1"}).exit, 0);
  std::string text = readFile(journal_);
  text.erase(text.rfind('\n', text.size() - 2) + 1);
  writeFile(journal_, text + "{\"version\":1,\"sta");

  const Ended again = journaled({"--resume"});

  EXPECT_EQ(again.exit, 0);
  EXPECT_THAT(again.err, HasSubstr("c.AVI: its output was whole, and is kept"));
  EXPECT_THAT(readFile(journal_), StartsWith(text));
  EXPECT_THAT(readFile(journal_), HasSubstr("\"adopted\":true}\n"));
}

TEST_F(BatchCommand, ForeignJournalIsLeftAlone) {
  writeFile(journal_, "a list of mine\n");
  const Ended ended = journaled();
  EXPECT_EQ(ended.exit, 3);
  EXPECT_THAT(ended.err, HasSubstr("line 1"));
  EXPECT_EQ(readFile(journal_), "a list of mine\n");
  EXPECT_THAT(outputs(), IsEmpty());
}

TEST_F(BatchCommand, DeadHiddenFilesAreRemovedAndLiveOnesStay) {
  const std::string dead = out_ + "/.zelvo-avi-0123456789abcdef01234567.part";
  const std::string mine = out_ + "/.zelvo-avi-mine.part";
  writeFile(dead, "dead");
  writeFile(mine, "mine");
  EXPECT_EQ(journaled().exit, 0);
  EXPECT_FALSE(fs::exists(dead));
  EXPECT_TRUE(fs::exists(mine));
}

TEST_F(BatchCommand, ShardsTogetherAreTheWhole) {
  for (int i = 0; i < 12; ++i) writeFile(films_ + "/more/" + std::to_string(i) + ".avi", film(4));
  std::size_t before = 0;
  for (const char* shard : {"1/3", "2/3", "3/3"}) {
    EXPECT_EQ(salvage({"-r", films_, "--output-dir", out_, "--shard", shard, "--quiet"}).exit, 0);
    EXPECT_GT(outputs().size(), before);
    before = outputs().size();
  }
  EXPECT_EQ(before, 15U);
}

TEST_F(BatchCommand, RepairTakesTheSameOptions) {
  const std::string large = SmallAvi{}.bytes();
  fs::remove_all(films_);
  writeFile(films_ + "/one.avi", large);
  writeFile(films_ + "/sub/two.avi", large);
  EXPECT_THAT(runZelvoAvi({"repair", "-r", films_, "--output-dir", out_, "--dry-run"}).out,
              HasSubstr("2 inputs: 2 can be repaired."));
  EXPECT_THAT(outputs(), IsEmpty());
  const Ended ended = runZelvoAvi({"repair", "-r", films_, "--output-dir", out_, "--jobs", "2", "--journal", journal_});
  EXPECT_EQ(ended.exit, 0) << ended.err;
  EXPECT_THAT(outputs(), ElementsAre("one-repaired.avi", "sub/two-repaired.avi"));
}

TEST_F(BatchCommand, DryRunWritesNoFilmAndNoFolder) {
  const Ended ended = journaled({"--dry-run"});
  EXPECT_EQ(ended.exit, 0);
  EXPECT_THAT(ended.out, HasSubstr("would be written"));
  EXPECT_TRUE(fs::is_empty(out_));
}

TEST_F(BatchCommand, CrashOfOneProgramIsToldAndTheOthersGoOn) {
  // The first film never ends by itself: it is read from a file that is very long.
  fs::resize_file(films_ + "/a.avi", std::uintmax_t{40} << 30U);
  Program program(zelvoAvi({"salvage", "-r", films_, "--output-dir", out_, "--jobs", "1", "--journal", journal_}));
  const std::string children =
      "/proc/" + std::to_string(program.id()) + "/task/" + std::to_string(program.id()) + "/children";
  std::string child;
  while (child.empty()) std::ifstream(children) >> child;
  ::kill(static_cast<pid_t>(std::stol(child)), SIGKILL);
  const Ended ended = program.wait();
  EXPECT_EQ(ended.exit, 3);
  EXPECT_THAT(ended.err, HasSubstr("a.avi: the program that worked on it was killed"));
  EXPECT_THAT(outputs(), ElementsAre("sub/b-salvaged.avi", "sub/deep/c-salvaged.avi"));
  EXPECT_THAT(journal(), testing::Contains("failed a.avi"));
}

TEST_F(BatchCommand, LackOfMemoryCostsOneFilm) {
  const auto limitedTo = [](std::uint64_t bytes, std::vector<std::string> command) {
    command.insert(command.begin(), {"prlimit", "--as=" + std::to_string(bytes)});
    return run(command);
  };
  if (limitedTo(1000000000, zelvoAvi({"--version"})).exit != 0) GTEST_SKIP() << "this build needs far more room";
  // Very many chunks take more than a few, so that there is a limit that lies between.
  std::string dense;
  for (int i = 0; i < 300'000; ++i) dense += chunk("00dc", "abcdefgh");
  writeFile(films_ + "/dense.avi", film() + dense);
  bool isFound = false;
  for (std::uint64_t size = 80'000'000; size > 8'000'000 && !isFound; size -= size / 16) {
    SCOPED_TRACE(size);
    fs::remove(journal_);
    const Ended ended = limitedTo(size, zelvoAvi({"salvage", "-r", films_, "--output-dir", out_, "--force", "--jobs",
                                                  "2", "--threads", "1", "--journal", journal_}));
    if (ended.err.find("error while loading") != std::string::npos || ended.exit == 127) break;
    ASSERT_EQ(ended.signal, 0);
    ASSERT_THAT(ended.exit, testing::AnyOf(0, 3)) << ended.err;
    ASSERT_THAT(ended.out, HasSubstr("4 inputs: "));
    const auto lines = journal();
    ASSERT_EQ(std::ranges::count_if(lines, [](const std::string& line) { return !line.starts_with("naming "); }), 4);
    isFound = std::ranges::count(lines, "failed dense.avi") == 1 && std::ranges::count(lines, "done a.avi") == 1;
    if (isFound) {
      EXPECT_THAT(ended.err, HasSubstr("there is not enough memory for " + films_ + "/dense.avi"));
    }
    ASSERT_EQ(std::ranges::count_if(fs::directory_iterator(out_),
                                    [](const auto& entry) { return entry.path().filename().string().front() == '.'; }),
              0);
  }
  EXPECT_TRUE(isFound);
}

TEST_F(BatchCommand, OnATerminalAllFilmsTogetherHaveALine) {
  Program program(zelvoAvi({"salvage", "-r", films_, "--output-dir", out_, "--jobs", "2"}), ErrorStream::terminal);
  const Ended ended = program.wait();
  EXPECT_EQ(ended.exit, 0);
  EXPECT_THAT(ended.err, HasSubstr(" of 3 films done, "));
  // At the end nothing of it is left: the line is erased, and none comes after.
  EXPECT_GT(ended.err.rfind("\033[K"), ended.err.rfind("films done"));
}

TEST_F(BatchCommand, QuietBatchSaysNothing) {
  Program program(zelvoAvi({"salvage", "-r", films_, "--output-dir", out_, "--quiet"}), ErrorStream::terminal);
  const Ended ended = program.wait();
  EXPECT_EQ(ended.exit, 0);
  EXPECT_THAT(ended.err, IsEmpty());
  EXPECT_THAT(ended.out, IsEmpty());
}

TEST_F(BatchCommand, VerifyAndTriageWorkOnFoldersToo) {
  for (const char* command : {"verify", "triage"}) {
    const Ended ended =
        runZelvoAvi({command, "-r", films_, "--jobs", "2", "--json", "--journal", journal_, "--resume"});
    EXPECT_LE(ended.exit, 1) << ended.err;
    EXPECT_EQ(std::count(ended.out.begin(), ended.out.end(), '\n'), 3) << command;
  }
  EXPECT_THAT(journal(), testing::SizeIs(6));
}

TEST_F(BatchCommand, SecondRunOfAJournalWaitsForTheFirst) {
  fs::resize_file(films_ + "/a.avi", std::uintmax_t{40} << 30U);
  Program first(zelvoAvi({"salvage", films_ + "/a.avi", "--output-dir", out_, "--journal", journal_}));
  const std::string children =
      "/proc/" + std::to_string(first.id()) + "/task/" + std::to_string(first.id()) + "/children";
  std::string child;
  while (child.empty()) std::ifstream(children) >> child;
  Program second(
      zelvoAvi({"salvage", films_ + "/sub/b.divx", "--output-dir", out_, "--journal", journal_, "--resume"}));
  first.send(SIGTERM);
  EXPECT_EQ(first.wait().exit, 130);
  EXPECT_EQ(second.wait().exit, 0);
  EXPECT_THAT(journal(), ElementsAre("naming b.divx", "done b.divx"));
}

TEST_F(BatchCommand, AStopEndsTheFilmInOrder) {
  fs::resize_file(films_ + "/a.avi", std::uintmax_t{40} << 30U);
  Program program(zelvoAvi({"salvage", "-r", films_, "--output-dir", out_, "--jobs", "1", "--journal", journal_}));
  const std::string children =
      "/proc/" + std::to_string(program.id()) + "/task/" + std::to_string(program.id()) + "/children";
  std::string child;
  while (child.empty()) std::ifstream(children) >> child;
  program.send(SIGTERM);
  const Ended ended = program.wait();
  EXPECT_EQ(ended.exit, 130);
  EXPECT_THAT(outputs(), IsEmpty());
  EXPECT_THAT(journal(), IsEmpty());
  EXPECT_THAT(ended.out, HasSubstr("not started"));
}

TEST_F(BatchCommand, MisuseIsTold) {
  const auto refusal = [&](std::vector<std::string> arguments) {
    const Ended ended = salvage(std::move(arguments));
    EXPECT_EQ(ended.exit, 2);
    return ended.err;
  };
  EXPECT_THAT(refusal({}), HasSubstr("no input was given"));
  EXPECT_THAT(refusal({"x", "--jobs", "0"}), HasSubstr("--jobs"));
  EXPECT_THAT(refusal({"x", "--resume"}), HasSubstr("--journal"));
  EXPECT_THAT(refusal({"x", "--checksums"}), HasSubstr("--journal"));
  EXPECT_THAT(refusal({"x", "--shard", "3/2"}), HasSubstr("--shard"));
  EXPECT_THAT(refusal({"x", "--any-name"}), HasSubstr("--recursive"));
  EXPECT_THAT(refusal({"x", "-0"}), HasSubstr("--inputs-from"));
  EXPECT_THAT(refusal({"x", "-r", "-o", "y"}), HasSubstr("--output"));
}

}  // namespace
}  // namespace zelvo::tests
