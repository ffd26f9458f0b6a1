// The engine against the literal transcription, on thousands of damaged inputs. Each case names the seed of the first
// input on which they differ.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <thread>

#include "engine/code_finder.h"
#include "engine/scan_window.h"
#include "tests/support/avi_builder.h"
#include "tests/support/damage.h"
#include "tests/support/literal_comparison.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;

constexpr std::size_t kBlock = engine::ScanWindow::kBlockSize;
/// The scan reads this much at a time, and a little more: its tail.
constexpr std::size_t kWindow = engine::ScanWindow::kBlocks * kBlock;
constexpr std::size_t kTail = engine::ScanWindow::kReadAhead;
/// Inputs of this length are read by two threads.
constexpr std::size_t kShared = 4 * kWindow;
/// What a look-ahead can reach of a dense input is kept in bits that come round after this many places.
constexpr std::size_t kRound = engine::LookAheadMap::kPositions;

DamagedInput undamaged(std::string name, Bytes bytes) {
  DamagedInput input;
  input.name = std::move(name);
  input.size = input.claimedSize = bytes.size();
  input.bytes = std::move(bytes);
  return input;
}

void putChunk(Bytes& bytes, std::size_t offset, std::string_view code, std::uint32_t size) {
  Bytes header;
  appendText(header, code);
  appendNumber(header, size);
  for (std::size_t k = 0; k < header.size() && offset + k < bytes.size(); ++k) bytes[offset + k] = header[k];
}

/// The thousands of seeds in parts, so that they run side by side.
class OracleSeeds : public testing::TestWithParam<std::uint64_t> {
 protected:
  static constexpr std::uint64_t kSeeds = 1500;
};

TEST_P(OracleSeeds, AgreesOnSmallDamagedInputs) {
  LiteralComparison comparison;
  for (std::uint64_t seed = GetParam(); seed < GetParam() + kSeeds; ++seed) {
    ASSERT_EQ(comparison.scanAndWrite(DamageGenerator(seed).small()), "");
  }
  // The inputs are worth something: most hold chunks, and most outputs are small enough to be written.
  EXPECT_GT(comparison.chunksCompared, 5000U);
  EXPECT_GT(comparison.outputsCompared, 1250U);
}

INSTANTIATE_TEST_SUITE_P(From, OracleSeeds, testing::Values(1, 1501, 3001, 4501), testing::PrintToStringParamName());

TEST(Oracle, AgreesOnRunsThatAreStoppedAnywhere) {
  LiteralComparison comparison;
  for (std::uint64_t seed = 1; seed <= 1500; ++seed) {
    DamageGenerator generator(seed);
    TwinStops stops;
    stops.byCancelMark = generator.chance(50);
    switch (generator.below(3)) {
      case 0:
        stops.duringBlock = 1 + generator.below(20);
        break;
      case 1:
        stops.beforeVideo = true;
        break;
      default:
        stops.duringVideo = true;
    }
    ASSERT_EQ(comparison.scanAndWrite(generator.small(), stops), "");
  }
  EXPECT_GT(comparison.outputsCompared, 1200U);
}

TEST(Oracle, AgreesOnLongRunsThatAreStoppedAnywhere) {
  LiteralComparison comparison;
  for (std::uint64_t seed = 1; seed <= 60; ++seed) {
    DamageGenerator generator(seed);
    TwinStops stops;
    stops.byCancelMark = generator.chance(50);
    stops.duringBlock = 1 + generator.below(1000);
    ASSERT_EQ(comparison.scanAndWrite(generator.acrossWindows(6 * kWindow), stops), "");
  }
}

TEST(Oracle, AgreesOnInputsOfSeveralWindows) {
  LiteralComparison comparison;
  for (std::uint64_t seed = 1; seed <= 150; ++seed) {
    ASSERT_EQ(comparison.scanAndWrite(DamageGenerator(seed).acrossWindows(6 * kWindow)), "");
  }
  EXPECT_GT(comparison.outputsCompared, 50U);
}

TEST(Oracle, AgreesOnDenseCandidatesOfAllReaches) {
  LiteralComparison comparison;
  for (std::uint64_t seed = 1; seed <= 60; ++seed) {
    constexpr std::array<std::uint32_t, 4> kLimits{20, 3000, 400000, 12000000};
    const std::size_t size = 10000 + 17 * kBlock * seed + seed;
    ASSERT_EQ(comparison.scanAndWrite(DamageGenerator(seed).dense(size, kLimits[seed % 4], seed % 3 == 0)), "");
  }
  EXPECT_GT(comparison.chunksCompared, 100000U);
}

