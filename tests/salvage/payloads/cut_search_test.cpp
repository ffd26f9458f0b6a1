#include "salvage/payloads/cut_search.h"

#include <gtest/gtest.h>

#include <random>

#include "tests/salvage/known_pictures.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;
using salvage::DecodedTrial;
using salvage::PayloadNeighbours;
using salvage::searchCut;
using salvage::TrialBudget;

Bytes bytesOfChance(std::size_t size, unsigned seed) {
  std::mt19937 random(seed);
  Bytes bytes(size);
  for (std::byte& byte : bytes) byte = static_cast<std::byte>(random() % 256);
  return bytes;
}

class CutSearchTest : public testing::Test {
 protected:
  [[nodiscard]] Bytes withForeignBytes(std::uint32_t cut) const {
    Bytes bytes(payload.begin(), payload.begin() + cut);
    bytes.insert(bytes.end(), foreign.begin(), foreign.end());
    bytes.insert(bytes.end(), payload.begin() + cut, payload.end());
    return bytes;
  }
  [[nodiscard]] std::optional<std::uint32_t> search(const Bytes& bytes, const std::vector<std::uint32_t>& likely = {}) {
    DecodedTrial trial(decoder, stream, neighbours, budget);
    return searchCut(trial, bytes, static_cast<std::uint32_t>(payload.size()), likely);
  }
  /// The payload that a search has at this cut.
  [[nodiscard]] Bytes cutAt(const Bytes& bytes, std::uint32_t cut) const {
    Bytes tried(bytes.begin(), bytes.begin() + cut);
    tried.insert(tried.end(), bytes.begin() + cut + static_cast<std::ptrdiff_t>(foreign.size()), bytes.end());
    return tried;
  }

  Bytes payload = bytesOfChance(4000, 1);
  Bytes foreign = bytesOfChance(777, 2);
  Bytes key = bytesOfChance(3000, 3);
  Bytes next = bytesOfChance(2000, 4);
  platform::TrialStream stream{.codec = 1, .width = 32, .height = 32, .bits = 24, .extra = {}};
  PayloadNeighbours neighbours{.before = {key, next}, .good = {0, 1}, .after = {next}, .nextKey = {}};
  KnownPictures decoder{{payload, key, next}};
  TrialBudget budget;
};

TEST_F(CutSearchTest, FindsTheByteWherever) {
  for (const std::uint32_t cut : {1U, 35U, 500U, 2000U, 3900U, 3999U}) EXPECT_EQ(search(withForeignBytes(cut)), cut);
}

TEST_F(CutSearchTest, BytesInFrontOfThePayloadOrAfterItAreFoundToo) {
  EXPECT_EQ(search(withForeignBytes(0)), 0U);
  EXPECT_EQ(search(withForeignBytes(4000)), 4000U);
}

TEST_F(CutSearchTest, TakesFewTrials) {
  static_cast<void>(search(withForeignBytes(2000)));
  EXPECT_LT(decoder.decodes, 600U);
}

TEST_F(CutSearchTest, OfCutsWithoutComplaintTheOneThatFitsWins) {
  const Bytes bytes = withForeignBytes(2000);
  for (const std::uint32_t cut : {1990U, 1999U, 2003U, 2040U}) decoder.silent[cutAt(bytes, cut)] = 9;
  EXPECT_EQ(search(bytes), 2000U);
}

TEST_F(CutSearchTest, CutsThatNoDecoderSurvivesAreLeftOut) {
  const Bytes bytes = withForeignBytes(2000);
  decoder.deadly.insert(cutAt(bytes, 2005));
  EXPECT_EQ(search(bytes), 2000U);
  EXPECT_GE(decoder.opened.size(), 1U);
}

TEST_F(CutSearchTest, NothingIsFoundInAPayloadThatIsDamagedElsewhereToo) {
  Bytes bytes = withForeignBytes(2000);
  bytes[100] ^= std::byte{1};
  EXPECT_EQ(search(bytes), std::nullopt);
}

TEST_F(CutSearchTest, NothingIsFoundBeyondTheBudget) {
  budget = TrialBudget(TrialBudget::kLeast * 40);
  EXPECT_EQ(search(withForeignBytes(2000)), std::nullopt);
  EXPECT_LT(decoder.decodes, 60U);
}

