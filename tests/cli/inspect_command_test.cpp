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
using testing::Not;

TEST(InspectCommand, ShowsListsHeadersAndIndex) {
  const TempFolder folder;
  writeFile(folder / "in.avi", SmallAvi{}.bytes());

  const Ended ended = runZelvoAvi({"inspect", folder / "in.avi"});

  EXPECT_EQ(ended.exit, 0);
  EXPECT_THAT(ended.out, HasSubstr("\n  LIST \"hdrl\" at 12, "));
  EXPECT_THAT(ended.out, HasSubstr("dwMicroSecPerFrame = 40000 microseconds (25.000 frames per second)"));
  EXPECT_THAT(ended.out, HasSubstr("biCompression = \"MJPG\""));
  EXPECT_THAT(ended.out, HasSubstr("wFormatTag = 1 (0x0001, PCM)"));
  EXPECT_THAT(ended.out, HasSubstr("00dc: 150 chunks, 600,000 bytes"));
  EXPECT_THAT(ended.out, HasSubstr("300 entries, 300 checked, 300 match, 300 key frames"));
  EXPECT_THAT(ended.out, testing::EndsWith("No problems found.\n"));
}

TEST(InspectCommand, ChunksAreListedWhenAsked) {
  const TempFolder folder;
  writeFile(folder / "in.avi", SmallAvi{}.bytes());

  EXPECT_THAT(runZelvoAvi({"inspect", folder / "in.avi"}).out, Not(HasSubstr("00dc at")));
  EXPECT_THAT(runZelvoAvi({"inspect", "--chunks", folder / "in.avi"}).out, HasSubstr("    00dc at "));
}

TEST(InspectCommand, RebuiltFileHasNoProblems) {
  const TempFolder folder;
  writeFile(folder / "in.avi", SmallAvi{.frames = 200, .frameSize = 3001}.bytes());  // odd chunks without pad bytes
  ASSERT_EQ(runZelvoAvi({"repair", folder / "in.avi"}).exit, 0);

  const Ended ended = runZelvoAvi({"inspect", folder / "in-repaired.avi"});

  EXPECT_EQ(ended.exit, 0);
  EXPECT_THAT(ended.out, HasSubstr("200 entries, 200 checked, 200 match"));
  EXPECT_THAT(ended.out, testing::EndsWith("No problems found.\n"));
}

TEST(InspectCommand, OtherContentIsSaidToBeNoAvi) {
  const TempFolder folder;
  writeFile(folder / "in.avi", "hello");

  const Ended ended = runZelvoAvi({"inspect", folder / "in.avi"});

  EXPECT_EQ(ended.exit, 1);
  EXPECT_THAT(ended.err, HasSubstr("is not an AVI file"));
}

TEST(InspectCommand, EmptyFileIsNoAvi) {
  const TempFolder folder;
  writeFile(folder / "in.avi", "");

  EXPECT_EQ(runZelvoAvi({"inspect", folder / "in.avi"}).exit, 1);
}

TEST(InspectCommand, WalkIsShownWhereStandardErrorIsATerminal) {
  const TempFolder folder;
  writeFile(folder / "in.avi", SmallAvi{}.bytes());

  const Ended ended = Program(zelvoAvi({"inspect", folder / "in.avi"}), ErrorStream::terminal).wait();

  EXPECT_EQ(ended.exit, 0);
  EXPECT_THAT(ended.err, HasSubstr("in.avi: reading, "));
  EXPECT_THAT(ended.err, HasSubstr(" MB"));
  EXPECT_THAT(ended.err, testing::EndsWith("\r\033[K"));
  EXPECT_EQ(runZelvoAvi({"inspect", folder / "in.avi"}).err, "");
}

TEST(InspectCommand, LengthOfTheOutputIsBoundedForAnyInput) {
  const TempFolder folder;
  std::string lists;
  for (int i = 0; i < 100000; ++i) lists += list("LIST", "abcd", "") + chunk("ix00", "") + "LIST" + le32(0);
  writeFile(folder / "in.avi", list("RIFF", "AVI ", lists));

  for (const char* format : {"", "--json"}) {
    std::vector<std::string> line = {"inspect", folder / "in.avi"};
    if (*format != '\0') line.emplace_back(format);
    const Ended ended = runZelvoAvi(line);
    EXPECT_EQ(ended.exit, 0);
    EXPECT_LT(ended.out.size(), 300000U) << format;
  }
  const std::string text = runZelvoAvi({"inspect", folder / "in.avi"}).out;
  EXPECT_THAT(text, testing::EndsWith("\n100,000 problems found; the first 1,000 are shown.\n"));
  EXPECT_THAT(runZelvoAvi({"inspect", "--chunks", folder / "in.avi"}).out,
              testing::EndsWith("\n100,000 problems found.\n"));
}

TEST(InspectCommand, MissingFileAndFolderAndDeviceAreFailures) {
  const TempFolder folder;

  EXPECT_EQ(runZelvoAvi({"inspect", folder / "in.avi"}).exit, 3);
  EXPECT_EQ(runZelvoAvi({"inspect", folder.path()}).exit, 3);
  EXPECT_EQ(runZelvoAvi({"inspect", "/dev/zero"}).exit, 3);
}

TEST(InspectCommand, RandomBytesAreSurvived) {
  const TempFolder folder;
  std::mt19937 random(11);
  for (int round = 0; round < 20; ++round) {
    std::string bytes(random() % 20000, '\0');
    for (char& byte : bytes) byte = static_cast<char>(random());
    if (round % 2 == 0) bytes.insert(0, "RIFF" + le32(random()) + "AVI ");
    writeFile(folder / "in.avi", bytes);
    const Ended ended = runZelvoAvi({"inspect", folder / "in.avi"});
    EXPECT_EQ(ended.exit, round % 2) << "round " << round << ": " << ended.err;
  }
}

}  // namespace
}  // namespace zelvo::tests
