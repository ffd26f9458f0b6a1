#include "salvage/writing/header_writer.h"

#include <algorithm>
#include <limits>
#include <span>

#include "avi/byte_order.h"
#include "avi/chunk_codes.h"
#include "salvage/payloads/codec.h"

namespace zelvo::salvage {

namespace {

using avi::FourCC;
using platform::Bytes;

constexpr std::uint32_t kHasIndex = 0x10;
constexpr std::uint32_t kMustUseIndex = 0x20;
constexpr std::uint32_t kIsInterleaved = 0x100;
constexpr std::uint32_t kTrustChunkType = 0x800;
constexpr std::size_t kSmallestStreamHeader = 48;
/// "dmlh" has one number and is padded to this, as usual.
constexpr std::size_t kOpenDmlHeader = 248;

std::uint32_t low(std::uint64_t number) {
  return static_cast<std::uint32_t>(std::min<std::uint64_t>(number, std::numeric_limits<std::uint32_t>::max()));
}

class HeaderBytes {
 public:
  [[nodiscard]] Bytes take() { return std::move(bytes_); }

  void number(std::uint32_t value) {
    bytes_.resize(bytes_.size() + 4);
    storeAt(bytes_.size() - 4, value);
  }
  void number64(std::uint64_t value) {
    number(static_cast<std::uint32_t>(value & 0xffffffffU));
    number(static_cast<std::uint32_t>(value >> 32U));
  }
  void code(FourCC code) { number(code.value); }
  void append(std::span<const std::byte> bytes) { bytes_.insert(bytes_.end(), bytes.begin(), bytes.end()); }
  void zeros(std::size_t count) { bytes_.resize(bytes_.size() + count); }
  void storeAt(std::size_t at, std::uint32_t value) {
    avi::storeLittleEndian32(std::span(bytes_).subspan(at).first<4>(), value);
  }

  /// Begins a chunk; `end` sets its size and pads it.
  [[nodiscard]] std::size_t begin(FourCC id) {
    code(id);
    number(0);
    return bytes_.size();
  }
  [[nodiscard]] std::size_t beginList(FourCC type, FourCC id = avi::kList) {
    const std::size_t payload = begin(id);
    code(type);
    return payload;
  }
  void end(std::size_t payload) {
    storeAt(payload - 4, low(bytes_.size() - payload));
    if (bytes_.size() % 2 != 0) zeros(1);
  }
  void chunk(FourCC id, std::span<const std::byte> payload) {
    const std::size_t at = begin(id);
    append(payload);
    end(at);
  }

