#include "salvage/scan/rescued_file.h"

#include <algorithm>
#include <utility>

#include "avi/chunk_codes.h"
#include "salvage/scan/byte_span.h"
#include "salvage/scan/media_scan.h"

namespace zelvo::salvage {

platform::IoResult RescuedFile::readAt(std::uint64_t offset, std::span<std::byte> into) {
  platform::IoResult result;
  auto next = std::ranges::upper_bound(lost_, offset, {}, &ByteSpan::end);
  while (result.count < into.size()) {
    const std::uint64_t at = offset + result.count;
    std::span<std::byte> rest = into.subspan(result.count);
    const auto upTo = [&](std::uint64_t end) { return std::min<std::uint64_t>(rest.size(), end - std::min(at, end)); };
    if (next == lost_.end() || next->begin > at) {
      if (next != lost_.end()) rest = rest.first(static_cast<std::size_t>(upTo(next->begin)));
      const platform::IoResult one = file_.readAt(at, rest);
      result.count += one.count;
      result.error = one.error;
      if (one.count < rest.size()) break;
    } else {
      const auto zeros = static_cast<std::size_t>(upTo(std::min(next->end, file_.size())));
      std::fill_n(rest.begin(), zeros, std::byte{0});
      result.count += zeros;
      if (at + zeros < next->end) break;
      ++next;
    }
  }
  return result;
}

void leaveOutUnrescued(MediaScan& scan, std::vector<ByteSpan> lost) {
  constexpr std::uint64_t kIndexHeader = 32;
  scan.unrescued = std::move(lost);
  if (scan.unrescued.empty()) return;
  scan.candidates.thin([&](std::size_t i) {
    const Candidate& candidate = scan.candidates[i];
    // The size of a list is never believed, but its type is.
    const std::uint64_t header = avi::kChunkHeader + (candidate.isContainer() ? 4 : 0);
    return !touches(scan.unrescued, candidate.offset(), candidate.offset() + header);
  });
  scan.candidates.makeDirectory();
  std::erase_if(scan.standardIndexes, [&](const StandardIndex& index) {
    return touches(scan.unrescued, index.offset, index.offset + kIndexHeader);
  });
}

}  // namespace zelvo::salvage
