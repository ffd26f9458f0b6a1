/// A film in memory, taken through all stages of a salvage that make its plan.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <tuple>
#include <utility>
#include <vector>

#include "salvage/plan/evidence.h"
#include "salvage/plan/film_plan.h"
#include "tests/salvage/scanned_film.h"

namespace zelvo::tests {

/// The film's header as its own stream headers tell it.
[[nodiscard]] inline salvage::FilmHeader headerOf(const salvage::SurvivingHeaders& headers) {
  salvage::FilmHeader film;
  film.main = headers.main;
  for (const auto& stream : headers.streams) {
    salvage::FilmStream made;
    made.number = static_cast<std::uint8_t>(film.streams.size());
    made.header = stream;
    film.streams.push_back(std::move(made));
  }
  return film;
}

/// Thread: one.
struct PlannedFilm {
  explicit PlannedFilm(platform::Bytes bytes, platform::TrialDecoder* trialDecoder = nullptr)
      : scanned(std::move(bytes)), decoder(trialDecoder) {
    scanned.run();
    header = headerOf(scanned.headers);
    facts = salvage::learnStreams(scanned.scan.candidates, scanned.chain);
    index = salvage::indexTemplate(*scanned.input, scanned.headers, scanned.codes, scanned.scan);
    plan = salvage::planFilm(evidence());
    if (decoder == nullptr) planWhileLettingGo();
  }
  /// The plan is the same when what it needs no more is let go on the way.
  void planWhileLettingGo() const {
    salvage::MediaScan scan = scanned.scan;
    salvage::ChunkChain chain = scanned.chain;
    salvage::IndexTemplate spentIndex = index;
    salvage::SpentEvidence spent{scan, chain, spentIndex};
    const auto same = salvage::planFilm(
        {*scanned.input, scanned.headers, header, scanned.codes, scan, chain, facts, spentIndex, nullptr}, &spent);
    const auto slotOf = [](const salvage::Slot& slot) {
      return std::tuple(std::uint64_t{slot.source}, slot.stream, slot.state, slot.size);
    };
    const auto spanOf = [](const salvage::PlanSpan& span) {
      return std::tuple(span.begin, span.end, span.originalBegin, span.originalEnd, span.cause, span.firstSlot);
    };
    EXPECT_TRUE(std::ranges::equal(same.slots, plan.slots, {}, slotOf, slotOf));
    EXPECT_TRUE(std::ranges::equal(same.spans, plan.spans, {}, spanOf, spanOf));
    EXPECT_EQ(same.pieces, plan.pieces);
    EXPECT_TRUE(scan.candidates.empty() && chain.size() == 0 && spentIndex.entries.empty());
  }
  [[nodiscard]] salvage::Evidence evidence() const {
    return {*scanned.input, scanned.headers, header, scanned.codes, scanned.scan, scanned.chain, facts, index, decoder};
  }
  /// Where the payloads lie, slot by slot; 0 for those of which nothing is left.
  [[nodiscard]] std::vector<std::uint64_t> sources() const {
    std::vector<std::uint64_t> offsets;
    for (const auto& slot : plan.slots) offsets.push_back(slot.hasSource() ? slot.source : 0);
    return offsets;
  }

  ScannedFilm scanned;
  platform::TrialDecoder* decoder;
  salvage::FilmHeader header;
  std::vector<salvage::StreamFacts> facts;
  salvage::IndexTemplate index;
  salvage::FilmPlan plan;
};

/// Where the payloads of a film that AviBuilder built lie.
[[nodiscard]] inline std::vector<std::uint64_t> payloadOffsets(const AviBuilder& film) {
  std::vector<std::uint64_t> offsets = chunkOffsets(film);
  for (std::uint64_t& offset : offsets) offset += 8;
  return offsets;
}

}  // namespace zelvo::tests
