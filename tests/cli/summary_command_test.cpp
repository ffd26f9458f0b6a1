// zelvo-avi summary, from outside.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "salvage/batch_line.h"
#include "tests/cli/program.h"
#include "tests/support/small_avi.h"
#include "tests/support/temp_folder.h"

namespace zelvo::tests {
namespace {

using salvage::BatchLine;
using salvage::LineState;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

BatchLine lineOf(const std::string& input, LineState state = LineState::done, double lost = 0) {
  BatchLine line;
  line.state = state;
  line.command = "salvage";
  line.input = input;
  line.inputSize = 1000;
  line.outcome = state == LineState::failed ? "failed" : "repaired";
  line.verdict = state == LineState::failed ? "" : "partial";
  line.exit = state == LineState::failed ? 3 : 0;
  line.output = salvage::BatchOutput{input + ".out", 900, 1, 2, 3, ""};
  line.figures = {{"seconds", 100}, {"seconds_lost", lost}};
  line.picture = {{"file", "..hhhllxm"}};
  return line;
}

class SummaryCommand : public testing::Test {
 protected:
  void put(const std::vector<BatchLine>& lines, const std::string& more = {}) const {
    std::string text;
    for (const BatchLine& line : lines) text += journalLine(line);
    folder_.put("journal", text + more);
  }
  [[nodiscard]] Ended summary(std::vector<std::string> arguments = {}) const {
    arguments.insert(arguments.begin(), {"summary", folder_ / "journal"});
    return runZelvoAvi(arguments);
  }
  [[nodiscard]] std::string page() const {
    EXPECT_EQ(summary({"--html", folder_ / "page.html", "--force"}).exit, 0);
    return readFile(folder_ / "page.html");
  }
  [[nodiscard]] std::string table() const {
    EXPECT_EQ(summary({"--csv", folder_ / "table.csv", "--force"}).exit, 0);
    return readFile(folder_ / "table.csv");
  }
  [[nodiscard]] std::string wrongIn(const std::string& json, const std::string& schema) const {
    folder_.put("some.json", json);
    const Ended ended =
        run({"python3", ZELVO_ROOT "/tests/cli/validate_json.py", ZELVO_ROOT "/docs/" + schema, folder_ / "some.json"});
    return ended.exit == 0 ? "" : ended.out + ended.err;
  }

