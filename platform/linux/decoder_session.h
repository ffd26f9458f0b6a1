/// Decodes payloads in this process with the libraries of FFmpeg: what zelvo-avi-decoder does, and nothing else may.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "platform/bytes.h"
#include "platform/trial_decoder.h"

namespace zelvo::platform::linux_ {

/// One stream. Everything is done on the calling thread, and the same payloads give the same answers to the bit.
class DecoderSession {
 public:
  DecoderSession();
  DecoderSession(const DecoderSession&) = delete;
  DecoderSession& operator=(const DecoderSession&) = delete;
  ~DecoderSession();

  /// As in TrialDecoder.
  [[nodiscard]] bool open(const TrialStream& stream);
  [[nodiscard]] TrialAnswer decode(std::span<const std::byte> payload, WantedPlanes wanted);
  [[nodiscard]] TrialAnswer finish(WantedPlanes wanted);
  [[nodiscard]] static Bytes usualExtra(const TrialStream& stream);

 private:
  struct Parts;

  void receive(TrialAnswer& answer, WantedPlanes wanted);

  std::unique_ptr<Parts> parts_;
};

}  // namespace zelvo::platform::linux_
