#include "salvage/triage/triage_look.h"

#include <algorithm>
#include <span>

#include "avi/input_file.h"
#include "salvage/scan/chunk_chain.h"
#include "salvage/scan/media_scan.h"
#include "salvage/triage/format_signature.h"
#include "salvage/triage/held_file.h"

namespace zelvo::salvage {

namespace {

using LookedAt = std::span<const std::byte>;

constexpr std::size_t kTextBlock = 4096;
/// Fewer bytes may be even by chance though a codec made them.
constexpr std::size_t kFewestOfNoise = 16'384;
/// A chunk whose end nothing proves is not believed to be larger.
constexpr std::uint32_t kLargestUnproved = std::uint32_t{1} << 24U;

bool isZero(LookedAt bytes) {
  return std::ranges::all_of(bytes, [](std::byte byte) { return byte == std::byte{0}; });
}

/// Nearly all of it can be printed, and it does not repeat a few characters.
bool isText(LookedAt bytes) {
  constexpr std::size_t kMaxOthersPercent = 3;
  constexpr auto kFewestCharacters = 8;
  const std::size_t mostOthers = bytes.size() * kMaxOthersPercent / 100;
  std::size_t others = 0;
  std::array<bool, 256> isThere{};
  for (const std::byte byte : bytes) {
    const auto value = static_cast<unsigned char>(byte);
    isThere.at(value) = true;
    const bool isPrintable = (value >= 0x20 && value < 0x7f) || value == '\n' || value == '\r' || value == '\t';
    if (!isPrintable && ++others > mostOthers) return false;
  }
  return std::ranges::count(isThere, true) >= kFewestCharacters;
}

/// By the chi-squared test: of even bytes it answers 255, with a deviation of 23.
bool isNoise(LookedAt bytes) {
  constexpr double kMost = 255 + 5 * 22.6;
  if (bytes.size() < kFewestOfNoise) return false;
  std::array<std::uint64_t, 256> counts{};
  for (const std::byte byte : bytes) ++counts.at(static_cast<std::size_t>(byte));
  const double expected = static_cast<double>(bytes.size()) / 256;
  double sum = 0;
  for (const std::uint64_t count : counts) {
    const double apart = static_cast<double>(count) - expected;
    sum += apart * apart / expected;
  }
  return sum < kMost;
}

std::uint64_t inCommon(const std::vector<ByteSpan>& spans, std::uint64_t begin, std::uint64_t end) {
  std::uint64_t bytes = 0;
  auto span = std::ranges::upper_bound(spans, begin, {}, &ByteSpan::end);
  for (; span != spans.end() && span->begin < end; ++span)
    bytes += std::min(span->end, end) - std::max(span->begin, begin);
  return bytes;
}

class Tallying {
 public:
  Tallying(const TriageExtent& extent, const StreamTraits& streams) : extent_(extent), streams_(streams) {}

  TriageTally run(const std::vector<TriageClaim>& claims) {
    std::uint64_t at = extent_.offset;
    for (const TriageClaim& claim : claims) {
      others(at, claim.begin);
      film(claim);
      at = claim.end;
    }
    others(at, extent_.end());
    return tally_;
  }

 private:
  [[nodiscard]] LookedAt bytesOf(std::uint64_t begin, std::uint64_t end) const {
    return LookedAt(extent_.bytes)
        .subspan(static_cast<std::size_t>(begin - extent_.offset), static_cast<std::size_t>(end - begin));
  }
  std::uint64_t& of(TriageKind kind) { return tally_.bytes.at(static_cast<std::size_t>(kind)); }

  /// Bytes that are zero: nobody read some of them.
  void zeros(std::uint64_t begin, std::uint64_t end) {
    const std::uint64_t unrescued = inCommon(extent_.unrescued, begin, end);
    const std::uint64_t unreadable = std::min(end - begin - unrescued, inCommon(extent_.unreadable, begin, end));
    of(TriageKind::unrescued) += unrescued;
    of(TriageKind::unreadable) += unreadable;
    of(TriageKind::zeros) += end - begin - unrescued - unreadable;
  }

  /// Calls `visit` with each stretch, and whether it is zero sector by sector.
  template <class Visit>
  void eachStretch(std::uint64_t begin, std::uint64_t end, const Visit& visit) const {
    std::uint64_t from = begin;
    bool wasZero = false;
    for (std::uint64_t at = begin; at < end;) {
      const std::uint64_t next = std::min(end, (at / kSector + 1) * kSector);
      const bool isWhole = next - at == kSector || (at == begin && next == end) || next == extent_.end();
      const bool isEmpty = isWhole && isZero(bytesOf(at, next));
      if (at > begin && isEmpty != wasZero) {
        visit(from, at, wasZero);
        from = at;
      }
      wasZero = isEmpty;
      at = next;
    }
    if (from < end) visit(from, end, wasZero);
  }