 private:
  Bytes bytes_;
};

std::optional<std::size_t> firstVideo(const FilmHeader& header) {
  const auto found =
      std::ranges::find_if(header.streams, [](const FilmStream& one) { return one.header.type == avi::kVids; });
  if (found == header.streams.end()) return std::nullopt;
  return static_cast<std::size_t>(found - header.streams.begin());
}

std::uint32_t microSecPerFrame(const FilmHeader& header, std::optional<std::size_t> video) {
  if (header.main && header.main->microSecPerFrame != 0) return header.main->microSecPerFrame;
  if (!video) return 0;
  const SurvivingStream& stream = header.streams[*video].header;
  return stream.rate == 0 ? 0 : low(std::uint64_t{stream.scale} * 1'000'000 / stream.rate);
}

void writeMain(HeaderBytes& out, const FilmHeader& header, const FilmLayout& layout) {
  const auto video = firstVideo(header);
  const SurvivingMainHeader main = header.main.value_or(SurvivingMainHeader{});
  const std::uint32_t picture = microSecPerFrame(header, video);
  const std::uint64_t pictures = video ? layout.chunks[*video].chunks : 0;
  std::uint32_t largest = 0;
  std::uint64_t bytes = 0;
  for (const ChunkSum& sum : layout.chunks) {
    largest = std::max(largest, sum.largest);
    bytes += sum.bytes;
  }
  const double seconds = static_cast<double>(picture) * static_cast<double>(pictures) / 1e6;
  const double rate = seconds > 0 ? std::min(static_cast<double>(bytes) / seconds, 4e9) : 0;
  const PictureFormat format = video ? pictureFormat(header.streams[*video].header) : PictureFormat{};

  const std::size_t payload = out.begin(avi::kAvih);
  out.number(picture);
  out.number(static_cast<std::uint32_t>(rate));  // dwMaxBytesPerSec
  out.number(0);                                 // dwPaddingGranularity
  out.number((main.flags & ~kMustUseIndex) | kHasIndex | kIsInterleaved | kTrustChunkType);
  out.number(video ? low(layout.forms.front().chunks[*video].chunks) : 0);  // dwTotalFrames
  out.number(main.initialFrames);
  out.number(low(header.streams.size()));
  out.number(largest);
  out.number(main.width != 0 ? main.width : format.width);
  out.number(main.height != 0 ? main.height : format.height);
  out.zeros(16);  // dwReserved
  out.end(payload);
}

/// dwScale and dwRate as they are, or from the format where one of them is zero, with which nothing would have a time.
void mendClock(Bytes& header, const SurvivingStream& stream, std::uint32_t microSecPerPicture) {
  if (stream.scale != 0 && stream.rate != 0) return;
  std::uint32_t scale = microSecPerPicture;
  std::uint32_t rate = 1'000'000;
  if (stream.type == avi::kAuds) {
    const SoundFormat format = soundFormat(stream);
    scale = format.blockAlign;
    rate = format.avgBytesPerSec;
  }
  if (scale == 0 || rate == 0) return;
  avi::storeLittleEndian32(std::span(header).subspan<20, 4>(), scale);
  avi::storeLittleEndian32(std::span(header).subspan<24, 4>(), rate);
}

void writeSuperIndex(HeaderBytes& out, FourCC chunkId, const FilmStream& stream, std::size_t number,
                     const FilmLayout& layout) {
  const std::size_t payload = out.begin(avi::kIndx);
  out.number(4);  // wLongsPerEntry; AVI_INDEX_OF_INDEXES
  const std::size_t count = payload + 4;
  out.number(0);
  out.code(chunkId);
  out.zeros(12);  // dwReserved
  std::uint32_t entries = 0;
  for (const FormLayout& form : layout.forms) {
    if (form.chunks[number].chunks == 0) continue;
    std::uint64_t offset = form.mediaEnd;
    for (std::size_t i = 0; i < number; ++i) {
      if (form.chunks[i].chunks > 0) offset += standardIndexSize(form.chunks[i].chunks);
    }
    out.number64(offset);
    out.number(low(standardIndexSize(form.chunks[number].chunks)));
    out.number(low(streamLength(stream, form.chunks[number])));
    ++entries;
  }
  out.storeAt(count, entries);
  out.end(payload);
}

void writeStream(HeaderBytes& out, const FilmHeader& header, std::size_t number, const FilmLayout& layout,
                 std::uint32_t microSecPerPicture) {
  const FilmStream& stream = header.streams[number];
  const SurvivingStream& found = stream.header;
  const ChunkSum& chunks = layout.chunks[number];
  Bytes strh = found.header;
  if (strh.size() < kSmallestStreamHeader) strh.resize(kSmallestStreamHeader);
  mendClock(strh, found, microSecPerPicture);
  avi::storeLittleEndian32(std::span(strh).subspan<32, 4>(), low(streamLength(stream, chunks)));
  avi::storeLittleEndian32(std::span(strh).subspan<36, 4>(), chunks.largest);

  const std::size_t list = out.beginList(avi::kStrl);
  out.chunk(avi::kStrh, strh);
  out.chunk(avi::kStrf, found.format);
  writeSuperIndex(out, chunkCode(header, number), stream, number, layout);
  if (!found.data.empty()) out.chunk(FourCC{"strd"}, found.data);
  if (!found.name.empty()) out.chunk(avi::kStrn, found.name);
  if (!found.properties.empty()) out.chunk(avi::kVprp, found.properties);
  out.end(list);
}

void writeOpenDml(HeaderBytes& out, const FilmHeader& header, const FilmLayout& layout) {
  const auto video = firstVideo(header);
  const std::size_t list = out.beginList(avi::kOdml);
  const std::size_t payload = out.begin(avi::kDmlh);
  out.number(video ? low(layout.chunks[*video].chunks) : 0);  // dwTotalFrames
  out.zeros(kOpenDmlHeader - 4);
  out.end(payload);
  out.end(list);
}

}  // namespace

FourCC chunkCode(const FilmHeader& header, std::size_t stream) {
  constexpr std::uint32_t kZero = 0x30;
  const auto number = static_cast<std::uint32_t>(stream);
  FourCC code;
  code.value = (header.streams[stream].code.value & 0xffff0000U) | (kZero + number / 10) | (kZero + number % 10) << 8U;
  return code;
}

FourCC chunkCode(const FilmHeader& header, const Slot& slot) {
  constexpr FourCC kPalette{"00pc"};
  FourCC code = chunkCode(header, std::size_t{slot.stream});
  if (slot.isPalette) code.value = (kPalette.value & 0xffff0000U) | (code.value & 0xffffU);
  return code;
}

std::uint64_t streamLength(const FilmStream& stream, const ChunkSum& chunks) {
  if (stream.header.type != avi::kAuds || stream.header.sampleSize == 0) return chunks.chunks;
  return chunks.bytes / stream.header.sampleSize;
}

Bytes headerBytes(const FilmHeader& header, const FilmLayout& layout) {
  HeaderBytes out;
  const std::size_t form = out.beginList(avi::kAvi, avi::kRiff);
  const std::size_t list = out.beginList(avi::kHdrl);
  writeMain(out, header, layout);
  const std::uint32_t picture = microSecPerFrame(header, firstVideo(header));
  for (std::size_t i = 0; i < header.streams.size(); ++i) writeStream(out, header, i, layout, picture);
  writeOpenDml(out, header, layout);
  out.end(list);
  if (!header.information.empty()) {
    const std::size_t information = out.beginList(avi::kInfo);
    out.append(header.information);
    out.end(information);
  }
  out.storeAt(form - 4, low(layout.forms.front().end - layout.forms.front().begin - 8));
  return out.take();
}

}  // namespace zelvo::salvage