  const TempFolder folder_;
};

TEST_F(SummaryCommand, TellsTotalsAndTheWorstFilms) {
  put({lineOf("/a", LineState::done, 1), lineOf("/b", LineState::done, 50), lineOf("/c", LineState::failed),
       lineOf("/d", LineState::naming)});
  const Ended ended = summary();
  EXPECT_EQ(ended.exit, 0);
  EXPECT_THAT(ended.out, HasSubstr("4 films in 1 journal: 2 done, 1 failed, 1 not finished.\n"));
  EXPECT_THAT(ended.out, HasSubstr("2 partial"));
  EXPECT_LT(ended.out.find("100.0 %  /c"), ended.out.find("50.0 %  /b"));
  EXPECT_LT(ended.out.find("50.0 %  /b"), ended.out.find("1.0 %  /a"));
}

TEST_F(SummaryCommand, JsonIsAsDocumented) {
  put({lineOf("/a", LineState::done, 1), lineOf("/\xff", LineState::failed), lineOf("/d", LineState::naming)});
  EXPECT_EQ(wrongIn(summary({"--json"}).out, "cli-summary.schema.json"), "");
  EXPECT_NE(wrongIn("{}", "cli-summary.schema.json"), "");
}

TEST_F(SummaryCommand, JournalOfABatchIsAsDocumented) {
  writeFile(folder_ / "films/good.avi", SmallAvi{.frames = 20, .frameSize = 500, .soundSize = 100}.bytes());
  writeFile(folder_ / "films/none.avi", "nothing");
  static_cast<void>(
      runZelvoAvi({"salvage", "-r", folder_ / "films", "missing", "--journal", folder_ / "journal", "--checksums"}));
  EXPECT_EQ(wrongIn(folder_.content("journal"), "cli-journal.schema.json"), "");
  EXPECT_EQ(summary().exit, 0);
}

TEST_F(SummaryCommand, PageNeedsNothingFromElsewhereAndHasEachFilm) {
  put({lineOf("/films/one.avi", LineState::done, 3), lineOf("/films/two.avi", LineState::failed)});
  const std::string text = page();
  EXPECT_THAT(text,
              AllOf(HasSubstr("one.avi"), HasSubstr("two.avi"), HasSubstr("<svg"), HasSubstr("default-src 'none'")));
  EXPECT_THAT(text, AllOf(Not(HasSubstr("http:")), Not(HasSubstr("https:")), Not(HasSubstr(" src="))));
  EXPECT_THAT(text, HasSubstr("<rect class=\"h\" x=\"2\" y=\"0\" width=\"3\" height=\"6\"/>"));
}

TEST_F(SummaryCommand, HostileTextsStayTexts) {
  BatchLine line = lineOf("/<script>alert(1)</script>\"&\x1b[31m.avi");
  line.reason = "<img src=x onerror=alert(1)>";
  line.verdict = "</style><b>";
  line.outcome = "\"><i>";
  put({line});
  const std::string text = page();
  EXPECT_THAT(text, AllOf(Not(HasSubstr("<script>alert")), Not(HasSubstr("<img")), Not(HasSubstr("<b>\"")),
                          Not(HasSubstr("</style><b>")), Not(HasSubstr("\x1b"))));
  EXPECT_THAT(summary().out, Not(HasSubstr("\x1b")));
}

TEST_F(SummaryCommand, SpreadsheetGetsNoFormulaAndNoBrokenRow) {
  BatchLine line = lineOf("/a \"quoted\", with comma.avi");
  line.reason = "=HYPERLINK(\"http://x\")";
  line.verdict = "@SUM(1)";
  put({line, lineOf("/b\nc.avi")});
  const std::string text = table();
  EXPECT_THAT(text, HasSubstr("\"/a \"\"quoted\"\", with comma.avi\""));
  EXPECT_THAT(text, HasSubstr("\"'=HYPERLINK(\"\"http://x\"\")\""));
  EXPECT_THAT(text, HasSubstr("\"'@SUM(1)\""));
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 3);
}

TEST_F(SummaryCommand, TornLastLineIsLeftOutAndForeignOnesAreRefused) {
  put({lineOf("/a")}, "{\"version\":1,\"state\":\"do");
  const Ended torn = summary();
  EXPECT_EQ(torn.exit, 0);
  EXPECT_THAT(torn.out, HasSubstr("1 film in 1 journal"));
  EXPECT_THAT(torn.err, HasSubstr("not whole"));
  put({lineOf("/a")}, "hello\n");
  const Ended foreign = summary();
  EXPECT_EQ(foreign.exit, 3);
  EXPECT_THAT(foreign.err, HasSubstr("line 2"));
}

TEST_F(SummaryCommand, ReplacesNothingUnasked) {
  put({lineOf("/a")});
  folder_.put("mine.html", "mine");
  EXPECT_EQ(summary({"--html", folder_ / "mine.html"}).exit, 3);
  EXPECT_EQ(folder_.content("mine.html"), "mine");
  EXPECT_EQ(summary({"--csv", folder_ / "journal", "--force"}).exit, 3);
  EXPECT_THAT(folder_.content("journal"), HasSubstr("\"version\":1"));
}

TEST_F(SummaryCommand, EmptyJournalIsASummaryOfNothing) {
  put({});
  EXPECT_THAT(summary().out, HasSubstr("0 films in 1 journal"));
  EXPECT_THAT(page(), HasSubstr("0 films"));
}

}  // namespace
}  // namespace zelvo::tests
