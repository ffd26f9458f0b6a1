#include "salvage/plan/tried_keys.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

#include "salvage/payloads/codec.h"
#include "salvage/payloads/key_picture.h"
#include "salvage/payloads/payload_trial.h"
#include "salvage/plan/slot_payload.h"

namespace zelvo::salvage {

namespace {

/// Whether a codec has bits that tell.
bool tellsKeys(const SurvivingStream& stream) {
  const std::array<std::byte, 64> any{};
  return isKeyPicture(codecOf(stream), any).has_value();
}

class Keys {
 public:
  Keys(platform::TrialDecoder& decoder, avi::InputFile& input, TrialBudget& budget, FilmPlan& plan)
      : decoder_(decoder), input_(input), budget_(budget), plan_(plan) {}

  void flag(std::uint8_t index, const platform::TrialStream& stream) {
    std::vector<std::uint32_t> slots;  // of the payloads given to the decoder
    for (std::uint32_t i = 0; i < plan_.slots.size(); ++i) {
      const Slot& slot = plan_.slots[i];
      if (slot.stream != index || !slot.hasSource()) continue;
      if (slot.isIndexed) return;
      if (slot.size <= platform::TrialDecoder::kMaxPayload) slots.push_back(i);
    }
    if (slots.size() < 2 || !decoder_.open(stream)) return;
    std::vector<std::uint32_t> keys;
    const auto note = [&](const std::optional<platform::TrialAnswer>& answer) {
      if (!answer) return false;
      for (const platform::TrialPicture& picture : answer->pictures) {
        if (picture.type == platform::PictureType::intra && picture.isKey && picture.payload < slots.size())
          keys.push_back(slots[picture.payload]);
      }
      return true;
    };
    bool isThere = true;
    for (std::size_t i = 0; isThere && i < slots.size() && budget_.take(stream); ++i) {
      isThere =
          note(decoder_.decode(readPayload(input_, plan_.slots[slots[i]], plan_.pieces), platform::WantedPlanes::none));
    }
    if (isThere) static_cast<void>(note(decoder_.finish(platform::WantedPlanes::none)));
    if (keys.empty()) return;
    for (const std::uint32_t slot : slots) plan_.slots[slot].isIndexed = true;
    for (const std::uint32_t slot : keys) plan_.slots[slot].hasKeyFlag = true;
  }

 private:
  platform::TrialDecoder& decoder_;
  avi::InputFile& input_;
  TrialBudget& budget_;
  FilmPlan& plan_;
};

}  // namespace

void flagKeysByDecoding(platform::TrialDecoder& decoder, avi::InputFile& input, const FilmHeader& header,
                        TrialBudget budget, FilmPlan& plan) {
  Keys keys(decoder, input, budget, plan);
  for (std::size_t i = 0; i < header.streams.size(); ++i) {
    const SurvivingStream& stream = header.streams[i].header;
    if (stream.type == avi::kVids && !tellsKeys(stream)) keys.flag(static_cast<std::uint8_t>(i), trialStreamOf(stream));
  }
}

}  // namespace zelvo::salvage
