#include "salvage/payloads/picture_headers.h"

#include <algorithm>
#include <array>

#include "platform/bytes.h"
#include "salvage/payloads/bit_reader.h"
#include "salvage/payloads/start_codes.h"

namespace zelvo::salvage {

namespace {

using Payload = std::span<const std::byte>;

constexpr std::uint32_t kLargestSide = 16384;

std::uint32_t big16(Payload bytes, std::size_t at) { return BitReader(bytes.subspan(at)).read(16); }

/// A sequence parameter set: bits with numbers of no fixed length, without the bytes that keep start codes out of it.
class SetReader {
 public:
  explicit SetReader(Payload unit) : bytes_(withoutGuards(unit)), bits_(bytes_) {}
  SetReader(const SetReader&) = delete;
  SetReader& operator=(const SetReader&) = delete;

  std::uint32_t bits(unsigned count) { return bits_.read(count); }
  bool flag() { return bits_.read(1) == 1; }
  void skip(std::size_t count) { bits_.skip(count); }
  /// ue(v)
  std::uint32_t number() {
    unsigned zeros = 0;
    while (!flag()) {
      if (++zeros > 31 || bits_.isPastEnd()) return 0;
    }
    return (std::uint32_t{1} << zeros) - 1 + bits_.read(zeros);
  }
  /// se(v), as it stands in the set: only whether it is zero matters here, and for scaling lists its value.
  int signedNumber() {
    const std::uint32_t code = number();
    const int half = static_cast<int>((code + 1) / 2);
    return code % 2 == 0 ? -half : half;
  }
  [[nodiscard]] bool isPastEnd() const { return bits_.isPastEnd(); }

 private:
  static platform::Bytes withoutGuards(Payload unit) {
    platform::Bytes bytes;
    std::size_t zeros = 0;
    for (const std::byte byte : unit) {
      if (zeros >= 2 && byte == std::byte{3}) {
        zeros = 0;
        continue;
      }
      zeros = byte == std::byte{0} ? zeros + 1 : 0;
      bytes.push_back(byte);
    }
    return bytes;
  }

