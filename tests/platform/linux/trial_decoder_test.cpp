#include "platform/linux/trial_decoder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <chrono>
#include <csignal>
#include <string>

#include "tests/support/temp_folder.h"

namespace zelvo::tests {
namespace {

using namespace std::chrono_literals;
using platform::Bytes;
using platform::PictureType;
using platform::TrialStream;
using platform::WantedPlanes;
using platform::linux_::LinuxTrialDecoder;

constexpr std::uint32_t codeOf(const char (&letters)[5]) {
  std::uint32_t code = 0;
  for (unsigned i = 0; i < 4; ++i) code |= static_cast<std::uint32_t>(static_cast<unsigned char>(letters[i])) << 8U * i;
  return code;
}

/// Microsoft Video 1 with 16 bits: four blocks of 4 x 4 pixels, each of one colour.
const TrialStream kStream{codeOf("CRAM"), 8, 8, 16, {}};

Bytes pictureOf(unsigned colour) {
  Bytes payload;
  for (int block = 0; block < 4; ++block) {
    payload.push_back(static_cast<std::byte>(colour & 0xffU));
    payload.push_back(static_cast<std::byte>(0x80U | (colour >> 8U & 0x7fU)));
  }
  payload.resize(payload.size() + 2);
  return payload;
}

/// Blocks that stay as they were.
Bytes pictureLikeTheLast() { return {std::byte{4}, std::byte{0x84}, std::byte{0}, std::byte{0}}; }

class TrialDecoderTest : public testing::Test {
 protected:
  /// The double of the decoding program, told how to behave.
  [[nodiscard]] std::string behaving(const std::string& how) const {
    const std::string path = folder.put("decoder", "#!/bin/sh\nexec '" ZELVO_DECODER_DOUBLE "' '" + how + "'\n");
    EXPECT_EQ(::chmod(path.c_str(), 0700), 0);
    return path;
  }

