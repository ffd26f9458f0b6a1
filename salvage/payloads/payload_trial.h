/// A payload that is in doubt, decoded in this form and that, by itself and among its neighbours.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "platform/bytes.h"
#include "platform/trial_decoder.h"
#include "salvage/payloads/trial_budget.h"
#include "salvage/scan/surviving_headers.h"

namespace zelvo::salvage {

/// What a decoder is told of a stream of pictures.
[[nodiscard]] platform::TrialStream trialStreamOf(const SurvivingStream& stream);

/// Payloads of the same stream around the one in doubt, in the film's order.
struct PayloadNeighbours {
  std::vector<platform::Bytes> before;  ///< from a key picture on
  std::vector<platform::Bytes> after;   ///< a few
  bool isKey = false;                   ///< the payload in doubt needs none of those before
  bool needsKey = false;                ///< nothing can be told of a payload without some picture before it
};

/// What came of a payload by itself.
struct LoneTrial {
  std::uint32_t complaints = 0;
  bool hasPicture = false;
  std::uint64_t mark = 0;  ///< of what was decoded: the same for the same pictures

  /// Whether both came to the same pictures.
  [[nodiscard]] bool looksLike(const LoneTrial& other) const {
    return hasPicture == other.hasPicture && mark == other.mark;
  }
};

/// The forms in which a search tries a payload. Answers are nothing once the budget is used up, or without a decoder.
/// Thread: one at a time.
class PayloadTrial {
 public:
  virtual ~PayloadTrial() = default;

  /// Without the pictures that it is predicted from: its errors show all the same.
  [[nodiscard]] virtual std::optional<LoneTrial> alone(std::span<const std::byte> payload) = 0;
  /// How little the picture fits: its distance from the picture before or after, whichever is nearer. Nothing, too,
  /// where no picture comes.
  [[nodiscard]] virtual std::optional<std::uint64_t> misfit(std::span<const std::byte> payload) = 0;
  /// How many answers of `misfit` the budget has left.
  [[nodiscard]] virtual std::size_t comparisonsLeft() const = 0;
  /// So many forms may be tried alone for one search.
  [[nodiscard]] virtual std::size_t maxTrials() const = 0;
  /// Complaints that good payloads of this kind cause.
  [[nodiscard]] virtual std::optional<std::uint32_t> usualComplaints() = 0;
};

/// The same with a decoder.
class DecodedTrial final : public PayloadTrial {
 public:
  /// Borrows all of it. \pre `decoder` was opened for the stream.
  DecodedTrial(platform::TrialDecoder& decoder, const platform::TrialStream& stream,
               const PayloadNeighbours& neighbours, TrialBudget& budget);

  [[nodiscard]] std::optional<LoneTrial> alone(std::span<const std::byte> payload) override;
  [[nodiscard]] std::optional<std::uint64_t> misfit(std::span<const std::byte> payload) override;
  [[nodiscard]] std::size_t comparisonsLeft() const override;
  [[nodiscard]] std::size_t maxTrials() const override { return neighbours_.needsKey ? 384 : 1536; }
  [[nodiscard]] std::optional<std::uint32_t> usualComplaints() override;

 private:
  using Answer = std::optional<platform::TrialAnswer>;

  [[nodiscard]] Answer decode(std::span<const std::byte> payload, platform::WantedPlanes wanted);
  void learn();

  platform::TrialDecoder& decoder_;
  const platform::TrialStream& stream_;
  const PayloadNeighbours& neighbours_;
  TrialBudget& budget_;
  bool isOpen_ = true;
  bool hasLearnt_ = false;
  std::vector<platform::PicturePlane> before_;  ///< the picture before; none when there is none
};

}  // namespace zelvo::salvage
