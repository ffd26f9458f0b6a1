#include "salvage/plan/tried_keys.h"

#include <gtest/gtest.h>

#include "tests/salvage/codec_films.h"
#include "tests/support/memory_files.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;
using platform::PictureType;
using salvage::FilmHeader;
using salvage::FilmPlan;
using salvage::TrialBudget;

/// Names each picture's type by the payload's first byte. Each picture comes with the payload after it.
class TypedPictures final : public platform::TrialDecoder {
 public:
  [[nodiscard]] bool open(const platform::TrialStream&) override {
    ++opened;
    return isKnown;
  }
  [[nodiscard]] std::optional<platform::TrialAnswer> decode(std::span<const std::byte> payload,
                                                            platform::WantedPlanes) override {
    ++decodes;
    if (isDeadly) return std::nullopt;
    platform::TrialAnswer answer = waiting();
    const bool isIntra = payload.front() == std::byte{'I'};
    const PictureType type = !namesTypes ? PictureType::unknown : isIntra ? PictureType::intra : PictureType::predicted;
    waiting_ = platform::TrialPicture{number_++, type, isIntra || !namesTypes, {}};
    return answer;
  }
  [[nodiscard]] std::optional<platform::TrialAnswer> finish(platform::WantedPlanes) override { return waiting(); }
  [[nodiscard]] Bytes usualExtra(const platform::TrialStream&) override { return {}; }
  [[nodiscard]] bool isThere() override { return true; }

  bool isKnown = true;
  bool namesTypes = true;
  bool isDeadly = false;
  std::size_t opened = 0;
  std::size_t decodes = 0;

 private:
  platform::TrialAnswer waiting() {
    platform::TrialAnswer answer{.isAccepted = true, .complaints = 0, .pictures = {}};
    if (waiting_) answer.pictures.push_back(*waiting_);
    waiting_.reset();
    return answer;
  }

  std::optional<platform::TrialPicture> waiting_;
  std::uint32_t number_ = 0;
};

class TriedKeys : public testing::Test {
 protected:
  /// A film of pictures of these types, with sound between them.
  void film(std::string_view code, std::string_view types) {
    header.streams = {{0, avi::FourCC{"00dc"}, pictureStream(code), salvage::HeaderOrigin::own},
                      {1, avi::FourCC{"01wb"}, soundStream(1, 1, 8000, 2, 16, 2), salvage::HeaderOrigin::own}};
    for (const char type : types) {
      for (const std::uint8_t stream : {std::uint8_t{0}, std::uint8_t{1}}) {
        salvage::Slot slot;
        slot.source = bytes.size() & salvage::Slot::kSourceMask;
        slot.size = 10;
        slot.stream = stream;
        bytes.resize(bytes.size() + 10, static_cast<std::byte>(type));
        plan.slots.push_back(slot);
      }
    }
  }
  /// The pictures that are flagged, as 'K'.
  std::string flags(TrialBudget budget = TrialBudget()) {
    files.put("/in.avi", bytes);
    avi::InputFile input(files.openForReading("/in.avi").file);
    flagKeysByDecoding(decoder, input, header, budget, plan);
    std::string text;
    for (const salvage::Slot& slot : plan.slots) {
      EXPECT_FALSE(slot.stream == 1 && slot.isIndexed);
      if (slot.stream == 0) text += !slot.isIndexed ? '.' : slot.hasKeyFlag ? 'K' : '-';
    }
    return text;
  }

  TypedPictures decoder;
  MemoryFiles files;
  Bytes bytes;
  FilmHeader header;
  FilmPlan plan;
};

TEST_F(TriedKeys, IntraPicturesAreKeys) {
  film("SNOW", "IPPPIPPI");
  EXPECT_EQ(flags(), "K---K--K");
}

TEST_F(TriedKeys, LostPicturesAreNotDecoded) {
  film("SNOW", "IPPIP");
  plan.slots[2].state = salvage::SlotState::lost;
  EXPECT_EQ(flags(), "K.-K-");
}

TEST_F(TriedKeys, CodecThatTellsByItsBitsIsNotDecoded) {
  film("XVID", "IPPP");
  EXPECT_EQ(flags(), "....");
  EXPECT_EQ(decoder.opened, 0U);
}

TEST_F(TriedKeys, FlagsOfAnIndexStay) {
  film("SNOW", "IPPP");
  plan.slots[4].isIndexed = true;
  EXPECT_EQ(flags(), "..-.");
  EXPECT_EQ(decoder.opened, 0U);
}

TEST_F(TriedKeys, DecoderThatNamesNoTypesTellsNothing) {
  film("SNOW", "IPPP");
  decoder.namesTypes = false;
  EXPECT_EQ(flags(), "....");
}

TEST_F(TriedKeys, UnknownCodecTellsNothing) {
  film("SNOW", "IPPP");
  decoder.isKnown = false;
  EXPECT_EQ(flags(), "....");
  EXPECT_EQ(decoder.decodes, 0U);
}

TEST_F(TriedKeys, DecoderThatDiesTellsNothing) {
  film("SNOW", "IPPP");
  decoder.isDeadly = true;
  EXPECT_EQ(flags(), "....");
  EXPECT_EQ(decoder.decodes, 1U);
}

TEST_F(TriedKeys, BudgetEndsTheDecoding) {
  film("SNOW", "IPPPIPPI");
  EXPECT_EQ(flags(TrialBudget(TrialBudget::kLeast * 5)), "K---K---");
  EXPECT_EQ(decoder.decodes, 5U);
}

}  // namespace
}  // namespace zelvo::tests
