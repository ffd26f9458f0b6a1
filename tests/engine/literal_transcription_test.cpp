// The yardstick itself, against values worked out by hand.
#include <gtest/gtest.h>

#include "tests/support/avi_builder.h"
#include "tests/support/literal_scan.h"
#include "tests/support/literal_writer.h"
#include "tests/support/memory_files.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;

literal::Tables scan(const Bytes& bytes) {
  MemoryFiles files;
  files.put("/in", bytes);
  const auto opened = files.openForReading("/in");
  literal::Input input(opened.file.get());
  return literal::scanSamples(input, {.inputfilesize = bytes.size()});
}

Bytes written(const literal::Headers& headers, const literal::Tables& tables, const Bytes& inputBytes = {}) {
  MemoryFiles files;
  files.put("/in", inputBytes);
  files.put("/out", {});
  const auto opened = files.openForReading("/in");
  const auto created = files.openForWriting("/out");
  literal::Input input(opened.file.get());
  literal::Output out(*created.file);
  literal::constructRIFFList(input, headers, tables, out);
  return files.content("/out");
}

literal::Headers usualHeaders() {
  literal::Headers headers;
  headers.avihdata1.resize(20);
  headers.avihdata2.resize(36);
  headers.videocodec = headers.audiocodec = Bytes(4);
  headers.videoscaleratedata = headers.audioscaleratedata = Bytes(8);
  headers.videoscaledata = headers.audioscaledata = Bytes(4);
  headers.videostrfdata.resize(headers.videostrfsize = 40);
  headers.audiostrfdata.resize(headers.audiostrfsize = 18);
  return headers;
}

std::uint64_t numberAt(const Bytes& bytes, std::size_t offset) {
  return literal::numberIn(std::span(bytes).subspan(offset, 4));
}

TEST(LiteralTranscription, ChunkFollowedByACodeIsRecordedAndTheLastBeforeTheIndexIsNot) {
  Bytes bytes(100);
  appendChunk(bytes, "00dc", 5);   // at 100, a pad byte after it
  appendChunk(bytes, "01wb", 20);  // at 114
  appendChunk(bytes, "00db", 30);  // at 142
  appendChunk(bytes, "idx1", 16);  // at 180
  bytes.resize(2049);
  const literal::Tables tables = scan(bytes);
  EXPECT_EQ(tables.video.offsets, (std::vector<std::uint64_t>{0, 100}));
  EXPECT_EQ(tables.video.sizes, (std::vector<std::uint64_t>{0, 5}));
  EXPECT_EQ(tables.audio.offsets, (std::vector<std::uint64_t>{0, 114}));
  EXPECT_EQ(tables.videosamplesize, 30U);
}

TEST(LiteralTranscription, LastKibibyteOfAMultipleIsNotScanned) {
  Bytes bytes(1024);
  appendChunk(bytes, "00dc", 10);
  appendChunk(bytes, "JUNK", 10);
  bytes.resize(2048);
  EXPECT_EQ(scan(bytes).video.count, 0U);
  bytes.resize(2049);
  EXPECT_EQ(scan(bytes).video.count, 1U);
}

TEST(LiteralTranscription, LookAheadCutShortKeepsWhatItHeld) {
  Bytes bytes(1000);
  appendChunk(bytes, "00dc", 40);  // at 1000, its look-ahead is "JUNK.."
  appendText(bytes, "JUNK");
  appendText(bytes, "00dc");
  appendNumber(bytes, 2);
  bytes.resize(bytes.size() + 2);
  EXPECT_EQ(scan(bytes).video.count, 2U);  // nothing after the second one: the look-ahead still says "JUNK"
  bytes.push_back(std::byte{0});           // one byte more overwrites the "J"
  EXPECT_EQ(scan(bytes).video.count, 1U);
}

TEST(LiteralTranscription, EmptyFileIsFourHundredAndThirtySixBytesAndBothFormats) {
  const literal::Headers headers = usualHeaders();
  const Bytes out = written(headers, {});
  EXPECT_EQ(out.size(), 40U + 18U + 436U);
  EXPECT_EQ(numberAt(out, 4), out.size() - 8);
  EXPECT_TRUE(literal::isCode(out, 418, "LIST"));
  EXPECT_EQ(numberAt(out, 422), 68U);
  EXPECT_TRUE(literal::isCode(out, 430, "ix00"));
  EXPECT_EQ(literal::layoutOf(headers, {}).ix00location, 438U);
  EXPECT_EQ(literal::layoutOf(headers, {}).ix01location, 462U);
}

TEST(LiteralTranscription, IndexEntriesCountOnChunksBackToBack) {
  literal::Tables tables;
  for (const std::uint32_t size : {100U, 7U, 50U}) tables.video.add(0, size);
  const Bytes out = written(usualHeaders(), tables, Bytes(200));
  EXPECT_EQ(numberAt(out, 430 + 12), 3U);
  const std::vector<std::uint64_t> entries{8, 100, 116, 7, 131, 50};
  for (std::size_t k = 0; k < entries.size(); ++k) EXPECT_EQ(numberAt(out, 430 + 32 + 4 * k), entries[k]) << k;
  EXPECT_EQ(out.size(), 40U + 18U + 436U + 3 * 16U + 157U);
}

TEST(LiteralTranscription, FullTableTurnsFurtherChunksAway) {
  literal::Table table;
  for (std::uint64_t k = 0; k < literal::Table::kLargestCount + 3; ++k) table.add(1, 2);
  EXPECT_EQ(table.count, 1048575U);
  EXPECT_EQ(table.turnedAway, 3U);
}

}  // namespace
}  // namespace zelvo::tests
