// 1. The front is read; what cannot be read stays zero.
// 2. The first "movi" list ends the headers.
// 3. Every code of a header in front of it is tried where it stands. A stream header that parses is stepped over whole,
//    and one that does not is given up after a bounded number of chunks, so that the effort is linear.
#include "salvage/scan/surviving_headers.h"

#include <algorithm>
#include <array>
#include <span>
#include <utility>
#include <vector>

#include "avi/byte_order.h"
#include "avi/chunk_codes.h"

namespace zelvo::salvage {

namespace {

using avi::FourCC;
using Front = std::span<const std::byte>;

constexpr FourCC kStrd{"strd"};
constexpr std::size_t kListHeader = 12;
/// A stream's list holds fewer chunks than this.
constexpr int kMaxChunks = 32;

/// Parts of the front that could not be read, from begin to end.
using Unread = std::vector<std::pair<std::size_t, std::size_t>>;

platform::Bytes readFront(avi::InputFile& input, Unread& unread) {
  constexpr std::size_t kBlock = 4096;
  platform::Bytes front(static_cast<std::size_t>(std::min<std::uint64_t>(input.size(), kHeaderReach)));
  std::size_t at = 0;
  while (at < front.size()) {
    const std::size_t count = input.read(at, std::span(front).subspan(at));
    if (at + count >= front.size()) break;
    const std::size_t next = ((at + count) / kBlock + 1) * kBlock;
    unread.emplace_back(at + count, next);
    at = next;
  }
  return front;
}

std::uint32_t number(Front bytes, std::size_t at) { return avi::loadLittleEndian32(bytes.subspan(at).first<4>()); }

std::uint64_t number64(Front bytes, std::size_t at) {
  return number(bytes, at) | std::uint64_t{number(bytes, at + 4)} << 32U;
}

/// The payload of the chunk at `at`; nothing when it does not end within `front`.
std::optional<Front> payloadAt(Front front, std::size_t at) {
  if (front.size() < avi::kChunkHeader || at > front.size() - avi::kChunkHeader) return std::nullopt;
  const std::uint32_t size = number(front, at + 4);
  if (size > front.size() - at - avi::kChunkHeader) return std::nullopt;
  return front.subspan(at + avi::kChunkHeader, size);
}

std::size_t endOf(std::size_t at, Front payload) {
  return at + avi::kChunkHeader + payload.size() + payload.size() % 2;
}

std::optional<FourCC> codeAt(Front front, std::size_t at) {
  if (front.size() < 4 || at > front.size() - 4) return std::nullopt;
  return FourCC::at(front.subspan(at));
}

bool isStreamType(FourCC type) {
  constexpr std::array kTypes{avi::kVids, avi::kAuds, FourCC{"txts"}, FourCC{"mids"}, FourCC{"iavs"}};
  return std::ranges::find(kTypes, type) != kTypes.end();
}

std::optional<SuperIndex> superIndexOf(Front payload) {
  constexpr std::size_t kHead = 24;
  constexpr std::size_t kEntry = 16;
  if (payload.size() < kHead) return std::nullopt;
  const std::uint32_t shape = number(payload, 0);  // wLongsPerEntry, bIndexSubType, bIndexType
  if ((shape & 0xffffU) != kEntry / 4 || shape >> 24U != 0) return std::nullopt;
  SuperIndex index;
  index.chunkId = FourCC::at(payload.subspan(8));
  const std::size_t count = std::min<std::size_t>(number(payload, 4), (payload.size() - kHead) / kEntry);
  index.entries.reserve(count);
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t at = kHead + i * kEntry;
    index.entries.push_back({number64(payload, at), number(payload, at + 8), number(payload, at + 12)});
  }
  return index;
}

platform::Bytes copyOf(Front bytes) { return {bytes.begin(), bytes.end()}; }

void readStreamHeader(Front payload, SurvivingStream& stream) {
  stream.type = FourCC::at(payload);
  stream.handler = FourCC::at(payload.subspan(4));
  stream.initialFrames = number(payload, 16);
  stream.scale = number(payload, 20);
  stream.rate = number(payload, 24);
  stream.start = number(payload, 28);
  stream.length = number(payload, 32);
  stream.sampleSize = number(payload, 44);
  stream.header = copyOf(payload);
}

/// Whether streams of a type need no format: text and MIDI often have none, or an empty one.
bool needsNoFormat(FourCC type) { return type == FourCC{"txts"} || type == FourCC{"mids"}; }

/// Whether a format's own fields say how long it is: biSize of a picture, cbSize of sound.
bool tellsItsSize(FourCC type, Front format) {
  if (type == avi::kVids) return number(format, 0) == format.size();
  return type == avi::kAuds && format.size() >= 18 &&
         avi::loadLittleEndian16(format.subspan(16).first<2>()) == format.size() - 18;
}

bool isKnown(FourCC code) {
  constexpr std::array kCodes{avi::kList, avi::kStrh, kStrd, avi::kStrn, avi::kVprp, avi::kIndx, avi::kJunk};
  return std::ranges::find(kCodes, code) != kCodes.end();
}

/// Whether a header's chunk stands at `at`: one that is known, or one of a writer's own that ends where a known one
/// begins. Behind the front is nothing to see.
bool mayFollow(Front front, std::size_t at) {
  const auto code = codeAt(front, at);
  if (!code || isKnown(*code)) return true;
  const auto payload = payloadAt(front, at);
  const auto next = payload ? codeAt(front, endOf(at, *payload)) : std::nullopt;
  return avi::isPrintable(*code) && next && isKnown(*next);
}

/// The stream whose "strh" stands at `at`. `end` becomes where its last chunk ends.
std::optional<SurvivingStream> streamAt(Front front, std::size_t at, std::size_t& end) {
  const auto header = payloadAt(front, at);
  if (!header || header->size() < 48 || !isStreamType(FourCC::at(*header))) return std::nullopt;
  SurvivingStream stream;
  const FourCC type = FourCC::at(*header);
  std::optional<Front> format;
  Front data;
  Front name;
  Front properties;
  Front index;
  std::size_t next = endOf(at, *header);
  for (int i = 0; i < kMaxChunks; ++i) {
    const auto code = codeAt(front, next);
    const auto payload = payloadAt(front, next);
    if (!code || !payload) break;
    if (*code == avi::kStrf && !format) {
      if (payload->size() < 14 && !needsNoFormat(type)) return std::nullopt;
      if (!tellsItsSize(type, *payload) && !mayFollow(front, endOf(next, *payload))) return std::nullopt;
      format = payload;
    } else if (*code == kStrd) {
      data = *payload;
    } else if (*code == avi::kStrn) {
      name = *payload;
    } else if (*code == avi::kVprp) {
      properties = *payload;
    } else if (*code == avi::kIndx) {
      index = *payload;
    } else if (*code == avi::kList || *code == avi::kStrh || !mayFollow(front, next)) {
      break;
    }
    next = endOf(next, *payload);
  }
  if (!format && !needsNoFormat(type)) return std::nullopt;
  readStreamHeader(*header, stream);
  stream.offset = at;
  stream.format = copyOf(format.value_or(Front()));
  stream.data = copyOf(data);
  stream.name = copyOf(name);
  stream.properties = copyOf(properties);
  stream.superIndex = superIndexOf(index);
  end = next;
  return stream;
}

SurvivingMainHeader mainHeader(Front payload, std::size_t offset) {
  SurvivingMainHeader header;
  header.offset = offset;
  header.microSecPerFrame = number(payload, 0);
  header.flags = number(payload, 12);
  header.totalFrames = number(payload, 16);
  header.initialFrames = number(payload, 20);
  header.streams = number(payload, 24);
  header.suggestedBufferSize = number(payload, 28);
  header.width = number(payload, 32);
  header.height = number(payload, 36);
  return header;
}

/// Calls `visit` with each place where one of the codes that headers begin with may stand, until it answers where to go
/// on as the end.
template <class Visit>
void eachCode(Front front, const Visit& visit) {
  std::size_t at = 0;
  while (at + 4 <= front.size()) {
    const FourCC code = FourCC::at(front.subspan(at));
    at = std::max(at + 1, visit(code, at));
  }
}

std::optional<MediaList> firstMediaList(Front front) {
  const auto code = avi::kList.bytes();
  auto from = front.begin();
  while (true) {
    from = std::search(from, front.end(), code.begin(), code.end());
    const auto at = static_cast<std::size_t>(from - front.begin());
    if (front.size() - at < kListHeader) return std::nullopt;
    // A later form's list, where the first form is lost, is not where media begin.
    const bool isLater = at >= kListHeader && FourCC::at(front.subspan(at - kListHeader)) == avi::kRiff &&
                         FourCC::at(front.subspan(at - 4)) == avi::kAvix;
    if (isLater) return std::nullopt;
    if (FourCC::at(front.subspan(at + avi::kChunkHeader)) == avi::kMovi) return MediaList{at, number(front, at + 4)};
    ++from;
  }
}

bool isRead(const Unread& unread, std::size_t begin, std::size_t end) {
  return std::ranges::none_of(unread, [&](const auto& part) { return begin < part.second && end > part.first; });
}

bool isHeaderCode(FourCC code) {
  return code == avi::kStrh || code == avi::kAvih || code == avi::kDmlh || code == avi::kList;
}

/// Notes the header at `at`, if one is there and was read whole, and answers where to go on.
std::size_t noteHeader(Front front, const Unread& unread, FourCC code, std::size_t at, SurvivingHeaders& headers) {
  const auto payload = isHeaderCode(code) ? payloadAt(front, at) : std::nullopt;
  if (!payload || !isRead(unread, at, at + avi::kChunkHeader + payload->size())) return at;
  std::size_t end = at;
  if (code == avi::kStrh && headers.streams.size() < kMaxStreams) {
    auto stream = streamAt(front, at, end);
    if (!stream) return at;
    if (!isRead(unread, at, at + 2 * avi::kChunkHeader + stream->header.size() + stream->format.size())) return end;
    headers.streams.push_back(std::move(*stream));
  } else if (code == avi::kAvih && !headers.main && payload->size() >= 40) {
    headers.main = mainHeader(*payload, at);
    end = endOf(at, *payload);
  } else if (code == avi::kDmlh && !headers.openDmlFrames && payload->size() >= 4) {
    headers.openDmlFrames = number(*payload, 0);
    end = endOf(at, *payload);
  } else if (code == avi::kList && headers.information.empty() && payload->size() >= 4 &&
             FourCC::at(*payload) == avi::kInfo) {
    // Not stepped over: a list's size may be wrong and reach over other headers.
    headers.information = copyOf(payload->subspan(4));
  }
  if (end > at) headers.end = std::max<std::uint64_t>(headers.end, std::min(end, front.size()));
  return end;
}

}  // namespace

SurvivingHeaders survivingHeaders(avi::InputFile& input, const std::vector<ByteSpan>& unrescued) {
  Unread unread;
  for (const ByteSpan& span : unrescued) {
    if (span.begin >= kHeaderReach) break;
    unread.emplace_back(static_cast<std::size_t>(span.begin),
                        static_cast<std::size_t>(std::min<std::uint64_t>(span.end, kHeaderReach)));
  }
  const platform::Bytes bytes = readFront(input, unread);
  Front front = bytes;
  SurvivingHeaders headers;
  headers.media = firstMediaList(front);
  if (front.size() >= kListHeader && FourCC::at(front) == avi::kRiff &&
      FourCC::at(front.subspan(avi::kChunkHeader)) == avi::kAvi) {
    headers.formSize = number(front, 4);
    headers.end = kListHeader;
  }
  if (headers.media) front = front.first(static_cast<std::size_t>(headers.media->offset));
  eachCode(front, [&](FourCC code, std::size_t at) { return noteHeader(front, unread, code, at, headers); });
  return headers;
}

}  // namespace zelvo::salvage
