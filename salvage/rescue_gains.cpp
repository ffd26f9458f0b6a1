#include "salvage/rescue_gains.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <span>

#include "salvage/payloads/codec.h"
#include "salvage/payloads/key_picture.h"
#include "salvage/plan/film_streams.h"
#include "salvage/writing/film_layout.h"

namespace zelvo::salvage {

namespace {

/// Of all that can come back, what is wanted brings this share.
constexpr double kWantedShare = 0.9;
constexpr double kNanosecond = 1e-9;
/// Slots that are looked at for key pictures, and heads of payloads that are read for it.
constexpr std::uint64_t kMaxLooks = 8'000'000;
constexpr std::uint64_t kMaxHeads = 100'000;

/// Seconds handed out to stretches by their bytes.
class Shares {
 public:
  explicit Shares(const std::vector<ByteSpan>& lost)
      : lost_(lost), before_(lost.size() + 1), turns_(lost.size() + 1), seconds_(lost.size()) {
    for (std::size_t i = 0; i < lost.size(); ++i) before_[i + 1] = before_[i] + (lost[i].end - lost[i].begin);
  }

  /// To the lost bytes from `begin` up to `end`; false when there are none.
  bool give(std::uint64_t begin, std::uint64_t end, double seconds) {
    const std::size_t first = firstAfter(begin);
    const auto last =
        static_cast<std::size_t>(std::ranges::lower_bound(lost_, end, {}, &ByteSpan::begin) - lost_.begin());
    if (first >= last) return false;
    const std::uint64_t inFirst = bytesOf(first, begin, end);
    const std::uint64_t inLast = first + 1 < last ? bytesOf(last - 1, begin, end) : 0;
    const std::uint64_t between = first + 1 < last ? before_[last - 1] - before_[first + 1] : 0;
    const std::uint64_t bytes = inFirst + between + inLast;
    if (bytes == 0) return false;
    const double each = seconds / static_cast<double>(bytes);
    seconds_[first] += each * static_cast<double>(inFirst);
    if (first + 1 == last) return true;
    seconds_[last - 1] += each * static_cast<double>(inLast);
    turns_[first + 1] += each;
    turns_[last - 1] -= each;
    return true;
  }

  [[nodiscard]] std::vector<double> take() const {
    std::vector<double> seconds = seconds_;
    double each = 0;
    for (std::size_t i = 0; i < lost_.size(); ++i) {
      each += turns_[i];
      // What is left of rounding is no time.
      seconds[i] += std::max(0.0, each) * static_cast<double>(lost_[i].end - lost_[i].begin);
    }
    return seconds;
  }

 private:
  [[nodiscard]] std::size_t firstAfter(std::uint64_t begin) const {
    return static_cast<std::size_t>(std::ranges::upper_bound(lost_, begin, {}, &ByteSpan::end) - lost_.begin());
  }
  [[nodiscard]] std::uint64_t bytesOf(std::size_t i, std::uint64_t begin, std::uint64_t end) const {
    const std::uint64_t from = std::max(begin, lost_[i].begin);
    return std::min(end, lost_[i].end) - std::min(from, std::min(end, lost_[i].end));
  }

  const std::vector<ByteSpan>& lost_;
  std::vector<std::uint64_t> before_;  ///< bytes of the stretches in front of each
  std::vector<double> turns_;          ///< by how much the seconds for a byte change at each
  std::vector<double> seconds_;        ///< of bytes at the ends of what was given
};

class Weighing {
 public:
  explicit Weighing(const RescueWeighing& from) : from_(from), streams_(from.header), shares_(from.lost) {
    for (const FilmStream& stream : from.header.streams) codecs_.push_back(codecOf(stream.header));
  }

  RescueReport run();

 private:
  void measureFilm();
  [[nodiscard]] double secondsOf(const PlanSpan& span);
  [[nodiscard]] double dependentOn(std::uint8_t stream, std::size_t firstSlot);
  [[nodiscard]] bool isKey(const Slot& slot);
  [[nodiscard]] double durationOf(const Slot& slot) const {
    if (slot.isPalette) return 0;
    return kNanosecond * static_cast<double>(streams_.duration(slot.stream, payloadSize(slot, from_.header)));
  }

