#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "tests/cli/engine_run.h"
#include "tests/cli/program.h"
#include "tests/support/small_avi.h"
#include "tests/support/temp_folder.h"

namespace zelvo::tests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

TEST(RepairCommand, OutputIsByteForByteWhatTheEngineWrites) {
  const TempFolder folder;
  writeFile(folder / "in.avi", SmallAvi{}.bytes());
  ASSERT_TRUE(repairWithEngine(folder / "in.avi", folder / "engine.avi"));

  const Ended ended = runZelvoAvi({"repair", folder / "in.avi", "-o", folder / "out.avi"});

  EXPECT_EQ(ended.exit, 0);
  EXPECT_TRUE(readFile(folder / "out.avi") == readFile(folder / "engine.avi"));
}

TEST(RepairCommand, InputIsNeverChanged) {
  const TempFolder folder;
  const std::string bytes = SmallAvi{}.bytes();
  writeFile(folder / "in.avi", bytes);
  const auto before = std::filesystem::last_write_time(folder / "in.avi");

  EXPECT_EQ(runZelvoAvi({"repair", folder / "in.avi"}).exit, 0);

  EXPECT_TRUE(readFile(folder / "in.avi") == bytes);
  EXPECT_EQ(std::filesystem::last_write_time(folder / "in.avi"), before);
}

TEST(RepairCommand, ReadOnlyInputCanBeRepaired) {
  const TempFolder folder;
  writeFile(folder / "in.avi", SmallAvi{}.bytes());
  std::filesystem::permissions(folder / "in.avi", std::filesystem::perms::owner_read);

  EXPECT_EQ(runZelvoAvi({"repair", folder / "in.avi"}).exit, 0);
}

TEST(RepairCommand, WithoutOutputTheRepairedFileLiesBesideTheInput) {
  const TempFolder folder;
  writeFile(folder / "clip.AVI", SmallAvi{}.bytes());

  EXPECT_EQ(runZelvoAvi({"repair", folder / "clip.AVI"}).exit, 0);

  EXPECT_THAT(folder.names(), ElementsAre("clip-repaired.avi", "clip.AVI"));
}

TEST(RepairCommand, ResultTellsWhatWasFoundWrittenAndHowToPlayIt) {
  const TempFolder folder;
  writeFile(folder / "in.avi", SmallAvi{}.bytes());

  const Ended ended = runZelvoAvi({"repair", folder / "in.avi"});

  EXPECT_THAT(ended.out, HasSubstr("Video:     MJPG, 150 chunks, 600.0 kB"));
  EXPECT_THAT(ended.out, HasSubstr("Audio:     PCM, 150 chunks, 60.0 kB"));
  EXPECT_THAT(ended.out, HasSubstr("Written:   " + (folder / "in-repaired.avi")));
  EXPECT_THAT(ended.out, HasSubstr("mpv '" + (folder / "in-repaired.avi") + "'"));
  EXPECT_THAT(ended.out, HasSubstr("Unchanged: " + (folder / "in.avi")));
  EXPECT_THAT(ended.err, IsEmpty());
}

TEST(RepairCommand, QuietSaysNothingOnSuccess) {
  const TempFolder folder;
  writeFile(folder / "in.avi", SmallAvi{}.bytes());

  const Ended ended = runZelvoAvi({"repair", "--quiet", folder / "in.avi"});

  EXPECT_EQ(ended.exit, 0);
  EXPECT_THAT(ended.out + ended.err, IsEmpty());
}

TEST(RepairCommand, VerboseShowsTheLogOnStandardError) {
  const TempFolder folder;
  writeFile(folder / "in.avi", SmallAvi{}.bytes());

  const Ended ended = runZelvoAvi({"repair", "--verbose", folder / "in.avi"});

  EXPECT_THAT(ended.err, HasSubstr("Sector=1\nValid AVI file\nAudio video samples called\n"));
  EXPECT_THAT(ended.err, HasSubstr("Repair file completed\n"));
  EXPECT_THAT(ended.err, Not(HasSubstr("i=0\n")));
  EXPECT_THAT(ended.out, Not(HasSubstr("Sector")));
}

TEST(RepairCommand, VerboseTwiceShowsEveryPositionToo) {
  const TempFolder folder;
  writeFile(folder / "in.avi", SmallAvi{}.bytes());

  EXPECT_THAT(runZelvoAvi({"repair", "-vv", folder / "in.avi"}).err, HasSubstr("Sector=1\ni=0\nValid AVI file\n"));
}

