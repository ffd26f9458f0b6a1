/// A film that is open for playing: the packets of an AVI file by FFmpeg's reader, from an open descriptor. Part of
/// zelvo-avi-player alone.
#pragma once

extern "C" {
#include <libavformat/avformat.h>
}

#include <cstdint>
#include <functional>

namespace zelvo::platform::linux_ {

/// Thread: one.
class PlayerFilm {
 public:
  /// `onUnreadable` hears of each place that cannot be read; zeros are played there.
  PlayerFilm(int descriptor, std::function<void(std::uint64_t)> onUnreadable);
  PlayerFilm(const PlayerFilm&) = delete;
  PlayerFilm& operator=(const PlayerFilm&) = delete;
  ~PlayerFilm();

  /// False when it is no AVI file, or has no streams. `looksAhead`: reads some packets for what headers do not tell.
  [[nodiscard]] bool open(bool looksAhead);
  /// The next packet of any stream; 0, or FFmpeg's code for the end or an error.
  [[nodiscard]] int read(AVPacket& packet);
  /// As a player jumps: to the last key of the stream that is not after `time`. False when that is refused.
  [[nodiscard]] bool seek(int stream, std::int64_t time);
  [[nodiscard]] AVFormatContext& context() { return *context_; }

 private:
  static int readBytes(void* self, std::uint8_t* into, int size);
  static std::int64_t moveTo(void* self, std::int64_t offset, int from);

  const int descriptor_;
  const std::function<void(std::uint64_t)> onUnreadable_;
  std::uint64_t size_ = 0;
  std::uint64_t position_ = 0;
  AVIOContext* bytes_ = nullptr;
  AVFormatContext* context_ = nullptr;
};

}  // namespace zelvo::platform::linux_
