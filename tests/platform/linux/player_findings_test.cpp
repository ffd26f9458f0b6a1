#include "platform/linux/player_findings.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace zelvo::tests {
namespace {

using platform::PlayedKind;
using platform::PlayedPacket;
using platform::PlayedStream;
using platform::PlayEvent;
using platform::linux_::PlayerFindings;
using platform::linux_::PlayerRecord;
using platform::linux_::PlayerRecordKind;

class PlayerFindingsTest : public testing::Test {
 protected:
  [[nodiscard]] bool say(const PlayerRecord& record) { return findings.read(std::as_bytes(std::span(&record, 1))); }
  void greet() { ASSERT_TRUE(say(hello())); }
  /// A film of a stream of pictures and one of sound.
  void begin() {
    greet();
    ASSERT_TRUE(say({.kind = PlayerRecordKind::stream, .a = 0, .b = 320ULL << 32U | 240U}));
    ASSERT_TRUE(say({.kind = PlayerRecordKind::stream, .stream = 1, .a = 1, .b = 44100ULL << 32U | 2U}));
  }
  [[nodiscard]] static PlayerRecord hello() {
    return {.kind = PlayerRecordKind::hello,
            .flags = 1,
            .a = platform::linux_::kPlayerMagic,
            .b = platform::linux_::kPlayerVersion};
  }
  [[nodiscard]] static PlayerRecord packet(std::uint64_t number) {
    return {.kind = PlayerRecordKind::packet, .number = number, .a = 40'000, .b = 1000};
  }

  std::vector<PlayEvent> events;
  PlayerFindings findings{[this](const PlayEvent& event) { events.push_back(event); }};
};

TEST_F(PlayerFindingsTest, StreamsAreTakenInTheirOrder) {
  begin();
  ASSERT_EQ(events.size(), 2U);
  EXPECT_EQ(std::get<PlayedStream>(events[0]).width, 320U);
  EXPECT_EQ(std::get<PlayedStream>(events[1]).rate, 44100U);
  EXPECT_TRUE(findings.isConfined());
  EXPECT_FALSE(say({.kind = PlayerRecordKind::stream, .stream = 3, .a = 1}));
}

TEST_F(PlayerFindingsTest, PiecesMayBeOfAnySize) {
  greet();
  PlayerRecord stream{.kind = PlayerRecordKind::stream, .a = 0, .b = 320ULL << 32U | 240U};
  stream.text = {'x', '\x1b', 'y'};
  for (const std::byte byte : std::as_bytes(std::span(&stream, 1))) EXPECT_TRUE(findings.read({&byte, 1}));
  ASSERT_EQ(events.size(), 1U);
  EXPECT_EQ(std::get<PlayedStream>(events[0]).codec, "x?y");
}

TEST_F(PlayerFindingsTest, NothingCountsBeforeTheGreeting) {
  EXPECT_FALSE(say({.kind = PlayerRecordKind::end}));
  EXPECT_FALSE(say(hello()));
  EXPECT_FALSE(findings.isGreeted());
}

TEST_F(PlayerFindingsTest, AnotherVersionIsNotUnderstood) {
  PlayerRecord other = hello();
  other.b = platform::linux_::kPlayerVersion + 1;
  EXPECT_FALSE(say(other));
}

TEST_F(PlayerFindingsTest, GreetingComesOnce) {
  greet();
  EXPECT_FALSE(say(hello()));
}

TEST_F(PlayerFindingsTest, PacketsRise) {
  begin();
  EXPECT_TRUE(say(packet(4)));
  EXPECT_TRUE(say(packet(6)));
  EXPECT_EQ(findings.nextPacket(), 7U);
  EXPECT_FALSE(say(packet(6)));
}

TEST_F(PlayerFindingsTest, NumbersThatNoFilmHasAreRefused) {
  constexpr std::int64_t kFar = std::numeric_limits<std::int64_t>::max();
  const std::vector<PlayerRecord> wrong = {
      {.kind = PlayerRecordKind::packet, .stream = 2},
      {.kind = PlayerRecordKind::packet, .number = std::numeric_limits<std::uint64_t>::max()},
      {.kind = PlayerRecordKind::packet, .time = kFar},
      {.kind = PlayerRecordKind::packet, .time = -kFar},
      {.kind = PlayerRecordKind::packet, .a = std::numeric_limits<std::uint64_t>::max()},
      {.kind = PlayerRecordKind::packet, .b = std::numeric_limits<std::uint64_t>::max() - 1},
      {.kind = PlayerRecordKind::stream, .stream = 2, .a = 4},
      {.kind = PlayerRecordKind::stream, .stream = 2, .a = 0, .b = 70'000},
      {.kind = PlayerRecordKind::picture, .number = 0},  // of a packet that has not come
      {.kind = PlayerRecordKind::seek, .number = 99},
      {.kind = PlayerRecordKind::seek, .time = kFar},
      {.kind = PlayerRecordKind::noFilm},
      {.kind = static_cast<PlayerRecordKind>(0)},
      {.kind = static_cast<PlayerRecordKind>(11)},
  };
  for (const PlayerRecord& record : wrong) {
    events.clear();
    findings.~PlayerFindings();
    new (&findings) PlayerFindings([this](const PlayEvent& event) { events.push_back(event); });
    begin();
    EXPECT_FALSE(say(record)) << "record " << &record - wrong.data();
    EXPECT_EQ(events.size(), 2U);
    EXPECT_FALSE(say(packet(9))) << "nothing counts after it";
  }
}

TEST_F(PlayerFindingsTest, ResultsFollowOnTheirPacket) {
  begin();
  ASSERT_TRUE(say(packet(0)));
  EXPECT_TRUE(say({.kind = PlayerRecordKind::picture, .flags = 3, .a = 2}));
  EXPECT_TRUE(say({.kind = PlayerRecordKind::sound, .stream = 1, .a = 1152, .b = 44100}));
  EXPECT_TRUE(say({.kind = PlayerRecordKind::fault, .a = 1, .b = PlayedPacket::kNowhere}));
  EXPECT_FALSE(say({.kind = PlayerRecordKind::sound, .stream = 1, .a = 1152, .b = 0}));
}

TEST_F(PlayerFindingsTest, OnlyTheStarterTellsOfCrashes) {
  begin();
  ASSERT_TRUE(say(packet(0)));
  EXPECT_FALSE(
      say({.kind = PlayerRecordKind::fault, .a = static_cast<std::uint64_t>(platform::PlayFaultKind::crashed)}));
}

TEST_F(PlayerFindingsTest, NothingComesAfterTheEnd) {
  begin();
  EXPECT_TRUE(say({.kind = PlayerRecordKind::end}));
  EXPECT_TRUE(findings.isEnded());
  EXPECT_FALSE(say({.kind = PlayerRecordKind::alive}));
}

TEST_F(PlayerFindingsTest, JumpsComeLast) {
  begin();
  ASSERT_TRUE(say({.kind = PlayerRecordKind::seek, .time = 5}));
  EXPECT_TRUE(findings.seeks());
  EXPECT_FALSE(say(packet(0)));
}

}  // namespace
}  // namespace zelvo::tests
