#include "salvage/playing/play_tally.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace zelvo::tests {
namespace {

using platform::PictureType;
using platform::PlayedKind;
using platform::PlayedPacket;
using platform::PlayFaultKind;
using salvage::PlayCount;
using salvage::PlayErrorKind;
using salvage::PlayTally;

/// A film of 25 pictures a second, after each of which 40 ms of sound come.
class PlayTallyTest : public testing::Test {
 protected:
  PlayTallyTest() {
    count.take(platform::PlayedStream{.stream = 0, .kind = PlayedKind::video, .hasDecoder = true});
    count.take(platform::PlayedStream{
        .stream = 1, .kind = PlayedKind::sound, .hasDecoder = true, .rate = 8000, .channels = 1});
  }
  void picture(PictureType type = PictureType::intra, bool isKey = true) {
    packet(0);
    count.take(platform::PlayedPicture{.stream = 0, .packet = number - 1, .type = type, .isKey = isKey});
  }
  /// A packet of pictures of which none comes.
  void packet(std::uint32_t stream, std::uint32_t size = 1000) {
    count.take(PlayedPacket{.stream = stream,
                            .number = number,
                            .time = stream == 0 ? pictureTime : soundTime,
                            .duration = stream == 0 ? kUnit : 0,
                            .offset = 1000 * number,
                            .size = size,
                            .isKey = true,
                            .isDecoded = true});
    ++number;
    (stream == 0 ? pictureTime : soundTime) += kUnit;
  }
  void sound(std::uint32_t samples = 320) {
    packet(1, 640);
    if (samples > 0)
      count.take(platform::PlayedSound{.stream = 1, .packet = number - 1, .samples = samples, .rate = 8000});
  }
  void play(int pictures) {
    for (int i = 0; i < pictures; ++i) {
      picture();
      sound();
    }
  }
  void fault(PlayFaultKind kind, int signal = 0) {
    count.take(platform::PlayFault{.kind = kind, .stream = 0, .packet = number - 1, .signal = signal});
  }