  void film(const TriageClaim& claim) {
    const bool isOfStream = claim.stream < kMaxStreams;
    const bool isKept = isOfStream && streams_.at(claim.stream).isRecognised;
    if (isKept) tally_.kept += claim.end - claim.begin;
    const bool holds = isOfStream && streams_.at(claim.stream).holdsZeros;
    eachStretch(claim.begin, claim.end, [&](std::uint64_t begin, std::uint64_t end, bool isEmpty) {
      const bool isLost =
          isEmpty && inCommon(extent_.unrescued, begin, end) + inCommon(extent_.unreadable, begin, end) > 0;
      if (isEmpty && (!holds || isLost)) {
        zeros(begin, end);
      } else {
        of(TriageKind::film) += end - begin;
        tally_.streams.at(isOfStream ? claim.stream : kMaxStreams) += end - begin;
      }
    });
  }

  void others(std::uint64_t begin, std::uint64_t end) {
    eachStretch(begin, end, [&](std::uint64_t from, std::uint64_t to, bool isEmpty) {
      if (isEmpty) {
        zeros(from, to);
      } else {
        sortOut(from, to);
      }
    });
  }

  void sortOut(std::uint64_t begin, std::uint64_t end) {
    const std::string_view format = begin % kSector == 0 ? formatBySignature(bytesOf(begin, end)) : std::string_view();
    if (!format.empty()) {
      if (tally_.format.empty()) tally_.format = format;
      of(TriageKind::otherFormat) += end - begin;
      return;
    }
    if (isNoise(bytesOf(begin, end))) {
      of(TriageKind::noise) += end - begin;
      return;
    }
    for (std::uint64_t at = begin; at < end; at += kTextBlock) {
      const std::uint64_t next = std::min(end, at + kTextBlock);
      of(isText(bytesOf(at, next)) ? TriageKind::text : TriageKind::unknown) += next - at;
    }
  }

  const TriageExtent& extent_;
  const StreamTraits& streams_;
  TriageTally tally_;
};

}  // namespace

void TriageTally::add(const TriageTally& other) {
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes.at(i) += other.bytes.at(i);
  for (std::size_t i = 0; i < streams.size(); ++i) streams.at(i) += other.streams.at(i);
  kept += other.kept;
  if (format.empty()) format = other.format;
}

TriageClaims claimChunks(const TriageExtent& extent, std::uint64_t from, const StreamCodes& codes,
                         std::uint64_t fileSize) {
  TriageClaims found;
  const std::uint64_t begin = std::clamp(from, extent.offset, extent.end());
  if (begin > extent.offset) found.claims.push_back({extent.offset, begin, TriageClaim::kNoStream, true});
  HeldFile held(extent.bytes);
  avi::InputFile input(held);
  const MediaScan scan = scanMedia(input, begin - extent.offset, codes, [] { return false; });
  const ChunkChain chain = linkChunks(scan.candidates, scan.chunkEnds(), scan.end);
  found.hasIndex = !scan.tables.empty() || !scan.standardIndexes.empty();
  const auto isAnchored = [&](std::size_t i) { return chain.closes(i) || chain.is(i, ChainFact::isClosedOn); };
  // Of each candidate, where the next one stands that something proves.
  std::vector<std::uint64_t> nextProved(scan.candidates.size());
  std::uint64_t next = extent.bytes.size();
  for (std::size_t i = scan.candidates.size(); i > 0; --i) {
    nextProved[i - 1] = next;
    if (isAnchored(i - 1)) next = scan.candidates[i - 1].offset();
  }
  std::uint64_t at = begin - extent.offset;
  auto table = scan.tables.begin();
  const auto claim = [&](std::uint64_t first, std::uint64_t last, std::uint8_t stream, bool isProved) {
    last = std::min<std::uint64_t>(last, extent.bytes.size());
    first = std::max(first, at);
    if (first >= last) return;
    found.claims.push_back({extent.offset + first, extent.offset + last, stream, isProved});
    at = last;
  };
  const auto claimTables = [&](std::uint64_t upTo) {
    for (; table != scan.tables.end() && table->begin < upTo; ++table)
      claim(table->header.value_or(table->begin), table->end, TriageClaim::kNoStream, true);
  };
  for (std::size_t i = 0; i < scan.candidates.size(); ++i) {
    const Candidate& candidate = scan.candidates[i];
    claimTables(candidate.offset());
    if (candidate.offset() < at) continue;
    if (candidate.kind() != CandidateKind::data) {
      if (chain.closes(i) || candidate.isContainer())
        claim(candidate.offset(), candidate.next(), TriageClaim::kNoStream, chain.closes(i));
      continue;
    }
    if (chain.closes(i)) {
      if (candidate.size() > found.largest.payload) found.largest = {candidate.size(), candidate.stream()};
      claim(candidate.offset(), candidate.next(), candidate.stream(), true);
    } else if (candidate.size() <= std::min<std::uint64_t>(kLargestUnproved, fileSize)) {
      found.unproved.push_back({candidate.size(), candidate.stream()});
      claim(candidate.offset(), std::min(candidate.next(), nextProved[i]), candidate.stream(), false);
    }
  }
  claimTables(extent.bytes.size());
  return found;
}

TriageTally tallyExtent(const TriageExtent& extent, const std::vector<TriageClaim>& claims,
                        const StreamTraits& streams) {
  return Tallying(extent, streams).run(claims);
}

}  // namespace zelvo::salvage
