/// What the tests of the copy stand on: an input of random bytes, and the copy that reads each chunk on its own.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <random>
#include <utility>
#include <vector>

#include "avi/chunk_copy.h"
#include "platform/headless/workers.h"
#include "tests/support/memory_files.h"

namespace zelvo::tests {

struct Chunk {
  std::uint64_t offset;
  std::uint64_t size;  ///< payload
};

/// The lists of a run.
class Table {
 public:
  explicit Table(const std::vector<Chunk>& chunks) {
    for (const Chunk& chunk : chunks) {
      offsets_.push_back(chunk.offset);
      sizes_.push_back(chunk.size);
    }
  }
  [[nodiscard]] avi::ChunkRun run() const { return {offsets_, sizes_}; }

 private:
  std::vector<std::uint64_t> offsets_;
  std::vector<std::uint64_t> sizes_;
};

/// Headers and payloads.
inline std::uint64_t lengthOf(const std::vector<Chunk>& chunks) {
  std::uint64_t sum = 0;
  for (const Chunk& chunk : chunks) sum += chunk.size + 8;
  return sum;
}

inline platform::Bytes randomBytes(std::size_t size) {
  std::mt19937 random(static_cast<unsigned>(size));
  platform::Bytes bytes(size);
  for (std::byte& byte : bytes) byte = static_cast<std::byte>(random() & 0xffU);
  return bytes;
}

class ChunkCopy : public testing::Test {
 protected:
  /// Copies after `position` bytes that are there already, and answers what was copied.
  platform::Bytes copy(const std::vector<Chunk>& chunks, std::uint64_t position = 0) {
    return copyBoth(chunks, {}, false, position);
  }
  /// The same for two kinds; `together` gives the output its length first.
  platform::Bytes copyBoth(const std::vector<Chunk>& video, const std::vector<Chunk>& audio, bool together,
                           std::uint64_t position = 0) {
    return copyAll({video, audio}, together, position);
  }
  /// The same for any number of streams.
  platform::Bytes copyAll(const std::vector<std::vector<Chunk>>& streams, bool together, std::uint64_t position = 0) {
    const std::vector<Table> tables(streams.begin(), streams.end());
    std::vector<avi::ChunkRun> runs;
    for (const Table& table : tables) runs.push_back(table.run());
    output.bytes.assign(static_cast<std::size_t>(position), std::byte{0x2e});
    if (together) {
      std::uint64_t length = position;
      for (const std::vector<Chunk>& stream : streams) length += lengthOf(stream);
      output.bytes.resize(static_cast<std::size_t>(length));
    }
    output.size = output.bytes.size();
    const auto opened = files.openForWriting("/out");
    input = std::make_unique<avi::InputFile>(files.openForReading("/in").file);
    end = avi::copyChunks({.input = *input,
                           .out = *opened.file,
                           .position = position,
                           .runs = runs,
                           .outHasItsLength = together,
                           .stopped = [this] { return stopped.load(); },
                           .workers = workers,
                           .cancel = cancel});
    platform::Bytes copied = files.content("/out");
    EXPECT_GE(end.position, position);
    EXPECT_TRUE(end.failure || end.position <= copied.size());
    copied.resize(std::min<std::size_t>(copied.size(), end.position));
    copied.erase(copied.begin(), copied.begin() + static_cast<std::ptrdiff_t>(position));
    return copied;
  }

  /// One read per chunk, as far as each goes.
  platform::Bytes literalCopy(std::vector<Chunk> chunks, const std::vector<Chunk>& behind = {}) {
    return literalCopyOfAll({std::move(chunks), behind});
  }
  platform::Bytes literalCopyOfAll(const std::vector<std::vector<Chunk>>& streams) {
    avi::InputFile file(files.openForReading("/in").file);
    platform::Bytes all;
    for (const std::vector<Chunk>& stream : streams) {
      for (const Chunk& chunk : stream) {
        const platform::Bytes bytes = file.readBytes(chunk.offset, static_cast<std::size_t>(chunk.size) + 8);
        all.insert(all.end(), bytes.begin(), bytes.end());
      }
    }
    literalFailures = file.failures();
    return all;
  }

  void expectLiteral(const std::vector<Chunk>& chunks) { EXPECT_EQ(copy(chunks), literalCopy(chunks)); }

  void expectLiteral(const std::vector<Chunk>& video, const std::vector<Chunk>& audio) {
    expectLiteralOfAll({video, audio});
  }

  void expectLiteralOfAll(const std::vector<std::vector<Chunk>>& streams) {
    const platform::Bytes expected = literalCopyOfAll(streams);
    for (const bool together : {false, true}) {
      SCOPED_TRACE(together ? "together" : "one after the other");
      EXPECT_TRUE(copyAll(streams, together) == expected) << "the copies differ";
      EXPECT_EQ(input->failures().count, literalFailures.count);
      EXPECT_EQ(input->failures().firstOffset, literalFailures.firstOffset);
    }
  }

  void withBadBytes(std::uint64_t from, std::uint64_t to) {
    MemoryFile& file = files.at("/in");
    file.badReadStart = from;
    file.badReadEnd = to;
    file.readError = std::make_error_code(std::errc::io_error);
  }

  MemoryFiles files;
  MemoryFile& content = files.put("/in", randomBytes(3000000));
  MemoryFile& output = files.put("/out", {});
  platform::headless::HeadlessWorkers workers;
  platform::CancelMark cancel;
  std::atomic<bool> stopped = false;
  avi::CopyEnd end;
  std::unique_ptr<avi::InputFile> input;
  avi::ReadFailures literalFailures;
};

/// `count` chunks of `size` bytes, `gap` bytes apart.
inline std::vector<Chunk> row(int count, std::uint64_t size, std::uint64_t gap, std::uint64_t start = 100) {
  std::vector<Chunk> chunks;
  for (int i = 0; i < count; ++i, start += size + 8 + gap) chunks.push_back({start, size});
  return chunks;
}

/// `count` chunks of each kind in turn, without gaps.
struct Interleaved {
  Interleaved(int count, std::uint64_t videoSize, std::uint64_t audioSize) {
    std::uint64_t at = 100;
    for (int i = 0; i < count; ++i) {
      video.push_back({at, videoSize});
      at += videoSize + 8;
      audio.push_back({at, audioSize});
      at += audioSize + 8;
    }
    end = at;
  }
  std::vector<Chunk> video;
  std::vector<Chunk> audio;
  std::uint64_t end = 0;
};

}  // namespace zelvo::tests