void agreeOnDenseInputsLongerThanARound(bool failing) {
  LiteralComparison comparison;
  for (std::uint64_t seed = 1; seed <= 2; ++seed) {
    const std::size_t size = kRound + 1300001 * seed;
    ASSERT_EQ(comparison.scanAndWrite(DamageGenerator(seed).dense(size, 9999999, failing)), "");
  }
  EXPECT_GT(comparison.chunksCompared, 100000U);
}

TEST(Oracle, AgreesOnDenseInputsLongerThanARound) { agreeOnDenseInputsLongerThanARound(false); }
TEST(Oracle, AgreesOnDenseInputsLongerThanARoundWhoseReadsFail) { agreeOnDenseInputsLongerThanARound(true); }

TEST(Oracle, AgreesOnLookAheadsAcrossTheEndOfARound) {
  LiteralComparison comparison;
  comparison.largestOutput = 0;
  for (std::size_t shift = 0; shift < 8; ++shift) {
    // Codes everywhere, 8 bytes apart; from 5 MB on each looks at one of the 80,000 bytes around the round's end.
    Bytes bytes(shift);
    for (std::uint64_t k = 0; bytes.size() < kRound + 60000; ++k) {
      const std::uint64_t aim = kRound - 40000 + k % 80000;
      const bool aims = bytes.size() > 5000000 && bytes.size() + 8 < aim;
      appendText(bytes, "00dc");
      appendNumber(bytes, aims ? static_cast<std::uint32_t>(aim - bytes.size() - 4) : 4000000);
    }
    ASSERT_EQ(comparison.scanAndWrite(undamaged("codes from " + std::to_string(shift), bytes)), "");
  }
  EXPECT_GT(comparison.chunksCompared, 100000U);
}

TEST(Oracle, AgreesWhereOnlySomeWindowsAreDense) {
  LiteralComparison comparison;
  for (std::uint64_t seed = 21; seed <= 24; ++seed) {
    DamageGenerator generator(seed);
    DamagedInput input = generator.dense(4 * kWindow, 5000000);
    for (int pieces = 0; pieces < 4; ++pieces) {
      input.bytes.resize(input.bytes.size() + static_cast<std::size_t>(generator.below(5 * kWindow)));
      const Bytes more = generator.dense(static_cast<std::size_t>(generator.below(4 * kWindow)), 5000000).bytes;
      input.bytes.insert(input.bytes.end(), more.begin(), more.end());
    }
    input.size = input.claimedSize = input.bytes.size();
    ASSERT_EQ(comparison.scanAndWrite(input), "");
  }
}

TEST(Oracle, AgreesOnWholeRunsOfDamagedFiles) {
  LiteralComparison comparison;
  for (std::uint64_t seed = 1; seed <= 500; ++seed) {
    ASSERT_EQ(comparison.wholeRun(DamageGenerator(seed).wholeFile(static_cast<int>(1 + seed % 30))), "");
  }
  EXPECT_GT(comparison.outputsCompared, 150U);
  EXPECT_GT(comparison.chunksCompared, 2000U);
}

TEST(Oracle, AgreesAtEverySizeOfAFileThatMatters) {
  LiteralComparison comparison;
  AviBuilder avi;
  avi.interleaved(530, 2000, 100);
  const Bytes whole = avi.build();
  ASSERT_GT(whole.size(), kShared + 6 * kBlock);
  std::vector<std::size_t> sizes{0, 1, 2, 3, 4, 7, 8, 1022, 1023, 1024, 1025, 1026, 2047, 2048, 2049, 51199, 51200};
  for (const std::size_t base : {std::size_t{524288}, std::size_t{600} * kBlock, 3 * kWindow, kShared}) {
    for (std::size_t k = 0; k <= 16; ++k) sizes.push_back(base - 8 + k);
    for (std::size_t k = 1; k <= 5; ++k) sizes.push_back(base + k * kBlock);
  }
  for (const std::size_t size : sizes) {
    const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
    ASSERT_EQ(comparison.wholeRun(undamaged("file of " + std::to_string(size) + " bytes", cut)), "");
  }
  EXPECT_GT(comparison.outputsCompared, 50U);
}

