#include "salvage/plan/chosen_entries.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "avi/chunk_codes.h"
#include "salvage/chain/displacements.h"
#include "salvage/chain/likely_stretches.h"
#include "salvage/chain/lone_stretches.h"

namespace zelvo::salvage {

namespace {

class Choosing {
 public:
  Choosing(const Evidence& evidence, std::vector<TemplateEntry> entries, std::span<const std::uint32_t> chain)
      : evidence_(evidence), chain_(chain) {
    made_.entries = std::move(entries);
  }

  ChosenEntries run();

 private:
  /// Chunks of the chain beside those that an index explains.
  struct Others {
    std::size_t all = 0;  ///< of the chain
    std::size_t unexplained = 0;
    std::size_t inFront = 0;  ///< of these

    [[nodiscard]] bool areMany() const { return unexplained >= std::max<std::size_t>(8, all / 20); }
  };

  [[nodiscard]] std::uint64_t slackBehind(const TemplateEntry& last) const;
  [[nodiscard]] DisplacementCover coverOf(std::span<const TemplateEntry> entries) const;
  [[nodiscard]] DisplacementCover firm(DisplacementCover cover, std::span<const TemplateEntry> entries,
                                       bool isForeign) const;
  [[nodiscard]] Others othersBeside(const std::vector<std::uint8_t>& isClaimed) const;
  [[nodiscard]] bool isOfFilmBehind(const DisplacementCover& cover) const;
  [[nodiscard]] bool mayBeOwn(std::span<const TemplateEntry> entries, const DisplacementCover& strict,
                              const DisplacementCover& plain) const;
  void ownFront(std::span<const TemplateEntry> foreign, const DisplacementCover& cover);
  void dropWild();
  [[nodiscard]] bool isWorthLess() const;

