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
  std::vector<std::size_t> good;        ///< which of those before are whole
  std::vector<platform::Bytes> after;   ///< a few
  platform::Bytes nextKey;              ///< the first after it that is no part of what it changes; empty without one
  bool isKey = false;                   ///< the payload in doubt needs none of those before
  bool needsKey = false;                ///< nothing can be told of a payload without some picture before it
  bool needsTwoKeys = false;            ///< the same, and of some payloads nothing without two
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
  /// How little the picture fits: its distance from the picture before or the next key, whichever is nearer. Pictures
  /// that are predicted from it would be near whatever it shows. Nothing, too, where no picture comes.
  [[nodiscard]] virtual std::optional<std::uint64_t> misfit(std::span<const std::byte> payload) = 0;
  /// Whether the decoder complains of it no more than of its neighbours when it is decoded after all that it is
  /// predicted from. True of payloads of which `alone` tells as much.
  [[nodiscard]] virtual bool isTaken(std::span<const std::byte> payload) = 0;
  /// Whether no part of the picture below `rightShare`, which is right in any case, is much further from the picture
  /// before, or from the next key, than parts above it or pictures of this film are from one another. Asked once, at
  /// the end of a search, it is answered beyond the budget, too.
  [[nodiscard]] virtual bool belongs(std::span<const std::byte> payload, double rightShare) = 0;
  /// How many answers of `misfit` the budget has left.
  [[nodiscard]] virtual std::size_t comparisonsLeft() const = 0;
  /// How many answers of `alone` the budget has left, of payloads of so many bytes.
  [[nodiscard]] virtual std::size_t trialsLeft(std::size_t size) const = 0;
  /// So many forms may be tried alone for one search.
  [[nodiscard]] virtual std::size_t maxTrials() const = 0;
  /// Of a decoder that is silent over more cuts than this, its silence tells nothing.
  [[nodiscard]] virtual std::size_t maxClean() const = 0;
  /// Complaints that good payloads of this kind cause.
  [[nodiscard]] virtual std::optional<std::uint32_t> usualComplaints() = 0;
  /// Other pictures come of good payloads of this kind without so many bytes at their end. Nothing where a decoder does
  /// not care for their last bytes.
  [[nodiscard]] virtual std::optional<std::uint32_t> tellingEnd() = 0;
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
  [[nodiscard]] std::size_t trialsLeft(std::size_t size) const override;
  [[nodiscard]] std::size_t maxTrials() const override { return neighbours_.needsKey ? 640 : 1536; }
  [[nodiscard]] bool isTaken(std::span<const std::byte> payload) override;
  [[nodiscard]] bool belongs(std::span<const std::byte> payload, double rightShare) override;
  [[nodiscard]] std::size_t maxClean() const override { return neighbours_.needsKey ? 3 : 160; }
  [[nodiscard]] std::optional<std::uint32_t> usualComplaints() override;
  [[nodiscard]] std::optional<std::uint32_t> tellingEnd() override;

 private:
  using Answer = std::optional<platform::TrialAnswer>;

  struct Shown {
    std::vector<platform::PicturePlane> picture;
    std::vector<platform::PicturePlane> nextKey;  ///< none when there is none
  };

  [[nodiscard]] bool isAfterKey() const {
    return (neighbours_.needsKey || neighbours_.needsTwoKeys) && !neighbours_.isKey && !neighbours_.before.empty();
  }
  /// How many times the key is decoded before the payload: it stands for the second one, too.
  [[nodiscard]] std::uint32_t keysOfTrial() const { return !isAfterKey() ? 0 : neighbours_.needsTwoKeys ? 2 : 1; }
  /// Whether the payload after it is decoded with it.
  [[nodiscard]] bool hasNext() const { return !neighbours_.isKey && !isAfterKey() && !neighbours_.after.empty(); }
  [[nodiscard]] std::size_t payloadsOfTrial() const;
  [[nodiscard]] std::size_t bytesBeside() const;
  [[nodiscard]] Answer decode(std::span<const std::byte> payload, platform::WantedPlanes wanted);
  void learn();
  [[nodiscard]] std::optional<Shown> show(std::span<const std::byte> payload, bool isLast);
  [[nodiscard]] std::vector<const platform::Bytes*> goodPayloads() const;
  [[nodiscard]] std::size_t bytesBefore() const;

  platform::TrialDecoder& decoder_;
  const platform::TrialStream& stream_;
  const PayloadNeighbours& neighbours_;
  TrialBudget& budget_;
  bool isOpen_ = true;
  bool hasLearnt_ = false;
  std::vector<platform::PicturePlane> before_;  ///< the picture before; none when there is none
  std::vector<std::uint32_t> strips_;           ///< the furthest one of each of the pictures before from the one before
  std::uint32_t complaints_ = 0;                ///< the most that a good payload causes among its neighbours
};

}  // namespace zelvo::salvage