  const RescueWeighing& from_;
  const FilmStreams streams_;
  Shares shares_;
  std::vector<Codec> codecs_;
  double filmSeconds_ = 0;
  double mediaBytes_ = 0;
  std::uint64_t looks_ = 0;
  std::uint64_t heads_ = 0;
};

void Weighing::measureFilm() {
  std::vector<double> seconds(streams_.count());
  for (const Slot& slot : from_.plan.slots) {
    seconds[slot.stream] += durationOf(slot);
    mediaBytes_ += static_cast<double>(payloadSize(slot, from_.header));
  }
  filmSeconds_ = seconds.empty() ? 0 : *std::ranges::max_element(seconds);
}

bool Weighing::isKey(const Slot& slot) {
  if (slot.isIndexed) return slot.hasKeyFlag;
  if (slot.pieces != Slot::kOnePiece || ++heads_ > kMaxHeads) return true;
  std::array<std::byte, kKeyHead> head{};
  const auto wanted = std::min<std::size_t>(slot.size, head.size());
  const std::size_t held = from_.input.read(slot.source, std::span(head).first(wanted));
  return isKeyPicture(codecs_[slot.stream], std::span(head).first(held)).value_or(false);
}

/// How long the whole pictures from `firstSlot` on last that cannot be decoded without the one before them.
double Weighing::dependentOn(std::uint8_t stream, std::size_t firstSlot) {
  double seconds = 0;
  for (std::size_t i = firstSlot; i < from_.plan.slots.size() && looks_ < kMaxLooks; ++i, ++looks_) {
    const Slot& slot = from_.plan.slots[i];
    if (slot.stream != stream || slot.isPalette) continue;
    const bool isIntact = slot.state < SlotState::damaged;
    if (!isIntact || (slot.size > 0 && isKey(slot))) break;
    seconds += durationOf(slot);
  }
  return seconds;
}

double Weighing::secondsOf(const PlanSpan& span) {
  if (span.slots == 0) {
    // After the last chunk that anything tells of.
    const std::uint64_t begin = span.originalBegin.value_or(span.begin);
    const std::uint64_t bytes =
        span.originalEnd.value_or(span.end) - std::min(begin, span.originalEnd.value_or(span.end));
    return mediaBytes_ > 0 ? filmSeconds_ * static_cast<double>(bytes) / mediaBytes_ : 0;
  }
  std::vector<double> seconds(streams_.count());
  std::vector<bool> isTouched(streams_.count());
  const std::size_t end = std::min<std::size_t>(from_.plan.slots.size(), std::size_t{span.firstSlot} + span.slots);
  for (std::size_t i = span.firstSlot; i < end && looks_ < kMaxLooks; ++i, ++looks_) {
    const Slot& slot = from_.plan.slots[i];
    seconds[slot.stream] += durationOf(slot);
    isTouched[slot.stream] = true;
  }
  double most = 0;
  for (std::size_t stream = 0; stream < seconds.size(); ++stream) {
    const auto number = static_cast<std::uint8_t>(stream);
    if (isTouched[stream] && streams_.isPicture(number)) seconds[stream] += dependentOn(number, end);
    most = std::max(most, seconds[stream]);
  }
  return most;
}

RescueReport Weighing::run() {
  RescueReport report;
  report.places = from_.lost.size();
  for (const ByteSpan& span : from_.lost) report.bytes += span.end - span.begin;
  measureFilm();
  for (const PlanSpan& span : from_.plan.spans) {
    if (span.cause != LossCause::unrescued) continue;
    const double seconds = secondsOf(span);
    // The end of a film that its file lacks may be of the map alone.
    const std::uint64_t end = span.slots == 0 ? span.begin + (*span.originalEnd - *span.originalBegin) : span.end;
    if (shares_.give(span.begin, std::max(end, span.begin + 1), seconds)) report.seconds += seconds;
  }
  const bool hasHeaders = from_.areHeadersHurt && shares_.give(0, from_.mediaBegin, filmSeconds_);
  const std::vector<double> seconds = shares_.take();
  const double all = std::accumulate(seconds.begin(), seconds.end(), 0.0);
  for (std::size_t i = 0; i < from_.lost.size(); ++i)
    report.gains.push_back({from_.map[i], seconds[i], hasHeaders && from_.lost[i].begin < from_.mediaBegin});
  std::ranges::stable_sort(report.gains, [](const RescueGain& one, const RescueGain& other) {
    return one.perMebibyte() > other.perMebibyte();
  });
  if (from_.plan.slots.empty()) report.wanted = report.gains.size();
  for (double brought = 0; report.wanted < report.gains.size() && brought < kWantedShare * all; ++report.wanted)
    brought += report.gains[report.wanted].seconds;
  return report;
}

}  // namespace

double RescueGain::perMebibyte() const {
  constexpr double kMebibyte = 1 << 20U;
  return place.end > place.begin ? seconds * kMebibyte / static_cast<double>(place.end - place.begin) : 0;
}

RescueReport weighRescue(const RescueWeighing& weighing) { return Weighing(weighing).run(); }

std::vector<ByteSpan> wantedPlaces(const RescueReport& report) {
  std::vector<ByteSpan> places;
  for (std::size_t i = 0; i < std::min(report.wanted, report.gains.size()); ++i)
    places.push_back(report.gains[i].place);
  std::ranges::sort(places, {}, &ByteSpan::begin);
  return places;
}

}  // namespace zelvo::salvage
