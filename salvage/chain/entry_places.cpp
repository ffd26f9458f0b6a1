// Entries between neighbours that the same displacement explains are settled. The rest, with some on either side, are
// windows: in each the best sequence of displacements is found from its first entry to its last and read back from
// there.
#include "salvage/chain/entry_places.h"

#include <algorithm>
#include <array>
#include <map>

#include "avi/byte_order.h"

namespace zelvo::salvage {

namespace {

constexpr std::size_t kMargin = 32;
constexpr std::size_t kMaxWindow = 16'384;
constexpr std::size_t kMaxStates = 64;
constexpr std::uint64_t kMaxReads = 262'144;
/// Hundredths.
constexpr int kExact = 300;
constexpr int kClaimedByAnother = 40;
constexpr int kChosen = 100;
constexpr int kCodeOnly = 120;
constexpr int kSizeOnly = 160;
constexpr int kNextExact = 100;
constexpr int kNextPartly = 60;
constexpr int kOutside = -30;
constexpr int kChange = 260;
constexpr int kAlignedChange = 90;

/// What stands at the place of one entry under one displacement.
struct Found {
  Support support = Support::none;
  bool isClaimed = false;  ///< by another entry
  bool isChosen = false;   ///< as this entry's own
  bool isOutside = false;
  std::int8_t signature = 0;
};

class Placing {
 public:
  Placing(avi::InputFile& input, std::span<const TemplateEntry> entries, const CandidateList& candidates,
          const std::vector<StreamFacts>& facts, const DisplacementCover& cover)
      : input_(input),
        inputSize_(input.size()),
        entries_(entries),
        candidates_(candidates),
        facts_(facts),
        cover_(cover) {}

  EntryPlaces run();

 private:
  [[nodiscard]] bool isSettled(std::size_t entry) const;
  void placeWindow(std::size_t begin, std::size_t end);
  [[nodiscard]] std::vector<std::uint16_t> statesOf(std::size_t begin, std::size_t end) const;
  [[nodiscard]] std::vector<Found> look(std::size_t entry);
  [[nodiscard]] Found lookAt(std::size_t entry, std::size_t state);
  [[nodiscard]] int score(const Found& own, const Found* next) const;
  void group();
  void step(std::vector<int>& scores, std::vector<std::uint8_t>& from) const;
  [[nodiscard]] std::int64_t valueOf(std::size_t state) const { return cover_.values[states_[state]]; }

