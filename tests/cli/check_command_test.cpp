#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>

#include "tests/cli/program.h"
#include "tests/support/small_avi.h"
#include "tests/support/temp_folder.h"

namespace zelvo::tests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

TEST(CheckCommand, TellsWhatARepairWouldKeepAndWritesNothing) {
  const TempFolder folder;
  writeFile(folder / "in.avi", SmallAvi{}.bytes());

  const Ended ended = runZelvoAvi({"check", folder / "in.avi"});

  EXPECT_EQ(ended.exit, 0);
  EXPECT_THAT(ended.out, HasSubstr("in.avi: can be repaired.\n"));
  EXPECT_THAT(ended.out, HasSubstr("Video:     MJPG, 150 chunks, 600.0 kB"));
  EXPECT_THAT(ended.out, HasSubstr("Audio:     PCM, 150 chunks, 60.0 kB"));
  EXPECT_THAT(ended.err, IsEmpty());
  EXPECT_THAT(folder.names(), ElementsAre("in.avi"));
}

TEST(CheckCommand, PicturesOfNothingButZerosAreWarnedOf) {
  const TempFolder folder;
  std::string bytes = SmallAvi{}.bytes();
  for (std::size_t at = bytes.find("00dc"); at != std::string::npos; at = bytes.find("00dc", at + 4)) {
    const std::size_t size = 4000;  // of each picture
    if (at + 8 + size <= bytes.size()) bytes.replace(at + 8, size, size, '\0');
  }
  writeFile(folder / "in.avi", bytes);

  const Ended ended = runZelvoAvi({"check", folder / "in.avi"});

  EXPECT_EQ(ended.exit, 0);
  EXPECT_THAT(ended.err, HasSubstr("no video data was found in"));
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
  const std::size_t size = bytes.find("auds") + 60;  // of the format after the audio stream's header
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

// ---- What would be written ----

std::uint64_t sizeIn(const std::string& json) {
  const std::string member = "\"output\":{";
  const std::size_t size = json.find("\"size\":", json.find(member));
  return std::stoull(json.substr(size + 7));
}

/// Chunk headers at the end of the file whose payloads the file has not: the last look ahead still finds a code.
std::string withClaims(int count, std::uint64_t size) {
  std::string bytes = SmallAvi{.hasIndex = false}.bytes();
  for (int i = 0; i < count; ++i) bytes += "00dc" + le32(size);
  return bytes;
}

TEST(CheckCommand, SizeIsThatOfTheFileThatARepairWrites) {
  const TempFolder folder;
  writeFile(folder / "in.avi", withClaims(3, 5000000));
  const Ended checked = runZelvoAvi({"check", "--json", folder / "in.avi"});
  ASSERT_EQ(checked.exit, 0);
  EXPECT_THAT(checked.out, HasSubstr("\"chunks\":153")) << "the claims must count as chunks";

  ASSERT_EQ(runZelvoAvi({"repair", folder / "in.avi"}).exit, 0);

  EXPECT_EQ(sizeIn(checked.out), std::filesystem::file_size(folder / "in-repaired.avi"));
}

TEST(CheckCommand, ClaimsBeyondTheEndDoNotWarnOfFourGibibytes) {
  const TempFolder folder;
  writeFile(folder / "in.avi", withClaims(450, 9900000));

  const Ended ended = runZelvoAvi({"check", "--json", folder / "in.avi"});

  EXPECT_THAT(ended.out, HasSubstr("\"chunks\":600"));
  EXPECT_LT(sizeIn(ended.out), 2000000U);
  EXPECT_THAT(ended.err, Not(HasSubstr("first 4 GiB")));
}

TEST(CheckCommand, FileBeyondFourGibibytesIsWarnedOf) {
  const TempFolder folder;
  writeFile(folder / "in.avi", overlappingAvi(900));

  const Ended ended = runZelvoAvi({"check", folder / "in.avi"});

  EXPECT_THAT(ended.err, HasSubstr("the repaired file would be 4.50 GB, and players find nothing beyond"));
}

TEST(CheckCommand, FormatTagHasTwoBytes) {
  const TempFolder folder;
  std::string bytes = SmallAvi{}.bytes();
  bytes.replace(bytes.rfind("strf") + 8, 2, "\x34\x12");
  writeFile(folder / "in.avi", bytes);

  EXPECT_THAT(runZelvoAvi({"check", "--json", folder / "in.avi"}).out, HasSubstr("\"format_tag\":4660,"));
}

// ---- Chunks that are left out, and chunks that come twice ----

/// An AVI of so many video chunks of two bytes each.
std::string manyChunks(std::size_t count) {
  std::string bytes = SmallAvi{.frames = 1, .frameSize = 2, .soundSize = 2, .hasIndex = false}.bytes();
  const std::size_t movi = bytes.find("00dc");
  std::string more;
  more.reserve(count * 10);
  for (std::size_t i = 1; i < count; ++i) more += "00dc" + le32(2) + "ab";
  return bytes.substr(0, movi) + more + bytes.substr(movi);
}

TEST(CheckCommand, OnlyChunksThatAreLeftOutAreWarnedOf) {
  const TempFolder folder;
  writeFile(folder / "full.avi", manyChunks(1048575));
  writeFile(folder / "over.avi", manyChunks(1048577));

  const Ended full = runZelvoAvi({"check", folder / "full.avi"});
  const Ended over = runZelvoAvi({"check", folder / "over.avi"});

  EXPECT_THAT(full.out, HasSubstr("1,048,575 chunks"));
  EXPECT_THAT(full.err, IsEmpty());
  EXPECT_THAT(over.out, HasSubstr("1,048,575 chunks"));
  EXPECT_THAT(over.err, HasSubstr("more chunks of one kind than can be kept, 1,048,575; 2 after them are left out."));
}

TEST(CheckCommand, ChunksFoundTwiceBeyondFourGibibytesAreCounted) {
  const TempFolder folder;
  const std::string bytes = SmallAvi{}.bytes();
  writeFile(folder / "in.avi", bytes);
  // The search meets the first 400,000 bytes again: a part of the chunks.
  std::filesystem::resize_file(folder / "in.avi", (std::uintmax_t{4} << 30U) + 400000);

  const Ended ended = runZelvoAvi({"check", "--json", folder / "in.avi"});

  EXPECT_THAT(ended.err, HasSubstr("positions beyond 4 GiB wrap"));
  // Pairs of 4416 bytes after the headers; the last of the first 400,384 bytes' codes belongs to pair 91.
  const std::size_t begin = bytes.find("00dc");
  std::size_t again = 0;
  for (std::size_t at = begin, i = 0; at + 4 <= 400000; at += i % 2 == 0 ? 4008U : 408U, ++i) ++again;
  EXPECT_THAT(ended.err, HasSubstr(": " + std::to_string(again) +
                                   " chunks were found before, and the repaired file holds them twice."));
  EXPECT_THAT(ended.out, HasSubstr("\"chunks\":" + std::to_string(150 + (again + 1) / 2)));
}

}  // namespace
}  // namespace zelvo::tests
