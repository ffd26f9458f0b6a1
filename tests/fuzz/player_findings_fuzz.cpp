// Any bytes as what a player has written into its pipe. What is read does not depend on how the bytes come, keeps to
// its limits, and can be added up.
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "platform/linux/player_findings.h"
#include "salvage/playing/play_tally.h"

namespace {

using namespace zelvo;
using platform::PlayEvent;
using platform::linux_::PlayerFindings;

[[noreturn]] void fail(const char* what) {
  std::fprintf(stderr, "%s\n", what);
  std::abort();
}

std::vector<PlayEvent> read(std::span<const std::byte> bytes, std::size_t piece) {
  std::vector<PlayEvent> events;
  PlayerFindings findings([&](const PlayEvent& event) { events.push_back(event); });
  while (!bytes.empty()) {
    const std::size_t count = std::min(piece, bytes.size());
    if (!findings.read(bytes.first(count))) break;
    bytes = bytes.subspan(count);
  }
  if (!findings.isGreeted() && !events.empty()) fail("events came before the greeting");
  if (findings.streams() > platform::FilmPlayer::kMaxStreams) fail("more streams than may be");
  return events;
}

void checkLimits(const std::vector<PlayEvent>& events) {
  std::uint64_t next = 0;
  std::size_t streams = 0;
  for (const PlayEvent& event : events) {
    if (const auto* stream = std::get_if<platform::PlayedStream>(&event)) {
      if (stream->stream != streams++) fail("streams are not in order");
      for (const char letter : stream->codec) {
        if (letter < ' ' || letter > '~') fail("a name cannot be printed");
      }
    } else if (const auto* packet = std::get_if<platform::PlayedPacket>(&event)) {
      if (packet->stream >= streams || packet->number < next) fail("a packet of no stream, or out of order");
      next = packet->number + 1;
    } else if (const auto* fault = std::get_if<platform::PlayFault>(&event)) {
      if (fault->kind == platform::PlayFaultKind::crashed || fault->signal != 0) fail("a player told of its own crash");
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto bytes = std::as_bytes(std::span(data, size));
  const std::vector<PlayEvent> events = read(bytes, 1 << 16);
  for (const std::size_t piece : {std::size_t{1}, std::size_t{63}, std::size_t{100}}) {
    if (read(bytes, piece) != events) fail("other pieces give other events");
  }
  checkLimits(events);
  salvage::PlayCount count;
  for (const PlayEvent& event : events) count.take(event);
  const salvage::PlayTally tally = count.finish();
  for (const salvage::PlayedStreamTally& stream : tally.streams) {
    if (stream.faults.size() > salvage::PlayedStreamTally::kMaxErrors) fail("more faults than may be");
    if (stream.stills.size() > salvage::PlayedStreamTally::kMaxStills) fail("more stills than may be");
    if (!std::isfinite(stream.seconds) || !std::isfinite(stream.creep) || !std::isfinite(stream.step))
      fail("a number is none");
  }
  return 0;
}
