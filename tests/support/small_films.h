/// Small films with damage as lists of numbers, for comparisons with literal twins: entries of an index, and candidates
/// as a scan would have found them.
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <vector>

#include "salvage/scan/candidate.h"
#include "salvage/scan/index_template.h"

namespace zelvo::tests {

struct SmallFilm {
  std::vector<salvage::TemplateEntry> entries;
  salvage::CandidateList candidates;
  std::vector<std::uint64_t> ends;  ///< where chunks may end besides
  std::uint64_t indexBegin = 0;
  std::uint64_t dataEnd = 0;
};

/// A film that follows from what `choose` answers: a number below the one that it is asked with.
[[nodiscard]] inline SmallFilm smallFilm(const std::function<std::uint32_t(std::uint32_t)>& choose) {
  using salvage::Candidate;
  using salvage::CandidateKind;
  SmallFilm film;
  const std::uint32_t chunks = choose(60);
  const std::uint32_t sizes = 1 + choose(40);  // how many sizes there are
  const std::uint32_t damage = 1 + choose(12);
  std::vector<Candidate> found;
  std::uint64_t offset = 12;
  std::int64_t moved = choose(4) == 0 ? 4096 : 0;
  for (std::uint32_t i = 0; i < chunks; ++i) {
    salvage::TemplateEntry entry;
    entry.offset = offset;
    entry.stream = static_cast<std::uint8_t>(choose(2));
    entry.size = 20 + 17 * choose(sizes) + (entry.stream == 0 ? 400 : 0);
    entry.isKey = true;
    film.entries.push_back(entry);
    offset = entry.end() + entry.size % 2;
    // Bytes go, come, change places; headers and sizes are hurt; a copy of a header stands somewhere.
    constexpr std::uint32_t kWays = 7;
    const std::uint32_t way = choose(damage) == 0 ? choose(kWays) : kWays;
    if (way == 0) moved -= choose(300);
    if (way == 1) moved += choose(300);
    if (way == 2) moved += 4096 * (static_cast<std::int64_t>(choose(3)) - 1);
    if (way == 3) continue;
    const std::int64_t place = std::max<std::int64_t>(0, static_cast<std::int64_t>(entry.offset) + moved);
    const std::uint32_t size = way == 4 ? choose(1000) : entry.size;
    found.emplace_back(static_cast<std::uint64_t>(place), CandidateKind::data, entry.stream, std::uint8_t{0}, size,
                       choose(3));
    if (way == 5)
      found.emplace_back(static_cast<std::uint64_t>(place) + 16 + choose(2000), CandidateKind::data, entry.stream,
                         std::uint8_t{0}, entry.size, choose(3));
    if (way == 6)
      found.emplace_back(static_cast<std::uint64_t>(place) + choose(40),
                         choose(2) == 0 ? CandidateKind::list : CandidateKind::skipped, std::uint8_t{0},
                         std::uint8_t{0}, choose(2000), std::uint32_t{0});
  }
  std::ranges::sort(found, {}, &Candidate::offset);
  for (const Candidate& candidate : found) {
    if (film.candidates.empty() || film.candidates.back().offset() < candidate.offset()) film.candidates.add(candidate);
  }
  film.dataEnd = static_cast<std::uint64_t>(std::max<std::int64_t>(12, static_cast<std::int64_t>(offset) + moved)) -
                 (choose(3) == 0 ? std::min<std::uint64_t>(12, choose(500)) : 0);
  if (choose(2) == 0) film.indexBegin = film.dataEnd + 8;
  if (choose(2) == 0) film.ends.push_back(choose(5000));
  if (choose(2) == 0) film.candidates.makeDirectory();
  return film;
}

}  // namespace zelvo::tests
