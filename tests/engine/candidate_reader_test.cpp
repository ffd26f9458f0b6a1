// Reading candidates, by one reader and by the queue that shares the work between two threads.
#include "engine/candidate_reader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "engine/stretch_queue.h"
#include "platform/headless/workers.h"
#include "tests/support/avi_builder.h"
#include "tests/support/byte_text.h"
#include "tests/support/memory_files.h"

namespace zelvo::tests {
namespace {

using avi::InputFile;
using engine::Candidate;
using engine::CandidateReader;
using engine::Stretch;
using engine::StretchContent;

/// What the six bytes after a payload hold, searched one by one.
engine::LookAheadFind findIn(const std::string& bytes) {
  for (std::size_t at = 0; at <= 2; ++at) {
    const std::string code = bytes.substr(at, 4);
    if (code == "JUNK") return engine::LookAheadFind::padding;
    if (code == "00db" || code == "00dc" || code == "01wb") return engine::LookAheadFind::chunk;
  }
  return engine::LookAheadFind::nothing;
}

/// Letters of the codes, and here and there a code with a plausible size.
platform::Bytes denseBytes(std::size_t size, unsigned seed) {
  std::mt19937 random(seed);
  platform::Bytes bytes(size);
  for (std::byte& byte : bytes) byte = static_cast<std::byte>("0001dbcw"[random() % 8]);
  for (std::size_t at = 0; at + 8 < size; at += 20 + random() % 3000) {
    platform::Bytes header = bytesOf(random() % 2 == 0 ? "00dc" : "01wb");
    appendNumber(header, random() % 10 == 0 ? 10000000 : static_cast<std::uint32_t>(random() % 20000));
    overwrite(bytes, at, textAt(header, 0, 8));
  }
  return bytes;
}

class CandidateReading : public testing::Test {
 protected:
  void open(platform::Bytes bytes) {
    content = &files.put("/in", std::move(bytes));
    input = std::make_unique<InputFile>(files.openForReading("/in").file);
    mod = static_cast<std::uint32_t>(content->size % 1024);
    last = static_cast<std::uint32_t>(content->size / 1024) + (mod != 0 ? 1 : 0);
  }

  /// All candidates, found byte by byte.
  std::vector<std::string> naive() const {
    std::vector<std::string> found;
    const platform::Bytes& bytes = content->bytes;
    const std::size_t end = (last - 1) * std::size_t{1024} + mod;  // nothing at or after it is looked at for codes
    for (std::size_t at = 0; at < end; ++at) {
      const std::string code = textAt(bytes, at, 4);
      if (code != "00db" && code != "00dc" && code != "01wb") continue;
      if (at >= (last - 1) * std::size_t{1024} && at + 4 > end) continue;
      const std::uint32_t size = numberAt(bytes, at + 4);
      const bool refused = size == 0 || size >= 10000000;
      found.push_back(std::to_string(at) + " in block " + std::to_string(at / 1024 + 1) + " " + code + " " +
                      std::to_string(size) + " [" + (refused ? "" : hexAt(bytes, at + 8 + size, 6)) + "]");
    }
    return found;
  }

  /// A candidate as text, its look-ahead included, as far as it could be read.
  std::string textOf(const Candidate& candidate) {
    std::string lookAhead = hexAt(candidate.lookAhead, 0, candidate.lookAheadCount);
    if (candidate.found) {
      ++known;
      EXPECT_EQ(*candidate.found, findIn(textAt(content->bytes, candidate.payloadEnd(), 6))) << candidate.payloadEnd();
      lookAhead = hexAt(content->bytes, candidate.payloadEnd(), 6);
    }
    const auto code = candidate.code.bytes();
    return std::to_string(candidate.position()) + " in block " + std::to_string(candidate.block) + " " +
           textAt(code, 0, 4) + " " + std::to_string(candidate.size) + " [" + lookAhead + "]";
  }

  std::vector<std::string> readBy(CandidateReader& reader) {
    std::vector<std::string> found;
    StretchContent stretch;
    for (std::uint32_t first = 1; first <= last; first += Stretch::kBlocks) {
      reader.read({first, std::min(Stretch::kBlocks, last - first + 1)}, stretch);
      for (const Candidate& candidate : stretch.candidates) found.push_back(textOf(candidate));
    }
    return found;
  }

  std::vector<std::string> readByQueue() {
    std::vector<std::string> found;
    engine::StretchQueue queue(*input, last, mod, workers);
    for (std::uint32_t first = 1; first <= last; first += Stretch::kBlocks) {
      const StretchContent& stretch = queue.next();
      for (const Candidate& candidate : stretch.candidates) found.push_back(textOf(candidate));
      for (const engine::BlockFailures& block : stretch.failures) failedBlocks.push_back(block.block);
    }
    return found;
  }

