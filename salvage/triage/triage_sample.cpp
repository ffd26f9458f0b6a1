#include "salvage/triage/triage_sample.h"

#include <algorithm>
#include <span>

namespace zelvo::salvage {

namespace {

constexpr std::uint64_t kPage = 4096;

/// A number below `limit` that looks like chance and is always the same for the same place.
std::uint64_t scattered(std::uint64_t place, std::uint64_t limit) {
  std::uint64_t number = (place + 1) * 0x9e3779b97f4a7c15U;
  number = (number ^ number >> 30U) * 0xbf58476d1ce4e5b9U;
  number = (number ^ number >> 27U) * 0x94d049bb133111ebU;
  return limit == 0 ? 0 : (number ^ number >> 31U) % limit;
}

std::vector<ByteSpan> placesIn(std::uint64_t size, const TriageLimits& limits) {
  const std::uint64_t piece = limits.place();
  std::vector<ByteSpan> places;
  const auto addAll = [&](std::uint64_t begin, std::uint64_t end) {
    for (; begin < end; begin += piece) places.push_back({begin, std::min(end, begin + piece)});
  };
  if (size <= piece * limits.places) {
    addAll(0, size);
    return places;
  }
  const std::uint64_t ends = std::min(limits.ends, limits.bytes / 4) / piece * piece;
  addAll(0, ends);
  const std::uint64_t last = (size - ends) / kPage * kPage;
  const auto atEnds = places.size() + static_cast<std::size_t>((size - last + piece - 1) / piece);
  const std::uint64_t between = limits.places - std::min(limits.places, atEnds);
  // Each has its own part of the file, and lies anywhere in it.
  for (std::uint64_t i = 0; i < between; ++i) {
    const std::uint64_t step = (last - ends) / between;
    const std::uint64_t begin = (ends + i * step) / kPage * kPage + scattered(i, (step - piece) / kPage + 1) * kPage;
    places.push_back({begin, std::min(last, begin + piece)});
  }
  addAll(last, size);
  return places;
}

/// Takes out of the place what was not rescued.
void blank(TriageExtent& extent, const ByteSpan& place, const std::vector<ByteSpan>& unrescued) {
  auto span = std::ranges::upper_bound(unrescued, place.begin, {}, &ByteSpan::end);
  for (; span != unrescued.end() && span->begin < place.end; ++span) {
    const ByteSpan part{std::max(span->begin, place.begin), std::min(span->end, place.end)};
    std::fill(extent.bytes.begin() + static_cast<std::ptrdiff_t>(part.begin - extent.offset),
              extent.bytes.begin() + static_cast<std::ptrdiff_t>(part.end - extent.offset), std::byte{0});
    extent.unrescued.push_back(part);
  }
}

bool isInside(const ByteSpan& place, const std::vector<ByteSpan>& unrescued) {
  const auto span = std::ranges::upper_bound(unrescued, place.begin, {}, &ByteSpan::end);
  return span != unrescued.end() && span->begin <= place.begin && span->end >= place.end;
}

}  // namespace

std::uint64_t TriageLimits::place() const { return std::max(kPage, bytes / places / kPage * kPage); }

bool TriageSample::isWhole() const {
  if (fileSize == 0) return true;
  return extents.size() == 1 && extents.front().offset == 0 && extents.front().end() == fileSize;
}

TriageSample sampleFile(platform::ReadableFile& file, const std::vector<ByteSpan>& unrescued,
                        const std::function<bool()>& isEnding, const TriageLimits& limits) {
  TriageSample sample;
  sample.fileSize = file.size();
  for (const ByteSpan& place : placesIn(sample.fileSize, limits)) {
    if (isEnding()) return sample;
    if (sample.extents.empty() || sample.extents.back().end() != place.begin) {
      sample.extents.emplace_back();
      sample.extents.back().offset = place.begin;
    }
    TriageExtent& extent = sample.extents.back();
    const std::size_t held = extent.bytes.size();
    const auto size = static_cast<std::size_t>(place.end - place.begin);
    const bool holdsAll = place.begin == 0 && sample.fileSize <= limits.bytes;
    if (holdsAll) extent.bytes.reserve(static_cast<std::size_t>(sample.fileSize));
    extent.bytes.resize(held + size);
    if (!isInside(place, unrescued)) {
      const platform::IoResult result = file.readAt(place.begin, std::span(extent.bytes).subspan(held));
      ++sample.reads;
      sample.bytesRead += result.count;
      // A file that became shorter has no more to read, either.
      if (result.count < size) {
        std::fill(extent.bytes.begin() + static_cast<std::ptrdiff_t>(held + result.count), extent.bytes.end(),
                  std::byte{0});
        extent.unreadable.push_back({place.begin + result.count, place.end});
      }
    }
    blank(extent, place, unrescued);
  }
  sample.isComplete = true;
  return sample;
}

}  // namespace zelvo::salvage
