#include "salvage/playing/film_check.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "platform/headless/film_player.h"
#include "tests/support/memory_files.h"
#include "tests/support/played_film.h"

namespace zelvo::tests {
namespace {

using platform::PlayedKind;
using platform::PlayedPacket;
using platform::PlayEvent;
using platform::headless::HeadlessFilmPlayer;
using salvage::ContainerCheck;
using salvage::FilmCheck;
using salvage::FilmVerdict;
using salvage::KeyEntry;

platform::Bytes bytesOf(const std::string& text) {
  const auto* const bytes = reinterpret_cast<const std::byte*>(text.data());
  return {bytes, bytes + text.size()};
}

class FilmCheckTest : public testing::Test {
 protected:
  void put(const std::string& text) {
    files.put("/film.avi", bytesOf(text));
    file = files.openForReading("/film.avi").file;
  }
  [[nodiscard]] ContainerCheck container(const std::string& text) {
    put(text);
    return salvage::checkContainer(*file, [] { return false; });
  }
  [[nodiscard]] FilmCheck check() {
    return salvage::checkFilm({.file = *file, .path = "/film.avi", .player = player, .choices = {}, .cancel = cancel});
  }
  /// What a player tells of a whole film of pictures alone.
  [[nodiscard]] static std::vector<PlayEvent> whole(std::size_t pictures, const std::string& film) {
    std::vector<PlayEvent> events{platform::PlayedStream{.stream = 0, .kind = PlayedKind::video, .hasDecoder = true}};
    std::size_t at = film.find("movi");
    for (std::size_t i = 0; i < pictures; ++i) {
      at = film.find("00dc", at) + 8;
      events.emplace_back(PlayedPacket{.stream = 0,
                                       .number = i,
                                       .time = static_cast<std::int64_t>(i) * 40'000,
                                       .duration = 40'000,
                                       .offset = at,
                                       .size = 10,
                                       .isKey = true,
                                       .isDecoded = true});
      events.emplace_back(
          platform::PlayedPicture{.stream = 0, .packet = i, .type = platform::PictureType::intra, .isKey = true});
    }
    return events;
  }

