/// A machine without anything to decode with.
#pragma once

#include "platform/trial_decoder.h"

namespace zelvo::platform::headless {

class HeadlessTrialDecoder final : public TrialDecoder {
 public:
  [[nodiscard]] bool open(const TrialStream&) override { return false; }
  [[nodiscard]] std::optional<TrialAnswer> decode(std::span<const std::byte>, WantedPlanes) override {
    return std::nullopt;
  }
  [[nodiscard]] std::optional<TrialAnswer> finish(WantedPlanes) override { return std::nullopt; }
  [[nodiscard]] Bytes usualExtra(const TrialStream&) override { return {}; }
  [[nodiscard]] bool isThere() override { return false; }
};

}  // namespace zelvo::platform::headless
