/// What zelvo-avi-player does: plays one film from an open descriptor and tells what comes of it in records.
#pragma once

#include <cstdint>

#include "platform/linux/player_records.h"

namespace zelvo::platform::linux_ {

struct PlayerTask {
  unsigned threads = 1;
  unsigned seeks = 0;
  std::uint64_t firstPacket = 0;  ///< those before it are read and not decoded
  /// A bit for each of the first 64 streams: not decoded. Of the others all are decoded.
  std::uint64_t leftOut = 0;
  bool looksAhead = true;  ///< reads and decodes some packets before the first, for what headers do not tell
};

/// \return when all is told
void playFilm(int film, const PlayerTask& task, PlayerRecords& records);

}  // namespace zelvo::platform::linux_