  static constexpr std::int64_t kUnit = 40'000;
  PlayCount count;
  std::uint64_t number = 0;
  std::int64_t pictureTime = 0;
  std::int64_t soundTime = 0;
};

TEST_F(PlayTallyTest, WholeFilmHasNoFaults) {
  play(500);
  const PlayTally tally = count.finish();
  ASSERT_EQ(tally.streams.size(), 2U);
  EXPECT_EQ(tally.streams[0].pictures, 500U);
  EXPECT_EQ(tally.streams[0].keys, 500U);
  EXPECT_EQ(tally.streams[1].samples, 160'000U);
  EXPECT_NEAR(tally.streams[0].seconds, 20, 1e-6);
  EXPECT_NEAR(tally.streams[1].seconds, 20, 1e-6);
  EXPECT_NEAR(tally.streams[1].creep, 0, 0.01);
  EXPECT_NEAR(tally.streams[1].step, 0, 0.01);
  for (const auto& stream : tally.streams) {
    EXPECT_EQ(stream.errors, 0U);
    EXPECT_TRUE(stream.stills.empty());
    EXPECT_TRUE(stream.falseKeys.empty());
  }
}

TEST_F(PlayTallyTest, ErrorsHaveTheTimeAndPlaceOfTheirPacket) {
  play(100);
  packet(0);
  fault(PlayFaultKind::refused);
  play(100);
  const PlayTally tally = count.finish();
  ASSERT_EQ(tally.streams[0].faults.size(), 1U);
  const salvage::PlayError& error = tally.streams[0].faults[0];
  EXPECT_EQ(error.kind, PlayErrorKind::refused);
  EXPECT_DOUBLE_EQ(error.begin, 4);
  EXPECT_EQ(error.offset, 200'000U);
  EXPECT_EQ(error.packets, 1U);
}

TEST_F(PlayTallyTest, ErrorsThatFollowOnOneAnotherAreOne) {
  play(10);
  for (int i = 0; i < 5; ++i) {
    picture();
    fault(PlayFaultKind::complained);
  }
  play(100);
  picture();
  fault(PlayFaultKind::complained);
  play(10);
  const PlayTally tally = count.finish();
  EXPECT_EQ(tally.streams[0].errors, 6U);
  ASSERT_EQ(tally.streams[0].faults.size(), 2U);
  EXPECT_EQ(tally.streams[0].faults[0].packets, 5U);
  EXPECT_NEAR(tally.streams[0].faults[0].end, 0.6, 1e-9);
}

TEST_F(PlayTallyTest, PacketWithSeveralComplaintsIsOneError) {
  play(10);
  packet(0);
  count.take(platform::PlayedPicture{.stream = 0, .packet = number - 1, .type = PictureType::intra, .isHurt = true});
  fault(PlayFaultKind::complained);
  play(10);
  EXPECT_EQ(count.finish().streams[0].errors, 1U);
}

TEST_F(PlayTallyTest, CrashIsToldWithItsSignal) {
  play(50);
  packet(0);
  fault(PlayFaultKind::crashed, 11);
  play(50);
  const PlayTally tally = count.finish();
  ASSERT_EQ(tally.streams[0].faults.size(), 1U);
  EXPECT_EQ(tally.streams[0].faults[0].kind, PlayErrorKind::crashed);
  EXPECT_EQ(tally.streams[0].faults[0].signal, 11);
  EXPECT_DOUBLE_EQ(tally.streams[0].faults[0].begin, 2);
}

TEST_F(PlayTallyTest, CrashBeforeAnyStreamIsStillAFault) {
  PlayCount fresh;
  fresh.take(platform::PlayFault{.kind = PlayFaultKind::crashed, .signal = 6});
  EXPECT_EQ(fresh.finish().streams.at(0).errors, 1U);
}

TEST_F(PlayTallyTest, PacketsWithoutPicturesAreAGap) {
  play(100);
  for (int i = 0; i < 20; ++i) {
    packet(0);
    sound();
  }
  play(300);
  const PlayTally tally = count.finish();
  ASSERT_EQ(tally.streams[0].faults.size(), 1U);
  const salvage::PlayError& gap = tally.streams[0].faults[0];
  EXPECT_EQ(gap.kind, PlayErrorKind::noPictures);
  EXPECT_DOUBLE_EQ(gap.begin, 4);
  EXPECT_NEAR(gap.seconds, 0.8, 1e-9);
  EXPECT_EQ(gap.packets, 20U);
}

TEST_F(PlayTallyTest, FewPacketsWithoutPicturesAreNoGap) {
  for (int i = 0; i < 50; ++i) {
    play(4);
    packet(0);  // as of a picture that is decoded and not shown
    sound();
  }
  EXPECT_EQ(count.finish().streams[0].errors, 0U);
}

TEST_F(PlayTallyTest, PicturesMayComeLate) {
  for (int i = 0; i < 200; ++i) {
    packet(0);
    if (number >= 40)
      count.take(platform::PlayedPicture{.stream = 0, .packet = number - 40, .type = PictureType::intra});
  }
  for (std::uint64_t late = 161; late < 200; ++late)
    count.take(platform::PlayedPicture{.stream = 0, .packet = late, .type = PictureType::intra});
  EXPECT_EQ(count.finish().streams[0].errors, 0U);
}

TEST_F(PlayTallyTest, PictureThatStandsStillIsNoFault) {
  play(50);
  for (int i = 0; i < 50; ++i) {
    packet(0, 0);
    sound();
  }
  play(20);
  pictureTime += 25 * kUnit;  // as chunks of no bytes that no packet comes of
  for (int i = 0; i < 25; ++i) sound();
  play(20);
  const PlayTally tally = count.finish();
  EXPECT_EQ(tally.streams[0].errors, 0U);
  ASSERT_EQ(tally.streams[0].stills.size(), 2U);
  EXPECT_NEAR(tally.streams[0].stills[0].begin, 2, 1e-9);
  EXPECT_NEAR(tally.streams[0].stills[0].seconds, 2, 1e-9);
  EXPECT_NEAR(tally.streams[0].stills[1].seconds, 1, 1e-9);
  EXPECT_NEAR(tally.streams[0].still, 3, 1e-9);
}

TEST_F(PlayTallyTest, SoundThatIsMissingIsTold) {
  play(100);
  for (int i = 0; i < 10; ++i) {
    picture();
    sound(0);
  }
  play(100);
  const PlayTally tally = count.finish();
  double lost = 0;
  for (const auto& fault : tally.streams[1].faults) {
    EXPECT_EQ(fault.kind, PlayErrorKind::lostSound);
    EXPECT_NEAR(fault.begin, 4, 0.5);
    lost += fault.seconds;
  }
  EXPECT_NEAR(lost, 0.4, 0.2);
  EXPECT_EQ(tally.streams[1].faults.size(), 1U);
  EXPECT_NEAR(tally.streams[1].creep, 0, 0.2) << "what came at once does not count as drift again";
}

TEST_F(PlayTallyTest, LossesThatGoOnAllTheTimeAreOne) {
  for (int i = 0; i < 1500; ++i) {
    picture();
    sound(304);
  }
  const PlayTally tally = count.finish();
  ASSERT_EQ(tally.streams[1].faults.size(), 1U);
  const salvage::PlayError& fault = tally.streams[1].faults[0];
  EXPECT_EQ(fault.kind, PlayErrorKind::lostSound);
  EXPECT_LT(fault.begin, 15);
  EXPECT_GT(fault.end, 50);
  EXPECT_NEAR(fault.seconds + tally.streams[1].creep, 60 * 0.05, 0.05);
  EXPECT_EQ(tally.streams[1].errors, 1U);
}

TEST_F(PlayTallyTest, LossesFarApartAreTwo) {
  for (int loss = 0; loss < 2; ++loss) {
    play(400);
    for (int i = 0; i < 50; ++i) {
      picture();
      sound(0);
    }
  }
  play(400);
  const PlayTally tally = count.finish();
  ASSERT_EQ(tally.streams[1].faults.size(), 2U);
  EXPECT_NEAR(tally.streams[1].faults[0].begin, 16, 0.5);
  EXPECT_NEAR(tally.streams[1].faults[0].seconds, 2, 0.25);
  EXPECT_NEAR(tally.streams[1].faults[1].begin, 34, 0.5);
}

TEST_F(PlayTallyTest, SoundThatIsTooMuchIsTold) {
  play(100);
  picture();
  sound(320 * 12);
  play(100);
  const PlayTally tally = count.finish();
  ASSERT_EQ(tally.streams[1].faults.size(), 1U);
  EXPECT_EQ(tally.streams[1].faults[0].kind, PlayErrorKind::extraSound);
}

TEST_F(PlayTallyTest, DecoderThatHoldsBackLosesNothing) {
  for (int i = 0; i < 200; ++i) {
    picture();
    sound(i < 2 ? 0 : 320);
  }
  EXPECT_EQ(count.finish().streams[1].errors, 0U);
}

TEST_F(PlayTallyTest, SlowDriftIsNoJump) {
  for (int i = 0; i < 3000; ++i) {
    picture();
    sound(316);
  }
  const PlayTally tally = count.finish();
  EXPECT_EQ(tally.streams[1].errors, 0U);
  EXPECT_NEAR(tally.streams[1].creep, 1.5, 0.05);
}

TEST_F(PlayTallyTest, LostPicturesPutSoundOutOfStep) {
  play(500);
  for (int i = 0; i < 50; ++i) sound();  // whose pictures are gone
  play(500);
  const PlayTally tally = count.finish();
  ASSERT_EQ(tally.streams[1].faults.size(), 1U);
  EXPECT_EQ(tally.streams[1].faults[0].kind, PlayErrorKind::outOfStep);
  EXPECT_NEAR(tally.streams[1].faults[0].seconds, 2, 0.2);
  EXPECT_NEAR(tally.streams[1].faults[0].begin, 21, 2);
}

TEST_F(PlayTallyTest, LeadOfSoundIsNoStep) {
  for (int i = 0; i < 25; ++i) sound();
  play(1000);
  EXPECT_EQ(count.finish().streams[1].errors, 0U);
}

TEST_F(PlayTallyTest, SoundAfterAllPicturesIsNoStep) {
  for (int i = 0; i < 1000; ++i) picture();
  for (int i = 0; i < 1000; ++i) sound();
  EXPECT_EQ(count.finish().streams[1].errors, 0U);
}

TEST_F(PlayTallyTest, SoundThatEndsEarlyIsNoFault) {
  play(200);
  for (int i = 0; i < 500; ++i) picture();
  const PlayTally tally = count.finish();
  EXPECT_EQ(tally.streams[0].errors + tally.streams[1].errors, 0U);
}

/// A film of pictures and two more streams of the kind, which lie in the file side by side. The second lacks two of its
/// forty seconds, and so is early from then on. A player may read it as it lies, or each stream by its clock.
PlayTally tallyOfThree(PlayedKind kind, bool isReadByTime) {
  std::vector<PlayedPacket> packets;
  std::array<std::int64_t, 3> times{};
  for (std::uint64_t i = 0; i < 1000; ++i) {
    for (std::uint32_t stream = 0; stream < 3; ++stream) {
      if (stream == 2 && i >= 500 && i < 550) continue;
      packets.push_back({.stream = stream,
                         .time = times[stream],
                         .duration = 40'000,
                         .offset = 1000 * packets.size(),
                         .size = 640,
                         .isDecoded = true});
      times[stream] += 40'000;
    }
  }
  if (isReadByTime) std::ranges::stable_sort(packets, {}, &PlayedPacket::time);
  PlayCount count;
  for (std::uint32_t stream = 0; stream < 3; ++stream)
    count.take(platform::PlayedStream{
        .stream = stream, .kind = stream == 0 ? PlayedKind::video : kind, .hasDecoder = true, .rate = 8000});
  for (std::uint64_t number = 0; PlayedPacket & packet : packets) {
    packet.number = number++;
    count.take(packet);
    if (packet.stream > 0 && kind == PlayedKind::sound) {
      count.take(platform::PlayedSound{.stream = packet.stream, .packet = packet.number, .samples = 320, .rate = 8000});
    } else {
      count.take(platform::PlayedPicture{.stream = packet.stream, .packet = packet.number, .isKey = true});
    }
  }
  return count.finish();
}

TEST(PlayTallySteps, EachStreamIsHeldAgainstTheFirstPictures) {
  for (const PlayedKind kind : {PlayedKind::sound, PlayedKind::video}) {
    for (const bool isReadByTime : {false, true}) {
      const PlayTally tally = tallyOfThree(kind, isReadByTime);
      EXPECT_EQ(tally.streams[0].errors + tally.streams[1].errors, 0U);
      ASSERT_EQ(tally.streams[2].faults.size(), 1U) << isReadByTime;
      EXPECT_EQ(tally.streams[2].faults[0].kind, PlayErrorKind::outOfStep);
      EXPECT_NEAR(tally.streams[2].faults[0].seconds, -2, 0.05);
      EXPECT_NEAR(tally.streams[2].faults[0].begin, 20, 0.3);
      EXPECT_EQ(tally.streams[2].faults[0].offset / 100'000, 16U);
    }
  }
}

TEST_F(PlayTallyTest, KeysThatDependOnOthersAreFalse) {
  play(10);
  picture(PictureType::predicted, false);
  sound();
  picture(PictureType::bidirectional, false);
  picture(PictureType::unknown, false);
  picture(PictureType::predicted, true);
  const PlayTally tally = count.finish();
  EXPECT_EQ(tally.streams[0].falseKeys, (std::vector<std::uint64_t>{20'000, 22'000}));
}

TEST_F(PlayTallyTest, SecondPictureOfAKeyMayDependOnOthers) {
  play(5);
  picture();
  count.take(platform::PlayedPicture{.stream = 0, .packet = number - 1, .type = PictureType::bidirectional});
  EXPECT_TRUE(count.finish().streams[0].falseKeys.empty());
}

TEST_F(PlayTallyTest, StreamWithoutDecoderIsAFault) {
  PlayCount fresh;
  fresh.take(platform::PlayedStream{.stream = 0, .kind = PlayedKind::video});
  fresh.take(platform::PlayedStream{.stream = 1, .kind = PlayedKind::text});
  const PlayTally tally = fresh.finish();
  EXPECT_EQ(tally.streams[0].faults.at(0).kind, PlayErrorKind::noDecoder);
  EXPECT_EQ(tally.streams[1].errors, 0U);
}

TEST_F(PlayTallyTest, FaultsAreLimited) {
  for (std::size_t i = 0; i < 300; ++i) {
    play(1);
    packet(0);
    fault(PlayFaultKind::crashed);
  }
  const PlayTally tally = count.finish();
  EXPECT_EQ(tally.streams[0].errors, 300U);
  EXPECT_EQ(tally.streams[0].faults.size(), salvage::PlayedStreamTally::kMaxErrors);
  EXPECT_EQ(tally.streams[0].faultsLeftOut, 300 - salvage::PlayedStreamTally::kMaxErrors);
}

TEST_F(PlayTallyTest, EventsOfStreamsThatAreNotThereCountForNothing) {
  count.take(PlayedPacket{.stream = 9});
  count.take(platform::PlayedPicture{.stream = 9});
  count.take(platform::PlayedSound{.stream = 9, .rate = 1});
  EXPECT_EQ(count.finish().streams.size(), 2U);
}

}  // namespace
}  // namespace zelvo::tests
