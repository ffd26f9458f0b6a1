/// The writing side of the pipe of zelvo-avi-player: records are gathered, and go out with the next packet.
#pragma once

#include <vector>

#include "platform/film_player.h"
#include "platform/linux/player_protocol.h"

namespace zelvo::platform::linux_ {

/// Thread: one. Ends the process when the other side is gone.
class PlayerRecords {
 public:
  explicit PlayerRecords(int descriptor) : descriptor_(descriptor) {}

  void add(const PlayerRecord& record) { gathered_.push_back(record); }
  void add(const PlayedStream& stream);
  void add(const PlayedPacket& packet);
  void add(const PlayFault& fault);
  void add(const PlayedSeek& seek);
  void flush();

 private:
  const int descriptor_;
  std::vector<PlayerRecord> gathered_;
};

}  // namespace zelvo::platform::linux_
