#include "tests/fuzz/repair_input.h"

#include <algorithm>
#include <array>

namespace zelvo::tests {

namespace {

// The settings: what is stopped (and through what), at which block, how far the claimed size is off (16 bits, biased),
// where reads begin to fail (16 bits, in units of 1 byte), for how long (in units of 4 bytes; 0 for never), zero bytes
// after the content (in units of 64).
constexpr std::size_t kSettings = 8;
constexpr std::int64_t kBias = 0x8000;
enum Stop : unsigned { kNever = 0, kDuringBlock = 1, kBeforeVideo = 2, kDuringVideo = 3 };

std::uint64_t at(std::span<const std::byte> bytes, std::size_t position) {
  return std::to_integer<std::uint64_t>(bytes[position]);
}

std::byte low8(std::uint64_t value) { return static_cast<std::byte>(value & 0xffU); }

}  // namespace

RepairInput decodeRepairInput(std::span<const std::byte> bytes) {
  std::array<std::byte, kSettings> settings{};
  settings[3] = std::byte{0x80};
  const std::size_t given = std::min(bytes.size(), kSettings);
  std::copy_n(bytes.begin(), given, settings.begin());
  bytes = bytes.subspan(given);

  RepairInput out;
  out.input.name = "fuzzed input";
  out.input.bytes.assign(bytes.begin(), bytes.end());
  out.input.size = bytes.size() + 64 * at(settings, 7);
  const std::int64_t off = static_cast<std::int64_t>(at(settings, 2) + 256 * at(settings, 3)) - kBias;
  out.input.claimedSize =
      static_cast<std::uint64_t>(std::max<std::int64_t>(0, static_cast<std::int64_t>(out.input.size) + off));
  if (settings[6] != std::byte{0}) {
    out.input.badReadStart = at(settings, 4) + 256 * at(settings, 5);
    out.input.badReadEnd = out.input.badReadStart + 4 * at(settings, 6);
  }
  const std::uint64_t stop = at(settings, 0) % 4;
  if (stop == kDuringBlock) out.stops.duringBlock = 1 + at(settings, 1);
  out.stops.beforeVideo = stop == kBeforeVideo;
  out.stops.duringVideo = stop == kDuringVideo;
  out.stops.byCancelMark = at(settings, 0) >= 128;
  return out;
}

platform::Bytes encodeRepairInput(const RepairInput& from) {
  const DamagedInput& input = from.input;
  unsigned stop = kNever;
  if (from.stops.duringBlock != 0) stop = kDuringBlock;
  if (from.stops.beforeVideo) stop = kBeforeVideo;
  if (from.stops.duringVideo) stop = kDuringVideo;
  const std::uint64_t behind = (input.size - input.bytes.size()) / 64;
  const std::int64_t off = static_cast<std::int64_t>(input.claimedSize) - static_cast<std::int64_t>(input.size);
  const auto biased = static_cast<std::uint64_t>(std::clamp<std::int64_t>(off + kBias, 0, 0xffff));
  const bool fails = input.badReadEnd != 0;
  const std::uint64_t badStart = fails ? std::min<std::uint64_t>(input.badReadStart, 0xffff) : 0;
  const std::uint64_t badLength =
      fails ? std::clamp<std::uint64_t>((input.badReadEnd - input.badReadStart) / 4, 1, 255) : 0;
  const std::array<std::byte, kSettings> settings{low8(stop + (from.stops.byCancelMark ? 128 : 0)),
                                                  low8(from.stops.duringBlock == 0 ? 0 : from.stops.duringBlock - 1),
                                                  low8(biased),
                                                  low8(biased >> 8U),
                                                  low8(badStart),
                                                  low8(badStart >> 8U),
                                                  low8(badLength),
                                                  low8(std::min<std::uint64_t>(behind, 255))};
  platform::Bytes bytes;
  bytes.reserve(kSettings + input.bytes.size());
  for (const std::byte byte : settings) bytes.push_back(byte);
  for (const std::byte byte : input.bytes) bytes.push_back(byte);
  return bytes;
}

}  // namespace zelvo::tests
