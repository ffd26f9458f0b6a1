// Deep repairs of copies that a rescue left holes in.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "salvage/scan/rescued_file.h"
#include "salvage/scan/text_transfer.h"
#include "tests/salvage/made_film.h"
#include "tests/salvage/salvage_bench.h"
#include "tests/support/memory_readable.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;
using salvage::ByteSpan;
using salvage::LossCause;
using salvage::SalvageReport;
using salvage::SlotState;
using testing::Each;
using testing::ElementsAre;
using testing::Not;

std::string readThrough(platform::ReadableFile& file, std::uint64_t offset, std::size_t size) {
  Bytes bytes(size, std::byte{'!'});
  bytes.resize(file.readAt(offset, bytes).count);
  std::string text = textAt(bytes, 0, size);
  std::ranges::replace(text, '\0', '.');
  return text;
}

TEST(RescuedFile, ZerosStandForWhatWasNotRescued) {
  MemoryReadable under("abcdefghijklmnop");
  const std::vector<ByteSpan> lost{{0, 2}, {5, 7}, {7, 8}, {14, 20}, {30, 40}};
  salvage::RescuedFile file(under, lost);
  EXPECT_EQ(readThrough(file, 0, 99), "..cde...ijklmn..");
  EXPECT_EQ(readThrough(file, 1, 5), ".cde.");
  EXPECT_EQ(readThrough(file, 6, 1), ".");
  EXPECT_EQ(readThrough(file, 8, 3), "ijk");
  EXPECT_EQ(readThrough(file, 15, 9), ".");
  EXPECT_EQ(readThrough(file, 16, 9), "");
  EXPECT_EQ(readThrough(file, 35, 9), "");
  EXPECT_EQ(file.size(), 16U);
}

TEST(RescuedFile, WhatWasNotRescuedIsNotRead) {
  MemoryReadable under("abcdefghijklmnop");
  under.makeUnreadable(4, 6);
  const std::vector<ByteSpan> lost{{4, 6}};
  salvage::RescuedFile file(under, lost);
  EXPECT_EQ(readThrough(file, 0, 16), "abcd..ghijklmnop");
  under.makeUnreadable(10, 11);
  Bytes bytes(16);
  const platform::IoResult result = file.readAt(0, bytes);
  EXPECT_EQ(result.count, 10U);
  EXPECT_EQ(result.error, std::errc::io_error);
}

/// The film with bytes of a rescue that failed in `lost`: as ddrescue leaves them, or `filled` with what lay there.
struct RescuedFilm {
  RescuedFilm(const MadeFilm& film, std::vector<ByteSpan> lost) : bench(film.bytes) {
    bench.rescue = salvage::FilmRescue{.lost = std::move(lost), .offset = 0};
  }
  SalvageReport perform() { return bench.perform(); }

  SalvageBench bench;
};

std::vector<LossCause> causes(const SalvageReport& report) {
  std::vector<LossCause> found;
  for (const auto& span : report.spans) found.push_back(span.span.cause);
  return found;
}

TEST(RescuedFilm, WhatLiesInUnrescuedBytesIsNotBelieved) {
  for (const bool withIndex : {true, false}) {
    const MadeFilm film(40, 1, withIndex);
    // The bytes are those of the film, yet the map says that nobody read them.
    RescuedFilm rescued(film, {{film.headers[20] - 100, film.headers[24] + 50}});
    const SalvageReport report = rescued.perform();
    EXPECT_EQ(report.verdict, salvage::SalvageVerdict::partial) << withIndex;
    EXPECT_THAT(causes(report), Not(testing::IsEmpty())) << withIndex;
    EXPECT_THAT(causes(report), Each(LossCause::unrescued)) << withIndex;
    const Bytes written = rescued.bench.files.content("/out.avi");
    for (const std::size_t gone : {20U, 21U, 22U, 23U}) {
      EXPECT_EQ(std::search(written.begin(), written.end(), film.payloads[gone].begin(), film.payloads[gone].end()),
                written.end())
          << gone;
    }
    ASSERT_TRUE(report.rescue);
    EXPECT_EQ(report.rescue->places, 1U);
    EXPECT_GE(report.rescue->seconds, 0.08) << withIndex;
  }
}

