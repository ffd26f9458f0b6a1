/// Adds up what playing a film tells: pictures and sound of each stream, errors, gaps, how far sound and pictures come
/// apart. Times are in seconds from the film's beginning, offsets in bytes.
#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <vector>

#include "platform/film_player.h"

namespace zelvo::salvage {

enum class PlayErrorKind : std::uint8_t {
  refused,     ///< the decoder refused packets
  hurt,        ///< the decoder says that parts are wrong
  noMemory,    ///< the decoder asked for more memory than it may have
  crashed,     ///< the decoder crashed
  hung,        ///< the decoder did not come to an end
  noDecoder,   ///< nothing here decodes this codec
  noPictures,  ///< packets of which no picture came, for a while
  lostSound,   ///< less sound came than time passed
  extraSound,  ///< more sound came than time passed
  outOfStep,   ///< from here on the stream and the film's first pictures are apart by other than before
};

/// A fault of one stream, or several of a kind that follow on one another.
struct PlayError {
  PlayErrorKind kind = PlayErrorKind::refused;
  double begin = 0;
  double end = 0;
  std::uint64_t offset = platform::PlayedPacket::kNowhere;  ///< of the first packet
  std::uint64_t packets = 0;                                ///< how many are touched
  double seconds = 0;  ///< of sound that is lost or too much; of `outOfStep` how far, late above zero
  int signal = 0;      ///< that ended a crashed decoder, when one did
};

/// A stretch in which a picture stands still, since the film has none for it: no fault.
struct StillPicture {
  double begin = 0;
  double seconds = 0;
};

struct PlayedStreamTally {
  static constexpr std::size_t kMaxErrors = 200;
  static constexpr std::size_t kMaxStills = 100;
  static constexpr std::size_t kMaxFalseKeys = std::size_t{4} << 20U;

  platform::PlayedStream told;
  std::uint64_t packets = 0;
  std::uint64_t pictures = 0;
  std::uint64_t keys = 0;     ///< pictures that stand alone
  std::uint64_t samples = 0;  ///< of sound, of each channel
  double seconds = 0;         ///< of sound that came; of pictures what the film's clock says
  std::uint64_t errors = 0;   ///< packets that were refused or are hurt, and other faults
  std::vector<PlayError> faults;
  std::uint64_t faultsLeftOut = 0;
  std::vector<StillPicture> stills;
  double still = 0;  ///< all of them
  double creep = 0;  ///< how far sound runs away from its own clock, little by little; late above zero
  double step = 0;   ///< how far it is from the film's first pictures at the end, more than at the beginning
  std::vector<std::uint64_t> falseKeys;  ///< offsets of pictures that the index calls keys and the decoder does not
};

struct PlayTally {
  std::vector<PlayedStreamTally> streams;
  std::vector<platform::PlayedSeek> seeks;
  std::uint64_t unreadable = 0;  ///< places that could not be read
  std::uint64_t firstUnreadable = 0;
  double seconds = 0;  ///< of the longest stream
};

/// Takes the events of one film in their order. Thread: one.
class PlayCount {
 public:
  void take(const platform::PlayEvent& event);
  /// What they come to. Once, after the last.
  [[nodiscard]] PlayTally finish();

 private:
  /// A packet of which pictures may still come.
  struct Pending {
    platform::PlayedPacket packet;
    bool hasPicture = false;
    bool isCounted = false;  ///< as an error
  };
  /// Where a packet lies: of the first pictures with the time of its end, of other streams with that of its beginning.
  struct Place {
    std::uint64_t offset = 0;
    double time = 0;
  };
  struct Stream {
    PlayedStreamTally tally;
    std::deque<Pending> pending;
    std::optional<PlayError> silent;  ///< packets without pictures that go on
    std::optional<double> first;      ///< time of the first packet
    double end = 0;                   ///< of the last one
    double last = 0;                  ///< its begin
    std::uint64_t lastOffset = platform::PlayedPacket::kNowhere;
    double base = 0;          ///< what sound is behind its clock, as usual
    double jumps = 0;         ///< what came at once of it
    double longest = 0;       ///< packet of sound
    double secondsAByte = 0;  ///< of sound, by its last packets but one
    std::uint32_t lastSize = 0;
    std::vector<Place> places;
  };

  void takeStream(const platform::PlayedStream& stream);
  void takePacket(const platform::PlayedPacket& packet);
  void takePicture(const platform::PlayedPicture& picture);
  void takeSound(const platform::PlayedSound& sound);
  void takeFault(const platform::PlayFault& fault);
  void notePlace(Stream& stream, const platform::PlayedPacket& packet);
  void countError(Stream& stream, std::uint64_t packet, PlayErrorKind kind, int signal = 0);
  static void addFault(Stream& stream, const PlayError& error);
  static void addLoss(Stream& stream, const PlayError& error);
  static void addStill(Stream& stream, double begin, double end);
  static void judge(Stream& stream, const Pending& oldest);
  static void closeSilence(Stream& stream);
  static void watchClock(Stream& stream, double time, double duration);
  void watchStep(Stream& stream);

  std::vector<Stream> streams_;
  PlayTally tally_;
  std::size_t places_ = 0;               ///< of all streams
  std::optional<std::size_t> pictures_;  ///< the first stream of them
};

}  // namespace zelvo::salvage
