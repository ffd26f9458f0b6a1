// 1. A sample of the file is read; everything after that happens in memory.
// 2. Headers, and the chunks of each place, as a deep repair finds them.
// 3. What is left between them is sorted by its bytes.
// 4. What a deep repair would keep: planned where all of the file is there, else estimated from the places.
#include "salvage/triage/triage.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "avi/chunk_codes.h"
#include "avi/input_file.h"
#include "salvage/deep_repair.h"
#include "salvage/payloads/codec.h"
#include "salvage/triage/format_signature.h"
#include "salvage/triage/held_file.h"

namespace zelvo::salvage {

namespace {

/// What a plan without decoding may be off by.
constexpr double kWholeMargin = 0.02;
constexpr double kSampleMargin = 0.03;
/// More where chunks are larger than places: few of their headers are seen.
constexpr double kLargeChunkMargin = 0.15;

class Unheard final : public SalvageObserver {
 public:
  void stage(SalvageStage) override {}
  void read(std::uint64_t) override {}
};

bool mayHoldZeros(const SalvagedStream& stream) {
  if (stream.formatTag) {
    constexpr std::array<std::uint16_t, 6> kPlain{1, 2, 3, 6, 7, 0x11};
    return std::ranges::find(kPlain, *stream.formatTag) != kPlain.end();
  }
  SurvivingStream header;
  header.type = stream.type;
  header.handler = stream.handler;
  const Codec codec = codecOf(header);
  return codec == Codec::rawPicture || codec == Codec::unknown;
}

class Triage {
 public:
  explicit Triage(const TriageRun& run) : run_(run) {}

  TriageReport perform();

 private:
  [[nodiscard]] bool isEnding() const { return run_.cancel.abandoned(); }
  [[nodiscard]] SalvageReport plan(std::span<const std::byte> bytes, const FilmRescue* rescue) const;
  void findHeaders();
  void findStreams();
  void claimEdges();
  void findLargest();
  [[nodiscard]] TriageTally tally(std::size_t extent, const StreamTraits& streams);
  [[nodiscard]] TriageEstimate estimate() const;
  /// Few of them lie whole in a place.
  [[nodiscard]] bool hasLargeChunks() const { return largest_.payload >= run_.limits.place() / 2; }
  void describe();

