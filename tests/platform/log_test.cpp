#include "platform/log.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace zelvo::tests {
namespace {

class RecordingLog final : public platform::Log {
 public:
  void line(std::string_view text) override { lines.emplace_back(text); }
  std::vector<std::string> lines;
};

class LogLine : public testing::Test {
 protected:
  template <class... Values>
  std::string text(platform::log_format::Format<std::type_identity_t<Values>...> format, const Values&... values) {
    log.lines.clear();
    platform::logLine(log, format, values...);
    return log.lines.size() == 1 ? log.lines.front() : "not one line";
  }
  RecordingLog log;
};

TEST_F(LogLine, WithoutPlacesIsTheText) { EXPECT_EQ(text("Val==No"), "Val==No"); }

TEST_F(LogLine, TakesIntegersOfAnyWidth) {
  EXPECT_EQ(text("Sector=%i", std::uint32_t{7}), "Sector=7");
  EXPECT_EQ(text("i=%i", std::size_t{1023}), "i=1023");
  EXPECT_EQ(text("x=%i", -5), "x=-5");
  EXPECT_EQ(text("x=%i", std::uint8_t{200}), "x=200");
}

TEST_F(LogLine, ShowsPercentIAs32BitSigned) {
  EXPECT_EQ(text("x=%i", std::uint32_t{0xffffffffU}), "x=-1");
  EXPECT_EQ(text("x=%i", std::uint64_t{0x100000005U}), "x=5");
  EXPECT_EQ(text("x=%i", std::int64_t{-4294967291}), "x=5");
}

TEST_F(LogLine, TruncatesADoubleAtPercentI) {
  EXPECT_EQ(text("Vale=%i", 12.75), "Vale=12");
  EXPECT_EQ(text("Vale=%i", 99.999), "Vale=99");
  EXPECT_EQ(text("Vale=%i", -1.5), "Vale=-1");
  EXPECT_EQ(text("Vale=%i", 0.5F), "Vale=0");
}

TEST_F(LogLine, HoldsDoublesThatDoNotFitAtTheLimits) {
  EXPECT_EQ(text("x=%i", 1e300), "x=2147483647");
  EXPECT_EQ(text("x=%i", -1e300), "x=-2147483648");
  EXPECT_EQ(text("x=%i", std::numeric_limits<double>::quiet_NaN()), "x=0");
  EXPECT_EQ(text("x=%i", std::numeric_limits<double>::infinity()), "x=2147483647");
}

TEST_F(LogLine, ShowsAllOfAnUnsigned64BitNumber) {
  EXPECT_EQ(text("Repaired file size=%llu", ~std::uint64_t{0}), "Repaired file size=18446744073709551615");
  EXPECT_EQ(text("SIZE=%llu", 5U), "SIZE=5");
}

TEST_F(LogLine, TakesTextsOfEveryKind) {
  EXPECT_EQ(text("Save path=%@", std::string("/a")), "Save path=/a");
  EXPECT_EQ(text("Save path=%@", "/b"), "Save path=/b");
  EXPECT_EQ(text("Save path=%@", std::string_view("/c")), "Save path=/c");
  EXPECT_EQ(text("Save path=%@", std::optional<std::string>("/d")), "Save path=/d");
}

TEST_F(LogLine, ShowsNothingAsNull) {
  EXPECT_EQ(text("audiocodecstring=%@", std::optional<std::string>()), "audiocodecstring=(null)");
}

TEST_F(LogLine, ShowsAnEmptyTextAsEmpty) { EXPECT_EQ(text("mutstr=%@", std::string()), "mutstr="); }

TEST_F(LogLine, FillsItsPlacesInOrder) { EXPECT_EQ(text("%@ at %llu: %i of %@!", "a", 5U, 7, "b"), "a at 5: 7 of b!"); }

TEST_F(LogLine, TakesPercentSignsInATextAsTheyAre) {
  EXPECT_EQ(text("Save path=%@, %@", "/%s%n%@", "%i"), "Save path=/%s%n%@, %i");
}

TEST(Log, TracesNoPositionsUnlessItSaysSo) { EXPECT_FALSE(RecordingLog().tracesPositions()); }

}  // namespace
}  // namespace zelvo::tests
