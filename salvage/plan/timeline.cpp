// The lag of a sound track is its clock less that of the pictures where a chunk of it begins. It is learnt in front of
// the first gap. Behind a gap it differs by the time of the lost sound less that of the lost pictures; the bytes of the
// gap tell the sum of both, and a clock in the pictures themselves their number but for whole turns.
#include "salvage/plan/timeline.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "avi/chunk_codes.h"
#include "salvage/payloads/gap_share.h"
#include "salvage/plan/clock_turns.h"
#include "salvage/plan/refill.h"
#include "salvage/plan/sound_track.h"
#include "salvage/plan/whole_chunks.h"

namespace zelvo::salvage {

namespace {

constexpr std::size_t kMaxLooks = 4096;
constexpr std::uint8_t kNoTrack = 0xff;
constexpr double kMostTurned = 150;  ///< more than the bytes tell; beyond it, the clock was set anew

class Timeline {
 public:
  /// `lengthens`: where nothing is missing, the slot before a gap may take its bytes.
  Timeline(const Evidence& evidence, const FilmStreams& streams, std::span<const FilmGap> gaps, const WholeFilm& whole,
           bool lengthens, FilmPlan& plan);

  /// `shares`: how many pictures each gap that is filled lacks, when that is known.
  void run(const std::vector<GapEstimate>& shares);
  /// The gaps that were filled.
  [[nodiscard]] std::vector<GapEstimate>& estimates() { return estimates_; }
  /// How many pictures are there without those that were filled in.
  [[nodiscard]] std::uint64_t pictures() const;
  /// How many pictures so many bytes hold at the most.
  [[nodiscard]] std::uint64_t picturesIn(std::uint64_t bytes) const;
  void finish() {
    plan_.slots = std::move(made_);
    plan_.drift = drift_;
  }

 private:
  /// What is missing in a gap.
  struct Missing {
    std::size_t pictures = 0;
    std::vector<double> sound;  ///< seconds, by track
  };

  [[nodiscard]] double seconds(const Slot& slot) const {
    const std::uint8_t track = trackOf_[slot.stream];
    const double pace = track == kNoTrack ? 1 : tracks_[track].pace();
    return static_cast<double>(streams_.duration(slot.stream, slot.size)) / 1e9 * pace;
  }
  void learnPaces();
  [[nodiscard]] bool isPicture(const Slot& slot) const { return pictures_ == slot.stream && !slot.isPalette; }
  [[nodiscard]] SoundTrack* trackOf(const Slot& slot) {
    const std::uint8_t number = trackOf_[slot.stream];
    return number == kNoTrack ? nullptr : &tracks_[number];
  }
  void advance(const Slot& slot);
  [[nodiscard]] std::vector<std::optional<double>> lagsBehind(std::size_t slot, std::size_t end) const;
  [[nodiscard]] bool isCoarse(const SoundTrack& track) const { return track.chunkTime > 4 * pictureTime_; }
  /// Whether nearly all of its chunks have one size.
  [[nodiscard]] bool isFixed(const SoundTrack& track) const {
    const std::uint8_t number = streams_.numberOf(track.stream);
    return number < evidence_.facts.size() && evidence_.facts[number].fixedSize == track.chunkSize;
  }
  [[nodiscard]] std::optional<Missing> missing(const FilmGap& gap, std::size_t end, bool isLast,
                                               std::optional<std::size_t> share);
  bool takeWholeChunks(std::uint64_t bytes, Missing& missing) const;
  [[nodiscard]] bool isNothingMissing(const FilmGap& gap, std::size_t end) const;
  void lengthenLast(std::uint32_t size);
  [[nodiscard]] double picturesByBytes(std::uint64_t bytes, const std::vector<double>& shift) const;
  [[nodiscard]] std::size_t pickPictures(double estimate, double least, std::optional<double> turned) const;
  [[nodiscard]] std::optional<double> turnedBy(std::size_t slot, std::size_t end) const;
  void fill(std::size_t place, const Missing& missing);
  void noteDrift(std::size_t slot, std::size_t end);