TEST(Oracle, AgreesOnEverySizeFieldAtABoundary) {
  LiteralComparison comparison;
  for (const std::uint32_t size :
       {0U, 1U, 2U, 3U, 255U, 256U, 65535U, 65536U, 9999998U, 9999999U, 10000000U, 10000001U, 16777215U, 16777216U,
        0x7fffffffU, 0x80000000U, 0xfffffff7U, 0xfffffff8U, 0xffffffffU}) {
    for (const std::uint32_t pad : {0U, 1U, 2U, 3U}) {
      Bytes bytes(std::min<std::size_t>(size, 10000002) + 3000);
      putChunk(bytes, 2000, "00dc", size);
      if (2008 + std::uint64_t{size} + pad < bytes.size()) putChunk(bytes, 2008 + size + pad, "JUNK", 4);
      ASSERT_EQ(comparison.scanAndWrite(undamaged("size field " + std::to_string(size), bytes)), "");
      const bool accepted = size > 0 && size < 10000000 && pad <= 2;
      ASSERT_EQ(comparison.tables.video.count, accepted ? 1U : 0U) << size << ", " << pad;
    }
  }
}

TEST(Oracle, AgreesOnHeadersAroundTheLastBlockThatIsHarvested) {
  LiteralComparison comparison;
  AviBuilder avi;
  avi.interleaved(5, 300, 100);
  const Bytes whole = avi.build();
  for (const std::uint64_t mod : {0U, 1U, 90U, 350U, 1023U}) {
    for (std::size_t start = 48 * kBlock + 500; start <= 50 * kBlock; start += 61) {
      Bytes bytes(start);
      overwrite(bytes, 0, "RIFF");
      bytes.insert(bytes.end(), whole.begin(), whole.end());
      DamagedInput input = undamaged("headers at " + std::to_string(start), bytes);
      input.size = input.claimedSize = 513 * kBlock + mod;
      ASSERT_EQ(comparison.wholeRun(input), "") << mod;
    }
  }
  EXPECT_GT(comparison.outputsCompared, 20U);
}

constexpr std::array kBorders{kBlock,           2 * kBlock,      kWindow - kTail, kWindow,
                              kWindow + kBlock, kWindow + kTail, 2 * kWindow,     2 * kWindow + kTail};

TEST(Oracle, AgreesOnACodeAtEveryPlaceAroundABorder) {
  LiteralComparison comparison;
  for (const std::size_t border : kBorders) {
    for (std::size_t from = border - 20; from <= border + 4; ++from) {
      for (const std::size_t target : {from + 9, from + 1500}) {
        Bytes bytes(kShared + 6 * kBlock);
        putChunk(bytes, from, "00dc", static_cast<std::uint32_t>(target - from - 8));
        putChunk(bytes, target, "01wb", 10);
        ASSERT_EQ(comparison.scanAndWrite(undamaged("border " + std::to_string(border), bytes)), "")
            << from << ", " << target;
        ASSERT_EQ(comparison.tables.video.count, 1U);
      }
    }
  }
}

TEST(Oracle, AgreesOnALookAheadAtEveryPlaceAroundABorder) {
  LiteralComparison comparison;
  for (const std::size_t border : kBorders) {
    for (std::size_t target = border - 8; target <= border + 2; ++target) {
      for (std::size_t shift = 0; shift <= 3; ++shift) {
        Bytes bytes(kShared + 6 * kBlock);
        putChunk(bytes, 100, "00dc", static_cast<std::uint32_t>(target - 108));
        putChunk(bytes, target + shift, "01wb", 0);
        ASSERT_EQ(comparison.scanAndWrite(undamaged("border " + std::to_string(border), bytes)), "")
            << target << ", " << shift;
        ASSERT_EQ(comparison.tables.video.count, shift <= 2 ? 1U : 0U);
      }
    }
  }
}

TEST(Oracle, AgreesOnALookAheadCutShortAtEveryByteOfTheEnd) {
  LiteralComparison comparison;
  std::uint64_t acceptedThroughStaleBytes = 0;
  for (const std::size_t size : {std::size_t{3001}, std::size_t{4095}, kWindow + 700, 2 * kWindow + 5}) {
    for (std::size_t left = 0; left <= 8; ++left) {
      for (const bool stale : {false, true}) {
        Bytes bytes(size);
        // The first chunk is accepted, so that its look-ahead stays behind; the second one ends `left` bytes before
        // the end of the file.
        if (stale) putChunk(bytes, size - 500, "00dc", 92);
        putChunk(bytes, size - 400, "01wb", static_cast<std::uint32_t>(392 - left));
        ASSERT_EQ(comparison.scanAndWrite(undamaged("end after " + std::to_string(left), bytes)), "");
        acceptedThroughStaleBytes += comparison.tables.audio.count;
      }
    }
  }
  EXPECT_GT(acceptedThroughStaleBytes, 0U);
}