  MemoryFiles files;
  std::unique_ptr<platform::ReadableFile> file;
  HeadlessFilmPlayer player;
  platform::CancelMark cancel;
};

TEST_F(FilmCheckTest, WholeContainerIsFaultless) {
  const ContainerCheck found = container(PlayedFilm().bytes());
  EXPECT_TRUE(found.isFaultless());
  EXPECT_EQ(found.chunks, 100U);
  EXPECT_EQ(found.indexed, 100U);
}

TEST_F(FilmCheckTest, BytesAfterTheFilmAreHarmless) {
  const ContainerCheck found = container(PlayedFilm().bytes() + std::string(5000, '\0'));
  EXPECT_TRUE(found.isFaultless());
  EXPECT_EQ(found.harmless, 5000U);
}

TEST_F(FilmCheckTest, BytesThatAreNoChunkAreAFaultInsideTheFilm) {
  std::string film = PlayedFilm().bytes();
  const std::size_t chunk = film.find("00dc", film.find("movi") + 5000);
  film.replace(chunk, 8, 8, '\0');
  const ContainerCheck found = container(film);
  ASSERT_GE(found.problemCount, 1U);
  EXPECT_EQ(found.problems[0].kind, avi::ProblemKind::skippedBytes);
  EXPECT_EQ(found.problems[0].offset, chunk);
  EXPECT_EQ(found.harmless, 0U);
}

TEST_F(FilmCheckTest, MissingIndexIsAFault) {
  PlayedFilm film;
  film.hasIndex = false;
  const ContainerCheck found = container(film.bytes());
  EXPECT_TRUE(found.lacksIndex());
  EXPECT_FALSE(found.isFaultless());
}

TEST_F(FilmCheckTest, IndexThatLeavesOutMuchIsAFault) {
  std::string film = PlayedFilm().bytes();
  const std::size_t index = film.find("idx1");
  film.replace(index + 4, 4, le32(16 * 60));
  film.resize(index + 8 + 16 * 60);
  film.replace(4, 4, le32(film.size() - 8));
  const ContainerCheck found = container(film);
  EXPECT_TRUE(found.hasShortIndex());
  EXPECT_EQ(found.indexed, 60U);
  EXPECT_FALSE(found.isFaultless());
}

TEST_F(FilmCheckTest, EntryThatPointsAtNothingIsAFaultWithItsPlace) {
  std::string film = PlayedFilm().bytes();
  const std::size_t index = film.find("idx1");
  film.replace(index + 8 + 16 * 7 + 8, 4, le32(3));
  const ContainerCheck found = container(film);
  ASSERT_EQ(found.problemCount, 1U);
  EXPECT_EQ(found.problems[0].kind, avi::ProblemKind::wrongIndexEntries);
  EXPECT_EQ(found.problems[0].offset, index);
  EXPECT_EQ(found.problems[0].entry->number, 8U);
}

TEST_F(FilmCheckTest, WrongSizeIsAFaultWithItsPlace) {
  std::string film = PlayedFilm().bytes();
  const std::size_t chunk = film.find("00dc", film.find("movi") + 500);
  film.replace(chunk + 4, 4, le32(0x7fffffff));
  const ContainerCheck found = container(film);
  ASSERT_GE(found.problemCount, 1U);
  EXPECT_EQ(found.problems[0].offset, chunk);
}

TEST_F(FilmCheckTest, HeaderThatPromisesMoreIsAFault) {
  PlayedFilm film;
  film.promised = 60;
  ContainerCheck found = container(film.bytes());
  ASSERT_EQ(found.shortStreams.size(), 1U);
  EXPECT_EQ(found.shortStreams[0].promised, 60U);
  EXPECT_EQ(found.shortStreams[0].found, 50U);
  found.metPictures(1, 60);
  EXPECT_EQ(found.shortStreams.size(), 1U);
  found.metPictures(0, 59);
  EXPECT_TRUE(found.isFaultless());
}

TEST_F(FilmCheckTest, FewMissingPicturesAreNoFault) {
  PlayedFilm film;
  film.promised = 52;
  EXPECT_TRUE(container(film.bytes()).isFaultless());
}

TEST_F(FilmCheckTest, WholeFilmPlays) {
  PlayedFilm film;
  film.hasSound = false;
  put(film.bytes());
  player.films.push_back(whole(50, film.bytes()));
  const FilmCheck found = check();
  EXPECT_EQ(found.verdict(), FilmVerdict::plays);
  EXPECT_EQ(found.play.streams.at(0).pictures, 50U);
}

TEST(FilmCheckVerdict, EachFaultByItselfDecidesIt) {
  const auto with = [](const auto& change) {
    FilmCheck check;
    check.play.streams.resize(1);
    check.play.streams[0].told = {.stream = 0, .kind = PlayedKind::sound, .hasDecoder = true};
    change(check);
    return check.verdict();
  };
  EXPECT_EQ(with([](FilmCheck&) {}), FilmVerdict::plays);
  EXPECT_EQ(with([](FilmCheck& check) { check.play.streams[0].errors = 1; }), FilmVerdict::faults);
  EXPECT_EQ(with([](FilmCheck& check) { check.play.streams[0].creep = -0.6; }), FilmVerdict::faults);
  EXPECT_EQ(with([](FilmCheck& check) { check.play.streams.clear(); }), FilmVerdict::faults);
  EXPECT_EQ(with([](FilmCheck& check) { check.play.seeks = {{.end = platform::SeekEnd::outOfStep}}; }),
            FilmVerdict::faults);
  EXPECT_EQ(with([](FilmCheck& check) { check.falseKeys = {{.payload = 7}}; }), FilmVerdict::faults);
  EXPECT_EQ(with([](FilmCheck& check) { check.container.problemCount = 1; }), FilmVerdict::faults);
  EXPECT_EQ(with([](FilmCheck& check) { check.container.chunks = 10; }), FilmVerdict::faults) << "without an index";
  EXPECT_EQ(with([](FilmCheck& check) { check.play.unreadable = 1; }), FilmVerdict::unreadable);
  EXPECT_EQ(with([](FilmCheck& check) { check.container.readFailures.count = 1; }), FilmVerdict::unreadable);
  EXPECT_EQ(with([](FilmCheck& check) { check.end = platform::PlayEnd::noFilm; }), FilmVerdict::unreadable);
}

TEST_F(FilmCheckTest, WrongJumpIsAFault) {
  PlayedFilm film;
  film.hasSound = false;
  put(film.bytes());
  auto events = whole(50, film.bytes());
  events.emplace_back(platform::PlayedSeek{.end = platform::SeekEnd::right});
  events.emplace_back(platform::PlayedSeek{.end = platform::SeekEnd::late});
  player.films.push_back(events);
  const FilmCheck found = check();
  EXPECT_EQ(found.wrongSeeks(), 1U);
  EXPECT_EQ(found.verdict(), FilmVerdict::faults);
}

TEST_F(FilmCheckTest, WhatCannotBePlayedIsUnreadable) {
  put(PlayedFilm().bytes());
  EXPECT_EQ(check().verdict(), FilmVerdict::unreadable);
  EXPECT_EQ(check().end, platform::PlayEnd::noPlayer);
  player.films.push_back({platform::PlayFault{.kind = platform::PlayFaultKind::unreadable, .offset = 7}});
  EXPECT_EQ(check().verdict(), FilmVerdict::unreadable);
  EXPECT_EQ(check().play.firstUnreadable, 7U);
}

TEST_F(FilmCheckTest, FilmWithoutStreamsDoesNotPlay) {
  put(PlayedFilm().bytes());
  player.films.push_back({});
  EXPECT_EQ(check().verdict(), FilmVerdict::faults);
}

TEST_F(FilmCheckTest, FalseKeysCountWhereTheIndexNamesThem) {
  PlayedFilm film;
  film.hasSound = false;
  film.isKey = [](std::size_t number) { return number != 20; };
  put(film.bytes());
  auto events = whole(50, film.bytes());
  for (const std::size_t picture : {std::size_t{10}, std::size_t{20}}) {
    auto& told = std::get<platform::PlayedPicture>(events[2 + 2 * picture]);
    told.type = platform::PictureType::predicted;
    told.isKey = false;
  }
  player.films.push_back(events);
  const FilmCheck found = check();
  EXPECT_EQ(found.play.streams.at(0).falseKeys.size(), 2U);
  EXPECT_EQ(found.falseKeyPictures(), 1U);
  EXPECT_EQ(found.verdict(), FilmVerdict::faults);

  const auto out = files.openForWriting("/film.avi");
  EXPECT_FALSE(salvage::dropKeyFlags(*out.file, found.falseKeys));

  film.isKey = [](std::size_t number) { return number != 10 && number != 20; };
  EXPECT_EQ(files.content("/film.avi"), bytesOf(film.bytes()));
  EXPECT_EQ(check().verdict(), FilmVerdict::plays);
}

TEST_F(FilmCheckTest, KeysOfStandardIndexesLoseTheirFlag) {
  // A standard index of three pictures: bit 31 of a size means that it is none.
  const std::string media = chunk("00dc", "abcd") + chunk("00dc", "efgh") + chunk("00dc", "ijkl");
  const std::size_t first = 12 + 12;
  std::string index = le16(2) + std::string("\0\1", 2) + le32(3) + "00dc" + le32(first) + le32(0) + le32(0);
  for (std::size_t i = 0; i < 3; ++i) index += le32(8 + 12 * i) + le32(4 | (i == 1 ? 0x80000000U : 0U));
  const std::string film = list("RIFF", "AVI ", list("LIST", "movi", media + chunk("ix00", index)));
  put(film);
  const std::vector<std::uint64_t> payloads{first + 8, first + 20, first + 32};

  const std::vector<KeyEntry> entries = salvage::keyEntries(*file, payloads, [] { return false; });

  const std::size_t table = film.find("ix00") + 8 + 24;
  ASSERT_EQ(entries.size(), 2U);
  EXPECT_EQ(entries[0], (KeyEntry{first + 8, table + 4, 0x80000004U}));
  EXPECT_EQ(entries[1], (KeyEntry{first + 32, table + 20, 0x80000004U}));
}

TEST_F(FilmCheckTest, OffsetsOfAnOldIndexMayCountFromTheFile) {
  PlayedFilm film;
  film.hasSound = false;
  std::string bytes = film.bytes();
  const std::size_t movi = bytes.find("movi");
  const std::size_t index = bytes.find("idx1") + 8;
  for (std::size_t i = 0; i < 50; ++i) bytes.replace(index + 16 * i + 8, 4, le32(movi + 4 + 18 * i));
  put(bytes);
  const std::vector<std::uint64_t> payloads{movi + 12};
  const auto entries = salvage::keyEntries(*file, payloads, [] { return false; });
  ASSERT_EQ(entries.size(), 1U);
  EXPECT_EQ(entries[0].field, index + 4);
}

TEST_F(FilmCheckTest, WriteThatFailsIsAnswered) {
  put(PlayedFilm().bytes());
  MemoryFile& target = files.at("/film.avi");
  target.badWriteFrom = 0;
  target.writeError = std::make_error_code(std::errc::no_space_on_device);
  const auto out = files.openForWriting("/film.avi");
  EXPECT_EQ(salvage::dropKeyFlags(*out.file, std::vector<KeyEntry>{{0, 100, 0}}), target.writeError);
}

TEST_F(FilmCheckTest, StopIsAnInterruption) {
  put(PlayedFilm().bytes());
  player.films.push_back({});
  cancel.abandon();
  EXPECT_EQ(check().end, platform::PlayEnd::interrupted);
}

}  // namespace
}  // namespace zelvo::tests