  TempFolder folder;
  LinuxTrialDecoder decoder{ZELVO_DECODER};
};

TEST_F(TrialDecoderTest, DecodesAPicture) {
  ASSERT_TRUE(decoder.open(kStream));
  const auto answer = decoder.decode(pictureOf(0x7fff), WantedPlanes::all);
  ASSERT_TRUE(answer);
  EXPECT_TRUE(answer->isAccepted);
  ASSERT_EQ(answer->pictures.size(), 1U);
  ASSERT_EQ(answer->pictures[0].planes.size(), 3U);
  EXPECT_EQ(answer->pictures[0].planes[0].width, 8U);
  EXPECT_EQ(answer->pictures[0].planes[0].height, 8U);
  EXPECT_EQ(answer->pictures[0].planes[0].samples, Bytes(64, std::byte{0xf8}));  // five bits
}

TEST_F(TrialDecoderTest, NoPlanesComeUnlessTheyAreWanted) {
  ASSERT_TRUE(decoder.open(kStream));
  EXPECT_TRUE(decoder.decode(pictureOf(3), WantedPlanes::none)->pictures.at(0).planes.empty());
  EXPECT_EQ(decoder.decode(pictureOf(3), WantedPlanes::first)->pictures.at(0).planes.size(), 1U);
}

TEST_F(TrialDecoderTest, ToldAreKeysAndTheirPayloads) {
  ASSERT_TRUE(decoder.open(kStream));
  const auto first = decoder.decode(pictureOf(3), WantedPlanes::none);
  const auto second = decoder.decode(pictureLikeTheLast(), WantedPlanes::first);
  ASSERT_EQ(second->pictures.size(), 1U);
  EXPECT_EQ(first->pictures[0].payload, 0U);
  EXPECT_EQ(second->pictures[0].payload, 1U);
  EXPECT_EQ(second->pictures[0].planes[0].samples, Bytes(64));
}

TEST_F(TrialDecoderTest, FinishingStartsAgain) {
  ASSERT_TRUE(decoder.open(kStream));
  ASSERT_TRUE(decoder.decode(pictureOf(3), WantedPlanes::none));
  ASSERT_TRUE(decoder.finish(WantedPlanes::none));
  EXPECT_EQ(decoder.decode(pictureOf(3), WantedPlanes::none)->pictures.at(0).payload, 0U);
}

TEST_F(TrialDecoderTest, SamePayloadsGiveTheSamePictures) {
  const auto decoded = [this] {
    EXPECT_TRUE(decoder.open(kStream));
    static_cast<void>(decoder.decode(pictureOf(0x1234), WantedPlanes::all));
    return decoder.decode({pictureOf(0x2345).data(), 3}, WantedPlanes::all)->pictures;
  };
  const auto one = decoded();
  const auto other = decoded();
  ASSERT_EQ(one.size(), other.size());
  for (std::size_t i = 0; i < one.size(); ++i) EXPECT_EQ(one[i].planes, other[i].planes);
}

TEST_F(TrialDecoderTest, UnknownCodecIsRefused) {
  EXPECT_FALSE(decoder.open({codeOf("!?!?"), 8, 8, 24, {}}));
  EXPECT_TRUE(decoder.isThere());
}

TEST_F(TrialDecoderTest, PictureThatIsTooLargeIsRefused) {
  EXPECT_FALSE(decoder.open({codeOf("CRAM"), 8192, 8192, 16, {}}));
  EXPECT_FALSE(decoder.open({codeOf("CRAM"), 0xffffffff, 1, 16, {}}));
}

TEST_F(TrialDecoderTest, EmptyPayloadIsNotTheEnd) {
  ASSERT_TRUE(decoder.open(kStream));
  const auto nothing = decoder.decode({}, WantedPlanes::none);
  ASSERT_TRUE(nothing);
  EXPECT_FALSE(nothing->isAccepted);
  EXPECT_EQ(decoder.decode(pictureOf(3), WantedPlanes::none)->pictures.size(), 1U);
}

TEST_F(TrialDecoderTest, PayloadThatIsTooLargeIsNotSent) {
  ASSERT_TRUE(decoder.open(kStream));
  EXPECT_FALSE(decoder.decode(Bytes(LinuxTrialDecoder::kMaxPayload + 1), WantedPlanes::none));
}

TEST_F(TrialDecoderTest, ComplaintsAreCounted) {
  ASSERT_TRUE(decoder.open({codeOf("MJPG"), 16, 16, 24, {}}));
  const Bytes rubbish(64, std::byte{0x11});
  const auto answer = decoder.decode(rubbish, WantedPlanes::none);
  ASSERT_TRUE(answer);
  EXPECT_FALSE(answer->isAccepted);
  EXPECT_GT(answer->complaints, 0U);
}

TEST_F(TrialDecoderTest, CommonEncodersTellTheirExtraBytes) {
  EXPECT_FALSE(decoder.usualExtra({codeOf("HFYU"), 64, 48, 24, {}}).empty());
  EXPECT_TRUE(decoder.usualExtra({codeOf("CRAM"), 64, 48, 16, {}}).empty());
}

TEST_F(TrialDecoderTest, MissingProgramIsNotThere) {
  LinuxTrialDecoder none(folder.path("none"));
  EXPECT_FALSE(none.isThere());
  EXPECT_FALSE(none.open(kStream));
  EXPECT_FALSE(none.decode(pictureOf(3), WantedPlanes::none));
}

TEST_F(TrialDecoderTest, CrashIsNoAnswer) {
  LinuxTrialDecoder crashing(behaving("crash"));
  EXPECT_FALSE(crashing.open(kStream));
  EXPECT_EQ(crashing.lastSignal(), SIGSEGV);
}

TEST_F(TrialDecoderTest, CrashesEndInNoMoreDecoding) {
  LinuxTrialDecoder crashing(behaving("crash"));
  for (int i = 0; i < LinuxTrialDecoder::kMaxFailures; ++i) {
    EXPECT_TRUE(crashing.isThere());
    EXPECT_FALSE(crashing.open(kStream));
  }
  EXPECT_FALSE(crashing.isThere());
}

TEST_F(TrialDecoderTest, HangIsNoAnswer) {
  LinuxTrialDecoder hanging(behaving("hang"), 200ms);
  EXPECT_FALSE(hanging.open(kStream));
  EXPECT_EQ(hanging.lastSignal(), SIGKILL);
}

TEST_F(TrialDecoderTest, SilenceIsNoAnswer) {
  LinuxTrialDecoder silent(behaving("silence"), 200ms);
  EXPECT_FALSE(silent.isThere());
}

TEST_F(TrialDecoderTest, ProgramThatLeavesIsNoAnswer) {
  LinuxTrialDecoder leaving(behaving("leave"));
  EXPECT_FALSE(leaving.open(kStream));
  EXPECT_EQ(leaving.lastSignal(), 0);
}

TEST_F(TrialDecoderTest, WrongAnswersAreNotBelieved) {
  for (const char* how : {"boast", "mumble", "another version"}) {
    LinuxTrialDecoder lying(behaving(how));
    EXPECT_FALSE(lying.open(kStream)) << how;
  }
}

TEST_F(TrialDecoderTest, MemoryIsLimited) {
  LinuxTrialDecoder greedy(behaving("memory"));
  ASSERT_TRUE(greedy.isThere());
  if (!greedy.isConfined()) GTEST_SKIP() << "not confined under a sanitizer";
  EXPECT_FALSE(greedy.open(kStream));
  EXPECT_TRUE(greedy.isThere());
  EXPECT_EQ(greedy.lastSignal(), 0);
}

class ForbiddenCall : public TrialDecoderTest, public testing::WithParamInterface<const char*> {};

TEST_P(ForbiddenCall, EndsTheProgram) {
  LinuxTrialDecoder calling(behaving(GetParam()));
  ASSERT_TRUE(calling.isThere());
  if (!calling.isConfined()) GTEST_SKIP() << "not confined under a sanitizer";
  EXPECT_FALSE(calling.open(kStream));
  EXPECT_EQ(calling.lastSignal(), SIGSYS);
}

INSTANTIATE_TEST_SUITE_P(Linux, ForbiddenCall,
                         testing::Values("socket", "connect", "execve", "fork", "kill", "ptrace", "unlinkat",
                                         "renameat2", "ioctl", "prctl", "setuid", "dup", "memfd_create",
                                         "io_uring_setup", "mmap of code", "mprotect of code"),
                         [](const auto& call) {
                           std::string name = call.param;
                           for (char& letter : name) letter = letter == ' ' ? '_' : letter;
                           return name;
                         });

class RefusedCall : public ForbiddenCall {};

TEST_P(RefusedCall, IsAnsweredWithAnError) {
  LinuxTrialDecoder calling(behaving(GetParam()));
  ASSERT_TRUE(calling.isThere());
  if (!calling.isConfined()) GTEST_SKIP() << "not confined under a sanitizer";
  EXPECT_FALSE(calling.open(kStream));
  EXPECT_TRUE(calling.isThere());
  EXPECT_EQ(calling.lastSignal(), 0);
}

INSTANTIATE_TEST_SUITE_P(Linux, RefusedCall, testing::Values("open", "clone3"));

}  // namespace
}  // namespace zelvo::tests
