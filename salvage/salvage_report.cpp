// One walk over the slots, with a clock for each stream. Where spans begin and end is looked up on the way, so each
// slot is met once however many spans there are.
#include "salvage/salvage_report.h"

#include <algorithm>
#include <cmath>
#include <span>

#include "avi/byte_order.h"
#include "salvage/payloads/codec.h"

namespace zelvo::salvage {

namespace {

/// Slots of spans are looked at one by one up to this number in all.
constexpr std::uint64_t kMaxSpanSlots = 8'000'000;

/// `end`: the first state that is left out.
SlotTally sum(const SalvagedStream& stream, SlotState from, std::size_t end = kSlotStates) {
  SlotTally tally;
  for (auto i = static_cast<std::size_t>(from); i < end; ++i) {
    tally.chunks += stream.slots[i].chunks;
    tally.bytes += stream.slots[i].bytes;
    tally.seconds += stream.slots[i].seconds;
  }
  return tally;
}

/// Seconds of a chunk, and of a byte of one.
struct Pace {
  double chunk = 0;
  double byte = 0;

  explicit Pace(const SurvivingStream& stream) {
    if (stream.rate == 0) return;
    const double unit = static_cast<double>(stream.scale) / stream.rate;
    if (stream.type == avi::kAuds && stream.sampleSize != 0) {
      byte = unit / stream.sampleSize;
    } else {
      chunk = unit;
    }
  }
  [[nodiscard]] double of(std::uint32_t size) const { return chunk + byte * size; }
};

bool isGone(SlotState state) { return state == SlotState::lost || state == SlotState::refilled; }

SalvagedStream described(const FilmStream& stream) {
  SalvagedStream told;
  told.number = stream.number;
  told.type = stream.header.type;
  told.handler = stream.header.handler;
  told.origin = stream.origin;
  constexpr std::size_t kCompression = 16;
  if (stream.header.type == avi::kVids && stream.header.format.size() >= kCompression + 4) {
    const avi::FourCC code = avi::FourCC::at(std::span(stream.header.format).subspan(kCompression));
    if (code.value > 0xffff) told.handler = code;
  }
  if (stream.header.type == avi::kAuds) told.formatTag = soundFormat(stream.header).tag;
  return told;
}

/// A film's own clock: that of its first stream of pictures.
std::size_t clockStream(const FilmHeader& header) {
  const auto video =
      std::ranges::find_if(header.streams, [](const FilmStream& one) { return one.header.type == avi::kVids; });
  return video == header.streams.end() ? 0 : static_cast<std::size_t>(video - header.streams.begin());
}

void tellSpans(SalvageReport& report, const FilmPlan& plan, const std::vector<double>& times) {
  const std::size_t told = std::min(plan.spans.size(), kMaxSpans);
  report.spansLeftOut = plan.spans.size() - told;
  std::uint64_t looks = 0;
  for (std::size_t i = 0; i < told; ++i) {
    SalvagedSpan span{.span = plan.spans[i], .begin = times[2 * i], .end = times[2 * i + 1], .streams = {}};
    const std::size_t end =
        std::min<std::uint64_t>(plan.slots.size(), std::uint64_t{span.span.firstSlot} + span.span.slots);
    for (std::size_t slot = span.span.firstSlot; slot < end && looks < kMaxSpanSlots; ++slot, ++looks) {
      const Slot& touched = plan.slots[slot];
      if (touched.state == SlotState::whole) continue;
      auto share = std::ranges::find(span.streams, touched.stream, &SpanShare::stream);
      if (share == span.streams.end()) share = span.streams.insert(share, {.stream = touched.stream});
      if (isGone(touched.state)) ++share->gone;
      if (touched.state == SlotState::damaged || touched.state == SlotState::torn || touched.state == SlotState::cut) {
        ++share->hurt;
      }
    }
    std::ranges::sort(span.streams, {}, &SpanShare::stream);
    report.spans.push_back(std::move(span));
  }
}

SalvageVerdict verdictOf(const SalvageReport& report, const FilmPlan& plan) {
  bool isWhole = true;
  bool isUntouched = report.returnsLeftOut == 0 && report.hasMainHeader &&
                     report.headersClaimed == report.streams.size() && report.spans.empty() &&
                     plan.indexedChunks == plan.slots.size();
  for (const SalvagedStream& stream : report.streams) {
    if (stream.notWhole().chunks > 0) isWhole = false;
    if (stream.of(SlotState::whole).chunks != stream.all().chunks || stream.origin != HeaderOrigin::own)
      isUntouched = false;
  }
  if (!isWhole || report.streamsWithoutHeader > 0 || report.chunksLeftOut > 0) return SalvageVerdict::partial;
  return isUntouched ? SalvageVerdict::clean : SalvageVerdict::repaired;
}

}  // namespace

SlotTally SalvagedStream::all() const { return sum(*this, SlotState::whole); }
SlotTally SalvagedStream::mended() const {
  return sum(*this, SlotState::sizeMended, static_cast<std::size_t>(SlotState::damaged));
}
SlotTally SalvagedStream::notWhole() const { return sum(*this, SlotState::damaged); }

void describePlan(SalvageReport& report, const FilmPlan& plan, const FilmHeader& header, bool closesGaps) {
  struct Mark {
    std::size_t slot;
    std::size_t place;
  };
  std::vector<Mark> marks;
  for (std::size_t i = 0; i < std::min(plan.spans.size(), kMaxSpans); ++i) {
    marks.push_back({plan.spans[i].firstSlot, 2 * i});
    marks.push_back({std::size_t{plan.spans[i].firstSlot} + plan.spans[i].slots, 2 * i + 1});
  }
  std::ranges::sort(marks, {}, &Mark::slot);
  std::vector<double> times(marks.size());

  std::vector<Pace> paces;
  for (const FilmStream& stream : header.streams) {
    report.streams.push_back(described(stream));
    paces.emplace_back(stream.header);
  }
  const std::size_t clock = clockStream(header);
  std::vector<std::size_t> sounds;
  for (std::size_t i = 0; i < header.streams.size(); ++i) {
    if (header.streams[i].header.type == avi::kAuds) sounds.push_back(i);
  }
  // How far sound and pictures are apart at most, as far as a chunk of a stream changes it or meets it.
  const auto apart = [&](const std::vector<double>& lost, std::size_t stream) {
    double most = 0;
    if (stream != clock)
      return header.streams[stream].header.type == avi::kAuds ? std::abs(lost[stream] - lost[clock]) : most;
    for (const std::size_t sound : sounds) most = std::max(most, std::abs(lost[sound] - lost[clock]));
    return most;
  };
  std::vector<double> gone(header.streams.size());    // seconds lost so far
  std::vector<double> behind(header.streams.size());  // seconds by which what is written lags so far
  report.syncAfter = plan.drift;
  bool hasChanged = true;  // `behind`, since the clock's last chunk
  double now = 0;
  auto mark = marks.begin();
  for (std::size_t i = 0; i < plan.slots.size(); ++i) {
    for (; mark != marks.end() && mark->slot <= i; ++mark) times[mark->place] = now;
    const Slot& slot = plan.slots[i];
    const std::uint32_t size = payloadSize(slot, header);
    const double seconds = slot.isPalette ? 0 : paces[slot.stream].of(size);
    SlotTally& tally = report.streams[slot.stream].slots[static_cast<std::size_t>(slot.state)];
    ++tally.chunks;
    tally.bytes += size;
    tally.seconds += seconds;
    if (slot.stream == clock) now += seconds;
    if (!isGone(slot.state)) {
      if (slot.stream == clock && !hasChanged) continue;
      report.syncAfter = std::max(report.syncAfter, apart(behind, slot.stream));
      hasChanged = hasChanged && slot.stream != clock;
      continue;
    }
    gone[slot.stream] += seconds;
    if (closesGaps) behind[slot.stream] += seconds;
    hasChanged = hasChanged || closesGaps;
    report.syncBefore = std::max(report.syncBefore, apart(gone, slot.stream));
  }
  for (; mark != marks.end(); ++mark) times[mark->place] = now;
  report.indexedChunks = plan.indexedChunks;
  report.chunksLeftOut += plan.leftOut;
  tellSpans(report, plan, times);
  report.verdict = verdictOf(report, plan);
}

}  // namespace zelvo::salvage
