#include "platform/linux/player_records.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>

namespace zelvo::platform::linux_ {

namespace {

std::uint64_t pair(std::uint32_t high, std::uint32_t low) { return std::uint64_t{high} << 32U | low; }

}  // namespace

void PlayerRecords::add(const PlayedStream& stream) {
  const bool isVideo = stream.kind == PlayedKind::video;
  PlayerRecord record{.kind = PlayerRecordKind::stream,
                      .stream = stream.stream,
                      .flags = stream.hasDecoder ? PlayerRecord::kFlagOne : 0,
                      .a = static_cast<std::uint64_t>(stream.kind),
                      .b = isVideo ? pair(stream.width, stream.height) : pair(stream.rate, stream.channels)};
  const std::size_t length = std::min(stream.codec.size(), record.text.size());
  std::copy_n(stream.codec.begin(), length, record.text.begin());
  add(record);
}

void PlayerRecords::add(const PlayedPacket& packet) {
  add(PlayerRecord{
      .kind = PlayerRecordKind::packet,
      .stream = packet.stream,
      .flags = (packet.isKey ? PlayerRecord::kFlagOne : 0U) | (packet.isDecoded ? PlayerRecord::kFlagTwo : 0U),
      .size = packet.size,
      .number = packet.number,
      .time = packet.time,
      .a = static_cast<std::uint64_t>(packet.duration),
      .b = packet.offset});
}

void PlayerRecords::add(const PlayFault& fault) {
  add(PlayerRecord{.kind = PlayerRecordKind::fault,
                   .stream = fault.stream,
                   .number = fault.packet,
                   .a = static_cast<std::uint64_t>(fault.kind),
                   .b = fault.offset});
}

void PlayerRecords::add(const PlayedSeek& seek) {
  add(PlayerRecord{.kind = PlayerRecordKind::seek,
                   .stream = seek.stream,
                   .number = static_cast<std::uint64_t>(seek.end),
                   .time = seek.target,
                   .a = static_cast<std::uint64_t>(seek.landed),
                   .b = seek.offset});
}

void PlayerRecords::flush() {
  const auto* at = reinterpret_cast<const char*>(gathered_.data());
  std::size_t left = gathered_.size() * sizeof(PlayerRecord);
  while (left > 0) {
    const ssize_t count = ::write(descriptor_, at, left);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) ::_exit(EXIT_FAILURE);
    at += count;
    left -= static_cast<std::size_t>(count);
  }
  gathered_.clear();
}

}  // namespace zelvo::platform::linux_
