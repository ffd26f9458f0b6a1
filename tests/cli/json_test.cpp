// The JSON that the program prints, against the schemas in docs/.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <random>

#include "tests/cli/program.h"
#include "tests/support/small_avi.h"
#include "tests/support/temp_folder.h"

namespace zelvo::tests {
namespace {

using testing::HasSubstr;

class Json : public testing::Test {
 protected:
  /// Empty when every line is as the schema says; otherwise what is wrong.
  [[nodiscard]] std::string wrongIn(const std::string& json, const std::string& schema) const {
    writeFile(folder_ / "result.json", json);
    const Ended ended = run(
        {"python3", ZELVO_ROOT "/tests/cli/validate_json.py", ZELVO_ROOT "/docs/" + schema, folder_ / "result.json"});
    return ended.exit == 0 ? "" : ended.out + ended.err;
  }
  [[nodiscard]] std::string wrongInResult(const std::string& json) const {
    return wrongIn(json, "cli-result.schema.json");
  }
  [[nodiscard]] std::string wrongInOutline(const std::string& json) const {
    return wrongIn(json, "cli-inspect.schema.json");
  }

  const TempFolder folder_;
};

TEST_F(Json, EveryOutcomeOfRepairIsAsDocumented) {
  writeFile(folder_ / "good.avi", SmallAvi{}.bytes());
  writeFile(folder_ / "silent.avi", SmallAvi{.hasAudioHeader = false}.bytes());
  writeFile(folder_ / "other.avi", std::string(600000, 'x'));

  const Ended ended = runZelvoAvi({"repair", "--json", folder_ / "good.avi", folder_ / "silent.avi",
                                   folder_ / "other.avi", folder_ / "missing.avi"});

  EXPECT_EQ(ended.exit, 3);
  EXPECT_EQ(std::count(ended.out.begin(), ended.out.end(), '\n'), 4);
  EXPECT_EQ(wrongInResult(ended.out), "");
  EXPECT_THAT(ended.out, HasSubstr("\"outcome\":\"repaired\",\"reason\":null,\"output\":{\"path\":"));
  EXPECT_THAT(ended.out, HasSubstr("\"video\":{\"codec\":\"MJPG\",\"chunks\":150,\"bytes\":600000}"));
  EXPECT_THAT(ended.out,
              HasSubstr("\"audio\":{\"codec\":\"Unknown\",\"format_tag\":1,\"chunks\":150,\"bytes\":60000}"));
  EXPECT_THAT(ended.out, HasSubstr("\"outcome\":\"not-supported\""));
  EXPECT_THAT(ended.out, HasSubstr("\"outcome\":\"invalid\""));
  EXPECT_THAT(ended.out, HasSubstr("\"outcome\":\"failed\""));
  EXPECT_THAT(ended.err, HasSubstr("4 inputs: 1 repaired, 1 cannot be repaired, 1 not an AVI file, 1 failed."));
}

TEST_F(Json, EveryOutcomeOfCheckIsAsDocumented) {
  writeFile(folder_ / "good.avi", SmallAvi{}.bytes());
  writeFile(folder_ / "other.avi", std::string(600000, 'x'));

  const Ended ended =
      runZelvoAvi({"check", "--json", folder_ / "good.avi", folder_ / "other.avi", folder_ / "missing.avi"});

  EXPECT_EQ(wrongInResult(ended.out), "");
  EXPECT_THAT(ended.out, HasSubstr("\"outcome\":\"repairable\""));
}

TEST_F(Json, QuietStillPrintsTheObjects) {
  writeFile(folder_ / "good.avi", SmallAvi{}.bytes());

  EXPECT_EQ(wrongInResult(runZelvoAvi({"repair", "--json", "--quiet", folder_ / "good.avi"}).out), "");
}

TEST_F(Json, PathsOfAnyBytesGiveValidUtf8) {
  const std::string name = "a\xff\"\\\n\t\x01\xc3\xa4.avi";
  writeFile(folder_ / name, SmallAvi{}.bytes());

  const Ended ended = runZelvoAvi({"repair", "--json", folder_ / name});

  EXPECT_EQ(ended.exit, 0);
  EXPECT_EQ(wrongInResult(ended.out), "");
  EXPECT_THAT(ended.out, HasSubstr("a\xEF\xBF\xBD\\\"\\\\\\u000a\\u0009\\u0001\xc3\xa4.avi\""));
  EXPECT_THAT(ended.out, HasSubstr("61ff225c0a0901c3a42e617669\""));
}

TEST_F(Json, CodecOfAnyBytesGivesValidUtf8) {
  writeFile(folder_ / "in.avi", SmallAvi{.videoHandler = "\xff\x01\"\xfe"}.bytes());

  const Ended ended = runZelvoAvi({"check", "--json", folder_ / "in.avi"});

  EXPECT_EQ(wrongInResult(ended.out), "");
  EXPECT_THAT(ended.out, HasSubstr("\"codec\":\"\xEF\xBF\xBD\\u0001\\\"\xEF\xBF\xBD\""));
}

TEST_F(Json, OutlineIsAsDocumented) {
  writeFile(folder_ / "in.avi", SmallAvi{}.bytes());
  ASSERT_EQ(runZelvoAvi({"repair", folder_ / "in.avi", "-o", folder_ / "out.avi"}).exit, 0);

  for (const char* name : {"in.avi", "out.avi"}) {
    EXPECT_EQ(wrongInOutline(runZelvoAvi({"inspect", "--json", folder_ / name}).out), "");
    EXPECT_EQ(wrongInOutline(runZelvoAvi({"inspect", "--json", "--chunks", folder_ / name}).out), "");
  }
}

TEST_F(Json, OutlineWithSummedUpIndexesIsAsDocumented) {
  std::string content;
  for (int i = 0; i < 3000; ++i) content += list("LIST", "abcd", chunk("ix00", ""));
  writeFile(folder_ / "in.avi", list("RIFF", "AVI ", content));

  const Ended ended = runZelvoAvi({"inspect", "--json", folder_ / "in.avi"});

  EXPECT_EQ(wrongInOutline(ended.out), "");
  EXPECT_THAT(ended.out, HasSubstr("{\"id\":\"ix00\",\"chunks\":2500,\"bytes\":0,\"index\":{\"entries\":0,"));
  EXPECT_THAT(ended.out, HasSubstr("\"read_errors\":0,\"stopped\":false}\n"));
}

TEST_F(Json, OutlineOfDamageIsAsDocumented) {
  std::mt19937 random(7);
  const std::string good = SmallAvi{.frames = 30}.bytes();
  std::string lines;
  for (int round = 0; round < 40; ++round) {
    std::string bytes = good;
    for (int i = 0; i < 60; ++i) bytes[random() % 600] = static_cast<char>(random());
    for (int i = 0; i < 60; ++i) bytes[random() % bytes.size()] = static_cast<char>(random());
    bytes.resize(random() % bytes.size() + 1);
    writeFile(folder_ / "in.avi", bytes);
    const Ended ended = runZelvoAvi({"inspect", "--json", "--chunks", folder_ / "in.avi"});
    EXPECT_TRUE(ended.exit == 0 || ended.exit == 1) << "round " << round;
    lines += ended.out;
  }
  EXPECT_EQ(wrongInOutline(lines), "");
}

TEST_F(Json, SchemaRefusesWhatIsNotDocumented) {
  EXPECT_NE(wrongInResult("{}\n"), "");
  EXPECT_NE(wrongInResult("not json\n"), "");
  EXPECT_NE(wrongInOutline("{\"version\":1}\n"), "");
}

}  // namespace
}  // namespace zelvo::tests
