/// Decoding payloads to see whether they can be, and what comes of it. Whatever a payload does to a decoder, the answer
/// is a value: a decoder that crashes, hangs or wants too much memory is one that answers "no".
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "platform/bytes.h"

namespace zelvo::platform {

/// What a decoder is told before the first payload: the fields of a film's BITMAPINFOHEADER.
struct TrialStream {
  std::uint32_t codec = 0;   ///< biCompression: four letters, the first one in the lowest byte
  std::uint32_t width = 0;   ///< biWidth; in pixels
  std::uint32_t height = 0;  ///< biHeight without its sign; in pixels
  std::uint16_t bits = 0;    ///< biBitCount
  Bytes extra;               ///< what follows the header

  friend bool operator==(const TrialStream&, const TrialStream&) = default;
};

enum class PictureType : std::uint8_t {
  unknown,        ///< the decoder does not say
  intra,          ///< stands alone
  predicted,      ///< from pictures before it
  bidirectional,  ///< from pictures on both sides
};

/// Eight bits a sample, whatever the decoder gave.
struct PicturePlane {
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  Bytes samples;  ///< row by row, without anything between them

  friend bool operator==(const PicturePlane&, const PicturePlane&) = default;
};

struct TrialPicture {
  std::uint32_t payload = 0;  ///< that it came of: counted from 0 since the decoder was opened or started again
  PictureType type = PictureType::unknown;
  bool isKey = false;
  std::vector<PicturePlane> planes;  ///< none unless they were asked for; else grey or the first colour, then others
};

/// What came of one payload. Pictures may come with a later one: decoders put them into the order of display.
struct TrialAnswer {
  bool isAccepted = false;       ///< the decoder did not refuse the payload
  std::uint32_t complaints = 0;  ///< messages of the decoder
  std::vector<TrialPicture> pictures;
};

enum class WantedPlanes : std::uint8_t { none, first, all };

/// Thread: one at a time.
class TrialDecoder {
 public:
  /// A payload or extra bytes of more are not decoded.
  static constexpr std::size_t kMaxPayload = std::size_t{8} << 20U;
  /// Of a picture; larger ones are not decoded.
  static constexpr std::uint64_t kMaxPixels = 2048U * 1200U;

  virtual ~TrialDecoder() = default;

  /// Makes ready for a stream and forgets the one before. False when no decoder knows the codec, when it refuses the
  /// stream, or when there is nothing to decode with.
  [[nodiscard]] virtual bool open(const TrialStream& stream) = 0;

  /// Decodes a payload. What the decoder does not reach of a picture stays grey.
  /// \pre the last `open` was answered with true.
  /// Failure: nothing when the decoder did not survive the payload, or took too long over it; open it again then.
  [[nodiscard]] virtual std::optional<TrialAnswer> decode(std::span<const std::byte> payload, WantedPlanes wanted) = 0;

  /// Gives the pictures that are still to come, and starts again: the stream stays, all its pictures are forgotten.
  /// \pre, Failure: as with `decode`.
  [[nodiscard]] virtual std::optional<TrialAnswer> finish(WantedPlanes wanted) = 0;

  /// What a common encoder of this codec writes after the header of a stream of this size. Empty when there is none.
  [[nodiscard]] virtual Bytes usualExtra(const TrialStream& stream) = 0;

  /// False when nothing can be decoded on this machine, or not any more.
  [[nodiscard]] virtual bool isThere() = 0;
};

}  // namespace zelvo::platform