  MemoryFiles files;
  MemoryFile* content = nullptr;
  std::unique_ptr<InputFile> input;
  platform::headless::HeadlessWorkers workers;
  std::uint32_t last = 0;
  std::uint32_t mod = 0;
  std::size_t known = 0;  ///< look-aheads whose bytes were not read
  std::vector<std::uint32_t> failedBlocks;
};

TEST_F(CandidateReading, FindsWhatANaiveSearchFinds) {
  for (const std::size_t size : {1024UL, 1025UL, 65536UL, 65537UL, 100000UL, 300003UL, 262144UL, 262145UL, 700001UL}) {
    open(denseBytes(size, static_cast<unsigned>(size)));
    CandidateReader reader(*input, last, mod);
    ASSERT_EQ(readBy(reader), naive()) << size;
  }
}

TEST_F(CandidateReading, DenseInputIsNotReadForEachLookAhead) {
  platform::Bytes bytes(1700001, std::byte{0x20});
  for (std::size_t at = 0; at < bytes.size() - 8; at += 100) overwrite(bytes, at, {"00dc\0\0\5\0", 8});
  open(std::move(bytes));
  CandidateReader reader(*input, last, mod);
  EXPECT_EQ(readBy(reader), naive());
  EXPECT_GT(known, 10000U);
  EXPECT_LT(content->reads, 3000U) << "the first window's look-aheads are read one by one";
}

TEST_F(CandidateReading, NamesTheBlocksWhoseReadsFailed) {
  open(platform::Bytes(700001, std::byte{0x20}));
  content->badReadStart = 300000;  // block 293; the reads of the two blocks before reach into it
  content->badReadEnd = 300001;
  content->readError = std::make_error_code(std::errc::io_error);
  readByQueue();
  EXPECT_EQ(failedBlocks, (std::vector<std::uint32_t>{291, 292, 293}));
  EXPECT_EQ(input->failures().count, 0U);
}

TEST_F(CandidateReading, QueueHandsStretchesOverInFileOrder) {
  open(denseBytes(3000001, 5));
  const std::vector<std::string> expected = naive();
  for (int round = 0; round < 5; ++round) ASSERT_EQ(readByQueue(), expected);
}

TEST_F(CandidateReading, QueueOfSparseInputDoesTheSame) {
  platform::Bytes bytes(9000001, std::byte{0x20});
  for (std::size_t at = 100; at < bytes.size() - 100; at += 8191) overwrite(bytes, at, {"01wb\x10\0\0\0", 8});
  open(std::move(bytes));
  EXPECT_EQ(readByQueue(), naive());
}

TEST_F(CandidateReading, QueueOnOneProcessorDoesTheSame) {
  open(denseBytes(1500001, 6));
  workers.setProcessors(1);
  EXPECT_EQ(readByQueue(), naive());
}

TEST_F(CandidateReading, QueueMayEndBeforeItsInput) {
  open(denseBytes(3000001, 7));
  engine::StretchQueue queue(*input, last, mod, workers);
  EXPECT_FALSE(queue.next().candidates.empty());
}

TEST_F(CandidateReading, QueueOfAShortInputStartsNoHelper) {
  open(denseBytes(200001, 8));
  class NoHelpers final : public platform::Workers {
   public:
    std::shared_ptr<platform::Worker> start(std::shared_ptr<platform::CancelMark>, std::function<void()>) override {
      return nullptr;
    }
    std::shared_ptr<platform::Worker> startHelper(std::function<void()>) override {
      asked = true;
      return nullptr;
    }
    void joinAll() override {}
    [[nodiscard]] unsigned processors() const override { return 2; }
    bool asked = false;
  } none;
  {
    engine::StretchQueue queue(*input, last, mod, none);
    EXPECT_FALSE(queue.next().candidates.empty());
  }
  open(denseBytes(3 * 262144, 9));  // three stretches
  { const engine::StretchQueue queue(*input, last, mod, none); }
  EXPECT_FALSE(none.asked);
  open(denseBytes(3 * 262144 + 1, 9));
  EXPECT_THROW(engine::StretchQueue(*input, last, mod, none), std::system_error);
  EXPECT_TRUE(none.asked);
}

// ---- The claimed end ----

TEST_F(CandidateReading, CodeThatRunsOverTheClaimedEndIsNoCandidate) {
  struct End {
    std::size_t claimed;
    std::size_t code;
    bool found;
  };
  for (const End& end : {End{1124, 1120, true}, End{1124, 1121, false}, End{1124, 1122, false}, End{1124, 1123, false},
                         End{1124, 1124, false}, End{1027, 1023, true}, End{1027, 1024, false}, End{1028, 1024, true},
                         End{1028, 1025, false}}) {
    platform::Bytes bytes(3000, std::byte{0x20});
    overwrite(bytes, end.code, {"00dc\x10\0\0\0", 8});
    open(std::move(bytes));  // more than is claimed, and all of it can be read
    mod = static_cast<std::uint32_t>(end.claimed % 1024);
    last = 2;
    CandidateReader reader(*input, last, mod);
    EXPECT_EQ(readBy(reader).size(), end.found ? 1U : 0U) << end.claimed << ", code at " << end.code;
  }
}

TEST_F(CandidateReading, SizeAndLookAheadOfTheLastBytesBelowFourGiBLieAtTheStart) {
  constexpr std::uint64_t kFourGiB = std::uint64_t{1} << 32U;
  content = &files.putSparse("/in", kFourGiB + 2000);
  content->bytes = bytesOf("0123456789abcdefghijklmnopqrstuvwxyz");
  overwrite(content->bytes, 0, {"\x10\0\0\0", 4});
  content->islands[kFourGiB - 4] = bytesOf(std::string("00dc\x04\0\0\0", 8));
  input = std::make_unique<InputFile>(files.openForReading("/in").file);
  constexpr std::uint32_t kLastBlockBelow = 4194304;
  CandidateReader reader(*input, kLastBlockBelow + 2, 976);
  StretchContent stretch;

  reader.read({kLastBlockBelow, 1}, stretch);

  ASSERT_EQ(stretch.candidates.size(), 1U);
  EXPECT_EQ(textOf(stretch.candidates.front()),
            "4294967292 in block 4194304 00dc 16 [" + hexAt(bytesOf("klmnop"), 0, 6) + "]");
}

}  // namespace
}  // namespace zelvo::tests
