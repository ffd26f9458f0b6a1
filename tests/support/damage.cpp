#include "tests/support/damage.h"

#include <algorithm>
#include <array>

#include "engine/scan_window.h"
#include "tests/support/avi_builder.h"

namespace zelvo::tests {

using platform::Bytes;

namespace {

constexpr std::size_t kBlock = engine::ScanWindow::kBlockSize;
constexpr std::size_t kWindow = engine::ScanWindow::kBlocks * kBlock;

Bytes::iterator at(Bytes& bytes, std::uint64_t offset) { return bytes.begin() + static_cast<std::ptrdiff_t>(offset); }

}  // namespace

DamagedInput DamageGenerator::begin(std::string_view name) const {
  DamagedInput input;
  input.name = std::string(name) + " of seed " + std::to_string(seed_);
  return input;
}

std::string_view DamageGenerator::anyCode() {
  static constexpr std::array<std::string_view, 20> kCodes{"00dc", "00dc", "00dc", "00dc", "00dc", "00dc", "01wb",
                                                           "01wb", "01wb", "01wb", "01wb", "00db", "00db", "JUNK",
                                                           "LIST", "00wb", "idx1", "ix00", "02wb", "00DC"};
  return kCodes[below(kCodes.size())];
}

std::uint32_t DamageGenerator::anySizeField() {
  static constexpr std::array<std::uint32_t, 20> kBoundaries{
      0,        1,        2,        3,          5,          1023,       1024,       1025,       9999998, 9999999,
      10000000, 10000001, 16777216, 4294967295, 4294967288, 2147483648, 2147483647, 4294957296, 262144,  65536};
  if (chance(12)) return kBoundaries[below(kBoundaries.size())];
  return static_cast<std::uint32_t>(chance(80) ? 1 + below(120) : 1 + below(3000));
}

void DamageGenerator::appendPayload(Bytes& out, std::size_t size) {
  static constexpr std::string_view kNearlyCodes = "00000011ddccbbwwJUNK";
  const std::uint64_t kind = below(4);
  for (std::size_t k = 0; k < size; ++k) {
    std::uint64_t byte = 0;
    if (kind == 1) byte = below(256);
    if (kind == 2) byte = static_cast<std::uint64_t>(kNearlyCodes[below(kNearlyCodes.size())]);
    if (kind == 3) byte = 0x30 + below(2);
    out.push_back(static_cast<std::byte>(byte));
  }
}

void DamageGenerator::appendChunks(Bytes& out, std::uint64_t count) {
  for (std::uint64_t k = 0; k < count; ++k) {
    const std::uint32_t size = anySizeField();
    appendText(out, anyCode());
    appendNumber(out, size);
    const std::size_t start = out.size();
    const auto held = static_cast<std::size_t>(std::min<std::uint32_t>(size, 3000));
    if (held >= 8 && chance(20)) {
      // A code inside a payload.
      appendPayload(out, static_cast<std::size_t>(below(held - 7)));
      appendText(out, anyCode());
      appendNumber(out, chance(50) ? static_cast<std::uint32_t>(below(held)) : anySizeField());
    }
    if (out.size() < start + held) appendPayload(out, start + held - out.size());
    if (held % 2 != 0 && chance(80)) out.push_back(std::byte{0});
  }
}

void DamageGenerator::put(Bytes& out, std::size_t offset, std::string_view code, std::uint32_t size) {
  Bytes header;
  appendText(header, code);
  appendNumber(header, size);
  for (std::size_t k = 0; k < header.size() && offset + k < out.size(); ++k) out[offset + k] = header[k];
}

void DamageGenerator::deleteRange(DamagedInput& input) {
  const std::uint64_t start = below(input.bytes.size());
  const std::uint64_t end = std::min<std::uint64_t>(input.bytes.size(), start + 1 + below(chance(50) ? 9 : 2500));
  input.bytes.erase(at(input.bytes, start), at(input.bytes, end));
}

void DamageGenerator::zeroSectors(DamagedInput& input) {
  const std::uint64_t sector = chance(50) ? 512 : 1024;
  const std::uint64_t start = below(input.bytes.size() / sector + 1) * sector;
  const std::uint64_t end = std::min<std::uint64_t>(input.bytes.size(), start + sector * (1 + below(3)));
  if (start < end) std::fill(at(input.bytes, start), at(input.bytes, end), std::byte{0});
}

void DamageGenerator::cutEnd(DamagedInput& input) {
  static constexpr std::array<std::size_t, 16> kRemainders{0, 0,  1,  2,    3,    4,    5,    6,
                                                           7, 10, 14, 1020, 1021, 1022, 1023, 511};
  const std::size_t blocks = input.bytes.size() / kBlock;
  input.bytes.resize(blocks * kBlock + kRemainders[below(kRemainders.size())]);
}

void DamageGenerator::repeatRange(DamagedInput& input) {
  const std::uint64_t start = below(input.bytes.size());
  const std::uint64_t end = std::min<std::uint64_t>(input.bytes.size(), start + 1 + below(1500));
  const Bytes again(at(input.bytes, start), at(input.bytes, end));
  input.bytes.insert(at(input.bytes, below(input.bytes.size())), again.begin(), again.end());
}

void DamageGenerator::overwriteRange(DamagedInput& input) {
  Bytes other;
  appendPayload(other, static_cast<std::size_t>(1 + below(chance(50) ? 4 : 900)));
  const std::uint64_t start = below(input.bytes.size());
  for (std::size_t k = 0; k < other.size() && start + k < input.bytes.size(); ++k) input.bytes[start + k] = other[k];
}

void DamageGenerator::codeAtBorder(DamagedInput& input, std::size_t step) {
  if (input.bytes.size() < 64) return;
  const std::size_t border = static_cast<std::size_t>(below(input.bytes.size() / step + 1)) * step;
  const std::size_t from = border > 24 ? border - static_cast<std::size_t>(below(25)) : border;
  std::size_t target = static_cast<std::size_t>(below(input.bytes.size() / step + 1)) * step + below(16);
  if (step == kWindow && chance(50))
    target += engine::ScanWindow::kReadAhead - 8;  // a window is read further than its last block
  const std::size_t to = chance(50) ? from + 9 + static_cast<std::size_t>(below(40)) : target;
  if (to <= from + 8) return;
  put(input.bytes, from, anyCode(), static_cast<std::uint32_t>(to - from - 8));
  if (to >= 2) put(input.bytes, to - static_cast<std::size_t>(below(3)), anyCode(), anySizeField());
}

void DamageGenerator::candidatesAtEnd(DamagedInput& input) {
  const std::size_t count = 1 + static_cast<std::size_t>(below(6));
  const std::size_t size = input.bytes.size();
  for (std::size_t k = 0; k < count; ++k) {
    const std::size_t back = 1 + static_cast<std::size_t>(below(chance(50) ? 16 : 1200));
    if (back >= size) continue;
    // The look-ahead starts up to 8 bytes before the end, or a little after it.
    const std::size_t from = size - back;
    const std::uint64_t wanted = size + below(12);
    const std::uint64_t field = wanted - from > 16 ? wanted - from - 16 : 1 + below(12);
    put(input.bytes, from, anyCode(), static_cast<std::uint32_t>(chance(85) ? field : anySizeField()));
  }
}

void DamageGenerator::damageOnce(DamagedInput& input) {
  if (input.bytes.size() < 16) return;
  switch (below(8)) {
    case 0:
      return deleteRange(input);
    case 1:
      return zeroSectors(input);
    case 2:
      return cutEnd(input);
    case 3:
      return repeatRange(input);
    case 4:
      return overwriteRange(input);
    case 5:
    case 6:
      return codeAtBorder(input, kBlock);
    default:
      return candidatesAtEnd(input);
  }
}

void DamageGenerator::finish(DamagedInput& input) {
  const std::uint64_t size = input.bytes.size();
  input.size = chance(5) ? size + below(5000) : size;
  input.claimedSize = input.size;
  if (chance(10)) input.claimedSize = size + 1 + below(chance(50) ? 16 : 6000);
  if (chance(10)) input.claimedSize = size - below(std::min<std::uint64_t>(size, chance(50) ? 16 : 6000));
  if (chance(15)) {
    input.badReadStart = below(size + 1);
    input.badReadEnd = input.badReadStart + 1 + below(chance(50) ? 8 : 9000);
  }
}

DamagedInput DamageGenerator::small() {
  DamagedInput input = begin("small input");
  appendPayload(input.bytes, static_cast<std::size_t>(below(300)));
  appendChunks(input.bytes, below(60));
  for (std::uint64_t count = below(7); count > 0; --count) damageOnce(input);
  if (chance(60)) cutEnd(input);
  if (chance(60)) candidatesAtEnd(input);
  finish(input);
  return input;
}

DamagedInput DamageGenerator::acrossWindows(std::size_t largest) {
  DamagedInput input = begin("input across windows");
  const std::size_t size = largest / 4 + static_cast<std::size_t>(below(largest - largest / 4));
  Bytes pattern;
  appendChunks(pattern, 1 + below(40));
  while (input.bytes.size() < size) {
    if (chance(50)) input.bytes.insert(input.bytes.end(), pattern.begin(), pattern.end());
    input.bytes.resize(input.bytes.size() + static_cast<std::size_t>(below(90000)));
  }
  for (std::uint64_t count = 10 + below(40); count > 0; --count) {
    codeAtBorder(input, chance(60) ? kWindow : kBlock);
    if (chance(20)) damageOnce(input);
  }
  if (chance(50)) cutEnd(input);
  if (chance(50)) candidatesAtEnd(input);
  finish(input);
  return input;
}

DamagedInput DamageGenerator::dense(std::size_t size, std::uint32_t sizeLimit, bool failing) {
  DamagedInput input = begin("dense input");
  input.size = input.claimedSize = size;
  if (failing) {
    input.badReadStart = below(size);
    input.badReadEnd = input.badReadStart + 1 + below(chance(50) ? 8 : size / 8);
  }
  input.bytes.reserve(size + 16);
  while (input.bytes.size() < size) {
    if (below(5000) == 0) appendPayload(input.bytes, 1 + below(7));
    const std::uint64_t payload = input.bytes.size() + 8;
    // One in four looks at a place where something ends.
    const std::array<std::uint64_t, 4> ends{size, input.badReadStart, input.badReadEnd,
                                            below(size / kWindow + 1) * kWindow};
    const std::uint64_t aim = ends[below(4)] - 8 + below(16);
    const bool reachable = aim > payload && aim - payload < sizeLimit;
    appendText(input.bytes, chance(70) ? "00dc" : "01wb");
    appendNumber(input.bytes, static_cast<std::uint32_t>(reachable && chance(25) ? aim - payload : below(sizeLimit)));
  }
  input.bytes.resize(size);
  return input;
}

DamagedInput DamageGenerator::wholeFile(int count) {
  DamagedInput input = begin("whole file");
  AviBuilder avi;
  avi.audioFormatSize = 20 + static_cast<std::uint32_t>(below(30));
  avi.withIndex = chance(80);
  avi.interleaved(count, 1 + static_cast<std::uint32_t>(below(900)), 1 + static_cast<std::uint32_t>(below(300)),
                  chance(80) ? "00dc" : "00db");
  input.bytes = avi.build();
  for (std::uint64_t times = below(5); times > 0; --times) damageOnce(input);
  if (chance(20)) {
    // Anything may be hit in the header lists too.
    for (int k = 0; k < 4; ++k) input.bytes[below(std::min<std::size_t>(400, input.bytes.size()))] = std::byte{0};
  }
  finish(input);
  // A run goes past its headers only when it is told of more than 512 KiB.
  if (chance(80)) input.claimedSize = 524280 + below(2100);
  if (chance(20)) input.size = std::max<std::uint64_t>(input.bytes.size(), input.claimedSize);
  return input;
}

}  // namespace zelvo::tests