TEST(RepairCommand, NoProgressLineWhereNobodyWatches) {
  const TempFolder folder;
  writeFile(folder / "in.avi", SmallAvi{}.bytes());

  EXPECT_THAT(runZelvoAvi({"repair", folder / "in.avi"}).err, Not(HasSubstr("\r")));
}

TEST(RepairCommand, ProgressLineComesAndGoesOnATerminal) {
  const TempFolder folder;
  writeFile(folder / "in.avi", SmallAvi{}.bytes());

  const Ended ended = Program(zelvoAvi({"repair", folder / "in.avi"}), ErrorStream::terminal).wait();

  EXPECT_EQ(ended.exit, 0);
  EXPECT_THAT(ended.err, testing::StartsWith("\r\033[K"));
  EXPECT_THAT(ended.err, testing::EndsWith("\r\033[K")) << "the line must be taken away at the end";
  EXPECT_THAT(ended.out, Not(HasSubstr("\r")));
}

TEST(RepairCommand, QuietShowsNoProgressOnATerminalEither) {
  const TempFolder folder;
  writeFile(folder / "in.avi", SmallAvi{}.bytes());

  EXPECT_THAT(Program(zelvoAvi({"repair", "-q", folder / "in.avi"}), ErrorStream::terminal).wait().err, IsEmpty());
}

// ---- What cannot be repaired: exit 1 and the reason in a user's words ----

struct Rejection {
  std::string name;
  SmallAvi avi;
  std::string reason;
};

class RejectedInput : public testing::TestWithParam<Rejection> {};

TEST_P(RejectedInput, IsToldWithItsReason) {
  const TempFolder folder;
  writeFile(folder / "in.avi", GetParam().avi.bytes());

  const Ended ended = runZelvoAvi({"repair", folder / "in.avi"});

  EXPECT_EQ(ended.exit, 1);
  EXPECT_THAT(ended.err, HasSubstr(GetParam().reason));
  EXPECT_THAT(ended.err, HasSubstr("It is unchanged."));
  EXPECT_EQ(std::count(ended.err.begin(), ended.err.end(), '\n'), 2) << ended.err;  // the reason, and what may help
  EXPECT_THAT(ended.out, IsEmpty());
  EXPECT_THAT(folder.names(), ElementsAre("in.avi"));
}

INSTANTIATE_TEST_SUITE_P(
    EachReason, RejectedInput,
    testing::Values(
        Rejection{"NoMainHeader", {.hasMainHeader = false}, "its first 50 KiB lack the main header."},
        Rejection{"NoVideoCodec",
                  {.videoHandler = std::string_view("\0\0\0\0", 4)},
                  "lack the video stream's header with its codec."},
        Rejection{"NoVideoFormat", {.hasVideoCompression = false}, "lack the video stream's format."},
        Rejection{"NoAudioStream",
                  {.hasAudioHeader = false},
                  "lack the audio stream's header and the audio stream's format (a file without an audio stream cannot "
                  "be repaired)."},
        Rejection{"TooSmall", {.frames = 20}, "where only files larger than 512 KiB are repaired."},
        Rejection{
            "TooSmallAndNoMainHeader", {.frames = 20, .hasMainHeader = false}, "lack the main header, and it is 89."}),
    [](const auto& tested) { return tested.param.name; });

TEST(RepairCommand, EmptyFileIsNoAvi) {
  const TempFolder folder;
  writeFile(folder / "in.avi", "");

  const Ended ended = runZelvoAvi({"repair", folder / "in.avi"});

  EXPECT_EQ(ended.exit, 1);
  EXPECT_THAT(ended.err, HasSubstr("in.avi is empty. It is unchanged."));
}

TEST(RepairCommand, FewBytesAreNoAvi) {
  const TempFolder folder;
  writeFile(folder / "in.avi", "RIFF");

  const Ended ended = runZelvoAvi({"repair", folder / "in.avi"});

  EXPECT_EQ(ended.exit, 1);
  EXPECT_EQ(ended.err,
            "zelvo-avi: " + (folder / "in.avi") + " is only 4 bytes long; that is no AVI file. It is unchanged.\n");
}

TEST(RepairCommand, From1024BytesOnTheContentDecides) {
  const TempFolder folder;
  writeFile(folder / "short.avi", std::string(1023, 'x'));
  writeFile(folder / "long.avi", std::string(1024, 'x'));

  EXPECT_THAT(runZelvoAvi({"repair", folder / "short.avi"}).err, HasSubstr("is only 1,023 bytes long"));
  EXPECT_THAT(runZelvoAvi({"repair", folder / "long.avi"}).err, HasSubstr("hold none of the marks of one"));
}