  const Evidence& evidence_;
  const std::span<const std::uint32_t> chain_;
  ChosenEntries made_;
};

/// Bytes between the end of the last entry and that of the first media list, as that list claims, in the original: some
/// films fill clusters up after each chunk. 0 when that cannot be.
std::uint64_t Choosing::slackBehind(const TemplateEntry& last) const {
  constexpr std::uint64_t kMost = std::uint64_t{1} << 20U;
  const auto& media = evidence_.headers.media;
  if (!media || last.isForeign) return 0;
  const std::uint64_t end = last.end() + last.size % 2;
  const std::uint64_t declared = media->offset + avi::kChunkHeader + media->size;
  return declared > end && declared - end <= kMost ? declared - end : 0;
}

/// All that headers explain of entries, chance and all.
DisplacementCover Choosing::coverOf(std::span<const TemplateEntry> entries) const {
  const auto& tables = evidence_.scan.tables;
  std::uint64_t indexBegin = 0;
  if (!tables.empty() && !entries.empty()) {
    indexBegin = tables.back().header.value_or(tables.back().begin - avi::kChunkHeader) + avi::kChunkHeader;
    indexBegin -= std::min(indexBegin, slackBehind(entries.back()));
  }
  DisplacementCover cover = coverEntries(entries, evidence_.scan.candidates, indexBegin, evidence_.scan.end,
                                         DisplacementLimits::ofFile(evidence_.scan.end));
  moveToLikelier(cover, entries, evidence_.scan.candidates, evidence_.scan.end);
  return cover;
}

/// The part of a cover that is no chance.
DisplacementCover Choosing::firm(DisplacementCover cover, std::span<const TemplateEntry> entries,
                                 bool isForeign) const {
  dropChance(cover, entries, evidence_.scan.candidates, isForeign);
  dropLone(cover, entries, evidence_.scan.candidates, evidence_.chain);
  return cover;
}

/// How many chunks of the chain such an index does not explain, and how many of them stand in front of all that it
/// does.
Choosing::Others Choosing::othersBeside(const std::vector<std::uint8_t>& isClaimed) const {
  Others others;
  bool isInFront = true;
  for (const std::uint32_t number : chain_) {
    if (evidence_.scan.candidates[number].kind() != CandidateKind::data) continue;
    ++others.all;
    if (isClaimed[number] != 0) {
      isInFront = false;
      continue;
    }
    ++others.unexplained;
    if (isInFront) ++others.inFront;
  }
  return others;
}

/// Whether an index is that of another film after this one: it explains nothing of what
/// stands in front, and what it does not explain stands in front, too.
bool Choosing::isOfFilmBehind(const DisplacementCover& cover) const {
  constexpr std::size_t kMaxPercent = 90;
  const Others others = othersBeside(cover.isClaimed);
  if (!others.areMany() || others.inFront * 100 < others.unexplained * kMaxPercent) return false;
  std::size_t lost = 0;
  std::size_t lostInFront = 0;
  bool isInFront = true;
  for (const std::uint16_t number : cover.ofEntry) {
    isInFront = isInFront && number == DisplacementCover::kNone;
    if (number == DisplacementCover::kNone) ++lost;
    if (isInFront) ++lostInFront;
  }
  return lostInFront > 0 && lostInFront * 100 >= lost * kMaxPercent;
}

/// Whether an index that something speaks for explains half of what is left of it, or nearly all chunks of the chain,
/// by stretches too short to count otherwise.
bool Choosing::mayBeOwn(std::span<const TemplateEntry> entries, const DisplacementCover& strict,
                        const DisplacementCover& plain) const {
  const auto isKnown = [](const TemplateSource& source) { return source.belonging != Belonging::unknown; };
  if (std::ranges::none_of(evidence_.index.tables, isKnown) && std::ranges::none_of(evidence_.index.standard, isKnown))
    return false;
  std::size_t left = 0;
  std::size_t explained = 0;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    if (strict.ofEntry[i] != DisplacementCover::kNone) continue;
    ++left;
    if (plain.ofEntry[i] != DisplacementCover::kNone) ++explained;
  }
  return explained * 2 >= left || !othersBeside(plain.isClaimed).areMany();
}

/// Films of one layout have their chunks at the same places, so that the index of one explains the other's, too. What
/// follows the headers without a break is of the film that they head, and the foreign entries that explained it are of
/// chunks behind it, as far as they moved like others there.
void Choosing::ownFront(std::span<const TemplateEntry> foreign, const DisplacementCover& cover) {
  constexpr std::size_t kMostValues = 8;
  if (!evidence_.headers.media) return;
  const CandidateList& candidates = evidence_.scan.candidates;
  std::uint64_t frontEnd = 0;
  for (std::size_t i = 0; i < chain_.size(); ++i) {
    made_.isForeign[chain_[i]] = 0;
    frontEnd = candidates[chain_[i]].offset();
    if (i + 1 == chain_.size() || evidence_.chain.next(chain_[i]) != chain_[i + 1]) break;
  }
  std::uint64_t looks = 0;
  for (std::size_t value = 0; value < std::min(kMostValues, cover.values.size()); ++value) {
    if (cover.values[value] == 0) continue;
    std::size_t at = 0;
    for (const TemplateEntry& entry : foreign) {
      const std::int64_t place = static_cast<std::int64_t>(entry.offset) + cover.values[value];
      if (place <= static_cast<std::int64_t>(frontEnd)) continue;
      at = candidates.firstAtOrAfter(static_cast<std::uint64_t>(place), at, looks);
      if (at == candidates.size()) break;
      const Candidate& header = candidates[at];
      if (header.offset() == static_cast<std::uint64_t>(place) && header.kind() == CandidateKind::data &&
          header.stream() == entry.stream && header.size() == entry.size)
        made_.isForeign[at] = 1;
    }
  }
}

/// An index that contradicts the headers is another film's when there are chunks besides those that it explains.
ChosenEntries Choosing::run() {
  // Own ones first, so that the others are cut off.
  std::size_t owned = made_.entries.size();
  const auto rank = [](const TemplateEntry& entry) { return std::pair(entry.isForeign, entry.offset); };
  if (std::ranges::any_of(made_.entries, &TemplateEntry::isForeign)) {
    if (!std::ranges::is_sorted(made_.entries, {}, rank)) std::ranges::sort(made_.entries, {}, rank);
    owned = static_cast<std::size_t>(std::ranges::find(made_.entries, true, &TemplateEntry::isForeign) -
                                     made_.entries.begin());
  }
  // Covering takes long, so that of the film's own entries is kept as long as it holds.
  std::optional<DisplacementCover> all = coverOf(std::span(made_.entries).first(owned));
  {
    const auto own = std::span(made_.entries).first(owned);
    DisplacementCover explained = firm(*all, own, true);
    // Films of one camera may be of one length, so that the headers speak for the other one's index, too.
    if (isOfFilmBehind(explained) && !mayBeOwn(own, explained, firm(*all, own, false))) {
      made_.isForeign = std::move(explained.isClaimed);
      made_.entries.erase(made_.entries.begin(), made_.entries.begin() + static_cast<std::ptrdiff_t>(owned));
      owned = 0;
      all.reset();
    }
  }
  if (owned < made_.entries.size()) {
    const auto foreign = std::span(made_.entries).subspan(owned);
    DisplacementCover explained = firm(coverOf(foreign), foreign, true);
    if (othersBeside(explained.isClaimed).areMany()) {
      made_.isForeign = std::move(explained.isClaimed);
      ownFront(foreign, explained);
      made_.entries.resize(owned);
    } else {
      if (owned > 0) std::ranges::sort(made_.entries, {}, &TemplateEntry::offset);
      all.reset();
    }
  }
  if (made_.entries.size() < made_.entries.capacity() / 2) made_.entries.shrink_to_fit();
  const DisplacementCover own = firm(all ? *std::move(all) : coverOf(made_.entries), made_.entries, false);
  all.reset();
  for (std::size_t i = 0; i < made_.isForeign.size(); ++i) {
    if (own.isClaimed[i] != 0) made_.isForeign[i] = 0;
  }
  made_.places = placeEntries(evidence_.input, made_.entries, evidence_.scan.candidates, evidence_.facts, own);
  if (made_.places.places.empty()) made_.entries.clear();
  if (isWorthLess()) made_.entries.clear();
  if (made_.entries.empty()) made_.places = {};
  dropWild();
  return std::move(made_);
}

/// Whether hardly any of an index stands where it says while the chain has far more chunks: so much moved that the
/// chain alone brings back more than the few displacements that are told apart.
bool Choosing::isWorthLess() const {
  constexpr std::size_t kFewest = 64;
  constexpr std::size_t kSupported = 4;
  constexpr std::size_t kMore = 3;
  const auto isSupported = [](const EntryPlace& place) { return place.support != Support::none; };
  const auto supported = static_cast<std::size_t>(std::ranges::count_if(made_.places.places, isSupported));
  if (made_.entries.size() < kFewest || supported * kSupported > made_.entries.size()) return false;
  const auto isSure = [&](std::uint32_t number) {
    return evidence_.scan.candidates[number].kind() == CandidateKind::data && evidence_.chain.closes(number) &&
           (made_.isForeign.empty() || made_.isForeign[number] == 0);
  };
  const auto sure = static_cast<std::size_t>(std::ranges::count_if(chain_, isSure));
  return sure > supported * kMore && sure * kSupported > made_.entries.size();
}

/// Takes out entries that no header speaks for and that cannot be true: garbage in an index looks so.
void Choosing::dropWild() {
  constexpr std::uint64_t kPlain = std::uint64_t{1} << 16U;
  std::size_t end = made_.entries.size();
  const auto isBeyond = [&](std::size_t entry) {
    return made_.places.headerOf(entry, made_.entries) >= static_cast<std::int64_t>(evidence_.scan.end);
  };
  const auto isSupported = [&](std::size_t entry) { return made_.places.places[entry].support != Support::none; };
  while (end > 0 && !isSupported(end - 1) && isBeyond(end - 1)) --end;
  std::size_t kept = 0;
  for (std::size_t i = 0; i < end; ++i) {
    const std::uint8_t number = made_.entries[i].stream;
    const std::uint64_t largest = number < evidence_.facts.size() ? evidence_.facts[number].largest : 0;
    if (!isSupported(i) && made_.entries[i].size > std::max(kPlain, 4 * largest)) continue;
    made_.entries[kept] = made_.entries[i];
    made_.places.places[kept++] = made_.places.places[i];
  }
  made_.entries.resize(kept);
  made_.places.places.resize(kept);
}

}  // namespace

ChosenEntries chooseEntries(const Evidence& evidence, std::vector<TemplateEntry> entries,
                            std::span<const std::uint32_t> chain) {
  return Choosing(evidence, std::move(entries), chain).run();
}

}  // namespace zelvo::salvage