  const TriageRun& run_;
  TriageSample sample_;
  SurvivingHeaders headers_;
  SalvageReport planned_;             ///< of what is held
  std::vector<TriageClaims> claims_;  ///< by extent
  std::vector<TriageTally> tallies_;  ///< by extent
  TriageChunk largest_;               ///< in all places
  bool isGuessed_ = false;            ///< that its stream can be recognised
  TriageReport report_;
};

/// A dry run of the deep repair in memory.
SalvageReport Triage::plan(std::span<const std::byte> bytes, const FilmRescue* rescue) const {
  HeldFile held(bytes);
  Unheard observer;
  return salvage({.input = held,
                  .inputSize = bytes.size(),
                  .rescue = rescue,
                  .observer = observer,
                  .cancel = run_.cancel,
                  .workers = run_.workers,
                  .choices = {},
                  .makeOutput = {}});
}

void Triage::findHeaders() {
  if (sample_.extents.empty()) return;
  HeldFile front(sample_.extents.front().bytes);
  avi::InputFile input(front);
  std::vector<ByteSpan> lost = sample_.extents.front().unrescued;
  for (const ByteSpan& span : sample_.extents.front().unreadable) lost.push_back(span);
  std::ranges::sort(lost, {}, &ByteSpan::begin);
  headers_ = survivingHeaders(input, lost);
}

/// Where headers are lost, all that is held tells what the streams are.
void Triage::findStreams() {
  if (sample_.extents.empty()) return;
  if (sample_.isWhole() || headers_.areComplete()) {
    planned_ = plan(sample_.extents.front().bytes, run_.rescue);
    return;
  }
  platform::Bytes together;
  for (const TriageExtent& extent : sample_.extents)
    together.insert(together.end(), extent.bytes.begin(), extent.bytes.end());
  planned_ = plan(together, nullptr);
}

/// Chunks may be larger than a place. One code may stand there by chance, but not several.
void Triage::findLargest() {
  constexpr std::size_t kFewestUnproved = 4;
  std::vector<TriageChunk> unproved;
  for (const TriageClaims& claims : claims_) {
    if (claims.largest.payload > largest_.payload) largest_ = claims.largest;
    unproved.insert(unproved.end(), claims.unproved.begin(), claims.unproved.end());
  }
  if (unproved.size() < kFewestUnproved) return;
  const auto middle = unproved.begin() + static_cast<std::ptrdiff_t>(unproved.size() / 2);
  std::ranges::nth_element(unproved, middle, {}, &TriageChunk::payload);
  if (middle->payload > largest_.payload) largest_ = *middle;
}

/// The chunk that an extent begins in began before it: its end is that of the first chunk there, unless that is too
/// far.
void Triage::claimEdges() {
  for (std::size_t i = 0; i < claims_.size(); ++i) {
    const TriageExtent& extent = sample_.extents[i];
    auto& claims = claims_[i].claims;
    if (extent.offset == 0 || claims.empty()) continue;
    const std::uint64_t edge = claims.front().begin - extent.offset;
    if (edge == 0 || edge > largest_.payload) continue;
    // A place lies in a large chunk more often than in a small one.
    const std::uint64_t end = claims.front().begin;
    if (edge > largest_.payload / 4) {
      claims.push_back({extent.offset, end, largest_.stream, false});
      std::rotate(claims.begin(), claims.end() - 1, claims.end());
    } else {
      claims.front().begin = extent.offset;
    }
  }
}

/// A place without the beginning of a chunk may lie within a large one, when it holds nothing that is known.
TriageTally Triage::tally(std::size_t extent, const StreamTraits& streams) {
  const TriageExtent& place = sample_.extents[extent];
  auto& claims = claims_[extent].claims;
  TriageTally found = tallyExtent(place, claims, streams);
  if (place.offset == 0 || !hasLargeChunks()) return found;
  if (claims.empty() && found.of(TriageKind::unknown) >= place.bytes.size() / 2) {
    claims.push_back({place.offset, place.end(), largest_.stream, false});
    found = tallyExtent(place, claims, streams);
  }
  // Such a chunk is lost with its header, which no index makes up for: as often as a sector is lost.
  if (std::ranges::none_of(claims_, &TriageClaims::hasIndex))
    found.kept -= std::min(found.kept, found.of(TriageKind::zeros));
  return found;
}

TriageEstimate Triage::estimate() const {
  const auto bounded = [](double share, double margin) {
    return TriageEstimate{share, std::max(0.0, share - margin), std::min(1.0, share + margin)};
  };
  if (sample_.fileSize == 0) return {};
  if (sample_.isWhole()) return bounded(keptShare(planned_), kWholeMargin);
  const auto size = static_cast<double>(sample_.fileSize);
  const std::size_t last = sample_.extents.size() - 1;
  double ends = 0;
  double endBytes = 0;
  std::vector<double> between;
  for (std::size_t i = 0; i < sample_.extents.size(); ++i) {
    const auto bytes = static_cast<double>(sample_.extents[i].bytes.size());
    const auto claimed = static_cast<double>(tallies_[i].kept);
    const bool isAtEnd = i == 0 || (i == last && sample_.extents[i].end() == sample_.fileSize);
    if (isAtEnd) {
      ends += claimed;
      endBytes += bytes;
    } else {
      between.push_back(claimed / bytes);
    }
  }
  double mean = 0;
  for (const double share : between) mean += share / static_cast<double>(between.size());
  double variance = 0;
  for (const double share : between) variance += (share - mean) * (share - mean);
  const auto count = static_cast<double>(std::max<std::size_t>(between.size(), 2));
  const double deviation = std::sqrt(variance / (count - 1) / count);
  const double margin = hasLargeChunks() ? kLargeChunkMargin : kSampleMargin;
  TriageEstimate made = bounded((ends + (size - endBytes) * mean) / size, margin + 2 * deviation);
  if (isGuessed_) made.low = 0;
  return made;
}

void Triage::describe() {
  const std::size_t last = sample_.extents.empty() ? 0 : sample_.extents.size() - 1;
  // What was read between the ends stands for all that lies there.
  TriageTally ends;
  TriageTally between;
  std::uint64_t endBytes = 0;
  for (std::size_t i = 0; i < sample_.extents.size(); ++i) {
    const bool isAtEnd = i == 0 || (i == last && sample_.extents[i].end() == sample_.fileSize);
    (isAtEnd ? ends : between).add(tallies_[i]);
    if (isAtEnd) endBytes += sample_.extents[i].bytes.size();
  }
  std::uint64_t betweenBytes = 0;
  for (const std::uint64_t bytes : between.bytes) betweenBytes += bytes;
  const auto size = static_cast<double>(std::max<std::uint64_t>(1, sample_.fileSize));
  const double weight =
      betweenBytes == 0 ? 0 : static_cast<double>(sample_.fileSize - endBytes) / static_cast<double>(betweenBytes);
  const auto share = [&](TriageKind kind) -> double& { return report_.shares.at(static_cast<std::size_t>(kind)); };
  const auto shareOf = [&](std::uint64_t atEnds, std::uint64_t inBetween) {
    return (static_cast<double>(atEnds) + weight * static_cast<double>(inBetween)) / size;
  };
  for (std::size_t kind = 0; kind < kTriageKinds; ++kind)
    report_.shares.at(kind) = shareOf(ends.bytes.at(kind), between.bytes.at(kind));
  for (const SalvagedStream& stream : planned_.streams) {
    TriagedStream told{stream, shareOf(ends.streams.at(stream.number), between.streams.at(stream.number))};
    told.stream.slots = {};
    report_.streams.push_back(std::move(told));
  }
  report_.format = ends.format.empty() ? between.format : ends.format;
  const auto isOwn = [](const SalvagedStream& stream) { return stream.origin == HeaderOrigin::own; };
  const auto own = std::ranges::count_if(planned_.streams, isOwn);
  const bool isAllOwn = !planned_.streams.empty() && own == std::ssize(planned_.streams) &&
                        planned_.streamsWithoutHeader == 0 && planned_.hasMainHeader;
  report_.headers = isAllOwn                            ? TriageHeaders::own
                    : own > 0 || planned_.hasMainHeader ? TriageHeaders::partlyLost
                                                        : TriageHeaders::lost;
  report_.kept = estimate();
  const bool isOtherFormat =
      report_.kept.share == 0 && !sample_.extents.empty() && !formatBySignature(sample_.extents.front().bytes).empty();
  if (!isOtherFormat) return;
  for (const TriageKind kind : {TriageKind::film, TriageKind::noise, TriageKind::text, TriageKind::unknown})
    share(TriageKind::otherFormat) += std::exchange(share(kind), 0.0);
}

TriageReport Triage::perform() {
  static const std::vector<ByteSpan> kNothing;
  sample_ = sampleFile(
      run_.input, run_.rescue != nullptr ? run_.rescue->lost : kNothing, [this] { return isEnding(); }, run_.limits);
  report_.fileSize = sample_.fileSize;
  report_.bytesRead = sample_.bytesRead;
  report_.places = sample_.reads;
  report_.isWhole = sample_.isWhole();
  for (const TriageExtent& extent : sample_.extents) {
    report_.failedReads += extent.unreadable.size();
    for (const ByteSpan& span : extent.unreadable) report_.failed += span.end - span.begin;
  }
  if (!sample_.isComplete) return std::move(report_);
  findHeaders();
  const StreamCodes codes(headers_);
  for (const TriageExtent& extent : sample_.extents) {
    if (isEnding()) return std::move(report_);
    const std::uint64_t from = extent.offset == 0 ? headers_.mediaBegin() : extent.offset;
    claims_.push_back(claimChunks(extent, from, codes, sample_.fileSize));
  }
  findLargest();
  findStreams();
  claimEdges();
  StreamTraits streams{};
  for (const SalvagedStream& stream : planned_.streams) streams.at(stream.number) = {true, mayHoldZeros(stream)};
  // What a stream is cannot be seen in places that hold none of its chunks whole; in the file it will be.
  isGuessed_ = !sample_.isWhole() && hasLargeChunks() && !streams.at(largest_.stream).isRecognised;
  if (isGuessed_) streams.at(largest_.stream) = {true, true};
  for (std::size_t i = 0; i < claims_.size(); ++i) {
    if (isEnding()) return std::move(report_);
    tallies_.push_back(tally(i, streams));
  }
  describe();
  report_.isComplete = !isEnding();
  return std::move(report_);
}

}  // namespace

double keptShare(const SalvageReport& report) {
  if (report.inputSize == 0 || (report.end != SalvageEnd::planned && report.end != SalvageEnd::written)) return 0;
  std::uint64_t kept = 0;
  for (const SalvagedStream& stream : report.streams)
    kept += stream.all().bytes - stream.of(SlotState::lost).bytes - stream.of(SlotState::refilled).bytes;
  return std::min(1.0, static_cast<double>(kept) / static_cast<double>(report.inputSize));
}

TriageReport triage(const TriageRun& run) { return Triage(run).perform(); }

}  // namespace zelvo::salvage
