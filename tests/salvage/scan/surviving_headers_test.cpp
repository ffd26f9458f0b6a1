// What is found of a film's headers, whatever is lost around it.
#include "salvage/scan/surviving_headers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string_view>

#include "tests/salvage/scanned_film.h"

namespace zelvo::tests {
namespace {

using avi::FourCC;
using platform::Bytes;
using salvage::SurvivingHeaders;

AviBuilder film() { return AviBuilder().interleaved(10, 300, 101); }

SurvivingHeaders headersOf(Bytes bytes) { return salvage::survivingHeaders(*ScannedFilm(std::move(bytes)).input); }

std::size_t placeOf(const Bytes& bytes, std::string_view text, int which = 0) {
  Bytes wanted;
  appendText(wanted, text);
  auto from = bytes.begin();
  while (true) {
    from = std::search(from, bytes.end(), wanted.begin(), wanted.end());
    if (from == bytes.end() || which-- == 0) return static_cast<std::size_t>(from - bytes.begin());
    ++from;
  }
}

void insert(Bytes& bytes, std::size_t at, const Bytes& more) {
  bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(at), more.begin(), more.end());
}

Bytes chunkOf(std::string_view code, std::string_view payload) {
  Bytes chunk;
  appendText(chunk, code);
  appendNumber(chunk, static_cast<std::uint32_t>(payload.size()));
  appendText(chunk, payload);
  if (payload.size() % 2 != 0) chunk.push_back(std::byte{0});
  return chunk;
}

/// A stream's "strh" and "strf" alone.
Bytes streamOf(std::string_view type, std::uint32_t headerSize, std::uint32_t formatSize) {
  Bytes bytes;
  appendText(bytes, "strh");
  appendNumber(bytes, headerSize);
  appendText(bytes, type);
  bytes.resize(8 + headerSize + headerSize % 2);
  appendChunk(bytes, "strf", formatSize);
  return bytes;
}

TEST(SurvivingHeaders, WholeFilmTellsEverything) {
  const Bytes bytes = film().build();
  const SurvivingHeaders headers = headersOf(bytes);
  ASSERT_TRUE(headers.main.has_value());
  EXPECT_EQ(headers.main->offset, placeOf(bytes, "avih"));
  EXPECT_EQ(headers.main->microSecPerFrame, 40000U);
  EXPECT_EQ(headers.main->flags, 0x10U);
  EXPECT_EQ(headers.main->totalFrames, 20U);
  EXPECT_EQ(headers.main->streams, 2U);
  EXPECT_EQ(headers.main->suggestedBufferSize, 65536U);
  EXPECT_EQ(headers.main->width, 320U);
  EXPECT_EQ(headers.main->height, 240U);
  ASSERT_EQ(headers.streams.size(), 2U);
  EXPECT_EQ(headers.streams[0].offset, placeOf(bytes, "strh"));
  EXPECT_EQ(headers.streams[0].type, avi::kVids);
  EXPECT_EQ(headers.streams[0].handler, FourCC{"XVID"});
  EXPECT_EQ(headers.streams[0].scale, 1U);
  EXPECT_EQ(headers.streams[0].rate, 25U);
  EXPECT_EQ(headers.streams[0].length, 20U);
  EXPECT_EQ(headers.streams[0].header.size(), 56U);
  EXPECT_EQ(headers.streams[0].format.size(), 40U);
  EXPECT_EQ(headers.streams[0].format[0], std::byte{40});
  EXPECT_EQ(headers.streams[1].type, avi::kAuds);
  EXPECT_EQ(headers.streams[1].rate, 8000U);
  EXPECT_EQ(headers.streams[1].format.size(), 30U);
  ASSERT_TRUE(headers.media.has_value());
  EXPECT_EQ(headers.media->offset, film().headers().size());
  EXPECT_EQ(headers.media->size,
            avi::loadLittleEndian32(std::span(bytes).subspan(headers.media->offset + 4).first<4>()));
  EXPECT_EQ(headers.formSize, bytes.size() - 8);
  EXPECT_EQ(headers.end, headers.media->offset);
  EXPECT_EQ(headers.mediaBegin(), headers.media->offset);
  EXPECT_TRUE(headers.areComplete());
  EXPECT_FALSE(headers.openDmlFrames.has_value());
}

TEST(SurvivingHeaders, EveryFieldComesFromItsPlace) {
  Bytes bytes = film().build();
  const std::size_t stream = placeOf(bytes, "strh") + 8;
  for (std::size_t at = 16; at < 56; at += 4) overwriteNumber(bytes, stream + at, static_cast<std::uint32_t>(at));
  const std::size_t main = placeOf(bytes, "avih") + 8;
  for (std::size_t at = 0; at < 40; at += 4) overwriteNumber(bytes, main + at, static_cast<std::uint32_t>(100 + at));
  const SurvivingHeaders headers = headersOf(bytes);
  const auto& found = headers.streams.at(0);
  EXPECT_EQ(found.initialFrames, 16U);
  EXPECT_EQ(found.scale, 20U);
  EXPECT_EQ(found.rate, 24U);
  EXPECT_EQ(found.start, 28U);
  EXPECT_EQ(found.length, 32U);
  EXPECT_EQ(found.sampleSize, 44U);
  EXPECT_EQ(headers.main->microSecPerFrame, 100U);
  EXPECT_EQ(headers.main->flags, 112U);
  EXPECT_EQ(headers.main->totalFrames, 116U);
  EXPECT_EQ(headers.main->initialFrames, 120U);
  EXPECT_EQ(headers.main->streams, 124U);
  EXPECT_EQ(headers.main->suggestedBufferSize, 128U);
  EXPECT_EQ(headers.main->width, 132U);
  EXPECT_EQ(headers.main->height, 136U);
  EXPECT_FALSE(headers.areComplete());
}

TEST(SurvivingHeaders, FurtherChunksOfAStreamAreKeptAsTheyAre) {
  Bytes bytes = film().build();
  Bytes more = chunkOf("strd", "driver!");
  for (const Bytes& one : {chunkOf("strn", "a name"), chunkOf("JUNK", "xxxx"), chunkOf("vprp", "properties")})
    more.insert(more.end(), one.begin(), one.end());
  insert(bytes, placeOf(bytes, "LIST", 2), more);  // after the first stream's format
  insert(bytes, placeOf(bytes, "LIST", 2), chunkOf("LIST", "INFOISFTsome"));
  const SurvivingHeaders headers = headersOf(bytes);
  ASSERT_EQ(headers.streams.size(), 2U);
  EXPECT_EQ(chunkOf("strd", "driver!"), [&] {
    Bytes again = chunkOf("strd", "");
    overwriteNumber(again, 4, 7);
    insert(again, 8, headers.streams[0].data);
    again.push_back(std::byte{0});
    return again;
  }());
  EXPECT_EQ(headers.streams[0].name.size(), 6U);
  EXPECT_EQ(headers.streams[0].properties.size(), 10U);
  EXPECT_TRUE(headers.streams[1].data.empty());
  EXPECT_EQ(headers.information.size(), 8U);
}

TEST(SurvivingHeaders, StreamHeaderOf64BytesIsRead) {
  Bytes bytes = streamOf("vids", 64, 40);
  const SurvivingHeaders headers = headersOf(bytes);
  ASSERT_EQ(headers.streams.size(), 1U);
  EXPECT_EQ(headers.streams[0].header.size(), 64U);
  EXPECT_EQ(headers.end, bytes.size());
  EXPECT_EQ(headers.mediaBegin(), bytes.size());
}

TEST(SurvivingHeaders, ShortestPiecesThatCountAreThose) {
  EXPECT_EQ(headersOf(streamOf("auds", 48, 14)).streams.size(), 1U);
  EXPECT_EQ(headersOf(streamOf("auds", 47, 14)).streams.size(), 0U);
  EXPECT_EQ(headersOf(streamOf("auds", 48, 13)).streams.size(), 0U);
  EXPECT_EQ(headersOf(streamOf("xyzw", 48, 14)).streams.size(), 0U);
  for (const std::string_view type : {"vids", "txts", "mids", "iavs"})
    EXPECT_EQ(headersOf(streamOf(type, 48, 14)).streams.size(), 1U) << type;
}

TEST(SurvivingHeaders, TextAndMidiNeedNoFormat) {
  for (const std::string_view type : {"txts", "mids"}) {
    EXPECT_EQ(headersOf(streamOf(type, 48, 0)).streams.size(), 1U) << type;
    Bytes bare = streamOf(type, 48, 0);
    bare.resize(bare.size() - 8);
    const Bytes behind = streamOf("auds", 56, 18);
    bare.insert(bare.end(), behind.begin(), behind.end());
    const SurvivingHeaders headers = headersOf(bare);
    ASSERT_EQ(headers.streams.size(), 2U) << type;
    EXPECT_TRUE(headers.streams[0].format.empty());
    EXPECT_EQ(headers.streams[1].format.size(), 18U);
  }
  EXPECT_EQ(headersOf(streamOf("vids", 48, 0)).streams.size(), 0U);
}

TEST(SurvivingHeaders, OpenDmlHeadersAndSuperIndexAreRead) {
  Bytes bytes = film().build();
  Bytes index;
  appendText(index, "indx");
  appendNumber(index, 24 + 3 * 16);
  append16(index, 4);
  append16(index, 0);
  appendNumber(index, 2);
  appendText(index, "00dc");
  index.resize(index.size() + 12);
  for (std::uint32_t i = 0; i < 3; ++i) {
    appendNumber(index, 1000 + i);
    appendNumber(index, i);  // high half
    appendNumber(index, 2000 + i);
    appendNumber(index, 3000 + i);
  }
  insert(bytes, placeOf(bytes, "LIST", 2), index);
  insert(bytes, placeOf(bytes, "LIST", 3), chunkOf("dmlh", std::string_view("\x67\x12\0\0", 4)));
  const SurvivingHeaders headers = headersOf(bytes);
  EXPECT_EQ(headers.openDmlFrames, 4711U);
  ASSERT_EQ(headers.streams.size(), 2U);
  ASSERT_TRUE(headers.streams[0].superIndex.has_value());
  const auto& super = *headers.streams[0].superIndex;
  EXPECT_EQ(super.chunkId, avi::k00dc);
  ASSERT_EQ(super.entries.size(), 2U);
  EXPECT_EQ(super.entries[1].offset, (std::uint64_t{1} << 32U) + 1001);
  EXPECT_EQ(super.entries[1].size, 2001U);
  EXPECT_EQ(super.entries[1].duration, 3001U);
  EXPECT_FALSE(headers.streams[1].superIndex.has_value());
}

TEST(SurvivingHeaders, SuperIndexHasNoMoreEntriesThanItHolds) {
  Bytes bytes = streamOf("vids", 56, 40);
  Bytes index = chunkOf("indx", std::string_view("\x04\0\0\0\xff\xff\xff\xff"
                                                 "00dc\0\0\0\0\0\0\0\0\0\0\0\0"
                                                 "0123456789abcdef0123456789abcde",
                                                 55));
  insert(bytes, bytes.size(), index);
  const SurvivingHeaders headers = headersOf(bytes);
  ASSERT_EQ(headers.streams.size(), 1U);
  EXPECT_EQ(headers.streams[0].superIndex->entries.size(), 1U);
}

TEST(SurvivingHeaders, FirstFourKibibytesLostLeavesTheLaterStreams) {
  Bytes bytes = film().build();
  Bytes padding = chunkOf("JUNK", std::string(5000, 'x'));
  insert(bytes, placeOf(bytes, "LIST", 2), padding);
  std::fill_n(bytes.begin(), 4096, std::byte{0});
  const SurvivingHeaders headers = headersOf(bytes);
  EXPECT_FALSE(headers.main.has_value());
  ASSERT_EQ(headers.streams.size(), 1U);
  EXPECT_EQ(headers.streams[0].type, avi::kAuds);
  EXPECT_FALSE(headers.areComplete());
  EXPECT_TRUE(headers.media.has_value());
}

TEST(SurvivingHeaders, OverwrittenListAroundAStreamDoesNotHideIt) {
  Bytes bytes = film().build();
  for (int i = 0; i < 3; ++i) overwrite(bytes, placeOf(bytes, "LIST"), "\x01\x02\x03\x04\xff\xff\xff\xff");
  const SurvivingHeaders headers = headersOf(bytes);
  EXPECT_EQ(headers.streams.size(), 2U);
  EXPECT_TRUE(headers.main.has_value());
}

TEST(SurvivingHeaders, WrongSizeOfAFormatIsNotBelieved) {
  Bytes bytes = film().build();
  overwriteNumber(bytes, placeOf(bytes, "strf") + 4, 39 + 8);
  const SurvivingHeaders headers = headersOf(bytes);
  ASSERT_EQ(headers.streams.size(), 1U);
  EXPECT_EQ(headers.streams[0].type, avi::kAuds);
}

TEST(SurvivingHeaders, FormatThatTellsItsSizeNeedsNothingBehindIt) {
  Bytes bytes = film().headers();
  appendText(bytes, "????");
  EXPECT_EQ(headersOf(bytes).streams.size(), 2U);
  bytes[placeOf(bytes, "strf", 1) + 8 + 16] = std::byte{11};  // cbSize
  EXPECT_EQ(headersOf(bytes).streams.size(), 1U);
}

TEST(SurvivingHeaders, ChunkOfAWritersOwnBehindAFormatIsSteppedOver) {
  Bytes bytes = streamOf("auds", 56, 16);
  for (const Bytes& more : {chunkOf("vedt", "12345678"), chunkOf("strn", "name"), chunkOf("JUNK", "")})
    insert(bytes, bytes.size(), more);
  const SurvivingHeaders headers = headersOf(bytes);
  ASSERT_EQ(headers.streams.size(), 1U);
  EXPECT_EQ(headers.streams[0].name.size(), 4U);
}

TEST(SurvivingHeaders, LostMediaListLeavesTheEndOfTheHeaders) {
  Bytes bytes = film().build();
  const std::size_t movi = film().headers().size();
  overwrite(bytes, movi, "abcd");
  const SurvivingHeaders headers = headersOf(bytes);
  EXPECT_FALSE(headers.media.has_value());
  EXPECT_EQ(headers.mediaBegin(), movi);
  EXPECT_EQ(headers.streams.size(), 2U);
}

TEST(SurvivingHeaders, WhatStandsInTheMediaIsNoHeader) {
  Bytes bytes = film().build();
  const Bytes other = film().headers();
  insert(bytes, bytes.size(), other);
  const SurvivingHeaders headers = headersOf(bytes);
  EXPECT_EQ(headers.streams.size(), 2U);
}

TEST(SurvivingHeaders, NothingIsReadBeyondOneMebibyte) {
  Bytes stream = streamOf("vids", 56, 40);
  appendChunk(stream, "JUNK", 4);
  ScannedFilm film(std::move(stream));
  film.file().size = std::uint64_t{1} << 40U;
  std::uint64_t furthest = 0;
  film.file().onRead = [&](std::uint64_t offset, std::size_t size) { furthest = std::max(furthest, offset + size); };
  EXPECT_EQ(salvage::survivingHeaders(*film.input).streams.size(), 1U);
  EXPECT_EQ(furthest, std::uint64_t{1} << 20U);
}

TEST(SurvivingHeaders, UnreadablePagesHideOnlyWhatLiesInThem) {
  Bytes bytes = film().build();
  insert(bytes, placeOf(bytes, "LIST", 2), chunkOf("JUNK", std::string(9000, 'x')));
  ScannedFilm film(bytes);
  film.file().badReadStart = 180;
  film.file().badReadEnd = 5000;
  film.file().readError = std::make_error_code(std::errc::io_error);
  const SurvivingHeaders headers = salvage::survivingHeaders(*film.input);
  ASSERT_EQ(headers.streams.size(), 1U);
  EXPECT_EQ(headers.streams[0].type, avi::kAuds);
  EXPECT_TRUE(headers.main.has_value());
  EXPECT_GT(film.input->failures().count, 0U);
}

TEST(SurvivingHeaders, EmptyAndTinyFilesHaveNone) {
  for (std::size_t size = 0; size < 64; ++size) {
    Bytes bytes = film().build();
    bytes.resize(size);
    const SurvivingHeaders headers = headersOf(bytes);
    EXPECT_TRUE(headers.streams.empty());
    EXPECT_LE(headers.mediaBegin(), size);
  }
}

TEST(SurvivingHeaders, EveryCutOfTheHeadersIsReadToItsEnd) {
  const Bytes whole = film().headers();
  for (std::size_t size = 0; size < whole.size(); ++size) {
    const SurvivingHeaders headers = headersOf(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)));
    EXPECT_LE(headers.streams.size(), 1U) << size;
    EXPECT_LE(headers.end, size);
  }
  EXPECT_EQ(headersOf(whole).streams.size(), 2U);
}

TEST(SurvivingHeaders, HostileFrontFullOfHeadersGivesAHundredStreams) {
  Bytes bytes;
  const Bytes one = streamOf("vids", 48, 14);
  while (bytes.size() < (std::size_t{2} << 20U)) insert(bytes, bytes.size(), one);
  const SurvivingHeaders headers = headersOf(bytes);
  EXPECT_EQ(headers.streams.size(), salvage::kMaxStreams);
  EXPECT_LE(headers.end, salvage::kHeaderReach);
}

TEST(SurvivingHeaders, HostileChainsOfPaddingAreGivenUp) {
  // Each header is followed by padding chunks to the end of the front, and never by a format.
  Bytes bytes;
  while (bytes.size() < (std::size_t{1} << 20U)) {
    insert(bytes, bytes.size(), chunkOf("strh", "vids" + std::string(44, 'x')));
    for (int i = 0; i < 40; ++i) insert(bytes, bytes.size(), chunkOf("JUNK", ""));
  }
  insert(bytes, 0, chunkOf("strh", "vids" + std::string(44, 'x')));
  EXPECT_TRUE(headersOf(bytes).streams.empty());
}

}  // namespace
}  // namespace zelvo::tests
