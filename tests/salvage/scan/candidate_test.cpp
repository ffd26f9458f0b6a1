// Packed candidates and the list that holds millions of them.
#include "salvage/scan/candidate.h"

#include <gtest/gtest.h>

#include <random>

namespace zelvo::tests {
namespace {

using salvage::Candidate;
using salvage::CandidateKind;
using salvage::CandidateList;

CandidateList every(std::uint64_t step, std::size_t count) {
  CandidateList list;
  for (std::size_t i = 0; i < count; ++i) list.add({i * step, CandidateKind::data, 0, 0, 0, 0});
  return list;
}

TEST(Candidate, KeepsEveryNumberWhole) {
  const Candidate candidate(0xfedcba9876, CandidateKind::index, 99, 15, 0xfffffffe, 0x12345678);
  EXPECT_EQ(candidate.offset(), 0xfedcba9876U);
  EXPECT_EQ(candidate.kind(), CandidateKind::index);
  EXPECT_EQ(candidate.stream(), 99);
  EXPECT_EQ(candidate.suffix(), 15);
  EXPECT_EQ(candidate.size(), 0xfffffffeU);
  EXPECT_EQ(candidate.head(), 0x12345678U);
}

TEST(Candidate, EndsBehindItsPadByteByTheParityOfItsSize) {
  EXPECT_EQ(Candidate(1000, CandidateKind::data, 0, 0, 10, 0).next(), 1018U);
  EXPECT_EQ(Candidate(1000, CandidateKind::data, 0, 0, 11, 0).next(), 1020U);
  EXPECT_EQ(Candidate(1001, CandidateKind::data, 0, 0, 10, 0).next(), 1019U);
  EXPECT_EQ(Candidate(1000, CandidateKind::data, 0, 0, 11, 0).payloadEnd(), 1019U);
  EXPECT_EQ(Candidate(1000, CandidateKind::data, 0, 0, 0xffffffff, 0).next(), 1008U + (std::uint64_t{1} << 32U));
}

TEST(Candidate, ListsAndFormsAreEnteredAndOthersSteppedOver) {
  EXPECT_EQ(Candidate(1000, CandidateKind::list, 0, 0, 500, 0).next(), 1012U);
  EXPECT_EQ(Candidate(1000, CandidateKind::form, 0, 0, 500, 0).next(), 1012U);
  EXPECT_EQ(Candidate(1000, CandidateKind::skipped, 0, 0, 500, 0).next(), 1508U);
  EXPECT_EQ(Candidate(1000, CandidateKind::index, 0, 0, 500, 0).next(), 1508U);
}

TEST(CandidateList, KeepsOrder) {
  constexpr std::size_t kCount = 200000;
  const CandidateList list = every(8, kCount);
  ASSERT_EQ(list.size(), kCount);
  for (std::size_t i = 0; i < kCount; i += 997) EXPECT_EQ(list[i].offset(), i * 8);
  EXPECT_EQ(list.back().offset(), (kCount - 1) * 8);
}

TEST(CandidateList, FindsTheFirstAtOrBehindAnOffset) {
  const CandidateList list = every(10, 100000);
  std::uint64_t looks = 0;
  for (const std::uint64_t offset : {0U, 1U, 10U, 655350U, 655360U, 655361U, 999990U}) {
    EXPECT_EQ(list.firstAtOrAfter(offset, 0, looks), (offset + 9) / 10) << offset;
    EXPECT_EQ(list.firstAtOrAfter(offset, 5, looks), std::max<std::uint64_t>(5, (offset + 9) / 10)) << offset;
  }
  EXPECT_EQ(list.firstAtOrAfter(999991, 0, looks), list.size());
  EXPECT_EQ(list.firstAtOrAfter(0, list.size(), looks), list.size());
  EXPECT_EQ(CandidateList().firstAtOrAfter(0, 0, looks), 0U);
}

TEST(CandidateList, NearCandidateIsFoundInFewLooks) {
  const CandidateList list = every(10, 100000);
  std::uint64_t looks = 0;
  EXPECT_EQ(list.firstAtOrAfter(50010, 5001, looks), 5001U);
  EXPECT_LE(looks, 2U);
  looks = 0;
  EXPECT_EQ(list.firstAtOrAfter(900000, 0, looks), 90000U);
  EXPECT_LE(looks, 40U);
}

TEST(CandidateList, DirectoryChangesNoAnswer) {
  std::mt19937_64 random(9);
  for (int round = 0; round < 40; ++round) {
    CandidateList list;
    std::uint64_t at = random() % 3 == 0 ? std::uint64_t{1} << 39U : 0;
    const std::uint64_t step = round % 2 == 0 ? 20 : 100'000'000;
    for (std::size_t i = 0; i < 1 + random() % 2000; ++i) {
      at += 1 + random() % (i % 50 == 0 ? step * 100 : step);
      list.add({at, CandidateKind::data, 0, 0, 0, 0});
    }
    CandidateList with;
    for (std::size_t i = 0; i < list.size(); ++i) with.add(list[i]);
    with.makeDirectory();
    for (int i = 0; i < 300; ++i) {
      const std::uint64_t wanted =
          i % 2 == 0 ? list[random() % list.size()].offset() + random() % 3 : random() % (at * 2);
      const std::size_t from = i % 3 == 0 ? random() % list.size() : 0;
      std::uint64_t looks = 0;
      EXPECT_EQ(with.firstAtOrAfter(wanted, from, looks), list.firstAtOrAfter(wanted, from, looks));
    }
  }
}

TEST(CandidateList, FarCandidateIsFoundInFewLooksByTheDirectory) {
  CandidateList list = every(10, 100000);
  list.makeDirectory();
  std::uint64_t looks = 0;
  EXPECT_EQ(list.firstAtOrAfter(900000, 0, looks), 90000U);
  EXPECT_LE(looks, 8U);
}

TEST(CandidateList, DirectoryGoesWhenTheListChanges) {
  CandidateList list = every(10, 1000);
  list.makeDirectory();
  list.dropFrom(5000);
  std::uint64_t looks = 0;
  EXPECT_EQ(list.firstAtOrAfter(9000, 0, looks), 500U);
  list.makeDirectory();
  list.thin([](std::size_t number) { return number % 2 == 0; });
  EXPECT_EQ(list.firstAtOrAfter(4000, 0, looks), 200U);
  list.makeDirectory();
  list.add({7000, CandidateKind::data, 0, 0, 0, 0});
  EXPECT_EQ(list.firstAtOrAfter(6000, 0, looks), 250U);
}

TEST(CandidateList, ThinsFromANumberOn) {
  CandidateList list = every(10, 100);
  list.thin([](std::size_t number) { return number % 10 == 0; }, 50);
  ASSERT_EQ(list.size(), 55U);
  EXPECT_EQ(list[49].offset(), 490U);
  EXPECT_EQ(list[51].offset(), 600U);
}

TEST(CandidateList, ThinningKeepsWhatItIsTold) {
  CandidateList list = every(2, 150000);
  list.thin([](std::size_t number) { return number % 3 == 1; });
  ASSERT_EQ(list.size(), 50000U);
  for (std::size_t i = 0; i < list.size(); i += 77) EXPECT_EQ(list[i].offset(), 2 * (3 * i + 1));
  list.add({400000, CandidateKind::list, 0, 0, 0, 0});
  EXPECT_EQ(list.back().offset(), 400000U);
  EXPECT_EQ(list.size(), 50001U);
  list.thin([](std::size_t) { return false; });
  EXPECT_TRUE(list.empty());
  list.add({5, CandidateKind::list, 0, 0, 0, 0});
  EXPECT_EQ(list[0].offset(), 5U);
}

TEST(CandidateList, DropsFromAnOffsetOn) {
  CandidateList list = every(10, 70000);
  list.dropFrom(655365);
  EXPECT_EQ(list.size(), 65537U);
  list.dropFrom(655360);
  EXPECT_EQ(list.size(), 65536U);
  list.add({655361, CandidateKind::data, 3, 0, 0, 0});
  EXPECT_EQ(list.back().stream(), 3);
  list.dropFrom(0);
  EXPECT_TRUE(list.empty());
}

}  // namespace
}  // namespace zelvo::tests