  const Evidence& evidence_;
  const FilmStreams& streams_;
  std::span<const FilmGap> gaps_;
  const WholeFilm& whole_;
  const bool lengthens_;
  FilmPlan& plan_;
  std::vector<Slot> made_;
  std::vector<SoundTrack> tracks_;
  std::array<std::uint8_t, kMaxStreams> trackOf_{};  ///< of each stream; `kNoTrack` without one
  std::optional<std::uint8_t> pictures_;             ///< the stream of pictures
  double pictureTime_ = 0;
  double pictureBytes_ = 0;  ///< a usual chunk with its header
  double pictureClock_ = 0;
  std::size_t refilled_ = 0;
  std::optional<ClockTurns> turns_;
  bool hasPassedGap_ = false;
  double drift_ = 0;  ///< as in FilmPlan
  std::vector<GapEstimate> estimates_;
};

Timeline::Timeline(const Evidence& evidence, const FilmStreams& streams, std::span<const FilmGap> gaps,
                   const WholeFilm& whole, bool lengthens, FilmPlan& plan)
    : evidence_(evidence), streams_(streams), gaps_(gaps), whole_(whole), lengthens_(lengthens), plan_(plan) {
  const std::vector<std::vector<std::uint32_t>> sizes = sampledSizes(plan.slots, streams.count());
  trackOf_.fill(kNoTrack);
  for (std::size_t i = 0; i < streams.count(); ++i) {
    const auto index = static_cast<std::uint8_t>(i);
    if (sizes[i].empty()) continue;
    const std::uint32_t usual = sizes[i][sizes[i].size() / 2];
    const double time = static_cast<double>(streams.duration(index, usual)) / 1e9;
    if (time <= 0) continue;
    if (streams.isSound(index)) {
      trackOf_[index] = static_cast<std::uint8_t>(tracks_.size());
      tracks_.emplace_back(index, time, usual);
    }
    if (!streams.isPicture(index) || pictures_) continue;
    pictures_ = index;
    pictureTime_ = time;
    double sum = 0;
    for (const std::uint32_t size : sizes[i]) sum += size;
    pictureBytes_ = avi::kChunkHeader + sum / static_cast<double>(sizes[i].size());
  }
  if (pictures_) learnPaces();
}

/// Sound is set against the pictures between it and the next sound of its track where no gap is.
void Timeline::learnPaces() {
  double pictures = 0;
  auto gap = gaps_.begin();
  std::size_t part = 0;
  for (std::size_t i = 0; i < plan_.slots.size(); ++i) {
    for (; gap != gaps_.end() && gap->before <= i; ++gap) ++part;
    const Slot& slot = plan_.slots[i];
    if (isPicture(slot)) pictures += pictureTime_;
    if (SoundTrack* const track = trackOf(slot)) track->compare(part, pictures, seconds(slot));
  }
  for (SoundTrack& track : tracks_) track.setPace();
}

void Timeline::advance(const Slot& slot) {
  constexpr std::size_t kEnough = 8;
  constexpr std::size_t kMost = 4096;
  made_.push_back(slot);
  if (isPicture(slot)) pictureClock_ += pictureTime_;
  SoundTrack* const track = trackOf(slot);
  if (track == nullptr) return;
  // Many films begin with more sound than usual, so the first chunk is no example.
  const bool learns = track->chunks > 0 && track->lags() < kMost && (!hasPassedGap_ || track->lags() < kEnough);
  if (learns) track->learn(track->clock - pictureClock_);
  ++track->chunks;
  track->clock += seconds(slot);
}

/// The lag of each track after a gap, as if nothing were missing; nothing where no chunk of it comes before `end`.
std::vector<std::optional<double>> Timeline::lagsBehind(std::size_t slot, std::size_t end) const {
  constexpr std::size_t kTight = 3;
  struct Behind {
    double clock = 0;
    std::array<double, kTight> lags{};
    std::size_t found = 0;
  };
  std::vector<Behind> tracks(tracks_.size());
  for (std::size_t t = 0; t < tracks.size(); ++t) tracks[t].clock = tracks_[t].clock;
  double pictureClock = pictureClock_;
  std::size_t open = tracks_.size();
  for (std::size_t i = slot; i < std::min(end, slot + kMaxLooks) && open > 0; ++i) {
    const Slot& next = plan_.slots[i];
    if (isPicture(next)) pictureClock += pictureTime_;
    const std::uint8_t number = trackOf_[next.stream];
    if (number == kNoTrack) continue;
    Behind& track = tracks[number];
    const std::size_t wanted = isCoarse(tracks_[number]) ? 1 : kTight;
    if (track.found < wanted) {
      track.lags[track.found++] = track.clock - pictureClock;
      if (track.found == wanted) --open;
    }
    track.clock += seconds(next);
  }
  std::vector<std::optional<double>> lags;
  for (Behind& track : tracks)
    lags.push_back(track.found == 0 ? std::nullopt : std::optional(medianOf(std::span(track.lags).first(track.found))));
  return lags;
}

/// By how many pictures the codec's clock has moved on in a gap in front of `slot`, less than one turn.
std::optional<double> Timeline::turnedBy(std::size_t slot, std::size_t end) const {
  if (!turns_ || end <= slot) return std::nullopt;
  return turns_->between(made_, std::span<const Slot>(plan_.slots).subspan(slot, end - slot));
}

/// `shift`: by track, seconds of lost sound less those of lost pictures.
double Timeline::picturesByBytes(std::uint64_t bytes, const std::vector<double>& shift) const {
  double left = static_cast<double>(bytes);
  double perPicture = pictureBytes_;
  for (std::size_t t = 0; t < tracks_.size(); ++t) {
    const double rate = (tracks_[t].chunkSize + static_cast<double>(avi::kChunkHeader)) / tracks_[t].chunkTime;
    left -= shift[t] * rate;
    perPicture += pictureTime_ * rate;
  }
  return perPicture > 0 ? left / perPicture : 0;
}

std::size_t Timeline::pickPictures(double estimate, double least, std::optional<double> turned) const {
  double picked = std::max(std::round(estimate), std::ceil(least));
  if (turned) {
    const double turn = turns_->turn();
    picked = *turned + std::round((estimate - *turned) / turn) * turn;
    while (picked < least - 0.3) picked += turn;
    picked = std::round(picked);
  }
  return static_cast<std::size_t>(std::clamp(picked, 0.0, 1e6));
}

/// Whether the clocks on both sides of a gap fit each other as they are.
bool Timeline::isNothingMissing(const FilmGap& gap, std::size_t end) const {
  if (gap.isTorn && whole_.missing.value_or(0) >= gap.missing && whole_.missing) return false;
  const auto behind = lagsBehind(gap.before, end);
  for (std::size_t t = 0; t < tracks_.size(); ++t) {
    const auto usual = tracks_[t].usualLag();
    if (!usual || !behind[t] || isCoarse(tracks_[t])) continue;
    if (std::abs(*usual - *behind[t]) > 0.75 * std::max(pictureTime_, tracks_[t].chunkTime)) return false;
  }
  const auto turned = turnedBy(gap.before, end);
  return !turned || *turned < 0.5 || *turned > turns_->turn() - 0.5;
}

void Timeline::lengthenLast(std::uint32_t size) {
  Slot& slot = made_.back();
  SoundTrack* const track = trackOf(slot);
  if (track != nullptr) track->clock -= seconds(slot);
  slot.size = size;
  slot.state = SlotState::sizeMended;
  if (track != nullptr) track->clock += seconds(slot);
}

/// Where chunks of one size fill a gap to the byte, they did so in the film.
bool Timeline::takeWholeChunks(std::uint64_t bytes, Missing& missing) const {
  if (!pictures_ || tracks_.size() != 1 || !isFixed(tracks_.front())) return false;
  const std::uint8_t number = streams_.numberOf(*pictures_);
  const auto picture = number < evidence_.facts.size() ? evidence_.facts[number].fixedSize : std::nullopt;
  const auto whole = wholeChunks(bytes, picture, tracks_.front().chunkSize, missing.pictures);
  if (!whole) return false;
  missing = {whole->pictures, {static_cast<double>(whole->sounds) * tracks_.front().chunkTime}};
  return true;
}

/// Nothing when no sound after the gap tells, and a later gap may know more.
std::optional<Timeline::Missing> Timeline::missing(const FilmGap& gap, std::size_t end, bool isLast,
                                                   std::optional<std::size_t> share) {
  Missing missing;
  std::vector<double> shift(tracks_.size(), 0);
  const auto behind = lagsBehind(gap.before, end);
  std::vector<std::size_t> known;
  for (std::size_t t = 0; t < tracks_.size(); ++t) {
    const auto usual = tracks_[t].usualLag();
    if (!usual || !behind[t]) continue;
    shift[t] = *usual - *behind[t];
    known.push_back(t);
  }
  if (known.empty() && !tracks_.empty() && !isLast) return std::nullopt;
  // The track whose chunks are shortest tells most exactly.
  const auto tightest = std::ranges::min_element(known, {}, [&](std::size_t t) { return tracks_[t].chunkTime; });
  if (tightest != known.end()) {
    for (std::size_t t = 0; t < tracks_.size(); ++t) {
      if (std::ranges::find(known, t) == known.end()) shift[t] = shift[*tightest];
    }
  }
  bool isExact = false;
  if (pictures_) {
    double least = 0;
    for (const std::size_t t : known) least = std::max(least, -shift[t] / pictureTime_ - 0.75);
    const double estimate = gap.bytes > 0 ? picturesByBytes(gap.bytes - gap.tail, shift) : least;
    auto turned = turnedBy(gap.before, end);
    if (turned && *turned > kMostTurned + 4 * estimate) turned.reset();
    missing.pictures =
        share ? std::max(*share, pickPictures(least, least, std::nullopt)) : pickPictures(estimate, least, turned);
    isExact = turned.has_value();
  }
  for (std::size_t t = 0; t < tracks_.size(); ++t) {
    double time = shift[t] + static_cast<double>(missing.pictures) * pictureTime_;
    if (!pictures_)
      time = static_cast<double>(gap.bytes) / (tracks_[t].chunkSize + avi::kChunkHeader) * tracks_[t].chunkTime;
    missing.sound.push_back(std::max(0.0, time));
  }
  isExact = (!gap.isTorn && takeWholeChunks(gap.bytes, missing)) || isExact;
  estimates_.push_back({missing.pictures, gap.bytes, isExact});
  return missing;
}

/// Puts what is missing in at a place of what is made already, in turn.
void Timeline::fill(std::size_t place, const Missing& missing) {
  const std::size_t most = plan_.slots.size() + 4096;
  std::vector<Refill> parts;
  if (pictures_ && missing.pictures > 0) parts.push_back({*pictures_, missing.pictures, 0});
  for (std::size_t t = 0; t < tracks_.size(); ++t) {
    const SoundTrack& track = tracks_[t];
    // Where a chunk lasts for many pictures, its place among them is chance, and less than most of one is none.
    const double half = isCoarse(track) ? 0.25 : 0.5;
    const auto count = static_cast<std::size_t>(std::min(1e6, std::floor(missing.sound[t] / track.chunkTime + half)));
    if (count == 0) continue;
    const bool isAdapted = streams_.countsBytes(track.stream) && !(isCoarse(track) && isFixed(track));
    const std::uint32_t size =
        isAdapted ? track.sizeFor(missing.sound[t], count, streams_.blockOf(track.stream)) : track.chunkSize;
    parts.push_back({track.stream, count, size});
  }
  const std::vector<Slot> slots = refillInTurn(parts, most - std::min(most, refilled_));
  refilled_ += slots.size();
  made_.insert(made_.begin() + static_cast<std::ptrdiff_t>(place), slots.begin(), slots.end());
  for (const Slot& slot : slots) {
    if (pictures_ == slot.stream) pictureClock_ += pictureTime_;
    if (SoundTrack* const track = trackOf(slot)) track->clock += seconds(slot);
  }
}

/// Measures how far the sound after a filled gap is from where it usually is.
void Timeline::noteDrift(std::size_t slot, std::size_t end) {
  const auto behind = lagsBehind(slot, end);
  for (std::size_t t = 0; t < tracks_.size(); ++t) {
    const auto usual = tracks_[t].usualLag();
    if (usual && behind[t]) drift_ = std::max(drift_, std::abs(*behind[t] - *usual));
  }
}

void Timeline::run(const std::vector<GapEstimate>& shares) {
  if (pictures_) turns_.emplace(evidence_.input, evidence_.header.streams[*pictures_].header, *pictures_, plan_.slots);
  made_.reserve(2 * plan_.slots.size());  // What is not used takes no memory, and growing would hold both.
  std::size_t slot = 0;
  FilmGap open;                 // what earlier gaps left to be filled
  std::size_t openPlace = 0;    // where the largest of them is, in what is made
  std::uint64_t openBytes = 0;  // and how large it is
  bool isOpen = false;
  for (std::size_t g = 0; g < gaps_.size(); ++g) {
    const FilmGap& gap = gaps_[g];
    for (; slot < gap.before; ++slot) advance(plan_.slots[slot]);
    if (slot == plan_.slots.size()) break;
    hasPassedGap_ = hasPassedGap_ || slot > 0;
    const std::size_t end = g + 1 < gaps_.size() ? gaps_[g + 1].before : plan_.slots.size();
    if (slot == 0) continue;
    if (lengthens_ && gap.longer != 0 && made_.back().state != SlotState::refilled && isNothingMissing(gap, end)) {
      lengthenLast(gap.longer);
      continue;
    }
    if (!isOpen || gap.bytes > openBytes) {
      openPlace = made_.size();
      openBytes = gap.bytes;
    }
    if (!isOpen) open = {};
    // The chunk whose rest a tail is counts as one of usual size.
    const std::uint64_t tail = gap.tail - std::min(gap.tail, static_cast<std::uint64_t>(pictureBytes_));
    open = {gap.before, open.bytes + gap.bytes, 0, 0, gap.isTorn || open.isTorn, open.tail + tail};
    const std::size_t filled = estimates_.size();
    const auto share = filled < shares.size() ? std::optional(shares[filled].pictures) : std::nullopt;
    const bool isLast = g + 1 == gaps_.size() || gaps_[g + 1].before >= plan_.slots.size();
    const auto found = missing(open, end, isLast, share);
    isOpen = !found;
    if (isOpen) continue;
    fill(openPlace, *found);
    noteDrift(gap.before, end);
  }
  for (; slot < plan_.slots.size(); ++slot) advance(plan_.slots[slot]);
}

std::uint64_t Timeline::picturesIn(std::uint64_t bytes) const {
  const double pictures = picturesByBytes(bytes, std::vector<double>(tracks_.size(), 0));
  return static_cast<std::uint64_t>(std::clamp(std::ceil(2 * pictures), 0.0, 1e6));
}

std::uint64_t Timeline::pictures() const {
  return static_cast<std::uint64_t>(std::ranges::count_if(
      made_, [&](const Slot& slot) { return isPicture(slot) && slot.state != SlotState::refilled; }));
}

}  // namespace

void fillGaps(const Evidence& evidence, const FilmStreams& streams, std::span<const FilmGap> gaps,
              const WholeFilm& whole, FilmPlan& plan) {
  if (gaps.empty()) return;
  auto timeline = std::make_unique<Timeline>(evidence, streams, gaps, whole, true, plan);
  timeline->run({});
  // Sound and pictures that are lost for as long leave the clocks on both sides in step, as a wrong size does. When
  // pictures are missing all the same, and no gap is left that may have held them, that is what happened.
  const bool lengthens = !whole.pictures || timeline->pictures() >= *whole.pictures || !timeline->estimates().empty();
  if (!lengthens) {
    timeline = std::make_unique<Timeline>(evidence, streams, gaps, whole, false, plan);
    timeline->run({});
  }
  std::vector<GapEstimate> shares = timeline->estimates();
  if (const std::uint64_t there = timeline->pictures();
      whole.pictures && there <= *whole.pictures &&
      shareOut(shares, *whole.pictures - there, timeline->picturesIn(whole.missing.value_or(0)))) {
    timeline = std::make_unique<Timeline>(evidence, streams, gaps, whole, lengthens, plan);
    timeline->run(shares);
  }
  timeline->finish();
}

}  // namespace zelvo::salvage
