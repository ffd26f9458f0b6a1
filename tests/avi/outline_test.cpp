// What the walk tells of damage, as facts.
#include "avi/outline.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/memory_readable.h"
#include "tests/support/small_avi.h"

namespace zelvo::tests {
namespace {

using avi::DataSums;
using avi::EntryTarget;
using avi::Field;
using avi::IndexReport;
using avi::kJunk;
using avi::kRiff;
using avi::Outline;
using avi::OutlineItem;
using avi::OutlineSink;
using avi::Problem;
using avi::ProblemKind;

/// Keeps the problems, and how deep each lies.
class Problems final : public OutlineSink {
 public:
  void beginList(const OutlineItem&) override {}
  void endList(const OutlineItem&, const DataSums&) override {}
  void endFile(const DataSums&) override {}
  void chunk(const OutlineItem&, const std::vector<Field>&, const std::optional<IndexReport>&) override {}
  void problem(const Problem& problem, std::size_t depth) override {
    all.push_back(problem);
    depths.push_back(depth);
  }
  std::vector<Problem> all;
  std::vector<std::size_t> depths;
};

Problems problemsOf(
    MemoryReadable& file, const std::function<bool()>& isEnding = [] { return false; }) {
  Problems problems;
  Outline outline(file, problems, isEnding, true);
  outline.walk();
  EXPECT_EQ(outline.problems(), problems.all.size());
  return problems;
}

/// The only problem of the file.
Problem problemOf(MemoryReadable& file) {
  const Problems problems = problemsOf(file);
  EXPECT_EQ(problems.all.size(), 1U);
  return problems.all.empty() ? Problem{.kind = ProblemKind::noAviBeginning} : problems.all.front();
}
Problem problemOf(const std::string& bytes) {
  MemoryReadable file(bytes);
  return problemOf(file);
}

/// A form with a "movi" list; `content` begins at byte 24.
std::string film(const std::string& content) { return list("RIFF", "AVI ", list("LIST", "movi", content)); }

TEST(OutlineProblems, ChunkThatClaimsMoreThanItsListHolds) {
  const Problem problem = problemOf(list("RIFF", "AVI ", "JUNK" + le32(100) + "ab"));
  EXPECT_EQ(problem.kind, ProblemKind::chunkLongerThanList);
  EXPECT_EQ(problem.offset, 12U);
  EXPECT_EQ(problem.id, kJunk);
  EXPECT_EQ(problem.claimed, 100U);
  EXPECT_EQ(problem.held, 2U);
}

TEST(OutlineProblems, ListThatClaimsMoreThanTheFileHolds) {
  const Problem problem = problemOf("RIFF" + le32(1000) + "AVI ");
  EXPECT_EQ(problem.kind, ProblemKind::chunkLongerThanFile);
  EXPECT_EQ(problem.id, kRiff);
  EXPECT_EQ(problem.claimed, 1000U);
  EXPECT_EQ(problem.held, 4U);
}

TEST(OutlineProblems, SkippedBytesAndZeros) {
  const Problem zeros = problemOf(film(std::string(1000, '\0') + chunk("00dc", "ab")));
  EXPECT_EQ(zeros.kind, ProblemKind::skippedZeros);
  EXPECT_EQ(zeros.offset, 24U);
  EXPECT_EQ(zeros.claimed, 1000U);
  EXPECT_EQ(zeros.held, 1000U);
  EXPECT_EQ(problemOf(film(std::string(1000, '\1') + chunk("00dc", "ab"))).kind, ProblemKind::skippedBytes);
}

TEST(OutlineProblems, DepthIsThatOfWhatLiesThere) {
  MemoryReadable file(film(std::string(1000, '\0') + chunk("00dc", "ab")));
  EXPECT_EQ(problemsOf(file).depths, std::vector<std::size_t>{2});
}

TEST(OutlineProblems, SkippedBytesThatCannotBeRead) {
  MemoryReadable file(film(std::string(9000, '\0') + chunk("00dc", "ab")));
  file.makeUnreadable(4096, 8192);
  const Problem partly = problemOf(file);
  EXPECT_EQ(partly.kind, ProblemKind::skippedPartlyUnreadable);
  EXPECT_EQ(partly.claimed, 9000U);
  EXPECT_EQ(partly.held, 9000U - 4096U);

  MemoryReadable whole(film(std::string(1000, '\0') + chunk("00dc", "ab")));
  whole.makeUnreadable(24, 1024);
  const Problem none = problemOf(whole);
  EXPECT_EQ(none.kind, ProblemKind::skippedUnreadable);
  EXPECT_EQ(none.claimed, 1000U);
  EXPECT_EQ(none.held, 0U);
}

TEST(OutlineProblems, PayloadOfAHeaderThatIsHalfReadable) {
  MemoryReadable file(list("RIFF", "AVI ", chunk("avih", std::string(56, '\1'))));
  file.makeUnreadable(30, 40);
  const Problem problem = problemOf(file);
  EXPECT_EQ(problem.kind, ProblemKind::payloadUnreadable);
  EXPECT_EQ(problem.offset, 12U);
  EXPECT_EQ(problem.claimed, 56U);
  EXPECT_EQ(problem.held, 10U);
}

TEST(OutlineProblems, WrongIndexEntriesComeWithTheFirst) {
  const std::string entries = "00dc" + le32(0) + le32(4) + le32(2) +  //
                              "00dc" + le32(0) + le32(4) + le32(3) + "01wb" + le32(0) + le32(4) + le32(2);
  const Problem problem =
      problemOf(list("RIFF", "AVI ", list("LIST", "movi", chunk("00dc", "ab")) + chunk("idx1", entries)));
  EXPECT_EQ(problem.kind, ProblemKind::wrongIndexEntries);
  EXPECT_EQ(problem.offset, 34U);
  EXPECT_EQ(problem.claimed, 3U);
  EXPECT_EQ(problem.held, 1U);
  ASSERT_TRUE(problem.entry);
  EXPECT_EQ(problem.entry->number, 2U);
  EXPECT_EQ(problem.entry->target, EntryTarget::otherSize);
}

TEST(OutlineProblems, ListsWithoutATypeAndTooDeep) {
  const Problem untyped = problemOf(list("RIFF", "AVI ", "LIST" + le32(2) + "ab"));
  EXPECT_EQ(untyped.kind, ProblemKind::listWithoutType);
  EXPECT_EQ(untyped.offset, 12U);

  std::string bytes;
  for (std::size_t i = 0; i < Outline::kDeepest; ++i) bytes = list("LIST", "deep", bytes);
  const Problem deep = problemOf(list("RIFF", "AVI ", bytes));
  EXPECT_EQ(deep.kind, ProblemKind::listTooDeep);
  EXPECT_EQ(deep.offset, 12 * Outline::kDeepest);
}

TEST(OutlineProblems, BeginningThatIsWrongOrCannotBeRead) {
  EXPECT_EQ(problemOf("").kind, ProblemKind::noAviBeginning);
  MemoryReadable file(list("RIFF", "AVI ", chunk("JUNK", "")));
  file.makeUnreadable(6, 10);
  EXPECT_EQ(problemsOf(file).all.front().kind, ProblemKind::beginningUnreadable);
}

TEST(OutlineProblems, StopSaysHowFarItCame) {
  MemoryReadable file(film(chunk("00dc", "ab")));
  const Problems problems = problemsOf(file, [] { return true; });
  ASSERT_EQ(problems.all.size(), 1U);
  EXPECT_EQ(problems.all[0].kind, ProblemKind::stopped);
  EXPECT_EQ(problems.all[0].claimed, 34U);
  EXPECT_EQ(problems.all[0].held, 0U);
}

TEST(OutlineProblems, FileThatShrinksEndsWhereItEnds) {
  MemoryReadable file(film(std::string(1000000, '\0')));
  int asked = 0;
  const Problems problems = problemsOf(file, [&] {
    if (++asked == 20) file.cutTo(400000);
    return false;
  });
  ASSERT_FALSE(problems.all.empty());
  EXPECT_EQ(problems.all[0].kind, ProblemKind::fileShrank);
  EXPECT_EQ(problems.all[0].claimed, 1000024U);
  EXPECT_EQ(problems.all[0].held, 400000U);
}

}  // namespace
}  // namespace zelvo::tests
