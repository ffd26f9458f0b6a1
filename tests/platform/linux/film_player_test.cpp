#include "platform/linux/film_player.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <string>
#include <vector>

#include "tests/support/played_film.h"
#include "tests/support/temp_folder.h"

namespace zelvo::tests {
namespace {

using namespace std::chrono_literals;
using platform::CancelMark;
using platform::PlayedKind;
using platform::PlayedPacket;
using platform::PlayedPicture;
using platform::PlayedSeek;
using platform::PlayedSound;
using platform::PlayedStream;
using platform::PlayEnd;
using platform::PlayEvent;
using platform::PlayFault;
using platform::PlayFaultKind;
using platform::SeekEnd;
using platform::linux_::LinuxFilmPlayer;
using testing::SizeIs;

class FilmPlayerTest : public testing::Test {
 protected:
  template <class Event>
  [[nodiscard]] std::vector<Event> all() const {
    std::vector<Event> found;
    for (const PlayEvent& event : events) {
      if (const auto* one = std::get_if<Event>(&event)) found.push_back(*one);
    }
    return found;
  }
  [[nodiscard]] PlayEnd play(LinuxFilmPlayer& by, const std::string& bytes, platform::PlayChoices choices = {}) {
    events.clear();
    return by.play(folder.put("film.avi", bytes), choices, cancel,
                   [this](const PlayEvent& event) { events.push_back(event); });
  }
  /// The double of the playing program, told how to behave.
  [[nodiscard]] std::string behaving(const std::string& how) const {
    const std::string path = folder.put("player", "#!/bin/sh\nexec '" ZELVO_PLAYER_DOUBLE "' '" + how + "' \"$@\"\n");
    EXPECT_EQ(::chmod(path.c_str(), 0700), 0);
    return path;
  }
  /// Has a film played by the double.
  [[nodiscard]] PlayEnd playBehaving(const std::string& how, std::chrono::milliseconds limit = 60s) {
    LinuxFilmPlayer double_(behaving(how), limit);
    const PlayEnd end = play(double_, "any bytes");
    isConfined = double_.wasConfined();
    return end;
  }

