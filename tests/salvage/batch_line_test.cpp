#include "salvage/batch_line.h"

#include <gtest/gtest.h>

#include "tests/salvage/batch_lines.h"

namespace zelvo::salvage {
namespace {

std::string textOf(const BatchLine& line) {
  std::string text = journalLine(line);
  EXPECT_EQ(text.find('\n'), text.size() - 1);
  text.pop_back();
  return text;
}

TEST(BatchLineTest, ComesBackAsItWas) {
  const BatchLine line = tests::fullLine();
  EXPECT_EQ(readJournalLine(textOf(line)), line);
}

TEST(BatchLineTest, NothingButNeededMembersComesBackToo) {
  BatchLine line;
  line.command = "verify";
  line.input = "/a";
  line.outcome = "failed";
  line.exit = 3;
  EXPECT_EQ(readJournalLine(textOf(line)), line);
}

TEST(BatchLineTest, PathsOfAnyBytesComeBack) {
  for (const std::string& path :
       {std::string("/a\n\"b"), std::string("/\xff\x01"), std::string("/=cmd|' /C calc'!A0")}) {
    EXPECT_EQ(readJournalLine(textOf(tests::fullLine(path)))->input, path);
  }
}

TEST(BatchLineTest, HostileLinesAreRefused) {
  const std::string good = textOf(tests::fullLine());
  ASSERT_TRUE(readJournalLine(good));
  const auto with = [&](const std::string& from, const std::string& to) {
    std::string text = good;
    const std::size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return text.replace(at, from.size(), to);
  };
  for (const std::string& text : {std::string(),
                                  std::string("{}"),
                                  std::string("[]"),
                                  good.substr(0, good.size() - 1),
                                  good + good,
                                  with("\"version\":1", "\"version\":2"),
                                  with("\"done\"", "\"finished\""),
                                  with("\"size\":5000000000", "\"size\":-1"),
                                  with("\"/films/a.avi\"", "7"),
                                  with("\"/films/a.avi\"", "\"\""),
                                  with("\"/films/a.avi\"", "\"a\\u0000b\""),
                                  with("\"exit\":0", "\"exit\":256"),
                                  with("\"seconds\":1.500", "\"seconds\":-1"),
                                  with("\"seconds\":61.25", "\"seconds\":1e999"),
                                  with("..mmxxhhll", "..<script>"),
                                  with(std::string(64, 'a'), std::string(63, 'a')),
                                  with(std::string(64, 'a'), std::string(64, 'Z')),
                                  with("\"command\":\"salvage\"", "\"command\":\"\""),
                                  with("\"adopted\":true", "\"adopted\":1"),
                                  with("\"inode\":12345,", ""),
                                  with("..mmxxhhll", std::string(kMaxPictureCells + 1, '.'))}) {
    EXPECT_FALSE(readJournalLine(text)) << text;
  }
  EXPECT_FALSE(readJournalLine(with("because", std::string(kMaxJournalLine, 'x'))));
}

TEST(BatchLineTest, NamingNeedsAnOutput) {
  BatchLine line = tests::fullLine();
  line.state = LineState::naming;
  EXPECT_TRUE(readJournalLine(textOf(line)));
  line.output.reset();
  EXPECT_FALSE(readJournalLine(textOf(line)));
}

TEST(BatchLineTest, TooManyFiguresOrRowsAreRefused) {
  BatchLine line = tests::fullLine();
  for (std::size_t i = 0; i < kMaxFigures; ++i) line.figures.push_back({"f" + std::to_string(i), 1});
  EXPECT_FALSE(readJournalLine(textOf(line)));
  line = tests::fullLine();
  line.picture.resize(kMaxPictureRows + 1);
  EXPECT_FALSE(readJournalLine(textOf(line)));
}

}  // namespace
}  // namespace zelvo::salvage