TEST(RepairCommand, OtherContentIsNoAvi) {
  const TempFolder folder;
  writeFile(folder / "in.avi", std::string(600000, 'x'));

  const Ended ended = runZelvoAvi({"repair", folder / "in.avi"});

  EXPECT_EQ(ended.exit, 1);
  EXPECT_THAT(ended.err, HasSubstr("is not an AVI file: its first 10 KiB hold none of the marks of one."));
}

TEST(RepairCommand, SizeOf524288IsRefusedAndOneByteMoreIsNot) {
  const TempFolder folder;
  std::string bytes = SmallAvi{.frames = 100}.bytes();
  bytes.resize(524288, '\0');
  writeFile(folder / "small.avi", bytes);
  writeFile(folder / "large.avi", bytes + '\0');

  EXPECT_EQ(runZelvoAvi({"repair", folder / "small.avi"}).exit, 1);
  EXPECT_EQ(runZelvoAvi({"repair", folder / "large.avi"}).exit, 0);
}

// ---- What cannot be read: exit 3 ----

TEST(RepairCommand, MissingInputIsAFailure) {
  const TempFolder folder;

  const Ended ended = runZelvoAvi({"repair", folder / "in.avi"});

  EXPECT_EQ(ended.exit, 3);
  EXPECT_EQ(ended.err, "zelvo-avi: there is no file named " + (folder / "in.avi") + ".\n");
}

TEST(RepairCommand, FolderIsAFailure) {
  const TempFolder folder;

  const Ended ended = runZelvoAvi({"repair", folder.path()});

  EXPECT_EQ(ended.exit, 3);
  EXPECT_THAT(ended.err, HasSubstr("is a folder; name the AVI file itself."));
}

TEST(RepairCommand, DeviceAndPipeAreFailuresThatDoNotWait) {
  const TempFolder folder;
  ASSERT_EQ(run({"mkfifo", folder / "pipe"}).exit, 0);

  for (const std::string& input : {std::string("/dev/zero"), std::string("/dev/null"), folder / "pipe"}) {
    const Ended ended = runZelvoAvi({"repair", input, "-o", folder / "out.avi"});
    EXPECT_EQ(ended.exit, 3) << input;
    EXPECT_THAT(ended.err, HasSubstr("is not a regular file")) << input;
  }
}

TEST(RepairCommand, DanglingLinkIsAFailure) {
  const TempFolder folder;
  std::filesystem::create_symlink("nowhere", folder / "in.avi");

  EXPECT_EQ(runZelvoAvi({"repair", folder / "in.avi"}).exit, 3);
}

TEST(RepairCommand, LinkIsFollowed) {
  const TempFolder folder;
  writeFile(folder / "real.avi", SmallAvi{}.bytes());
  std::filesystem::create_symlink("real.avi", folder / "in.avi");

  EXPECT_EQ(runZelvoAvi({"repair", folder / "in.avi"}).exit, 0);
  EXPECT_THAT(folder.names(), ElementsAre("in-repaired.avi", "in.avi", "real.avi"));
}

TEST(RepairCommand, UnreadableInputIsAFailure) {
  const TempFolder folder;
  writeFile(folder / "in.avi", SmallAvi{}.bytes());
  std::filesystem::permissions(folder / "in.avi", std::filesystem::perms::none);
  std::filesystem::permissions(folder.path(), std::filesystem::perms::all);

  std::vector<std::string> command = zelvoAvi({"repair", folder / "in.avi"});
  // root may read everything, so another user tries.
  if (run({"id", "-u"}).out == "0\n") {
    command.insert(command.begin(), {"setpriv", "--reuid=65534", "--regid=65534", "--clear-groups"});
    if (run({command[0], command[1], command[2], command[3], ZELVO_AVI, "--version"}).exit != 0) {
      GTEST_SKIP() << "another user may not run the program where it was built";
    }
  }
  const Ended ended = run(command);

  EXPECT_EQ(ended.exit, 3);
  EXPECT_THAT(ended.err, HasSubstr("cannot be read: Permission denied."));
}

// ---- Several inputs ----

TEST(RepairCommand, EachInputIsDoneWhateverBecameOfTheOthers) {
  const TempFolder folder;
  writeFile(folder / "a.avi", SmallAvi{}.bytes());
  writeFile(folder / "b.avi", "no AVI");
  writeFile(folder / "c.avi", SmallAvi{.frames = 140}.bytes());

  const Ended ended =
      runZelvoAvi({"repair", folder / "a.avi", folder / "missing.avi", folder / "b.avi", folder / "c.avi"});

  EXPECT_EQ(ended.exit, 3) << "the worst of 0, 3, 1 and 0";
  EXPECT_THAT(ended.out, HasSubstr("4 inputs: 2 repaired, 1 not an AVI file, 1 failed.\n"));
  EXPECT_THAT(folder.names(), ElementsAre("a-repaired.avi", "a.avi", "b.avi", "c-repaired.avi", "c.avi"));
}

