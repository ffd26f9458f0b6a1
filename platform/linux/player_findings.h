/// Reads what zelvo-avi-player has written into its pipe. A hostile film may have taken that program over, so every
/// byte may be anything: what is no record of it, or out of its order, ends the reading.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>

#include "platform/film_player.h"
#include "platform/linux/player_protocol.h"

namespace zelvo::platform::linux_ {

/// The bytes of one player, in pieces of any size. Thread: one.
class PlayerFindings {
 public:
  using Take = std::function<void(const PlayEvent&)>;

  /// `firstPacket`: the number of the first packet that may come.
  explicit PlayerFindings(Take take, std::uint64_t firstPacket = 0)
      : take_(std::move(take)), nextPacket_(firstPacket) {}

  /// False once something came that no player sends; nothing after it counts.
  [[nodiscard]] bool read(std::span<const std::byte> bytes);

  [[nodiscard]] bool isGreeted() const { return isGreeted_; }
  /// Whether the player said that it is confined.
  [[nodiscard]] bool isConfined() const { return isConfined_; }
  /// Whether the player said that it is done.
  [[nodiscard]] bool isEnded() const { return isEnded_; }
  [[nodiscard]] bool isNoFilm() const { return isNoFilm_; }
  /// Where it was last: the packet that it was about to decode.
  [[nodiscard]] std::uint64_t nextPacket() const { return nextPacket_; }
  [[nodiscard]] bool hasPacket() const { return hasPacket_; }
  [[nodiscard]] const PlayedPacket& lastPacket() const { return lastPacket_; }
  [[nodiscard]] std::uint32_t streams() const { return streams_; }
  /// Whether the film was played through, and jumps are tried.
  [[nodiscard]] bool seeks() const { return seeks_ > 0; }

 private:
  [[nodiscard]] bool takeRecord(const PlayerRecord& record);
  [[nodiscard]] bool takeStream(const PlayerRecord& record);
  [[nodiscard]] bool takePacket(const PlayerRecord& record);
  [[nodiscard]] bool takeResult(const PlayerRecord& record);
  [[nodiscard]] bool takeSeek(const PlayerRecord& record);

  const Take take_;
  std::array<std::byte, sizeof(PlayerRecord)> part_{};
  std::size_t held_ = 0;
  bool isSound_ = true;
  bool isGreeted_ = false;
  bool isConfined_ = false;
  bool isEnded_ = false;
  bool isNoFilm_ = false;
  bool hasPacket_ = false;
  std::uint32_t streams_ = 0;
  std::uint32_t seeks_ = 0;
  std::uint64_t nextPacket_;
  PlayedPacket lastPacket_;
};

}  // namespace zelvo::platform::linux_
