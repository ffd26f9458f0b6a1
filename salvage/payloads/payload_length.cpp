#include "salvage/payloads/payload_length.h"

#include "salvage/payloads/sound_frame.h"

namespace zelvo::salvage {

namespace {

using ByteView = std::span<const std::byte>;

constexpr unsigned kMarker = 0xff;
constexpr unsigned kStartOfImage = 0xd8;
constexpr unsigned kEndOfImage = 0xd9;
constexpr unsigned kFirstRestart = 0xd0;
constexpr unsigned kLastRestart = 0xd7;
constexpr unsigned kStartOfScan = 0xda;
constexpr unsigned kFirstSegment = 0xc0;

unsigned at(ByteView bytes, std::size_t place) { return static_cast<unsigned>(bytes[place]); }

/// Where the next marker stands that is no part of a scan's data.
std::optional<std::size_t> markerAfterScan(ByteView bytes, std::size_t from) {
  for (std::size_t i = from; i + 1 < bytes.size(); ++i) {
    if (at(bytes, i) != kMarker) continue;
    const unsigned type = at(bytes, i + 1);
    const bool isData = type == 0 || type == kMarker || (type >= kFirstRestart && type <= kLastRestart);
    if (!isData) return i;
    if (type != kMarker) ++i;
  }
  return std::nullopt;
}

std::optional<std::size_t> pictureLength(ByteView bytes) {
  if (bytes.size() < 4 || at(bytes, 0) != kMarker || at(bytes, 1) != kStartOfImage) return std::nullopt;
  std::size_t next = 2;
  while (next + 4 <= bytes.size()) {
    if (at(bytes, next) != kMarker) return std::nullopt;
    const unsigned type = at(bytes, next + 1);
    if (type == kMarker) {
      ++next;
      continue;
    }
    if (type < kFirstSegment) return std::nullopt;
    const std::size_t length = at(bytes, next + 2) << 8U | at(bytes, next + 3);
    next += 2 + length;
    if (type != kStartOfScan) continue;
    const auto marker = markerAfterScan(bytes, next);
    if (!marker) return std::nullopt;
    if (at(bytes, *marker + 1) == kEndOfImage) return *marker + 2;
    next = *marker;
  }
  return std::nullopt;
}

std::optional<std::uint32_t> jpegLength(ByteView bytes) {
  const auto first = pictureLength(bytes);
  if (!first) return std::nullopt;
  const auto second = pictureLength(bytes.subspan(*first));
  return static_cast<std::uint32_t>(*first + second.value_or(0));
}

std::optional<std::uint32_t> framesLength(Codec codec, ByteView bytes) {
  std::size_t length = 0;
  while (true) {
    const auto frame = soundFrame(codec, bytes.subspan(length));
    if (!frame || frame->size == 0 || frame->size > bytes.size() - length) break;
    length += frame->size;
  }
  if (length == 0) return std::nullopt;
  return static_cast<std::uint32_t>(length);
}

}  // namespace

std::optional<std::uint32_t> payloadLength(Codec codec, ByteView bytes) {
  switch (codec) {
    case Codec::jpeg:
      return jpegLength(bytes);
    case Codec::mp3:
    case Codec::mp2:
    case Codec::ac3:
      return framesLength(codec, bytes);
    default:
      return std::nullopt;
  }
}

}  // namespace zelvo::salvage
