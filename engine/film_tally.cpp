#include "engine/film_tally.h"

#include <algorithm>
#include <array>
#include <optional>

#include "avi/byte_order.h"
#include "avi/chunk_codes.h"
#include "avi/fourcc.h"
#include "avi/input_file.h"

namespace zelvo::engine {

namespace {

constexpr std::uint64_t kHeaderSize = 8;
/// "JUNK" between chunks fills up sectors and clusters; what is longer than this is a hole.
constexpr std::uint64_t kLargestPadding = 65536;
/// Headers lie in the first 50 KiB.
constexpr std::uint64_t kLatestBegin = 51200;
constexpr int kMaxSteps = 64;

struct Header {
  avi::FourCC code;
  std::uint64_t size = 0;
  avi::FourCC type;  ///< of a list
};

std::optional<Header> headerAt(avi::InputFile& input, std::uint64_t position) {
  std::array<std::byte, 12> bytes{};
  const platform::IoResult result = input.tryRead(position, bytes);
  if (result.error || result.count < kHeaderSize) return std::nullopt;
  const std::span<const std::byte> all(bytes);
  return Header{avi::FourCC::at(all), avi::loadLittleEndian32(all.subspan<4, 4>()), avi::FourCC::at(all.subspan(8))};
}

std::uint64_t nextChunkOffset(std::uint64_t position, std::uint64_t size) {
  return position + kHeaderSize + size + size % 2;
}

struct MoviList {
  std::uint64_t begin = 0;  ///< of its content
  std::uint64_t end = 0;    ///< as its size field says
};

std::optional<MoviList> moviList(avi::InputFile& input, std::uint64_t fileSize) {
  const auto form = headerAt(input, 0);
  if (!form || form->code != avi::kRiff || form->type != avi::kAvi) return std::nullopt;
  std::uint64_t position = kHeaderSize + 4;
  for (int step = 0; step < kMaxSteps && position < fileSize; ++step) {
    const auto header = headerAt(input, position);
    if (!header) return std::nullopt;
    if (header->code == avi::kList && header->type == avi::kMovi) {
      return MoviList{position + kHeaderSize + 4, position + kHeaderSize + header->size};
    }
    position = nextChunkOffset(position, header->size);
  }
  return std::nullopt;
}

/// A standard index: "ix" and two digits.
bool isIndex(const Header& header) {
  const auto bytes = header.code.bytes();
  return bytes[0] == std::byte{'i'} && bytes[1] == std::byte{'x'};
}

bool isData(const Header& header) {
  const auto bytes = header.code.bytes();
  const auto digit = [](std::byte one) { return one >= std::byte{'0'} && one <= std::byte{'9'}; };
  return isIndex(header) || header.code == avi::kJunk || (digit(bytes[0]) && digit(bytes[1]));
}

/// Goes on from chunk to chunk after what was found.
std::uint64_t endBehind(avi::InputFile& input, std::uint64_t position, std::uint64_t fileSize) {
  for (int step = 0; step < kMaxSteps; ++step) {
    const auto header = headerAt(input, position);
    if (!header) break;
    if (header->code == avi::kIdx1) return position;
    if (header->code == avi::kList && header->type == avi::kRec) {
      position += kHeaderSize + 4;
    } else if (isData(*header)) {
      position = nextChunkOffset(position, header->size);
    } else {
      break;
    }
  }
  return fileSize;
}

/// Bytes of standard indexes from `position` on, as far as chunk follows chunk. A short film of a recorder that keeps
/// room for long ones may be a quarter of them.
std::uint64_t indexBytes(avi::InputFile& input, std::uint64_t position, std::uint64_t end) {
  constexpr int kMaxChunks = 4096;
  std::uint64_t bytes = 0;
  for (int chunk = 0; chunk < kMaxChunks && position < end; ++chunk) {
    const auto header = headerAt(input, position);
    if (!header) break;
    const std::uint64_t next = header->code == avi::kList && header->type == avi::kRec
                                   ? position + kHeaderSize + 4
                                   : nextChunkOffset(position, header->size);
    if (next > end || (header->code != avi::kList && !isData(*header))) break;
    if (isIndex(*header)) bytes += next - position;
    position = next;
  }
  return bytes;
}

}  // namespace

void FilmTally::add(const FoundChunk& chunk) {
  const bool isFirst = end_ == 0;
  if (!isFirst && chunk.position <= last_) return;
  last_ = chunk.position;
  if (isFirst) {
    begin_ = chunk.position;
    end_ = chunk.position;
  }
  if (chunk.position > end_ && isPaddedBehind_ && chunk.position - end_ <= kLargestPadding) {
    padding_ += chunk.position - end_;
  }
  isPaddedBehind_ = chunk.isPaddedBehind;
  const std::uint64_t end = nextChunkOffset(chunk.position, chunk.size);
  if (end > end_) {
    if (!chunk.isBlank) kept_ += end - std::max(end_, chunk.position);
    end_ = end;
  }
  if (chunk.isSound) {
    ++soundChunks_;
    soundBytes_ += chunk.size;
  } else if (chunk.isBlank) {
    ++blankPictures_;
  } else {
    ++pictures_;
  }
}

FilmRange filmRange(avi::InputFile& input, const FilmTally& tally) {
  const std::uint64_t fileSize = input.size();
  const auto list = moviList(input, fileSize);
  const std::uint64_t first = tally.end() == 0 ? kLatestBegin : tally.begin();
  FilmRange range{std::min({list ? list->begin : kLatestBegin, first, fileSize}), fileSize};
  if (list && list->end <= fileSize && list->end >= tally.end() && list->end > list->begin) {
    range.end = list->end;
  } else if (tally.end() != 0) {
    range.end = std::max(endBehind(input, tally.end(), fileSize), std::min(tally.end(), fileSize));
  }
  if (list) range.end -= std::min(indexBytes(input, list->begin, range.end), range.end - range.begin);
  return range;
}

double keptShare(const FilmTally& tally, const FilmRange& range, std::uint64_t unreadable) {
  const std::uint64_t length = range.end - range.begin;
  const std::uint64_t film = length - std::min(length, tally.padding());
  const std::uint64_t kept = tally.kept() - std::min(tally.kept(), unreadable);
  return film == 0 ? 0.0 : std::min(1.0, static_cast<double>(kept) / static_cast<double>(film));
}

}  // namespace zelvo::engine
