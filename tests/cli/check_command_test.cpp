#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>

#include "tests/cli/program.h"
#include "tests/cli/small_avi.h"
#include "tests/cli/temp_folder.h"

namespace zelvo::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST(CheckCommand, TellsWhatARepairWouldKeepAndWritesNothing) {
  const TempFolder folder;
  writeFile(folder / "in.avi", SmallAvi{}.bytes());

  const Ended ended = runZelvoAvi({"check", folder / "in.avi"});

  EXPECT_EQ(ended.exit, 0);
  EXPECT_THAT(ended.out, HasSubstr("in.avi: can be repaired.\n"));
  EXPECT_THAT(ended.out, HasSubstr("Video:     MJPG, 150 chunks, 600.0 kB"));
  EXPECT_THAT(ended.out, HasSubstr("Audio:     PCM, 150 chunks, 60.0 kB"));
  EXPECT_THAT(folder.names(), ElementsAre("in.avi"));
}

TEST(CheckCommand, FindsAndWeighsWhatARepairThenWrites) {
  const TempFolder folder;
  writeFile(folder / "in.avi", SmallAvi{.frames = 200, .frameSize = 3333}.bytes());
  const std::string checked = runZelvoAvi({"check", "--json", folder / "in.avi"}).out;
  const std::string repaired = runZelvoAvi({"repair", "--json", folder / "in.avi"}).out;

  const auto from = [](const std::string& json, const std::string& member) {
    return json.substr(json.find(member), json.find("\"read_errors\"") - json.find(member));
  };
  EXPECT_EQ(from(checked, "\"video\""), from(repaired, "\"video\""));
  EXPECT_THAT(checked,
              HasSubstr("\"path\":null,\"size\":" + std::to_string(readFile(folder / "in-repaired.avi").size())));
}

TEST(CheckCommand, FormatTagIsToldHoweverLargeTheFormatClaimsToBe) {
  const TempFolder folder;
  std::string bytes = SmallAvi{}.bytes();
  const std::size_t size = bytes.find("auds") + 60;  // of the format behind the audio stream's header
  ASSERT_EQ(bytes.substr(size - 4, 4), "strf");
  for (const std::uint64_t claimed : {18U, 65536U, 65537U, 500000U, 0xffffffffU}) {
    bytes.replace(size, 4, le32(claimed));
    writeFile(folder / "in.avi", bytes);
    for (const char* command : {"check", "repair"}) {
      EXPECT_THAT(runZelvoAvi({command, "--json", folder / "in.avi", "-q"}).out,
                  HasSubstr("\"format_tag\":1,\"chunks\":150"))
          << command << ", " << claimed;
      static_cast<void>(std::remove((folder / "in-repaired.avi").c_str()));
    }
  }
}

TEST(CheckCommand, ExitsAsARepairWould) {
  const TempFolder folder;
  writeFile(folder / "good.avi", SmallAvi{}.bytes());
  writeFile(folder / "silent.avi", SmallAvi{.hasAudioHeader = false}.bytes());
  writeFile(folder / "other.avi", std::string(600000, 'x'));

  EXPECT_EQ(runZelvoAvi({"check", folder / "good.avi"}).exit, 0);
  EXPECT_EQ(runZelvoAvi({"check", folder / "silent.avi"}).exit, 1);
  EXPECT_EQ(runZelvoAvi({"check", folder / "other.avi"}).exit, 1);
  EXPECT_EQ(runZelvoAvi({"check", folder / "missing.avi"}).exit, 3);
  EXPECT_EQ(runZelvoAvi({"check", folder.path()}).exit, 3);
}

TEST(CheckCommand, SeveralInputsEndWithASummary) {
  const TempFolder folder;
  writeFile(folder / "good.avi", SmallAvi{}.bytes());
  writeFile(folder / "silent.avi", SmallAvi{.hasAudioHeader = false}.bytes());

  const Ended ended = runZelvoAvi({"check", folder / "silent.avi", folder / "good.avi"});

  EXPECT_EQ(ended.exit, 1);
  EXPECT_THAT(ended.out, HasSubstr("2 inputs: 1 can be repaired, 1 cannot be repaired.\n"));
}

TEST(CheckCommand, RejectedInputDoesNotColourTheNext) {
  const TempFolder folder;
  writeFile(folder / "good.avi", SmallAvi{}.bytes());
  writeFile(folder / "bad.avi", std::string(600000, 'x'));
  const std::string alone = runZelvoAvi({"check", folder / "good.avi"}).out;

  EXPECT_THAT(runZelvoAvi({"check", folder / "bad.avi", folder / "good.avi"}).out, HasSubstr(alone));
}

TEST(CheckCommand, QuietLeavesTheExitCode) {
  const TempFolder folder;
  writeFile(folder / "in.avi", SmallAvi{}.bytes());

  const Ended ended = runZelvoAvi({"check", "-q", folder / "in.avi"});

  EXPECT_EQ(ended.exit, 0);
  EXPECT_THAT(ended.out + ended.err, IsEmpty());
}

}  // namespace
}  // namespace zelvo::test
