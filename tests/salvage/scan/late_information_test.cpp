// Lists "INFO" after the media: found, judged, and written in front of them.
#include "salvage/scan/late_information.h"

#include <gtest/gtest.h>

#include "tests/salvage/salvage_bench.h"
#include "tests/salvage/scanned_film.h"
#include "tests/support/byte_text.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;

Bytes filmWith(std::initializer_list<std::string_view> lists) {
  Bytes bytes = AviBuilder().interleaved(10, 300, 101).build();
  for (const std::string_view content : lists) {
    appendText(bytes, "LIST");
    appendNumber(bytes, static_cast<std::uint32_t>(content.size()));
    appendText(bytes, content);
    if (content.size() % 2 != 0) appendText(bytes, "p");
  }
  return bytes;
}

std::string informationOf(const Bytes& bytes) {
  ScannedFilm film(bytes);
  film.run();
  const Bytes found = salvage::informationAfterMedia(*film.input, film.scan.candidates);
  return textAt(found, 0, found.size());
}

constexpr std::string_view kMade("INFOISFT\4\0\0\0made", 16);

TEST(LateInformation, IsWhatTheListHolds) {
  EXPECT_EQ(informationOf(filmWith({kMade})), std::string_view("ISFT\4\0\0\0made", 12));
  EXPECT_EQ(informationOf(filmWith({})), "");
}

TEST(LateInformation, AnOddChunkMayBeTheLast) {
  EXPECT_EQ(informationOf(filmWith({std::string_view("INFOISFT\3\0\0\0odd", 15)})).size(), 11U);
}

TEST(LateInformation, WhatIsNotFilledByChunksIsNone) {
  EXPECT_EQ(informationOf(filmWith({std::string_view("INFOISFT\5\0\0\0made", 16)})), "");
  EXPECT_EQ(informationOf(filmWith({std::string_view("INFOISFT\4\0\0\0made\0\0", 18)})), "");
  EXPECT_EQ(informationOf(filmWith({std::string_view("INFO\1\2\3\4\4\0\0\0made", 16)})), "");
  const std::string large = "INFOIDIT" + std::string("\0\0\1\0", 4) + std::string(65'536, 'x');
  EXPECT_EQ(informationOf(filmWith({large})), "");
}

TEST(LateInformation, TheLastWholeListCounts) {
  EXPECT_EQ(informationOf(filmWith({kMade, std::string_view("INFOISFT\4\0\0\0last", 16)})).substr(8), "last");
  EXPECT_EQ(informationOf(filmWith({kMade, std::string_view("INFOISFT\5\0\0\0last", 16)})).substr(8), "made");
}

TEST(LateInformation, StandsInTheHeaderOfTheRepairedFilm) {
  SalvageBench run(filmWith({kMade}));
  EXPECT_EQ(run.perform().verdict, salvage::SalvageVerdict::clean);
  const Bytes& out = run.files.content("/out.avi");
  const std::string text = textAt(out, 0, out.size());
  const std::size_t at = text.find(kMade);
  ASSERT_NE(at, std::string::npos);
  EXPECT_LT(at, text.find("movi"));
  EXPECT_EQ(text.find(kMade, at + 1), std::string::npos);
}

}  // namespace
}  // namespace zelvo::tests