TEST(Oracle, AgreesOnASizeFieldCutShortAtEveryByteOfTheEnd) {
  LiteralComparison comparison;
  std::uint64_t accepted = 0;
  for (std::size_t left = 1; left <= 12; ++left) {
    for (const std::uint32_t size : {1U, 200U, 0x00010001U, 0x00989600U}) {
      Bytes bytes(5003);
      putChunk(bytes, 4500, "00dc", 92);
      putChunk(bytes, 4600, "JUNK", 5);
      putChunk(bytes, 5003 - left, "00dc", size);
      ASSERT_EQ(comparison.scanAndWrite(undamaged("code " + std::to_string(left) + " before the end", bytes)), "");
      accepted += comparison.tables.video.count - 1;
    }
  }
  EXPECT_GT(accepted, 0U);
}

TEST(Oracle, AgreesWhereReadsFailAtEveryPlaceAroundAChunk) {
  LiteralComparison comparison;
  Bytes bytes(5000);
  putChunk(bytes, 2030, "00dc", 40);
  putChunk(bytes, 2078, "01wb", 1000);
  putChunk(bytes, 3086, "00dc", 60);
  putChunk(bytes, 3154, "JUNK", 10);
  for (std::uint64_t start = 1000; start <= 3200; ++start) {
    for (const std::uint64_t length : {1U, 6U, 700U}) {
      DamagedInput input = undamaged("bad range at " + std::to_string(start), bytes);
      input.badReadStart = start;
      input.badReadEnd = start + length;
      ASSERT_EQ(comparison.scanAndWrite(input), "") << length;
    }
  }
}

TEST(Oracle, OutputEndsWhereItShouldWhenAReadNearTheEndFailsDuringTheCopy) {
  LiteralComparison comparison;
  // Chunks of 100,000 bytes, of which the tenth cannot be read whole. What another thread has written of the chunks
  // after it by then moves up, and the file has to end earlier.
  Bytes bytes(1000);
  for (int chunk = 0; chunk < 12; ++chunk) appendChunk(bytes, "00dc", 100000, static_cast<std::byte>(chunk));
  appendChunk(bytes, "JUNK", 10);
  DamagedInput input = undamaged("late bad range", bytes);
  input.badReadStart = 951000;
  input.badReadEnd = 951001;
  input.beforeBadRead = [&] {
    // Gives the other thread time for the end of the file, should there be another thread and should it go there.
    for (int turns = 0; turns < 20000; ++turns) {
      const auto output = comparison.files.attributes("/out.avi");
      if (!output || output->size >= 1200000) return;
      std::this_thread::yield();
    }
  };
  for (int round = 0; round < 4; ++round) ASSERT_EQ(comparison.scanAndWrite(input), "") << round;
}

TEST(Oracle, FailedReadOfALastBlockUnderFourBytesIsRemembered) {
  LiteralComparison comparison;
  DamagedInput input = undamaged("last block of three bytes", Bytes(2051));
  input.badReadStart = 2049;
  input.badReadEnd = 2050;
  ASSERT_EQ(comparison.scanAndWrite(input), "");
}

TEST(Oracle, EveryKindOfCodeFinderFindsWhatAPlainLoopFinds) {
  std::mt19937_64 random(7);
  constexpr std::string_view kAlphabet = "0011bcdw";
  for (int round = 0; round < 3000; ++round) {
    Bytes bytes(engine::CodeFinder::kMaxPositions + engine::CodeFinder::kMargin);
    for (std::byte& byte : bytes) byte = static_cast<std::byte>(kAlphabet[random() % kAlphabet.size()]);
    for (int k = 0; k < 8; ++k) overwrite(bytes, random() % (bytes.size() - 4), k % 2 != 0 ? "00dc" : "01wb");
    const std::size_t positions = round % 3 == 0 ? random() % 1025 : engine::CodeFinder::kMaxPositions;
    std::vector<std::uint16_t> expected;
    for (std::size_t i = 0; i < positions; ++i) {
      const auto is = [&](const char* code) { return literal::isCode(bytes, i, code); };
      if (is("00db") || is("00dc") || is("01wb")) expected.push_back(static_cast<std::uint16_t>(i));
    }
    for (const auto kind : {engine::CodeFinderKind::portable, engine::CodeFinderKind::sse2,
                            engine::CodeFinderKind::avx2, engine::CodeFinderKind::best}) {
      engine::FoundCodes found;
      engine::CodeFinder(kind).find(bytes, positions, found);
      ASSERT_TRUE(std::ranges::equal(found.positions(), expected)) << round << ", kind " << static_cast<int>(kind);
    }
  }
}

}  // namespace
}  // namespace zelvo::tests
