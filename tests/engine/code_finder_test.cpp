#include "engine/code_finder.h"

#include <gtest/gtest.h>

#include <array>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "platform/bytes.h"
#include "tests/support/avi_builder.h"
#include "tests/support/byte_text.h"

namespace zelvo::tests {
namespace {

using engine::CodeFinder;
using engine::CodeFinderKind;

std::vector<std::uint16_t> naive(const platform::Bytes& bytes, std::size_t positions) {
  std::vector<std::uint16_t> found;
  for (std::size_t i = 0; i < positions; ++i) {
    const std::string code = textAt(bytes, i, 4);
    if (code == "00db" || code == "00dc" || code == "01wb") found.push_back(static_cast<std::uint16_t>(i));
  }
  return found;
}

class CodeFinderOf : public testing::TestWithParam<CodeFinderKind> {
 protected:
  std::vector<std::uint16_t> find(const platform::Bytes& bytes, std::size_t positions) {
    engine::FoundCodes found;
    found.add(7);  // left from before
    finder.find(bytes, positions, found);
    return {found.positions().begin(), found.positions().end()};
  }
  const CodeFinder finder{GetParam()};
};

constexpr std::size_t kAll = CodeFinder::kMaxPositions;

platform::Bytes blankWindow() { return platform::Bytes(kAll + CodeFinder::kMargin, std::byte{0x20}); }

TEST_P(CodeFinderOf, FindsACodeAtEveryPosition) {
  for (const char* code : {"00db", "00dc", "01wb"}) {
    for (std::size_t position = 0; position < kAll; ++position) {
      platform::Bytes bytes = blankWindow();
      overwrite(bytes, position, code);
      ASSERT_EQ(find(bytes, kAll), std::vector{static_cast<std::uint16_t>(position)}) << code;
    }
  }
}

TEST_P(CodeFinderOf, FindsNothingAtOrBehindTheLastPosition) {
  for (const std::size_t positions : {0U, 1U, 2U, 15U, 16U, 17U, 31U, 32U, 33U, 63U, 64U, 65U, 500U, 1021U, 1023U}) {
    platform::Bytes bytes = blankWindow();
    overwrite(bytes, positions, "00dc00dc");
    ASSERT_TRUE(find(bytes, positions).empty()) << positions;
    if (positions == 0) continue;
    bytes = blankWindow();
    overwrite(bytes, positions - 1, "01wb");
    ASSERT_EQ(find(bytes, positions), std::vector{static_cast<std::uint16_t>(positions - 1)}) << positions;
  }
}

TEST_P(CodeFinderOf, FindsADenseFillOfEveryKind) {
  platform::Bytes bytes;
  const std::string codes = "00dc00db01wb";
  while (bytes.size() < kAll + CodeFinder::kMargin) bytes.push_back(static_cast<std::byte>(codes[bytes.size() % 12]));
  EXPECT_EQ(find(bytes, kAll).size(), engine::FoundCodes::kCapacity);
  EXPECT_EQ(find(bytes, kAll), naive(bytes, kAll));
}

TEST_P(CodeFinderOf, IsNotMisledByCodesThatDifferInOneBit) {
  for (const std::string code : {"00db", "00dc", "01wb"}) {
    for (std::size_t byte = 0; byte < 4; ++byte) {
      for (unsigned bit = 0; bit < 8; ++bit) {
        platform::Bytes bytes = blankWindow();
        overwrite(bytes, 100, code);
        bytes[100 + byte] ^= static_cast<std::byte>(1U << bit);
        ASSERT_EQ(find(bytes, kAll), naive(bytes, kAll)) << code << " byte " << byte << " bit " << bit;
      }
    }
  }
}

TEST_P(CodeFinderOf, AgreesWithANaiveSearchOnRandomBytes) {
  std::mt19937 random(1);
  platform::Bytes bytes = blankWindow();
  for (int round = 0; round < 200; ++round) {
    for (std::byte& byte : bytes) byte = static_cast<std::byte>(random() & 0xffU);
    ASSERT_EQ(find(bytes, kAll), naive(bytes, kAll));
  }
}

TEST_P(CodeFinderOf, AgreesWithANaiveSearchOnBytesOfTheCodesOwnLetters) {
  // Nearly codes, overlapping beginnings, runs of '0'.
  std::mt19937 random(2);
  constexpr std::string_view kLetters = "0001dbcwb";
  platform::Bytes bytes = blankWindow();
  std::size_t hits = 0;
  for (int round = 0; round < 2000; ++round) {
    for (std::byte& byte : bytes) byte = static_cast<std::byte>(kLetters[random() % kLetters.size()]);
    const std::size_t positions = random() % (kAll + 1);
    const std::vector<std::uint16_t> expected = naive(bytes, positions);
    hits += expected.size();
    ASSERT_EQ(find(bytes, positions), expected) << "round " << round << ", " << positions << " positions";
  }
  EXPECT_GT(hits, 1000U);
}

TEST_P(CodeFinderOf, BitsNameEachPlaceOfEachCode) {
  for (const std::string code : {"00db", "00dc", "01wb", "JUNK"}) {
    for (std::size_t place = 0; place < 64; ++place) {
      platform::Bytes bytes = blankWindow();
      overwrite(bytes, place, code);
      const engine::CodeBits bits = finder.bits(bytes.data());
      const std::uint64_t expected = std::uint64_t{1} << place;
      ASSERT_EQ(bits.data, code == "JUNK" ? 0 : expected) << code << " at " << place;
      ASSERT_EQ(bits.padding, code == "JUNK" ? expected : 0) << code << " at " << place;
    }
    platform::Bytes bytes = blankWindow();
    overwrite(bytes, 64, code);
    ASSERT_EQ(finder.bits(bytes.data()).data + finder.bits(bytes.data()).padding, 0U) << code << " at 64";
  }
}

TEST_P(CodeFinderOf, BitsAgreeWithANaiveSearchOnBytesOfTheCodesOwnLetters) {
  std::mt19937 random(3);
  constexpr std::string_view kLetters = "0001dbcwbJUNK";
  constexpr std::array<const char*, 8> kNear{"00db", "00dc", "01wb", "JUNK", "01wc", "00wb", "01dc", "JUNJ"};
  platform::Bytes bytes = blankWindow();
  for (int round = 0; round < 3000; ++round) {
    for (std::byte& byte : bytes) byte = static_cast<std::byte>(kLetters[random() % kLetters.size()]);
    for (int code = 0; code < 10; ++code) overwrite(bytes, random() % 67, kNear[random() % kNear.size()]);
    const engine::CodeBits bits = finder.bits(bytes.data());
    for (std::size_t place = 0; place < 64; ++place) {
      const std::string code = textAt(bytes, place, 4);
      ASSERT_EQ(bits.data >> place & 1U, code == "00db" || code == "00dc" || code == "01wb" ? 1U : 0U) << code;
      ASSERT_EQ(bits.padding >> place & 1U, code == "JUNK" ? 1U : 0U) << code;
    }
  }
}

std::string kindName(const testing::TestParamInfo<CodeFinderKind>& named) {
  switch (named.param) {
    case CodeFinderKind::portable:
      return "portable";
    case CodeFinderKind::sse2:
      return "sse2";
    case CodeFinderKind::avx2:
      return "avx2";
    case CodeFinderKind::best:
      return "best";
  }
  return {};
}

INSTANTIATE_TEST_SUITE_P(Kinds, CodeFinderOf,
                         testing::Values(CodeFinderKind::portable, CodeFinderKind::sse2, CodeFinderKind::avx2,
                                         CodeFinderKind::best),
                         kindName);

}  // namespace
}  // namespace zelvo::tests