  avi::InputFile& input_;
  const std::uint64_t inputSize_;
  std::span<const TemplateEntry> entries_;
  const CandidateList& candidates_;
  const std::vector<StreamFacts>& facts_;
  const DisplacementCover& cover_;
  EntryPlaces made_;
  std::vector<std::uint16_t> states_;
  std::vector<std::uint8_t> groups_;  ///< of each state
  std::vector<std::size_t> cursors_;  ///< of each state: candidates in front of it are after the walk
  std::uint64_t reads_ = 0;
  std::uint64_t looks_ = 0;
};

bool Placing::isSettled(std::size_t entry) const {
  const std::uint16_t own = cover_.ofEntry[entry];
  if (own == DisplacementCover::kNone) return false;
  return (entry == 0 || cover_.ofEntry[entry - 1] == own) &&
         (entry + 1 == entries_.size() || cover_.ofEntry[entry + 1] == own);
}

/// The displacements that explain an entry of the window or one beside it; the most frequent ones when there are many.
std::vector<std::uint16_t> Placing::statesOf(std::size_t begin, std::size_t end) const {
  std::map<std::uint16_t, std::size_t> counts;
  for (std::size_t i = begin > 0 ? begin - 1 : 0; i < std::min(end + 1, entries_.size()); ++i) {
    if (cover_.ofEntry[i] != DisplacementCover::kNone) ++counts[cover_.ofEntry[i]];
  }
  if (begin > 0) ++counts[made_.places[begin - 1].displacement];
  std::vector<std::pair<std::size_t, std::uint16_t>> byCount;
  for (const auto& [number, count] : counts) byCount.emplace_back(count, number);
  std::ranges::sort(byCount, [](const auto& one, const auto& other) {
    return one.first != other.first ? one.first > other.first : one.second < other.second;
  });
  byCount.resize(std::min(byCount.size(), kMaxStates));
  std::vector<std::uint16_t> states;
  for (const auto& [count, number] : byCount) states.push_back(number);
  std::ranges::sort(states);
  return states;
}

Found Placing::lookAt(std::size_t entry, std::size_t state) {
  Found found;
  const TemplateEntry& wanted = entries_[entry];
  const std::int64_t place = static_cast<std::int64_t>(wanted.offset) + valueOf(state);
  if (place < 0 || static_cast<std::uint64_t>(place) + 8 > inputSize_) {
    found.isOutside = true;
    return found;
  }
  const auto offset = static_cast<std::uint64_t>(place);
  std::size_t& cursor = cursors_[state];
  cursor = candidates_.firstAtOrAfter(offset, cursor, looks_);
  const auto judge = [&](const Candidate& header) {
    if (wanted.stream < facts_.size())
      found.signature = static_cast<std::int8_t>(facts_[wanted.stream].signature.score(header));
  };
  if (cursor < candidates_.size() && candidates_[cursor].offset() == offset) {
    const Candidate& header = candidates_[cursor];
    if (header.kind() == CandidateKind::data && header.stream() == wanted.stream) {
      found.support = header.size() == wanted.size ? Support::exact : Support::code;
      found.isChosen = cover_.ofEntry[entry] == states_[state];
      found.isClaimed = cover_.isClaimed[cursor] != 0 && cover_.ofEntry[entry] != states_[state];
    }
    judge(header);
    return found;
  }
  if (cover_.ofEntry[entry] != DisplacementCover::kNone || reads_ >= kMaxReads) return found;
  ++reads_;
  std::array<std::byte, 12> bytes{};
  if (input_.read(offset, bytes) < 8) return found;
  const std::span<const std::byte> view = bytes;
  if (avi::loadLittleEndian32(view.subspan<4, 4>()) == wanted.size && wanted.size > 3) found.support = Support::size;
  judge({offset, CandidateKind::data, wanted.stream, 0, wanted.size, avi::loadLittleEndian32(view.subspan<8, 4>())});
  return found;
}

std::vector<Found> Placing::look(std::size_t entry) {
  std::vector<Found> found;
  found.reserve(states_.size());
  for (std::size_t state = 0; state < states_.size(); ++state) found.push_back(lookAt(entry, state));
  return found;
}

int Placing::score(const Found& own, const Found* next) const {
  if (own.isOutside) return kOutside;
  int score = own.signature / 2;
  if (own.support == Support::exact) score += own.isClaimed ? kClaimedByAnother : kExact;
  if (own.isChosen) score += kChosen;
  if (own.support == Support::code) score += kCodeOnly;
  if (own.support == Support::size) score += kSizeOnly;
  if (next != nullptr && next->support == Support::exact && !next->isClaimed) score += kNextExact;
  if (next != nullptr && (next->support == Support::code || next->support == Support::size)) score += kNextPartly;
  return score;
}

/// Numbers the states: those that clusters may change between have one number.
void Placing::group() {
  constexpr std::int64_t kCluster = DisplacementCover::kCluster;
  std::map<std::int64_t, std::uint8_t> numbers;
  groups_.clear();
  for (std::size_t state = 0; state < states_.size(); ++state) {
    const std::int64_t residue = (valueOf(state) % kCluster + kCluster) % kCluster;
    groups_.push_back(numbers.emplace(residue, static_cast<std::uint8_t>(numbers.size())).first->second);
  }
}

/// Adds the cost of the cheapest way into each state: `from` tells which state that comes from.
void Placing::step(std::vector<int>& scores, std::vector<std::uint8_t>& from) const {
  constexpr std::uint8_t kNone = 0xff;
  std::array<std::uint8_t, kMaxStates> bestAligned;
  bestAligned.fill(kNone);
  std::size_t best = 0;
  for (std::size_t state = 0; state < scores.size(); ++state) {
    if (scores[state] > scores[best]) best = state;
    std::uint8_t& aligned = bestAligned[groups_[state]];
    if (aligned == kNone || scores[state] > scores[aligned]) aligned = static_cast<std::uint8_t>(state);
  }
  const std::vector<int> before = scores;
  for (std::size_t state = 0; state < scores.size(); ++state) {
    from[state] = static_cast<std::uint8_t>(state);
    const std::uint8_t aligned = bestAligned[groups_[state]];
    if (before[aligned] - kAlignedChange > scores[state]) {
      scores[state] = before[aligned] - kAlignedChange;
      from[state] = aligned;
    }
    if (before[best] - kChange > scores[state]) {
      scores[state] = before[best] - kChange;
      from[state] = static_cast<std::uint8_t>(best);
    }
  }
}

void Placing::placeWindow(std::size_t begin, std::size_t end) {
  states_ = statesOf(begin, end);
  if (states_.empty()) return;
  group();
  const std::size_t count = states_.size();
  cursors_.assign(count, 0);
  constexpr int kImpossible = -1'000'000'000;
  std::vector<int> scores(count, 0);
  if (begin > 0) {
    for (std::size_t state = 0; state < count; ++state) {
      if (states_[state] != made_.places[begin - 1].displacement) scores[state] = kImpossible;
    }
  }
  std::vector<std::uint8_t> from((end - begin) * count);
  std::vector<Support> supports((end - begin) * count);
  std::vector<std::uint8_t> stepFrom(count);
  std::vector<Found> own = look(begin);
  for (std::size_t i = begin; i < end; ++i) {
    const std::vector<Found> next = i + 1 < entries_.size() ? look(i + 1) : std::vector<Found>{};
    step(scores, stepFrom);
    for (std::size_t state = 0; state < count; ++state) {
      scores[state] += score(own[state], next.empty() ? nullptr : &next[state]);
      from[(i - begin) * count + state] = stepFrom[state];
      supports[(i - begin) * count + state] =
          own[state].isClaimed && own[state].support == Support::exact ? Support::none : own[state].support;
    }
    own = next;
  }
  if (end < entries_.size() && cover_.ofEntry[end] != DisplacementCover::kNone) {
    for (std::size_t state = 0; state < count; ++state) {
      if (states_[state] == cover_.ofEntry[end]) scores[state] += kChange;
    }
  }
  auto state = static_cast<std::size_t>(std::ranges::max_element(scores) - scores.begin());
  for (std::size_t i = end; i-- > begin;) {
    made_.places[i] = {states_[state], supports[(i - begin) * count + state]};
    state = from[(i - begin) * count + state];
  }
}

EntryPlaces Placing::run() {
  if (cover_.values.empty()) return {};
  made_.displacements = cover_.values;
  made_.places.resize(entries_.size());
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    if (isSettled(i)) made_.places[i] = {cover_.ofEntry[i], Support::exact};
  }
  for (std::size_t i = 0; i < entries_.size();) {
    if (isSettled(i)) {
      ++i;
      continue;
    }
    const std::size_t begin = i > kMargin ? i - kMargin : 0;
    std::size_t settled = 0;
    std::size_t end = i;
    while (end < entries_.size() && settled < 2 * kMargin) settled = isSettled(end++) ? settled + 1 : 0;
    end = std::min(end, entries_.size());
    if (settled == 2 * kMargin) end -= kMargin;
    for (std::size_t at = begin; at < end; at += kMaxWindow) placeWindow(at, std::min(end, at + kMaxWindow));
    i = end;
  }
  return std::move(made_);
}

}  // namespace

EntryPlaces placeEntries(avi::InputFile& input, std::span<const TemplateEntry> entries, const CandidateList& candidates,
                         const std::vector<StreamFacts>& facts, const DisplacementCover& cover) {
  return Placing(input, entries, candidates, facts, cover).run();
}

}  // namespace zelvo::salvage
