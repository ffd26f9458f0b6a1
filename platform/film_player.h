/// Playing a whole film without showing it: what a player would make of each packet, told as it comes. Whatever a film
/// does to a decoder, the answer is a value. Times are in microseconds from the film's beginning, offsets and sizes in
/// bytes.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <variant>

#include "platform/trial_decoder.h"
#include "platform/workers.h"

namespace zelvo::platform {

enum class PlayedKind : std::uint8_t { video, sound, text, data };

struct PlayedStream {
  std::uint32_t stream = 0;  ///< counted from 0, as the film has them
  PlayedKind kind = PlayedKind::data;
  bool hasDecoder = false;
  std::string codec = {};      ///< as FFmpeg names it; printable ASCII
  std::uint32_t width = 0;     ///< of pictures, in pixels
  std::uint32_t height = 0;    ///< the same
  std::uint32_t rate = 0;      ///< of sound, in samples a second
  std::uint32_t channels = 0;  ///< of sound

  friend bool operator==(const PlayedStream&, const PlayedStream&) = default;
};

/// A packet is about to be decoded.
struct PlayedPacket {
  static constexpr std::uint64_t kNowhere = UINT64_MAX;

  std::uint32_t stream = 0;
  std::uint64_t number = 0;         ///< counted from 0 over all streams
  std::int64_t time = 0;            ///< by the film's own clock
  std::int64_t duration = 0;        ///< 0 when the film does not say
  std::uint64_t offset = kNowhere;  ///< of its payload
  std::uint32_t size = 0;
  bool isKey = false;      ///< as the film's index says
  bool isDecoded = false;  ///< false while a decoder that was started again waits for a key

  friend bool operator==(const PlayedPacket&, const PlayedPacket&) = default;
};

/// A picture came out.
struct PlayedPicture {
  std::uint32_t stream = 0;
  std::uint64_t packet = 0;  ///< the number of the packet it came of
  PictureType type = PictureType::unknown;
  bool isKey = false;   ///< the decoder says so
  bool isHurt = false;  ///< the decoder says that parts of it are wrong

  friend bool operator==(const PlayedPicture&, const PlayedPicture&) = default;
};

/// Sound came out.
struct PlayedSound {
  std::uint32_t stream = 0;
  std::uint64_t packet = 0;
  std::uint32_t samples = 0;  ///< of each channel
  std::uint32_t rate = 0;     ///< in samples a second
  bool isHurt = false;

  friend bool operator==(const PlayedSound&, const PlayedSound&) = default;
};

enum class PlayFaultKind : std::uint8_t {
  refused,     ///< the decoder refused the packet
  complained,  ///< the decoder took it and said that something is wrong
  noMemory,    ///< the decoder asked for more than it may have
  unreadable,  ///< the file could not be read at `offset`
  crashed,     ///< the decoder crashed
  hung,        ///< the decoder did not come to an end
};

struct PlayFault {
  PlayFaultKind kind = PlayFaultKind::refused;
  std::uint32_t stream = 0;
  std::uint64_t packet = 0;                       ///< its number
  std::uint64_t offset = PlayedPacket::kNowhere;  ///< of `unreadable`
  int signal = 0;                                 ///< that ended a crashed decoder, when one did

  friend bool operator==(const PlayFault&, const PlayFault&) = default;
};

enum class SeekEnd : std::uint8_t {
  right,
  refused,       ///< the film cannot be sought in
  late,          ///< landed after the time that was asked for
  early,         ///< landed before the last key picture
  noKey,         ///< landed where no key is
  otherTime,     ///< the same packet has another time than when the film is played through
  otherPicture,  ///< the picture there is not the one that comes when the film is played through
  noPicture,     ///< none came
  outOfStep,     ///< the packets of another stream have other times there than when the film is played through
};

/// One jump to a time, as with a player's slider.
struct PlayedSeek {
  std::uint32_t stream = 0;
  std::int64_t target = 0;
  std::int64_t landed = 0;                        ///< time of the first packet after the jump
  std::uint64_t offset = PlayedPacket::kNowhere;  ///< of that packet
  SeekEnd end = SeekEnd::right;

  friend bool operator==(const PlayedSeek&, const PlayedSeek&) = default;
};

/// All streams come first. A fault follows on its packet.
using PlayEvent = std::variant<PlayedStream, PlayedPacket, PlayedPicture, PlayedSound, PlayFault, PlayedSeek>;

struct PlayChoices {
  unsigned threads = 1;  ///< of each decoder
  unsigned seeks = 20;   ///< jumps to be tried after the film was played through
};

enum class PlayEnd : std::uint8_t {
  played,       ///< to its end, or as far as decoders let it
  noFilm,       ///< no player recognises a film in it
  unreadable,   ///< it could not be opened
  noPlayer,     ///< there is nothing on this machine to play with, or it could not be kept from doing harm
  interrupted,  ///< by the cancel mark
};

class FilmPlayer {
 public:
  /// Of one film; others are not looked at.
  static constexpr std::uint32_t kMaxStreams = 100;

  virtual ~FilmPlayer() = default;

  /// Plays the file of that path and tells `take` what happens, in order. Ends early once `cancel` is abandoned.
  /// Thread: any one; as long as decoding lasts.
  [[nodiscard]] virtual PlayEnd play(const std::string& path, const PlayChoices& choices, const CancelMark& cancel,
                                     const std::function<void(const PlayEvent&)>& take) = 0;

  /// Whether the last film was played where a decoder can do no harm.
  [[nodiscard]] virtual bool wasConfined() const = 0;
};

}  // namespace zelvo::platform
