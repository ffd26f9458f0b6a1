// Quick looks, against what is there and what a deep repair keeps.
#include "salvage/triage/triage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "tests/salvage/triage_bench.h"
#include "tests/support/avi_builder.h"
#include "tests/support/memory_files.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;
using salvage::TriageHeaders;
using salvage::TriageKind;
using salvage::TriageLimits;
using salvage::TriageReport;
using testing::DoubleNear;

/// A small film is large with them: 64 places of 4 KiB.
constexpr TriageLimits kFewPlaces{.bytes = 64 * 4096, .places = 64, .ends = 16'384};

double sum(const TriageReport& report) {
  double all = 0;
  for (const double share : report.shares) all += share;
  return all;
}

TEST(Triage, OfAnUndamagedFilmNearlyAllComesBack) {
  const MadeFilm film(600);
  for (const TriageLimits& limits : {TriageLimits{}, kFewPlaces}) {
    const TriageReport report = triageOf(film.bytes, limits);
    EXPECT_TRUE(report.isComplete);
    EXPECT_EQ(report.headers, TriageHeaders::own);
    EXPECT_GT(report.kept.share, 0.95);
    EXPECT_GT(report.of(TriageKind::film), 0.95);
    EXPECT_THAT(sum(report), DoubleNear(1, 1e-9));
    EXPECT_LE(report.kept.low, report.kept.share);
    EXPECT_GE(report.kept.high, report.kept.share);
    ASSERT_EQ(report.streams.size(), 2U);
    EXPECT_GT(report.streams[0].share, 0.4);
    EXPECT_GT(report.streams[1].share, 0.4);
  }
}

TEST(Triage, ZerosNoiseTextAndOtherFormatsAreToldApart) {
  std::mt19937 random(5);
  Bytes noise(1'000'000);
  for (std::byte& byte : noise) byte = static_cast<std::byte>(random());
  Bytes text;
  while (text.size() < 1'000'000) appendText(text, "what was written down here is no film, but plain words 0123\n");
  Bytes other = text;
  overwrite(other, 0, "%PDF-1.4");
  constexpr TriageLimits kLargePlaces{.bytes = 16 * 16'384, .places = 16, .ends = 16'384};
  for (const TriageLimits& limits : {TriageLimits{}, kLargePlaces}) {
    EXPECT_TRUE(triageOf(Bytes(1'000'000), limits).isAll(TriageKind::zeros));
    EXPECT_TRUE(triageOf(noise, limits).isAll(TriageKind::noise));
    EXPECT_TRUE(triageOf(text, limits).isAll(TriageKind::text));
    const TriageReport pdf = triageOf(other, limits);
    EXPECT_TRUE(pdf.isAll(TriageKind::otherFormat));
    EXPECT_EQ(pdf.format, "PDF document");
    for (const Bytes& bytes : {Bytes(1'000'000), noise, text, other}) EXPECT_EQ(triageOf(bytes, limits).kept.share, 0);
  }
}

TEST(Triage, AnEmptyFileHasNothing) {
  const TriageReport report = triageOf({});
  EXPECT_TRUE(report.isComplete);
  EXPECT_EQ(report.kept.share, 0);
  EXPECT_EQ(sum(report), 0);
}

TEST(Triage, LostHeadersAreTold) {
  MadeFilm film(600);
  film.fill(0, film.headers[0] - 12);
  for (const TriageLimits& limits : {TriageLimits{}, kFewPlaces}) {
    const TriageReport report = triageOf(film.bytes, limits);
    EXPECT_EQ(report.headers, TriageHeaders::lost);
    // Nothing tells what its pictures are, so its sound alone comes back.
    EXPECT_THAT(report.kept.share, DoubleNear(keptOf(film.bytes), 0.1));
    ASSERT_EQ(report.streams.size(), 1U);
    EXPECT_EQ(report.streams[0].stream.formatTag, 1);
  }
  MadeFilm half(600);
  half.fill(half.positionOf("auds"), 8);
  EXPECT_EQ(triageOf(half.bytes).headers, TriageHeaders::partlyLost);
}

TEST(Triage, SharesFollowTheBytes) {
  MadeFilm film(600);
  const std::uint64_t from = film.headers[600];
  const std::uint64_t size = film.bytes.size() - from;
  film.fill(from, size);
  const double zeros = static_cast<double>(size) / static_cast<double>(film.bytes.size());
  EXPECT_THAT(triageOf(film.bytes).of(TriageKind::zeros), DoubleNear(zeros, 0.01));
  EXPECT_THAT(triageOf(film.bytes, kFewPlaces).of(TriageKind::zeros), DoubleNear(zeros, 0.06));
}

TEST(Triage, ALargeFileIsReadInFewPlacesAndTheSameOnes) {
  MemoryFiles files;
  constexpr std::uint64_t kSize = (std::uint64_t{4} << 30U) + 12'345;
  files.putSparse("/in.avi", kSize);
  MemoryFile& content = files.at("/in.avi");
  std::vector<std::pair<std::uint64_t, std::size_t>> reads;
  content.onRead = [&](std::uint64_t offset, std::size_t size) { reads.emplace_back(offset, size); };
  const auto file = files.openForReading("/in.avi").file;
  const salvage::TriageSample sample = salvage::sampleFile(*file, {}, [] { return false; });
  EXPECT_TRUE(sample.isComplete);
  EXPECT_LE(reads.size(), 256U);
  EXPECT_GE(reads.size(), 250U);
  std::uint64_t bytes = 0;
  std::uint64_t first = 0;
  std::uint64_t last = 0;
  constexpr std::uint64_t kEnd = std::uint64_t{1} << 20U;
  for (const auto& [offset, size] : reads) {
    bytes += size;
    if (offset < kEnd) first += size;
    if (offset >= kSize - kEnd - 4096) last += size;
  }
  EXPECT_LE(bytes, std::uint64_t{64} << 20U);
  EXPECT_EQ(first, kEnd);
  EXPECT_GE(last, kEnd);
  EXPECT_TRUE(std::ranges::is_sorted(reads));
  const auto again = std::exchange(reads, {});
  EXPECT_TRUE(salvage::sampleFile(*file, {}, [] { return false; }).isComplete);
  EXPECT_EQ(reads, again);
  // Each sixteenth of the file was looked at.
  for (std::uint64_t part = 0; part < 16; ++part) {
    EXPECT_TRUE(std::ranges::any_of(reads, [&](const auto& read) {
      return read.first >= part * kSize / 16 && read.first < (part + 1) * kSize / 16;
    })) << part;
  }
}

/// A film of any size whose media are one stretch of chunks again and again.
class EndlessFilm final : public platform::ReadableFile {
 public:
  EndlessFilm(const MadeFilm& film, std::uint64_t size)
      : head_(film.part(0, film.headers.front())),
        media_(film.part(film.headers.front(), film.indexBegin() - 8 - film.headers.front())),
        size_(size) {}
  platform::IoResult readAt(std::uint64_t offset, std::span<std::byte> into) override {
    ++reads;
    if (offset >= size_) return {};
    into = into.first(static_cast<std::size_t>(std::min<std::uint64_t>(into.size(), size_ - offset)));
    for (std::size_t done = 0; done < into.size();) {
      const std::uint64_t at = offset + done;
      const bool isHead = at < head_.size();
      const Bytes& from = isHead ? head_ : media_;
      const auto place = static_cast<std::size_t>(isHead ? at : (at - head_.size()) % media_.size());
      const std::size_t part = std::min(into.size() - done, from.size() - place);
      std::copy_n(from.begin() + static_cast<std::ptrdiff_t>(place), part,
                  into.begin() + static_cast<std::ptrdiff_t>(done));
      done += part;
    }
    bytesRead += into.size();
    return {into.size(), {}};
  }
  std::uint64_t size() override { return size_; }

  std::uint64_t reads = 0;
  std::uint64_t bytesRead = 0;

 private:
  const Bytes head_;
  const Bytes media_;
  const std::uint64_t size_;
};

TEST(Triage, OfADenseFilmOfFourGibibytesFewPlacesAreRead) {
  EndlessFilm file(MadeFilm(400), (std::uint64_t{4} << 30U) + 777);
  const platform::CancelMark cancel;
  platform::headless::HeadlessWorkers workers;
  const TriageReport report = salvage::triage({.input = file, .cancel = cancel, .workers = workers});
  EXPECT_LE(file.reads, 256U);
  EXPECT_LE(file.bytesRead, std::uint64_t{64} << 20U);
  EXPECT_EQ(report.places, file.reads);
  EXPECT_EQ(report.bytesRead, file.bytesRead);
  EXPECT_GT(report.of(TriageKind::film), 0.99);
  EXPECT_GT(report.kept.share, 0.97);
  EXPECT_GE(report.kept.low, 0.9);
}

TEST(Triage, ALargeFilmOfLargeChunksIsAFilmAllOver) {
  AviBuilder builder;
  for (int i = 0; i < 60; ++i) builder.chunks.push_back({"00dc", 50'000 + static_cast<std::uint32_t>(i)});
  Bytes bytes = builder.build();
  std::mt19937 random(2);
  for (std::size_t i = 3000; i < bytes.size(); ++i) {
    if (bytes[i] == std::byte{0x55}) bytes[i] = static_cast<std::byte>(0x80 + random() % 32);
  }
  const TriageReport report = triageOf(bytes, kFewPlaces);
  EXPECT_FALSE(report.isWhole);
  EXPECT_GT(report.of(TriageKind::film), 0.9);
  EXPECT_GT(report.kept.share, 0.9);
}

TEST(Triage, PicturesLargerThanAPlaceAreKeptWithoutHeadersToo) {
  // None of them lies whole in a place, and without headers only whole ones show what they are; a deep repair sees
  // that.
  AviBuilder builder;
  for (int i = 0; i < 200; ++i) {
    builder.chunks.push_back({"00dc", 6000 + static_cast<std::uint32_t>(i)});
    builder.chunks.push_back({"01wb", 320});
  }
  Bytes bytes = builder.build();
  const std::string_view jpeg("\xff\xd8\xff\xc0\x00\x11\x08\x00\xf0\x01\x40\x03\x01\x22\x00\x02\x11\x01\x03\x11\x01",
                              21);
  const auto headers = chunkOffsets(builder);
  for (std::size_t i = 0; i < headers.size(); i += 2) overwrite(bytes, static_cast<std::size_t>(headers[i]) + 8, jpeg);
  std::fill_n(bytes.begin(), headers.front() + 20'000, std::byte{0});
  const double kept = keptOf(bytes);
  EXPECT_GT(kept, 0.8);
  const TriageReport report = triageOf(bytes, kFewPlaces);
  EXPECT_FALSE(report.isWhole);
  EXPECT_THAT(report.kept.share, DoubleNear(kept, 0.1));
}

TEST(Triage, AStopEndsItBetweenReads) {
  const MadeFilm film(600);
  int asked = 0;
  CountedFile file(film.bytes);
  const auto sample = salvage::sampleFile(
      file, {}, [&] { return ++asked > 3; }, kFewPlaces);
  EXPECT_FALSE(sample.isComplete);
  EXPECT_EQ(file.reads, 3U);
  platform::CancelMark cancel;
  cancel.abandon();
  platform::headless::HeadlessWorkers workers;
  EXPECT_FALSE(salvage::triage({.input = file, .cancel = cancel, .workers = workers}).isComplete);
}

TEST(Triage, WhatWasNotRescuedIsNeitherReadNorBelieved) {
  const MadeFilm film(600);
  const std::uint64_t middle = film.bytes.size() / 2 / 4096 * 4096;
  const salvage::FilmRescue rescue{.lost = {{middle, film.bytes.size()}}, .offset = 0};
  const TriageReport whole = triageOf(film.bytes, {}, &rescue);
  EXPECT_THAT(whole.of(TriageKind::unrescued), DoubleNear(0.5, 0.01));
  EXPECT_THAT(whole.kept.share, DoubleNear(0.5, 0.03));
  const TriageReport sampled = triageOf(film.bytes, kFewPlaces, &rescue);
  EXPECT_THAT(sampled.of(TriageKind::unrescued), DoubleNear(0.5, 0.05));
  EXPECT_LT(sampled.bytesRead, kFewPlaces.bytes * 6 / 10);
}

TEST(Triage, WhatCannotBeReadIsToldAndCostsItsPlaceAlone) {
  const MadeFilm film(600);
  SalvageBench bench(film.bytes);
  MemoryFiles files;
  MemoryFile& content = files.put("/in.avi", film.bytes);
  content.badReadStart = 500'000;
  content.badReadEnd = 500'001;
  content.readError = std::make_error_code(std::errc::io_error);
  const auto file = files.openForReading("/in.avi").file;
  const platform::CancelMark cancel;
  platform::headless::HeadlessWorkers workers;
  const TriageReport report = salvage::triage({.input = *file, .cancel = cancel, .workers = workers});
  EXPECT_EQ(report.failedReads, 1U);
  EXPECT_GT(report.of(TriageKind::unreadable), 0);
  EXPECT_LT(report.of(TriageKind::unreadable), 0.2);
}

/// Of a hundred damages, how many estimates are off by more than a tenth.
int missesOf(const TriageLimits& limits, std::string& told) {
  const MadeFilm film(400);
  int misses = 0;
  for (unsigned seed = 1; seed <= 100; ++seed) {
    const ChanceDamage damaged = damagedByChance(film, seed);
    const double estimate = triageOf(damaged.bytes, limits).kept.share;
    const double kept = keptOf(damaged.bytes);
    if (std::abs(estimate - kept) <= 0.1) continue;
    ++misses;
    told += damaged.name + " kept " + std::to_string(kept) + ", estimated " + std::to_string(estimate) + "\n";
  }
  return misses;
}

TEST(Triage, EstimateIsWithinATenthOfWhatIsKept) {
  std::string told;
  EXPECT_LE(missesOf({}, told), 5) << told;
}

TEST(Triage, SoItIsOfAFilmTooLargeToBeReadWhole) {
  std::string told;
  EXPECT_LE(missesOf({.bytes = 128 * 4096, .places = 128, .ends = 16'384}, told), 5) << told;
}

}  // namespace
}  // namespace zelvo::tests