  TempFolder folder;
  LinuxFilmPlayer player{ZELVO_PLAYER};
  CancelMark cancel;
  std::vector<PlayEvent> events;
  bool isConfined = false;
};

TEST_F(FilmPlayerTest, TellsStreamsPacketsPicturesAndSound) {
  ASSERT_EQ(play(player, PlayedFilm().bytes()), PlayEnd::played);

  const auto streams = all<PlayedStream>();
  ASSERT_THAT(streams, SizeIs(2));
  EXPECT_EQ(
      streams[0],
      (PlayedStream{
          .stream = 0, .kind = PlayedKind::video, .hasDecoder = true, .codec = "msvideo1", .width = 8, .height = 8}));
  EXPECT_EQ(streams[1], (PlayedStream{.stream = 1,
                                      .kind = PlayedKind::sound,
                                      .hasDecoder = true,
                                      .codec = "pcm_s16le",
                                      .rate = 8000,
                                      .channels = 1}));
  EXPECT_THAT(all<PlayedPacket>(), SizeIs(100));
  EXPECT_THAT(all<PlayedPicture>(), SizeIs(50));
  EXPECT_THAT(all<PlayFault>(), SizeIs(0));
  std::uint64_t samples = 0;
  for (const PlayedSound& sound : all<PlayedSound>()) samples += sound.samples;
  EXPECT_EQ(samples, 50U * 320);
}

TEST_F(FilmPlayerTest, PacketsHaveTheirTimesOffsetsAndKeys) {
  PlayedFilm film;
  film.isKey = [](std::size_t number) { return number % 10 == 0; };
  const std::string bytes = film.bytes();

  ASSERT_EQ(play(player, bytes), PlayEnd::played);

  std::uint64_t pictures = 0;
  for (const PlayedPacket& packet : all<PlayedPacket>()) {
    const std::string_view id = packet.stream == 0 ? "00dc" : "01wb";
    EXPECT_EQ(bytes.substr(packet.offset - 8, 4), id);
    if (packet.stream != 0) continue;
    EXPECT_EQ(packet.time, static_cast<std::int64_t>(pictures) * 40'000);
    EXPECT_EQ(packet.duration, 40'000);
    EXPECT_EQ(packet.isKey, pictures % 10 == 0) << pictures;
    ++pictures;
  }
  EXPECT_EQ(pictures, 50U);
}

TEST_F(FilmPlayerTest, TwentyJumpsLandRight) {
  ASSERT_EQ(play(player, PlayedFilm().bytes()), PlayEnd::played);
  const auto seeks = all<PlayedSeek>();
  ASSERT_THAT(seeks, SizeIs(20));
  EXPECT_TRUE(std::ranges::all_of(seeks, [](const PlayedSeek& seek) { return seek.end == SeekEnd::right; }));
  EXPECT_TRUE(std::ranges::is_sorted(seeks, {}, &PlayedSeek::target));
}

TEST_F(FilmPlayerTest, NoJumpsUnlessTheyAreWanted) {
  ASSERT_EQ(play(player, PlayedFilm().bytes(), {.seeks = 0}), PlayEnd::played);
  EXPECT_THAT(all<PlayedSeek>(), SizeIs(0));
  EXPECT_THAT(all<PlayedPicture>(), SizeIs(50));
}

TEST_F(FilmPlayerTest, JumpToWhatIsNoKeyGivesAnotherPicture) {
  // Every other picture repeats the one before; the index calls all of them keys.
  PlayedFilm film;
  film.picture = [](std::size_t number) {
    return number % 2 == 0 ? PlayedFilm::colour(number) : le16(0x8404) + le16(0);
  };

  ASSERT_EQ(play(player, film.bytes()), PlayEnd::played);

  const auto seeks = all<PlayedSeek>();
  EXPECT_TRUE(std::ranges::any_of(seeks, [](const PlayedSeek& seek) { return seek.end == SeekEnd::otherPicture; }));
}

TEST_F(FilmPlayerTest, JumpThatPutsSoundToAnotherTimeLandsWrong) {
  PlayedFilm film;
  film.pictures = 500;
  film.picture = [](std::size_t number) { return PlayedFilm::colour(number % 50); };
  film.isSoundIndexed = [](std::size_t number) { return number < 240 || number >= 260; };

  ASSERT_EQ(play(player, film.bytes()), PlayEnd::played);

  const auto seeks = all<PlayedSeek>();
  ASSERT_THAT(seeks, SizeIs(20));
  for (const PlayedSeek& seek : seeks) {
    // Eight tenths of a second of sound are missing from the index before what comes after them.
    const bool isBetween = seek.target >= 9'000'000 && seek.target <= 11'000'000;
    if (isBetween) continue;
    EXPECT_EQ(seek.end, seek.target < 10'000'000 ? SeekEnd::right : SeekEnd::outOfStep) << seek.target;
  }
}

TEST_F(FilmPlayerTest, FilmWithoutIndexIsPlayedThrough) {
  PlayedFilm film;
  film.hasIndex = false;
  ASSERT_EQ(play(player, film.bytes(), {.seeks = 0}), PlayEnd::played);
  EXPECT_THAT(all<PlayedPicture>(), SizeIs(50));
}

TEST_F(FilmPlayerTest, MoreThreadsTellTheSame) {
  ASSERT_EQ(play(player, PlayedFilm().bytes(), {.threads = 3}), PlayEnd::played);
  EXPECT_THAT(all<PlayedPicture>(), SizeIs(50));
  EXPECT_THAT(all<PlayFault>(), SizeIs(0));
}

TEST_F(FilmPlayerTest, WhatIsNoFilmIsNotPlayed) {
  EXPECT_EQ(play(player, std::string(5000, 'x')), PlayEnd::noFilm);
  EXPECT_EQ(play(player, ""), PlayEnd::noFilm);
  EXPECT_EQ(player.play(folder.path("none.avi"), {}, cancel, [](const PlayEvent&) {}), PlayEnd::unreadable);
}

TEST_F(FilmPlayerTest, OtherFormatsAreNotTried) {
  EXPECT_EQ(play(player, "#EXTM3U\n#EXTINF:1,\n/etc/passwd\n"), PlayEnd::noFilm);
}

TEST_F(FilmPlayerTest, RefusedPicturesAreFaultsOfTheirPacket) {
  PlayedFilm film;
  film.picture = [](std::size_t number) { return number == 20 ? std::string("x") : PlayedFilm::colour(number); };

  ASSERT_EQ(play(player, film.bytes()), PlayEnd::played);

  const auto faults = all<PlayFault>();
  ASSERT_THAT(faults, SizeIs(1));
  EXPECT_EQ(faults[0].packet, 40U);
  EXPECT_EQ(faults[0].stream, 0U);
}

TEST_F(FilmPlayerTest, MissingProgramIsNoPlayer) {
  LinuxFilmPlayer none(folder.path("none"));
  EXPECT_EQ(play(none, PlayedFilm().bytes()), PlayEnd::noPlayer);
}

TEST_F(FilmPlayerTest, CrashIsAFaultAndTheRestIsPlayed) {
  ASSERT_EQ(playBehaving("crash"), PlayEnd::played);

  const auto faults = all<PlayFault>();
  ASSERT_THAT(faults, SizeIs(1));
  EXPECT_EQ(faults[0].kind, PlayFaultKind::crashed);
  EXPECT_EQ(faults[0].signal, SIGSEGV);
  EXPECT_EQ(faults[0].packet, 30U);
  EXPECT_EQ(faults[0].stream, 0U);
  const auto packets = all<PlayedPacket>();
  ASSERT_THAT(packets, SizeIs(100));
  for (std::size_t i = 0; i < packets.size(); ++i) EXPECT_EQ(packets[i].number, i);
  EXPECT_THAT(all<PlayedStream>(), SizeIs(2));
}

TEST_F(FilmPlayerTest, StreamThatCrashesOftenIsLeftOut) {
  ASSERT_EQ(playBehaving("crash often"), PlayEnd::played);
  EXPECT_THAT(all<PlayFault>(), SizeIs(LinuxFilmPlayer::kMaxFailures));
  const auto packets = all<PlayedPacket>();
  ASSERT_THAT(packets, SizeIs(100));
  EXPECT_FALSE(packets[98].isDecoded);
  EXPECT_TRUE(packets[99].isDecoded);
}

TEST_F(FilmPlayerTest, CrashAfterTheLastPacketIsAFaultToo) {
  ASSERT_EQ(playBehaving("crash late"), PlayEnd::played);
  EXPECT_EQ(all<PlayFault>().front().packet, 99U);
  EXPECT_THAT(all<PlayedPacket>(), SizeIs(100));
}

TEST_F(FilmPlayerTest, CrashBeforeTheFirstPacketEnds) {
  ASSERT_EQ(playBehaving("crash at once"), PlayEnd::played);
  EXPECT_THAT(all<PlayFault>(), SizeIs(2));  // once more without a look ahead
  EXPECT_THAT(all<PlayedPacket>(), SizeIs(0));
}

TEST_F(FilmPlayerTest, HangIsAFaultAndTheRestIsPlayed) {
  ASSERT_EQ(playBehaving("hang", 500ms), PlayEnd::played);
  ASSERT_FALSE(all<PlayFault>().empty());
  EXPECT_EQ(all<PlayFault>().front().kind, PlayFaultKind::hung);
  EXPECT_EQ(all<PlayFault>().front().packet, 30U);
}

TEST_F(FilmPlayerTest, TooMuchTimeIsAHang) {
  ASSERT_EQ(playBehaving("seconds"), PlayEnd::played);
  EXPECT_EQ(all<PlayFault>().front().kind, PlayFaultKind::hung);
}

TEST_F(FilmPlayerTest, LackOfMemoryIsAFault) {
  ASSERT_EQ(playBehaving("throw"), PlayEnd::played);
  EXPECT_EQ(all<PlayFault>().front().kind, PlayFaultKind::noMemory);
  EXPECT_THAT(all<PlayedPacket>(), SizeIs(100));
}

TEST_F(FilmPlayerTest, LiesAreNotBelieved) {
  ASSERT_EQ(playBehaving("lie"), PlayEnd::played);
  EXPECT_EQ(all<PlayFault>().front().kind, PlayFaultKind::crashed);
  EXPECT_EQ(playBehaving("another version"), PlayEnd::noPlayer);
}

TEST_F(FilmPlayerTest, SilenceIsNoPlayer) { EXPECT_EQ(playBehaving("silence", 200ms), PlayEnd::noPlayer); }

TEST_F(FilmPlayerTest, StopEndsThePlayer) {
  cancel.abandon();
  EXPECT_EQ(playBehaving("hang"), PlayEnd::interrupted);
}

TEST_F(FilmPlayerTest, MemoryIsLimited) {
  ASSERT_EQ(playBehaving("memory"), PlayEnd::played);
  if (!isConfined) GTEST_SKIP() << "not confined under a sanitizer";
  EXPECT_GT(all<PlayFault>().at(0).offset, 10U);  // so many MiB it got
  EXPECT_LT(all<PlayFault>().at(0).offset, 200U);
}

class ForbiddenPlayerCall : public FilmPlayerTest, public testing::WithParamInterface<std::string> {};

TEST_P(ForbiddenPlayerCall, EndsTheProgram) {
  ASSERT_EQ(playBehaving(GetParam()), PlayEnd::played);
  if (!isConfined) GTEST_SKIP() << "not confined under a sanitizer";
  ASSERT_FALSE(events.empty());
  EXPECT_EQ(all<PlayFault>().front().signal, SIGSYS);
}

constexpr auto kCallName = [](const auto& call) {
  std::string name = call.param;
  std::ranges::replace(name, ' ', '_');
  return name;
};

INSTANTIATE_TEST_SUITE_P(OneThread, ForbiddenPlayerCall,
                         testing::Values("socket", "connect", "execve", "fork", "kill", "ptrace", "unlinkat",
                                         "renameat2", "ioctl", "prctl", "setuid", "dup", "memfd_create",
                                         "io_uring_setup", "mmap of code", "mprotect of code"),
                         kCallName);
INSTANTIATE_TEST_SUITE_P(Threads, ForbiddenPlayerCall,
                         testing::Values("socket with threads", "connect with threads", "execve with threads",
                                         "fork with threads", "kill with threads", "prctl with threads",
                                         "mprotect of code with threads"),
                         kCallName);

class RefusedPlayerCall : public FilmPlayerTest, public testing::WithParamInterface<std::string> {};

TEST_P(RefusedPlayerCall, IsAnsweredWithAnError) {
  ASSERT_EQ(playBehaving(GetParam()), PlayEnd::played);
  if (!isConfined) GTEST_SKIP() << "not confined under a sanitizer";
  const auto faults = all<PlayFault>();
  ASSERT_THAT(faults, SizeIs(1));
  EXPECT_EQ(faults[0].kind, PlayFaultKind::unreadable);
  EXPECT_NE(faults[0].offset, 0U);
}

INSTANTIATE_TEST_SUITE_P(Linux, RefusedPlayerCall,
                         testing::Values("open", "clone3", "open with threads", "clone3 with threads"), kCallName);

}  // namespace
}  // namespace zelvo::tests
