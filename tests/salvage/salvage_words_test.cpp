#include "salvage/salvage_words.h"

#include <gtest/gtest.h>

#include <string>

#include "avi/chunk_codes.h"

namespace zelvo::tests {
namespace {

using salvage::SalvagedStream;
using salvage::SalvageReport;
using salvage::SlotState;

SalvagedStream streamOf(avi::FourCC type, double lost) {
  SalvagedStream stream;
  stream.type = type;
  stream.slots[static_cast<std::size_t>(SlotState::whole)] = {100, 100000, 4.0};
  if (lost > 0) stream.slots[static_cast<std::size_t>(SlotState::lost)] = {1, 1000, lost};
  return stream;
}

SalvageReport partial(std::vector<SalvagedStream> streams) {
  SalvageReport report;
  report.verdict = salvage::SalvageVerdict::partial;
  report.streams = std::move(streams);
  return report;
}

TEST(SalvageWords, WhatIsLostIsToldByItsLength) {
  EXPECT_EQ(
      salvage::verdictSentence(partial({streamOf(avi::kVids, 1.25), streamOf(avi::kAuds, 0.5)})),
      "This film was damaged; 1.2 s of its pictures and 0.5 s of its sound are lost or hurt, the rest is there, in "
      "step.");
  EXPECT_EQ(salvage::verdictSentence(partial({streamOf(avi::kVids, 2)})),
            "This film was damaged; 2.0 s of its pictures are lost or hurt, the rest is there, in step.");
}

TEST(SalvageWords, AShortLossIsNoneOfZeroSeconds) {
  EXPECT_EQ(
      salvage::verdictSentence(partial({streamOf(avi::kVids, 0.049), streamOf(avi::kAuds, 0.05)})),
      "This film was damaged; less than 0.1 s of its pictures and 0.1 s of its sound are lost or hurt, the rest is "
      "there, in step.");
}

TEST(SalvageWords, AKindThatIsAllThereIsToldSo) {
  EXPECT_EQ(salvage::verdictSentence(partial({streamOf(avi::kVids, 0), streamOf(avi::kAuds, 0.3)})),
            "This film was damaged; 0.3 s of its sound is lost or hurt, all of its pictures are there, in step.");
  EXPECT_EQ(salvage::verdictSentence(partial({streamOf(avi::kVids, 0.3), streamOf(avi::kAuds, 0)})),
            "This film was damaged; 0.3 s of its pictures are lost or hurt, all of its sound is there, in step.");
  EXPECT_EQ(salvage::verdictSentence(partial({streamOf(avi::kVids, 0), streamOf(avi::kAuds, 0)})),
            "This film was damaged; a part of it is lost or hurt, the rest is there, in step.");
}

TEST(SalvageWords, OfSeveralTracksTheWorstCounts) {
  EXPECT_EQ(
      salvage::verdictSentence(partial({streamOf(avi::kVids, 0), streamOf(avi::kAuds, 0), streamOf(avi::kAuds, 3)})),
      "This film was damaged; 3.0 s of its sound is lost or hurt, all of its pictures are there, in step.");
}

TEST(SalvageWords, StreamsThatNothingRecognisesAreToldFirst) {
  SalvageReport report = partial({streamOf(avi::kVids, 0)});
  report.streamsWithoutHeader = 1;
  EXPECT_EQ(salvage::verdictSentence(report),
            "This film was damaged; 1 stream of it cannot be recognised and is left out.");
  report = partial({streamOf(avi::kVids, 1)});
  report.streamsWithoutHeader = 2;
  EXPECT_EQ(
      salvage::verdictSentence(report),
      "This film was damaged; 2 streams of it cannot be recognised and are left out; 1.0 s of its pictures are lost "
      "or hurt, the rest is there, in step.");
}

}  // namespace
}  // namespace zelvo::tests