TEST_F(CutSearchTest, NothingIsDecodedWhereTheBudgetIsNotEnoughToReachTheCut) {
  payload = bytesOfChance(400'000, 1);
  decoder = KnownPictures({payload, key, next});
  budget = TrialBudget(TrialBudget::kLeast * 400);
  EXPECT_EQ(search(withForeignBytes(2000)), std::nullopt);
  EXPECT_EQ(decoder.decodes, 0U);
}

TEST_F(CutSearchTest, SilenceOverTooManyCutsTellsNothing) {
  const Bytes bytes = withForeignBytes(2000);
  for (std::uint32_t cut = 1900; cut < 2100; ++cut) decoder.silent[cutAt(bytes, cut)] = cut - 1800;
  EXPECT_EQ(search(bytes), std::nullopt);
}

TEST_F(CutSearchTest, CutOfWhichTheEndIsNotReadIsNone) {
  const Bytes bytes = withForeignBytes(2000);
  Bytes tried = cutAt(bytes, 2010);
  decoder.silent[tried] = 0;
  EXPECT_EQ(search(bytes), 2010U);
  tried.resize(tried.size() - 2);
  decoder.silent[tried] = 0;
  EXPECT_EQ(search(bytes), 2000U);
}

TEST_F(CutSearchTest, CutThatIsNotTakenAmongItsNeighboursIsNone) {
  neighbours.needsKey = true;
  const Bytes bytes = withForeignBytes(2000);
  decoder.silent[cutAt(bytes, 2010)] = 0;
  EXPECT_EQ(search(bytes), 2010U);
  decoder.strange.insert(cutAt(bytes, 2010));
  EXPECT_EQ(search(bytes), 2000U);
}

TEST_F(CutSearchTest, TheKeyStandsForBothPicturesThatOneIsPredictedFrom) {
  decoder.picturesBefore = 2;
  EXPECT_EQ(search(withForeignBytes(2000)), std::nullopt);
  neighbours.needsTwoKeys = true;
  EXPECT_EQ(search(withForeignBytes(2000)), 2000U);
}

TEST_F(CutSearchTest, EachKeyBeforeATrialCounts) {
  neighbours.needsTwoKeys = true;
  budget = TrialBudget(TrialBudget::kLeast * 30);
  EXPECT_EQ(DecodedTrial(decoder, stream, neighbours, budget).trialsLeft(100), 9U);
  neighbours.isKey = true;
  EXPECT_EQ(DecodedTrial(decoder, stream, neighbours, budget).trialsLeft(100), 29U);
}

TEST_F(CutSearchTest, PictureThatIsFarFromItsNeighboursIsNone) {
  Bytes bytes = withForeignBytes(1);
  bytes[3000] ^= std::byte{1};
  decoder.silent[cutAt(bytes, 1)] = 10;
  EXPECT_EQ(search(bytes), std::nullopt);
  decoder.silent[cutAt(bytes, 1)] = 2;
  EXPECT_EQ(search(bytes), 1U);
}

TEST_F(CutSearchTest, BelowAPictureThatChangesItMayBeFar) {
  Bytes bytes = withForeignBytes(2000);
  bytes[3000] ^= std::byte{1};
  decoder.silent[cutAt(bytes, 2000)] = 700;
  EXPECT_EQ(search(bytes), 2000U);
}

TEST_F(CutSearchTest, DamagedNeighboursAreNoExample) {
  // The one before complains, so that any complaint would be usual.
  neighbours.before[1][5] ^= std::byte{1};
  neighbours.good = {0};
  EXPECT_EQ(search(withForeignBytes(2000)), 2000U);
  neighbours.good = {0, 1};
  EXPECT_NE(search(withForeignBytes(2000)), 2000U);
}

TEST_F(CutSearchTest, LikelyCutsAreTriedFirst) {
  EXPECT_EQ(search(withForeignBytes(2000), {1800, 2000, 2100}), 2000U);
  EXPECT_LT(decoder.decodes, 60U);
}

TEST_F(CutSearchTest, OfLikelyCutsWithoutComplaintTheOneThatFitsWins) {
  const Bytes bytes = withForeignBytes(2000);
  for (const std::uint32_t cut : {1700U, 2040U}) decoder.silent[cutAt(bytes, cut)] = 9;
  EXPECT_EQ(search(bytes, {1700, 2000, 2040}), 2000U);
  EXPECT_LT(decoder.decodes, 100U);
}

TEST_F(CutSearchTest, LikelyCutIsNotAskedForItsEnd) {
  const Bytes bytes = withForeignBytes(2000);
  Bytes tried = cutAt(bytes, 2010);
  decoder.silent[tried] = 0;
  tried.resize(tried.size() - 2);
  decoder.silent[tried] = 0;
  EXPECT_EQ(search(bytes, {2010}), 2010U);
}

TEST_F(CutSearchTest, WhereNoLikelyCutIsRightOthersAreTried) {
  EXPECT_EQ(search(withForeignBytes(2000), {1800, 2300}), 2000U);
}

TEST_F(CutSearchTest, LikelyCutsAreTriedWhereTheBudgetIsNotEnoughToReachThem) {
  budget = TrialBudget(TrialBudget::kLeast * 60);
  EXPECT_EQ(search(withForeignBytes(2000)), std::nullopt);
  budget = TrialBudget(TrialBudget::kLeast * 60);
  EXPECT_EQ(search(withForeignBytes(2000), {1800, 2000, 2100}), 2000U);
}

TEST_F(CutSearchTest, MoreLikelyCutsThanTheBudgetCanCompareAreLeftOut) {
  std::vector<std::uint32_t> likely;
  const Bytes bytes = withForeignBytes(2000);
  for (std::uint32_t cut = 2000; cut > 1000; cut -= 5) {
    likely.push_back(cut);
    if (cut != 2000) decoder.silent[cutAt(bytes, cut)] = 5 + cut % 400;
  }
  budget = TrialBudget(TrialBudget::kLeast * 90);
  EXPECT_EQ(search(bytes, likely), 2000U);
}

TEST_F(CutSearchTest, CutsThatShowTheSamePictureAreOne) {
  const Bytes bytes = withForeignBytes(2000);
  for (std::uint32_t cut = 1900; cut < 2100; ++cut) {
    if (cut != 2000) decoder.silent[cutAt(bytes, cut)] = 50;
  }
  EXPECT_EQ(search(bytes), 2000U);
}

}  // namespace
}  // namespace zelvo::tests
