// Which stream is which when headers are lost.
#include "salvage/headers/film_header.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/salvage/codec_films.h"
#include "tests/salvage/scanned_film.h"
#include "tests/support/byte_text.h"

namespace zelvo::tests {
namespace {

using salvage::FilmHeader;
using salvage::SeenStream;
using salvage::SurvivingHeaders;
using testing::ElementsAre;

std::vector<SeenStream> seen(std::initializer_list<std::string_view> codes) {
  std::vector<SeenStream> streams;
  for (const std::string_view code : codes) {
    const auto number = static_cast<std::uint8_t>((code[0] - '0') * 10 + code[1] - '0');
    streams.push_back({number, avi::FourCC::at(bytesOf(code)), 9});
  }
  return streams;
}

std::vector<int> numbersOf(const FilmHeader& header) {
  std::vector<int> numbers;
  for (const auto& stream : header.streams) numbers.push_back(stream.number);
  return numbers;
}

SurvivingHeaders with(std::vector<salvage::SurvivingStream> streams, std::optional<std::uint32_t> claimed) {
  SurvivingHeaders headers;
  headers.streams = std::move(streams);
  if (claimed) headers.main = salvage::SurvivingMainHeader{.streams = *claimed};
  return headers;
}

salvage::SurvivingStream video() { return pictureStream("XVID"); }
salvage::SurvivingStream sound() { return soundStream(1, 1, 8000, 2, 16, 2); }

TEST(FilmHeader, CompleteHeadersAreInTheOrderOfNumbers) {
  const auto header = salvage::filmHeader(with({video(), sound()}, 2), seen({"00db", "01wb"}));
  EXPECT_THAT(numbersOf(header), ElementsAre(0, 1));
  EXPECT_EQ(header.streams[0].code, avi::FourCC{"00db"});
  EXPECT_EQ(header.streams[1].code, avi::FourCC{"01wb"});
}

TEST(FilmHeader, StreamsWithoutChunksStayWithTheirUsualCode) {
  const auto header = salvage::filmHeader(with({video(), sound(), sound()}, 3), seen({"00dc", "01wb"}));
  EXPECT_THAT(numbersOf(header), ElementsAre(0, 1, 2));
  EXPECT_EQ(header.streams[2].code, avi::FourCC{"02wb"});
}

TEST(FilmHeader, ASurvivorIsTheLastStream) {
  EXPECT_THAT(numbersOf(salvage::filmHeader(with({sound()}, 2), seen({"00dc", "01wb"}))), ElementsAre(1));
  EXPECT_THAT(numbersOf(salvage::filmHeader(with({sound()}, std::nullopt), seen({"00dc", "01wb", "02wb"}))),
              ElementsAre(2));
}

TEST(FilmHeader, ASurvivorMustBeOfItsChunksType) {
  EXPECT_THAT(numbersOf(salvage::filmHeader(with({video()}, std::nullopt), seen({"00dc", "01wb"}))), ElementsAre(0));
  EXPECT_THAT(numbersOf(salvage::filmHeader(with({video(), sound()}, 3), seen({"00dc", "01wb", "02tx"}))),
              ElementsAre(0, 1));
}

TEST(FilmHeader, ASuperIndexNamesItsStream) {
  auto stream = sound();
  stream.superIndex = salvage::SuperIndex{avi::FourCC{"01wb"}, {}};
  EXPECT_THAT(numbersOf(salvage::filmHeader(with({stream}, 3), seen({"00dc", "01wb", "02wb"}))), ElementsAre(1));
}

TEST(FilmHeader, StreamsWithoutHeaderAreToldAndCanBeAdded) {
  const auto streams = seen({"00dc", "01wb"});
  FilmHeader header = salvage::filmHeader(with({sound()}, 2), streams);
  const auto without = salvage::streamsWithoutHeader(header, streams);
  ASSERT_EQ(without.size(), 1U);
  EXPECT_EQ(without[0].number, 0);
  salvage::addStream(header, {0, without[0].code, video(), salvage::HeaderOrigin::synthesised});
  EXPECT_THAT(numbersOf(header), ElementsAre(0, 1));
  EXPECT_TRUE(salvage::streamsWithoutHeader(header, streams).empty());
}

TEST(FilmHeader, NothingSurvivesNothingIsMade) {
  EXPECT_TRUE(salvage::filmHeader(with({}, std::nullopt), seen({"00dc"})).streams.empty());
}

TEST(SeenStreams, AreThoseWithProvedChunksUnderTheirCommonCode) {
  AviBuilder film;
  film.chunks = {{"00db", 100}, {"00dc", 90}, {"00dc", 80}, {"01wb", 70}, {"01wb", 60}, {"00dc", 50}};
  ScannedFilm scanned(film.build());
  scanned.run();
  const auto found = salvage::seenStreams(scanned.scan.candidates, scanned.chain, scanned.codes);
  ASSERT_EQ(found.size(), 2U);
  EXPECT_EQ(found[0].code, avi::FourCC{"00dc"});
  EXPECT_EQ(found[0].chunks, 4U);
  EXPECT_EQ(found[1].code, avi::FourCC{"01wb"});
}

TEST(SeenStreams, OneChunkAloneMayBeChance) {
  AviBuilder film;
  film.chunks = {{"00dc", 90}, {"00dc", 80}, {"01wb", 70}};
  ScannedFilm scanned(film.build());
  scanned.run();
  EXPECT_EQ(salvage::seenStreams(scanned.scan.candidates, scanned.chain, scanned.codes).size(), 1U);
}

TEST(SeenStreams, CodesTellTheTypeAndBack) {
  for (const auto& [code, type] :
       {std::pair{avi::FourCC{"12wb"}, avi::kAuds}, std::pair{avi::FourCC{"12dc"}, avi::kVids},
        std::pair{avi::FourCC{"12tx"}, avi::FourCC{"txts"}}, std::pair{avi::FourCC{"12__"}, avi::FourCC{"iavs"}}}) {
    EXPECT_EQ(salvage::streamTypeOf(code), type);
    EXPECT_EQ(salvage::usualCode(type, 12), code);
  }
  EXPECT_EQ(salvage::streamTypeOf(avi::FourCC{"00pc"}), avi::kVids);
}

}  // namespace
}  // namespace zelvo::tests
