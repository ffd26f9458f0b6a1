// Map files of ddrescue, as it writes them and as nobody should.
#include "salvage/scan/rescue_map.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/memory_readable.h"

namespace zelvo::tests {
namespace {

using salvage::ByteSpan;
using salvage::RescueMap;
using salvage::RescueMapFault;
using salvage::RescueMapProblem;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::string_view kPresent =
    "# Mapfile. Created by GNU ddrescue version 1.27\n"
    "# Command line: ddrescue /dev/sdc copy.avi copy.map\n"
    "# current_pos  current_status  current_pass\n"
    "0x003AE800     +               1\n"
    "#      pos        size  status\n"
    "0x00000000  0x00001000  +\n"
    "0x00001000  0x00000200  -\n"
    "0x00001200  0x00000200  /\n"
    "0x00001400  0x00000C00  +\n"
    "0x00002000  0x00000800  *\n"
    "0x00002800  0x00000800  +\n"
    "0x00003000  0x00001000  ?\n";

std::variant<RescueMap, RescueMapFault> parsed(std::string_view text) {
  MemoryReadable file{std::string(text)};
  return salvage::readRescueMap(file);
}

RescueMap mapOf(std::string_view text) {
  auto read = parsed(text);
  if (const auto* fault = std::get_if<RescueMapFault>(&read)) {
    ADD_FAILURE() << "line " << fault->line << ", problem " << static_cast<int>(fault->problem) << " of:\n" << text;
    return {};
  }
  return std::get<RescueMap>(read);
}

void expectFault(std::string_view text, RescueMapProblem problem, std::uint64_t line) {
  const auto read = parsed(text);
  const auto* fault = std::get_if<RescueMapFault>(&read);
  ASSERT_NE(fault, nullptr) << text;
  EXPECT_EQ(fault->problem, problem) << text;
  EXPECT_EQ(fault->line, line) << text;
}

TEST(RescueMap, WhatIsNotRescuedIsLostAndNeighboursAreOne) {
  const RescueMap map = mapOf(kPresent);
  EXPECT_EQ(map.begin, 0U);
  EXPECT_EQ(map.end, 0x4000U);
  EXPECT_THAT(map.lost, ElementsAre(ByteSpan{0x1000, 0x1400}, ByteSpan{0x2000, 0x2800}, ByteSpan{0x3000, 0x4000}));
}

TEST(RescueMap, OlderFormIsTaken) {
  const RescueMap map = mapOf(
      "# Rescue Logfile. Created by GNU ddrescue version 1.16\n"
      "# Command line: ddrescue -n /dev/hda1 image logfile\n"
      "# current_pos  current_status\n"
      "0x00120000     ?\n"
      "#      pos        size  status\n"
      "0x00000000  0x00117000  +\n"
      "0x00117000  0x00000200  -\n");
  EXPECT_THAT(map.lost, ElementsAre(ByteSpan{0x117000, 0x117200}));
}

TEST(RescueMap, NumbersAreWrittenAsInC) {
  EXPECT_THAT(mapOf("0 +\n8 010 +\n16 0X10 -\n").lost, ElementsAre(ByteSpan{16, 32}));
  EXPECT_EQ(mapOf("0 +\n8 010 +\n16 0X10 -\n").begin, 8U);
  EXPECT_EQ(salvage::rescueNumber("9223372036854775807"), 0x7fffffffffffffffU);
  for (const std::string_view text : {"", "0x", "09", "1k", "-1", "+1", " 1", "0x1g", "9223372036854775808",
                                      "99999999999999999999999", "0xffffffffffffffff"})
    EXPECT_FALSE(salvage::rescueNumber(text)) << text;
}

TEST(RescueMap, LineEndsBlanksAndTrailingTextDoNotMatter) {
  const std::vector<ByteSpan> lost{{512, 1024}};
  EXPECT_EQ(mapOf("0x0 + 1\r\n0 512 +\r\n512 512 -\r\n").lost, lost);
  EXPECT_EQ(mapOf("0x0 +\n\n # a comment\n\t0\t512 + as it was\n512 512 - bad").lost, lost);
  EXPECT_EQ(mapOf("0x0 +\n0 512+\n512 512-\n").lost, lost);
  EXPECT_EQ(
      mapOf("#" + std::string(200'000, 'x') + "\n0x0 +\n0 512 +" + std::string(100'000, ' ') + "\n512 512 -\n").lost,
      lost);
}

TEST(RescueMap, EveryStatusOfARunIsTakenAndNoOther) {
  for (const char status : std::string("?*/-FG+")) mapOf("0 " + std::string(1, status) + "\n0 1 +\n");
  for (const char status : std::string("!a0_fg")) {
    expectFault("0 " + std::string(1, status) + "\n0 1 +\n", RescueMapProblem::unknownStatus, 1);
    expectFault("0 +\n0 1 +\n1 1 " + std::string(1, status) + "\n", RescueMapProblem::unknownStatus, 3);
  }
  expectFault("0 +\n0 1 F\n", RescueMapProblem::unknownStatus, 2);
}

TEST(RescueMap, FaultsAreToldWithTheirLine) {
  expectFault("", RescueMapProblem::noStatus, 0);
  expectFault("# nothing else\n\n", RescueMapProblem::noStatus, 2);
  expectFault("RIFF....AVI LIST\n", RescueMapProblem::noStatus, 1);
  expectFault("# x\n0x0\n0 1 +\n", RescueMapProblem::noStatus, 2);
  expectFault("0 +\n0 10 +\n20 10 -\n", RescueMapProblem::gap, 3);
  expectFault("0 +\n0 10 +\n5 10 -\n", RescueMapProblem::overlap, 3);
  expectFault("0 +\n10 10 +\n\n0 10 -\n", RescueMapProblem::overlap, 4);
  expectFault("0 +\n0 10 +\n10 0 -\n", RescueMapProblem::notABlock, 3);
  expectFault("0 +\n0 10\n", RescueMapProblem::notABlock, 2);
  expectFault("0 +\n0 + 10\n", RescueMapProblem::notABlock, 2);
  expectFault("0 +\n-5 10 +\n", RescueMapProblem::notABlock, 2);
  expectFault("0 +\n0x7ffffffffffffffe 2 +\n", RescueMapProblem::tooFar, 2);
}

TEST(RescueMap, BlocksMayReachUpToTheLastPosition) {
  EXPECT_EQ(mapOf("0 +\n0x7ffffffffffffffe 1 -\n").end, 0x7fffffffffffffffU);
}

TEST(RescueMap, TooManyStretchesAreRefused) {
  std::string text = "0 +\n";
  for (std::size_t i = 0; i <= salvage::kMaxLostStretches; ++i) {
    text += std::to_string(2 * i) + " 1 +\n" + std::to_string(2 * i + 1) + " 1 -\n";
  }
  expectFault(text, RescueMapProblem::tooLong, 2 * salvage::kMaxLostStretches + 3);
}

TEST(RescueMap, AMapThatCannotBeReadIsToldWithItsCause) {
  MemoryReadable file("0 +\n0 10 +\n");
  file.makeUnreadable(4, 8);
  const auto read = salvage::readRescueMap(file);
  ASSERT_TRUE(std::holds_alternative<RescueMapFault>(read));
  EXPECT_EQ(std::get<RescueMapFault>(read).problem, RescueMapProblem::unreadable);
  EXPECT_EQ(std::get<RescueMapFault>(read).cause, std::errc::io_error);
}

TEST(FilmRescue, WhatTheMapDoesNotTellOfWasNotRescued) {
  const auto rescue = salvage::rescueOf(mapOf("0 +\n100 100 +\n200 100 -\n300 100 +\n"), std::nullopt, 1000);
  ASSERT_TRUE(rescue);
  EXPECT_THAT(rescue->lost, ElementsAre(ByteSpan{0, 100}, ByteSpan{200, 300}, ByteSpan{400, 1000}));
  EXPECT_EQ(rescue->lostBytes(), 800U);
}

TEST(FilmRescue, OfTheFilmsOwnMapTheLossesAfterItsCopyCountToo) {
  const RescueMap map = mapOf("0 +\n0 900 +\n900 300 -\n1200 100 +\n1300 100 -\n");
  EXPECT_THAT(salvage::rescueOf(map, std::nullopt, 1000)->lost, ElementsAre(ByteSpan{900, 1200}, ByteSpan{1300, 1400}));
}

TEST(FilmRescue, OfADisksMapOnlyTheFilmsBytesCount) {
  const RescueMap map = mapOf("0 +\n0 900 -\n900 200 +\n1100 100 -\n1200 800 +\n2000 500 ?\n");
  const auto rescue = salvage::rescueOf(map, 800, 1250);
  ASSERT_TRUE(rescue);
  EXPECT_THAT(rescue->lost, ElementsAre(ByteSpan{0, 100}, ByteSpan{300, 400}, ByteSpan{1200, 1250}));
  EXPECT_EQ(rescue->offset, 800U);
  EXPECT_THAT(salvage::rescueOf(map, 1200, 800)->lost, IsEmpty());
}

TEST(FilmRescue, AMapOfSomethingElseIsNone) {
  EXPECT_FALSE(salvage::rescueOf(mapOf("0 +\n0 100 +\n"), 100, 1000));
  EXPECT_FALSE(salvage::rescueOf(mapOf("0 +\n5000 100 +\n"), std::nullopt, 5000));
  EXPECT_FALSE(salvage::rescueOf(mapOf("0 +\n"), std::nullopt, 1000));
  EXPECT_FALSE(salvage::rescueOf(mapOf("0 +\n0 100 +\n"), 0x7fffffffffffffff, 1000));
}

TEST(DomainMap, WantedBytesAreRescuedAndTheRestIsNot) {
  const std::string text = salvage::domainMap({{512, 1024}, {4096, 1ULL << 40U}}, (1ULL << 40U) + 512);
  EXPECT_THAT(mapOf(text).lost,
              ElementsAre(ByteSpan{0, 512}, ByteSpan{1024, 4096}, ByteSpan{1ULL << 40U, (1ULL << 40U) + 512}));
  EXPECT_EQ(mapOf(text).end, (1ULL << 40U) + 512);
  EXPECT_THAT(mapOf(salvage::domainMap({}, 100)).lost, ElementsAre(ByteSpan{0, 100}));
  EXPECT_THAT(mapOf(salvage::domainMap({{0, 100}}, 100)).lost, IsEmpty());
}

}  // namespace
}  // namespace zelvo::tests
