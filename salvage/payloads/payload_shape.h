/// Whether bytes look like a whole payload of a stream: how its codec's payloads begin, end, and how long they are.
/// Sizes are in bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "salvage/payloads/codec.h"

namespace zelvo::salvage {

enum class Fit : std::uint8_t { contradicts, unknown, fits };

/// Of one stream. Thread: any.
class PayloadShape {
 public:
  explicit PayloadShape(const SurvivingStream& stream);

  /// Whether a payload can begin so. `head`: its first bytes, 16 where it has so many.
  [[nodiscard]] Fit begins(std::span<const std::byte> head) const;

  /// Whether a payload of `size` is complete. `head` and `tail`: its first and last bytes; 64 of each, or all of it.
  [[nodiscard]] Fit isComplete(std::span<const std::byte> head, std::span<const std::byte> tail,
                               std::uint32_t size) const;

  /// The one size that the format gives every payload: of raw pictures without compression; nothing of others.
  [[nodiscard]] std::optional<std::uint32_t> fixedSize() const;
  /// Payloads are a multiple of it: nBlockAlign of sound in samples or blocks, else 1.
  [[nodiscard]] std::uint32_t block() const { return block_; }

 private:
  Codec codec_;
  PictureFormat picture_;
  std::uint32_t block_ = 1;
};

}  // namespace zelvo::salvage
