#include "tests/support/literal_scan.h"

#include <algorithm>
#include <array>

namespace zelvo::tests::literal {

namespace {

/// Six bytes that nothing ever clears once a scan has begun.
using LookAhead = std::array<std::byte, 6>;

bool holdsNextCode(const LookAhead& bytes) {
  for (std::size_t at = 0; at <= 2; ++at) {
    for (const char* code : {"00db", "00dc", "01wb", "JUNK"}) {
      if (isCode(bytes, at, code)) return true;
    }
  }
  return false;
}

/// Reads as many bytes as `into` holds, and copies what there was to its front; the rest is left as it is.
void readInto(Input& input, std::span<std::byte> into) {
  const platform::Bytes read = input.readDataOfLength(into.size());
  std::copy(read.begin(), read.end(), into.begin());
}

/// Judges the candidate at `position`, whose code says whether it is audio.
void judge(Input& input, std::uint32_t position, bool audio, LookAhead& lookAhead, Tables& tables) {
  std::array<std::byte, 4> sizeField{};
  input.seekToFileOffset(static_cast<std::uint32_t>(position + 4U));
  readInto(input, sizeField);
  const std::uint64_t size = numberIn(sizeField);
  tables.videosamplesize = size;
  if (size == 0 || size >= 10000000) return;
  input.seekToFileOffset(static_cast<std::uint32_t>(position + 8U + static_cast<std::uint32_t>(size)));
  readInto(input, lookAhead);
  if (!holdsNextCode(lookAhead)) return;
  (audio ? tables.audio : tables.video).add(position, size);
}

}  // namespace

void Table::add(std::uint32_t offset, std::uint64_t size) {
  if (count == kLargestCount) {
    ++turnedAway;
    return;
  }
  ++count;
  offsets.push_back(offset);
  sizes.push_back(size);
}

std::uint64_t Table::wholeSize() const {
  std::uint64_t sum = 0;
  for (std::uint64_t k = 1; k <= count; ++k) sum += sizes[k] + 8;
  return sum;
}

Tables scanSamples(Input& input, const ScanOptions& options) {
  Tables tables;
  LookAhead lookAhead{};
  const std::uint64_t mod = options.inputfilesize % 1024;
  std::uint64_t numberofsectors = options.inputfilesize / 1024;
  if (options.inputfilesize <= 1024) {
    numberofsectors = 1;
  } else if (mod != 0) {
    numberofsectors += 1;
  }
  for (std::uint64_t sector = 1; sector <= numberofsectors; ++sector) {
    if (options.stopped(sector)) continue;
    const auto blockOffset = static_cast<std::uint32_t>((sector - 1) * 1024 % 4294967296);
    if (options.knownZero(blockOffset)) continue;
    std::array<std::byte, 3072> buffer{};
    input.seekToFileOffset(blockOffset);
    readInto(input, std::span(buffer).first(sector == numberofsectors ? static_cast<std::size_t>(mod) : 3072));
    options.progress(static_cast<double>(sector) * 100.0 / static_cast<double>(numberofsectors));
    for (std::uint32_t i = 0; i <= 1023; ++i) {
      const bool video = isCode(buffer, i, "00db") || isCode(buffer, i, "00dc");
      const bool audio = isCode(buffer, i, "01wb");
      if (!video && !audio) continue;
      judge(input, blockOffset + i, audio, lookAhead, tables);
    }
  }
  return tables;
}

}  // namespace zelvo::tests::literal