TEST(RepairCommand, UnrepairableAmongGoodOnesGivesOne) {
  const TempFolder folder;
  writeFile(folder / "a.avi", "no AVI");
  writeFile(folder / "b.avi", SmallAvi{}.bytes());

  EXPECT_EQ(runZelvoAvi({"repair", folder / "a.avi", folder / "b.avi"}).exit, 1);
}

TEST(RepairCommand, EachOfSeveralInputsIsWrittenAsIfItWereAlone) {
  const TempFolder folder;
  writeFile(folder / "a.avi", SmallAvi{}.bytes());
  writeFile(folder / "b.avi", SmallAvi{.frames = 300, .frameSize = 3001}.bytes());
  ASSERT_TRUE(repairWithEngine(folder / "b.avi", folder / "engine.avi"));

  ASSERT_EQ(runZelvoAvi({"repair", folder / "b.avi", folder / "a.avi", "--output-dir", folder.path()}).exit, 0);
  std::filesystem::remove(folder / "b-repaired.avi");
  ASSERT_EQ(runZelvoAvi({"repair", "-f", folder / "a.avi", folder / "b.avi", "--output-dir", folder.path()}).exit, 0);

  EXPECT_TRUE(readFile(folder / "b-repaired.avi") == readFile(folder / "engine.avi"));
}

// ---- Warnings ----

TEST(RepairCommand, FourGibibytesAreWarnedOf) {
  const TempFolder folder;
  writeFile(folder / "in.avi", std::string(2000, 'x'));
  std::filesystem::resize_file(folder / "in.avi", std::uintmax_t{4} << 30U);

  EXPECT_THAT(runZelvoAvi({"repair", folder / "in.avi"}).err, HasSubstr("positions beyond 4 GiB wrap"));
}

TEST(RepairCommand, LessThanFourGibibytesAreNot) {
  const TempFolder folder;
  writeFile(folder / "in.avi", std::string(2000, 'x'));
  std::filesystem::resize_file(folder / "in.avi", (std::uintmax_t{4} << 30U) - 1);

  EXPECT_THAT(runZelvoAvi({"repair", folder / "in.avi"}).err, Not(HasSubstr("warning")));
}

TEST(RepairCommand, HeadersWithoutDataAreRepairedWithAWarning) {
  const TempFolder folder;
  std::string bytes = SmallAvi{.frames = 1}.bytes();
  bytes.resize(bytes.find("00dc"));
  bytes.resize(600000, '\0');
  writeFile(folder / "in.avi", bytes);

  const Ended ended = runZelvoAvi({"repair", folder / "in.avi"});

  EXPECT_EQ(ended.exit, 0);
  EXPECT_THAT(ended.err, HasSubstr("no video and no audio data was found"));
}

TEST(RepairCommand, RepairedFileOfARealEncoderCanBeDecoded) {
  const TempFolder folder;
  if (run({"ffmpeg", "-version"}).exit != 0) GTEST_SKIP() << "ffmpeg is not installed";
  ASSERT_EQ(run({"ffmpeg",
                 "-v",
                 "error",
                 "-f",
                 "lavfi",
                 "-i",
                 "testsrc2=size=320x240:rate=25",
                 "-f",
                 "lavfi",
                 "-i",
                 "sine",
                 "-t",
                 "4",
                 "-c:v",
                 "mjpeg",
                 "-q:v",
                 "3",
                 "-c:a",
                 "pcm_s16le",
                 folder / "good.avi"})
                .exit,
            0);
  // The index is lost, and every size that players go by.
  std::string bytes = readFile(folder / "good.avi");
  bytes.resize(bytes.rfind("idx1") + 100);
  bytes.replace(4, 4, 4, '\0');
  bytes.replace(bytes.find("movi") - 4, 4, 4, '\0');
  writeFile(folder / "in.avi", bytes);

  ASSERT_EQ(runZelvoAvi({"repair", folder / "in.avi", "-o", folder / "out.avi"}).exit, 0);

  const Ended decoded = run({"ffmpeg", "-v", "error", "-i", folder / "out.avi", "-f", "null", "-"});
  EXPECT_EQ(decoded.exit, 0);
  EXPECT_THAT(decoded.err, IsEmpty());
}

}  // namespace
}  // namespace zelvo::tests
