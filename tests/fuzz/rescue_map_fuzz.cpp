// Any bytes as the map of a rescue: what is answered rises, keeps to its limits, and says the same once it is written
// down as a domain map and read again.
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "salvage/scan/rescue_map.h"
#include "tests/support/memory_readable.h"

namespace {

using namespace zelvo;
using salvage::ByteSpan;

[[noreturn]] void fail(const char* what) {
  std::fprintf(stderr, "%s\n", what);
  std::abort();
}

void checkOrder(const std::vector<ByteSpan>& spans, std::uint64_t begin, std::uint64_t end) {
  std::uint64_t at = begin;
  for (const ByteSpan& span : spans) {
    if (span.begin >= span.end || span.end > end) fail("a stretch without bytes, or beyond the end");
    if (span.begin < at || (at > begin && span.begin == at)) fail("stretches that touch, or out of order");
    at = span.end;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(data, data + size);
  tests::MemoryReadable file(text);
  const auto read = salvage::readRescueMap(file);
  const auto* map = std::get_if<salvage::RescueMap>(&read);
  if (map == nullptr) return 0;
  if (map->lost.size() > salvage::kMaxLostStretches) fail("more stretches than may be");
  checkOrder(map->lost, map->begin, map->end);

  tests::MemoryReadable written(salvage::domainMap(map->lost, map->end));
  const auto again = salvage::readRescueMap(written);
  if (!std::holds_alternative<salvage::RescueMap>(again)) fail("a domain map that cannot be read");
  // Where the one says lost, the other says wanted.
  std::uint64_t at = 0;
  for (const ByteSpan& kept : std::get<salvage::RescueMap>(again).lost) {
    std::uint64_t wanted = kept.begin;
    for (const ByteSpan& lost : map->lost) {
      if (lost.begin >= at && lost.end <= kept.begin) wanted -= lost.end - lost.begin;
    }
    if (wanted != at) fail("a domain map that says something else");
    at = kept.end;
  }

  for (const std::uint64_t filmSize : {std::uint64_t{0}, std::uint64_t{4096}, map->end}) {
    const auto own = salvage::rescueOf(*map, std::nullopt, filmSize);
    if (own) checkOrder(own->lost, 0, std::max(filmSize, map->end));
    const auto inside = salvage::rescueOf(*map, map->begin / 2, filmSize);
    if (inside) checkOrder(inside->lost, 0, filmSize);
  }
  return 0;
}
