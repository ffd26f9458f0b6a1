/// A decoder of a codec that is made up: it knows the good payloads, and decodes any other one as far as it is like one
/// of them.
#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "platform/trial_decoder.h"

namespace zelvo::tests {

/// Each picture of 32 x 32 pixels shows in its upper part how much of the payload was decoded; the rest is grey. Good
/// payloads begin with different bytes. Thread: one.
class KnownPictures final : public platform::TrialDecoder {
 public:
  explicit KnownPictures(std::vector<platform::Bytes> payloads) : payloads_(std::move(payloads)) {}

  [[nodiscard]] bool open(const platform::TrialStream& stream) override {
    opened.push_back(stream);
    number_ = 0;
    return isKnown;
  }
  [[nodiscard]] std::optional<platform::TrialAnswer> decode(std::span<const std::byte> payload,
                                                            platform::WantedPlanes wanted) override {
    ++decodes;
    if (onDecode) onDecode();
    const platform::Bytes bytes(payload.begin(), payload.end());
    if (deadly.contains(bytes)) return std::nullopt;
    std::size_t most = 0;
    const platform::Bytes* like = nullptr;
    for (const platform::Bytes& good : payloads_) {
      const auto end = std::ranges::mismatch(good, payload).in1;
      const auto same = static_cast<std::size_t>(end - good.begin());
      if (same <= most) continue;
      most = same;
      like = &good;
    }
    platform::TrialAnswer answer{.isAccepted = like != nullptr, .complaints = 1, .pictures = {}};
    const std::uint32_t number = number_++;
    if (like == nullptr) return answer;
    const bool isWhole = most == like->size() && payload.size() == most;
    if (isWhole || silent.contains(bytes)) answer.complaints = 0;
    if (number > 1 && strange.contains(bytes)) answer.complaints = 1;
    if (number < picturesBefore) return answer;
    platform::TrialPicture picture{number, platform::PictureType::predicted, false, {}};
    if (wanted != platform::WantedPlanes::none) {
      platform::PicturePlane plane{32, 32, platform::Bytes(1024, std::byte{0x80})};
      const auto wrong = silent.find(bytes);
      const std::size_t shown = wrong != silent.end() ? 1024 : 1024 * most / like->size();
      std::fill_n(plane.samples.begin(), static_cast<std::ptrdiff_t>(shown), std::byte{0x30});
      if (wrong != silent.end()) std::fill_n(plane.samples.begin(), wrong->second, std::byte{0xff});
      picture.planes.push_back(std::move(plane));
    }
    answer.pictures.push_back(std::move(picture));
    return answer;
  }
  [[nodiscard]] std::optional<platform::TrialAnswer> finish(platform::WantedPlanes) override {
    number_ = 0;
    return platform::TrialAnswer{.isAccepted = true, .complaints = 0, .pictures = {}};
  }
  [[nodiscard]] platform::Bytes usualExtra(const platform::TrialStream&) override { return {}; }
  [[nodiscard]] bool isThere() override { return true; }

  bool isKnown = true;  ///< the codec
  /// Payloads that are decoded without complaint though they are not good: so many samples of their pictures are wrong.
  std::map<platform::Bytes, std::ptrdiff_t> silent;
  std::set<platform::Bytes> strange;  ///< payloads that cause a complaint after two others or more
  std::uint32_t picturesBefore = 0;   ///< nothing is shown of a payload that has fewer before it
  std::set<platform::Bytes> deadly;   ///< payloads that no decoder survives
  std::vector<platform::TrialStream> opened;
  std::size_t decodes = 0;
  std::function<void()> onDecode;

 private:
  std::vector<platform::Bytes> payloads_;
  std::uint32_t number_ = 0;
};

}  // namespace zelvo::tests