TEST(RescuedFilm, ZerosOfTheCopyAndBytesOfTheFilmComeOutTheSame) {
  MadeFilm film;
  const std::vector<ByteSpan> lost{{film.headers[8] + 300, film.headers[8] + 812},
                                   {film.headers[30], film.headers[33]}};
  RescuedFilm asItWas(film, lost);
  ASSERT_EQ(asItWas.perform().end, salvage::SalvageEnd::written);
  for (const ByteSpan& span : lost) film.fill(span.begin, span.end - span.begin);
  RescuedFilm zeroed(film, lost);
  ASSERT_EQ(zeroed.perform().end, salvage::SalvageEnd::written);
  EXPECT_EQ(asItWas.bench.files.content("/out.avi"), zeroed.bench.files.content("/out.avi"));
}

TEST(RescuedFilm, AFilmThatWasRescuedWholeIsClean) {
  const MadeFilm film;
  RescuedFilm rescued(film, {});
  const SalvageReport report = rescued.perform();
  EXPECT_EQ(report.verdict, salvage::SalvageVerdict::clean);
  ASSERT_TRUE(report.rescue);
  EXPECT_EQ(report.rescue->places, 0U);
}

TEST(RescuedFilm, HalfAHeaderIsNone) {
  const MadeFilm film;
  // The size of a chunk, the length in the stream's header, an entry of the index.
  const std::uint64_t rate = film.positionOf("vids") + 24;
  RescuedFilm rescued(film, {{rate, rate + 4},
                             {film.headers[10] + 4, film.headers[10] + 12},
                             {film.indexBegin() + 16 * 30 + 8, film.indexBegin() + 16 * 30 + 16}});
  const SalvageReport report = rescued.perform();
  ASSERT_EQ(report.end, salvage::SalvageEnd::written);
  EXPECT_EQ(report.streams.at(0).origin, salvage::HeaderOrigin::synthesised);
  EXPECT_EQ(report.streams.at(1).origin, salvage::HeaderOrigin::own);
  EXPECT_EQ(report.indexedChunks, 79U);
  // The chunk of which only the entry is lost is in the film all the same.
  EXPECT_EQ(report.streams.at(0).of(SlotState::whole).chunks + report.streams.at(1).of(SlotState::whole).chunks, 79U);
  ASSERT_FALSE(report.rescue->gains.empty());
  EXPECT_TRUE(report.rescue->gains.front().holdsHeaders);
  EXPECT_EQ(report.rescue->gains.front().place, (ByteSpan{rate, rate + 4}));
}

TEST(RescuedFilm, AnEndThatWasNotRescuedIsTheDisksFault) {
  MadeFilm film;
  const std::uint64_t whole = film.bytes.size();
  film.cut(film.headers[60] + 100);
  RescuedFilm rescued(film, {{film.bytes.size(), whole}});
  const SalvageReport report = rescued.perform();
  ASSERT_EQ(report.end, salvage::SalvageEnd::written);
  EXPECT_THAT(causes(report), Each(LossCause::unrescued));
  EXPECT_NEAR(report.rescue->seconds, 0.4, 0.1);

  RescuedFilm cutOtherwise(film, {});
  EXPECT_THAT(causes(cutOtherwise.perform()), Each(LossCause::cut));
}

TEST(RescuedFilm, NothingLeftMakesEverythingWanted) {
  const MadeFilm film;
  RescuedFilm rescued(film, {{0, 1000}, {1000, film.bytes.size()}});
  const SalvageReport report = rescued.perform();
  EXPECT_EQ(report.end, salvage::SalvageEnd::noMedia);
  ASSERT_TRUE(report.rescue);
  EXPECT_EQ(report.rescue->wanted, 2U);
}

TEST(RescuedFilm, PlacesAreMovedToTheFilmBeforeItWasTakenForText) {
  Bytes text;
  for (int i = 0; i < 40'000; ++i) {
    if (i % 7 == 0) text.push_back(std::byte{0x0d});
    text.push_back(i % 7 == 0 ? std::byte{0x0a} : std::byte{'x'});
  }
  MemoryFiles files;
  files.put("/in.avi", text);
  const auto file = files.openForReading("/in.avi").file;
  const auto transfer = salvage::TextTransfer::find(*file, [] { return false; });
  ASSERT_NE(transfer, nullptr);
  // Of the file's bytes 0 and 1, then 8 and 9 and so on, the first was put in.
  std::vector<ByteSpan> spans{{0, 2}, {8, 10}, {15, 16}, {40'000, 40'001}, {text.size() - 3, text.size() + 5}};
  transfer->moveToOriginal(spans);
  EXPECT_THAT(spans, ElementsAre(ByteSpan{0, 1}, ByteSpan{7, 8}, ByteSpan{13, 14}, ByteSpan{35'000, 35'000},
                                 ByteSpan{39'998, 40'005}));
}

}  // namespace
}  // namespace zelvo::tests
