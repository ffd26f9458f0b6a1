/// Tells what a plan could not bring back and what it mended: stretch by stretch. Offsets are in bytes.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "salvage/chain/entry_places.h"
#include "salvage/plan/evidence.h"
#include "salvage/plan/film_plan.h"
#include "salvage/plan/film_streams.h"

namespace zelvo::salvage {

/// A place of the file where bytes of the original are known to be missing.
struct MissingBytes {
  std::uint64_t offset = 0;
  std::uint64_t bytes = 0;
};

/// A form after the first.
struct FormPlace {
  std::uint64_t file = 0;      ///< where it begins
  std::uint64_t original = 0;  ///< the same in the original
  std::uint64_t size = 0;      ///< as it says
};

/// What the spans of a plan take of the candidates, which may be let go then.
struct FileMarks {
  std::vector<FormPlace> forms;   ///< rising
  std::vector<PlanSpan> foreign;  ///< chunks of another film, rising
};

/// `isForeign`: of each candidate; may be empty.
[[nodiscard]] FileMarks fileMarks(const Evidence& evidence, std::span<const std::uint8_t> isForeign);

/// Of `evidence` the candidates and the chain are not asked.
struct SpanEvidence {
  const Evidence& evidence;
  const FilmStreams& streams;
  std::span<const TemplateEntry> entries;  ///< of the slots that are indexed, in their order
  const EntryPlaces& places;
  std::span<const MissingBytes> missing;  ///< where no index reaches; rising
  const FileMarks& marks;
};

/// The spans of a plan, rising by `begin`: neighbouring slots with the same fate share one. Where no index tells the
/// place in the original, it is that in the file and what is known to be missing in front of it.
/// Thread: any.
[[nodiscard]] std::vector<PlanSpan> planSpans(const SpanEvidence& from, const FilmPlan& plan);

}  // namespace zelvo::salvage