  platform::Bytes bytes_;
  BitReader bits_;
};

void skipScalingList(SetReader& set, int size) {
  int last = 8;
  int next = 8;
  for (int i = 0; i < size && !set.isPastEnd(); ++i) {
    if (next != 0) next = (last + set.signedNumber() + 256) % 256;
    if (next != 0) last = next;
  }
}

bool hasChromaFormat(std::uint32_t profile) {
  constexpr std::array<std::uint32_t, 9> kProfiles{100, 110, 122, 244, 44, 83, 86, 118, 128};
  return std::ranges::count(kProfiles, profile) > 0;
}

/// The rate in the set's vui_parameters, which begin here.
std::optional<PictureRate> rateInSet(SetReader& set) {
  if (set.flag() && set.bits(8) == 255) set.skip(32);  // aspect_ratio_info
  if (set.flag()) set.skip(1);                         // overscan
  if (set.flag()) {                                    // video_signal_type
    set.skip(4);
    if (set.flag()) set.skip(24);
  }
  if (set.flag()) {  // chroma_loc
    static_cast<void>(set.number());
    static_cast<void>(set.number());
  }
  if (!set.flag()) return std::nullopt;  // timing_info
  const std::uint32_t units = set.bits(32);
  const std::uint32_t scale = set.bits(32);
  if (set.isPastEnd() || units == 0 || scale == 0 || units > 0x7fffffffU) return std::nullopt;
  if (scale % 2 == 0) return PictureRate{scale / 2, units};
  return PictureRate{scale, units * 2};
}

/// `unit` begins after the unit's own first byte.
std::optional<PictureHeader> parameterSet(Payload unit) {
  constexpr std::size_t kMaxSet = 1024;
  SetReader set(unit.first(std::min(unit.size(), kMaxSet)));
  const std::uint32_t profile = set.bits(8);
  set.skip(16);
  static_cast<void>(set.number());  // seq_parameter_set_id
  std::uint32_t chroma = 1;
  if (hasChromaFormat(profile)) {
    chroma = set.number();
    if (chroma == 3) set.skip(1);
    static_cast<void>(set.number());  // bit_depth_luma
    static_cast<void>(set.number());  // bit_depth_chroma
    set.skip(1);
    if (set.flag()) {  // seq_scaling_matrix
      for (int i = 0; i < (chroma == 3 ? 12 : 8); ++i) {
        if (set.flag()) skipScalingList(set, i < 6 ? 16 : 64);
      }
    }
  }
  static_cast<void>(set.number());  // log2_max_frame_num
  const std::uint32_t order = set.number();
  if (order == 0) {
    static_cast<void>(set.number());
  } else if (order == 1) {
    set.skip(1);
    static_cast<void>(set.number());
    static_cast<void>(set.number());
    const std::uint32_t cycle = std::min<std::uint32_t>(set.number(), 255);
    for (std::uint32_t i = 0; i < cycle; ++i) static_cast<void>(set.number());
  }
  static_cast<void>(set.number());  // max_num_ref_frames
  set.skip(1);
  PictureHeader header;
  const std::uint32_t width = set.number() + 1;
  const std::uint32_t height = set.number() + 1;
  const bool isOfFrames = set.flag();
  if (!isOfFrames) set.skip(1);
  set.skip(1);  // direct_8x8_inference
  if (width > kLargestSide / 16 || height > kLargestSide / 16) return std::nullopt;
  header.size = {width * 16, height * 16 * (isOfFrames ? 1U : 2U)};
  if (set.flag()) {  // frame_cropping
    const std::uint32_t stepX = chroma == 1 || chroma == 2 ? 2 : 1;
    const std::uint32_t stepY = (chroma == 1 ? 2U : 1U) * (isOfFrames ? 1U : 2U);
    const std::uint64_t cutX = stepX * (std::uint64_t{set.number()} + set.number());
    const std::uint64_t cutY = stepY * (std::uint64_t{set.number()} + set.number());
    if (cutX >= header.size.width || cutY >= header.size.height) return std::nullopt;
    header.size.width -= static_cast<std::uint32_t>(cutX);
    header.size.height -= static_cast<std::uint32_t>(cutY);
  }
  if (set.isPastEnd() || !isPlausible(header.size)) return std::nullopt;
  if (set.flag()) header.rate = rateInSet(set);
  return header;
}

/// HEVC's. `unit` begins after the unit's own two bytes.
std::optional<PictureHeader> hevcParameterSet(Payload unit) {
  constexpr std::size_t kMaxSet = 1024;
  SetReader set(unit.first(std::min(unit.size(), kMaxSet)));
  set.skip(4);
  const std::uint32_t layers = set.bits(3);
  set.skip(1 + 88 + 8);  // profile_tier_level of all layers
  if (layers > 0) {
    std::size_t bits = 0;
    for (std::uint32_t i = 0; i < 8; ++i) {
      const std::uint32_t flags = set.bits(2);
      if (i < layers) bits += (flags & 2U) * 44U + (flags & 1U) * 8U;
    }
    set.skip(bits);
  }
  static_cast<void>(set.number());  // sps_seq_parameter_set_id
  const std::uint32_t chroma = set.number();
  if (chroma == 3) set.skip(1);
  PictureHeader header;
  header.size.width = set.number();
  header.size.height = set.number();
  if (chroma > 3 || !isPlausible(header.size)) return std::nullopt;
  if (set.flag()) {  // conformance_window
    const std::uint32_t stepX = chroma == 1 || chroma == 2 ? 2 : 1;
    const std::uint32_t stepY = chroma == 1 ? 2 : 1;
    const std::uint64_t cutX = stepX * (std::uint64_t{set.number()} + set.number());
    const std::uint64_t cutY = stepY * (std::uint64_t{set.number()} + set.number());
    if (cutX >= header.size.width || cutY >= header.size.height) return std::nullopt;
    header.size.width -= static_cast<std::uint32_t>(cutX);
    header.size.height -= static_cast<std::uint32_t>(cutY);
  }
  if (set.isPastEnd()) return std::nullopt;
  return header;
}

}  // namespace

bool isPlausible(PictureSize size) {
  return size.width > 0 && size.height > 0 && size.width <= kLargestSide && size.height <= kLargestSide;
}

std::optional<PictureHeader> jpegHeader(Payload payload) {
  if (payload.size() < 4 || big16(payload, 0) != 0xffd8) return std::nullopt;
  bool isField = false;
  std::size_t at = 2;
  while (at + 9 <= payload.size()) {
    if (payload[at] != std::byte{0xff}) return std::nullopt;
    const auto marker = static_cast<unsigned>(payload[at + 1]);
    if (marker == 0xff) {
      ++at;  // fill
      continue;
    }
    const bool isFrame = marker >= 0xc0 && marker <= 0xcf && marker != 0xc4 && marker != 0xc8 && marker != 0xcc;
    if (isFrame) {
      const PictureSize size{big16(payload, at + 7), big16(payload, at + 5) * (isField ? 2U : 1U)};
      return isPlausible(size) ? std::optional(PictureHeader{size, std::nullopt}) : std::nullopt;
    }
    // "AVI1" and a number: which field it is; zero for a whole picture.
    constexpr std::uint32_t kAvi1 = 0x41564931;
    if (marker == 0xe0 && BitReader(payload.subspan(at + 4)).read(32) == kAvi1)
      isField = payload[at + 8] != std::byte{0};
    at += 2 + big16(payload, at + 2);
  }
  return std::nullopt;
}

std::optional<PictureHeader> mpegVideoHeader(Payload payload) {
  constexpr std::array<PictureRate, 9> kRates{PictureRate{0, 1},  PictureRate{24000, 1001}, PictureRate{24, 1},
                                              PictureRate{25, 1}, PictureRate{30000, 1001}, PictureRate{30, 1},
                                              PictureRate{50, 1}, PictureRate{60000, 1001}, PictureRate{60, 1}};
  constexpr unsigned kSequence = 0xb3;
  for (StartCodes codes(payload); const auto code = codes.next();) {
    if (code->type != kSequence || code->rest.size() < 4) continue;
    BitReader bits(code->rest);
    PictureHeader header;
    header.size.width = bits.read(12);
    header.size.height = bits.read(12);
    bits.skip(4);
    const std::uint32_t rate = bits.read(4);
    if (rate > 0 && rate < kRates.size()) header.rate = kRates[rate];
    if (isPlausible(header.size)) return header;
  }
  return std::nullopt;
}

std::optional<PictureHeader> h264Header(Payload payload) {
  constexpr unsigned kParameterSet = 7;
  for (Units units(payload); const auto unit = units.next();) {
    if ((static_cast<unsigned>(unit->front()) & 0x1fU) == kParameterSet) return parameterSet(unit->subspan(1));
  }
  return std::nullopt;
}

std::optional<PictureHeader> cinepakHeader(Payload payload) {
  if (payload.size() < 10) return std::nullopt;
  const PictureSize size{big16(payload, 4), big16(payload, 6)};
  if (!isPlausible(size)) return std::nullopt;
  return PictureHeader{size, std::nullopt};
}

std::optional<PictureHeader> hevcHeader(Payload payload) {
  constexpr unsigned kParameterSet = 33;
  for (Units units(payload); const auto unit = units.next();) {
    const bool isSet = (static_cast<unsigned>(unit->front()) >> 1U & 0x3fU) == kParameterSet;
    if (isSet && unit->size() > 2) return hevcParameterSet(unit->subspan(2));
  }
  return std::nullopt;
}

std::optional<PictureHeader> dvHeader(std::uint32_t size) {
  constexpr std::uint32_t kOf60Fields = 120000;
  constexpr std::uint32_t kOf50Fields = 144000;
  if (size == kOf50Fields || size == 2 * kOf50Fields) return PictureHeader{{720, 576}, PictureRate{25, 1}};
  if (size == kOf60Fields || size == 2 * kOf60Fields) return PictureHeader{{720, 480}, PictureRate{30000, 1001}};
  return std::nullopt;
}

}  // namespace zelvo::salvage
