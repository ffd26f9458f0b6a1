/// Payloads that are silent, for sound that is lost. Sizes are in bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "platform/bytes.h"
#include "salvage/payloads/codec.h"

namespace zelvo::salvage {

/// Of one sound stream. Thread: one.
class Silence {
 public:
  explicit Silence(const SurvivingStream& stream);

  /// Learns from the front of a payload that is whole: what silence of some codecs needs.
  void learn(std::span<const std::byte> head);

  /// The size of a chunk that is silent for about `seconds`, in whole blocks or frames; 0 where only an empty chunk is
  /// known to do no harm.
  [[nodiscard]] std::uint32_t sizeFor(double seconds) const;

  /// Fills a whole payload.
  void fill(std::span<std::byte> payload) const;

 private:
  void fillFrames(std::span<std::byte> payload) const;

  Codec codec_;
  SoundFormat format_;
  platform::Bytes frame_;        ///< header of a frame
  std::uint32_t frameSize_ = 0;  ///< of the frame with that header; 0 before one was learnt
};

}  // namespace zelvo::salvage
