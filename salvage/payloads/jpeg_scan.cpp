#include "salvage/payloads/jpeg_scan.h"

#include <algorithm>
#include <numeric>

namespace zelvo::salvage {

namespace {

using JpegView = std::span<const std::byte>;

constexpr unsigned kMark = 0xff;
constexpr unsigned kRestart = 0xd0;
constexpr std::uint32_t kCoefficients = 64;
constexpr std::uint64_t kRestartNumbers = 8;

unsigned byteAt(JpegView bytes, std::size_t place) { return static_cast<unsigned>(bytes[place]); }

/// The headers in front of a scan, one after another.
class JpegHeaders {
 public:
  explicit JpegHeaders(JpegView picture) : picture_(picture) {}

  std::optional<JpegScan> read() {
    constexpr unsigned kStart = 0xd8;
    constexpr unsigned kScan = 0xda;
    if (picture_.size() < 4 || byteAt(picture_, 0) != kMark || byteAt(picture_, 1) != kStart) return std::nullopt;
    std::size_t next = 2;
    while (next + 4 <= picture_.size() && byteAt(picture_, next) == kMark) {
      const unsigned type = byteAt(picture_, next + 1);
      if (type == kMark) {
        ++next;
        continue;
      }
      const std::size_t length = byteAt(picture_, next + 2) << 8U | byteAt(picture_, next + 3);
      if (length < 2 || length > picture_.size() - next - 2) return std::nullopt;
      const JpegView body = picture_.subspan(next + 4, length - 2);
      next += 2 + length;
      if (type == kScan) {
        scan_.begin = next;
        return readScan(body) ? std::optional(scan_) : std::nullopt;
      }
      if (!readHeader(type, body)) return std::nullopt;
    }
    return std::nullopt;
  }

 private:
  struct Component {
    unsigned name = 0;
    std::uint32_t across = 0;
    std::uint32_t down = 0;
  };

  [[nodiscard]] bool readHeader(unsigned type, JpegView body) {
    constexpr unsigned kBaseline = 0xc0;
    constexpr unsigned kExtended = 0xc1;
    constexpr unsigned kCodes = 0xc4;
    constexpr unsigned kExtension = 0xc8;
    constexpr unsigned kArithmetic = 0xcc;
    constexpr unsigned kLastFrame = 0xcf;
    constexpr unsigned kInterval = 0xdd;
    if (type == kBaseline || type == kExtended) return readFrame(body);
    if (type == kCodes) return readCodes(body);
    if (type == kInterval) {
      if (body.size() < 2) return false;
      scan_.restartUnits = byteAt(body, 0) << 8U | byteAt(body, 1);
      return true;
    }
    return type < kBaseline || type > kLastFrame || type == kExtension || type == kArithmetic;
  }

  [[nodiscard]] bool readFrame(JpegView body) {
    constexpr std::size_t kFixed = 6;
    if (body.size() < kFixed || byteAt(body, 0) != 8) return false;
    height_ = byteAt(body, 1) << 8U | byteAt(body, 2);
    width_ = byteAt(body, 3) << 8U | byteAt(body, 4);
    const unsigned count = byteAt(body, 5);
    if (width_ == 0 || height_ == 0 || count == 0 || count > JpegScan::kMaxComponents) return false;
    if (body.size() < kFixed + std::size_t{3} * count) return false;
    components_.clear();
    for (std::size_t i = 0; i < count; ++i) {
      const unsigned sampling = byteAt(body, kFixed + 3 * i + 1);
      const Component one{byteAt(body, kFixed + 3 * i), sampling >> 4U, sampling & 0xfU};
      if (one.across == 0 || one.across > 4 || one.down == 0 || one.down > 4) return false;
      components_.push_back(one);
    }
    return true;
  }

  [[nodiscard]] bool readCodes(JpegView body) {
    constexpr std::size_t kHead = 1 + JpegCodes::kLongest;
    while (!body.empty()) {
      if (body.size() < kHead) return false;
      const unsigned number = byteAt(body, 0) & 0xfU;
      const unsigned kind = byteAt(body, 0) >> 4U;
      if (number > 3 || kind > 1) return false;
      JpegCodes codes;
      for (std::size_t i = 1; i <= JpegCodes::kLongest; ++i) codes.counts.at(i) = byteAt(body, i);
      const std::size_t all = std::accumulate(codes.counts.begin(), codes.counts.end(), std::size_t{0});
      if (all > 256 || body.size() - kHead < all) return false;
      for (std::size_t i = 0; i < all; ++i) codes.symbols.push_back(std::to_integer<std::uint8_t>(body[kHead + i]));
      (kind == 0 ? scan_.dcCodes : scan_.acCodes).at(number) = std::move(codes);
      body = body.subspan(kHead + all);
    }
    return true;
  }

  [[nodiscard]] bool readScan(JpegView body) {
    constexpr std::size_t kMaxBlocks = 10;
    if (components_.empty() || body.size() < 4 + 2 * components_.size() || byteAt(body, 0) != components_.size())
      return false;
    std::uint32_t across = 1;
    std::uint32_t down = 1;
    // A component that is alone has units of one block.
    if (components_.size() == 1) components_[0].across = components_[0].down = 1;
    for (std::size_t i = 0; i < components_.size(); ++i) {
      const Component& one = components_[i];
      const unsigned codes = byteAt(body, 2 + 2 * i);
      if (byteAt(body, 1 + 2 * i) != one.name || codes >> 4U > 3 || (codes & 0xfU) > 3) return false;
      const JpegScan::Block block{static_cast<std::uint8_t>(i), static_cast<std::uint8_t>(codes >> 4U),
                                  static_cast<std::uint8_t>(codes & 0xfU)};
      if (scan_.dcCodes.at(block.dcCodes).symbols.empty() || scan_.acCodes.at(block.acCodes).symbols.empty())
        return false;
      scan_.blocks.insert(scan_.blocks.end(), std::size_t{one.across} * one.down, block);
      across = std::max(across, one.across);
      down = std::max(down, one.down);
    }
    if (scan_.blocks.size() > kMaxBlocks) return false;
    scan_.unitsPerRow = (width_ + 8 * across - 1) / (8 * across);
    scan_.units = std::uint64_t{scan_.unitsPerRow} * ((height_ + 8 * down - 1) / (8 * down));
    return true;
  }

  const JpegView picture_;
  JpegScan scan_;
  std::vector<Component> components_;
  std::uint32_t width_ = 0;
  std::uint32_t height_ = 0;
};

/// Reads a scan's codes bit by bit. Once it fails, all bits are zero.
class CodeReader {
 public:
  CodeReader(const CutBytes& bytes, JpegPlace& place) : bytes_(bytes), place_(place) {}

  [[nodiscard]] bool hasFailed() const { return hasFailed_; }
  std::uint32_t bits(std::uint32_t count) {
    std::uint32_t value = 0;
    for (; count > 0; --count) value = value << 1U | bit();
    return value;
  }
  std::uint32_t symbol(const JpegCodes& codes) {
    std::uint32_t code = 0;
    std::uint32_t first = 0;
    std::uint32_t index = 0;
    for (std::size_t length = 1; length <= JpegCodes::kLongest && !hasFailed_; ++length) {
      code = code << 1U | bit();
      first <<= 1U;
      const std::uint32_t count = codes.counts[length];
      if (code >= first && code - first < count) return codes.symbols[index + code - first];
      index += count;
      first += count;
    }
    hasFailed_ = true;
    return 0;
  }
  void fail() { hasFailed_ = true; }

 private:
  std::uint32_t bit() {
    if (place_.left == 0 && !load()) return 0;
    return place_.byte >> --place_.left & 1U;
  }
  bool load() {
    const bool isMark = !hasFailed_ && place_.next < bytes_.size() && bytes_.at(place_.next) == kMark;
    const bool isStuffed = isMark && place_.next + 1 < bytes_.size() && bytes_.at(place_.next + 1) == 0;
    if (hasFailed_ || place_.next >= bytes_.size() || (isMark && !isStuffed)) {
      hasFailed_ = true;
      return false;
    }
    place_.byte = bytes_.at(place_.next);
    place_.next += isStuffed ? 2 : 1;
    place_.left = 8;
    return true;
  }

  const CutBytes& bytes_;
  JpegPlace& place_;
  bool hasFailed_ = false;
};

std::int32_t difference(CodeReader& reader, std::uint32_t length) {
  if (length == 0) return 0;
  const auto value = static_cast<std::int32_t>(reader.bits(length));
  return value < 1 << (length - 1) ? value - (1 << length) + 1 : value;
}

bool readBlock(const JpegScan& scan, const JpegScan::Block& block, CodeReader& reader, std::int32_t& level) {
  constexpr std::uint32_t kLongestDc = 11;
  constexpr std::uint32_t kLongestAc = 10;
  constexpr std::uint32_t kLongRun = 15;
  constexpr std::int32_t kMaxLevel = 1 << 15;
  const std::uint32_t length = reader.symbol(scan.dcCodes[block.dcCodes]);
  if (reader.hasFailed() || length > kLongestDc) return false;
  level += difference(reader, length);
  if (level > kMaxLevel || level < -kMaxLevel) return false;
  for (std::uint32_t at = 1; at < kCoefficients; ++at) {
    const std::uint32_t symbol = reader.symbol(scan.acCodes[block.acCodes]);
    if (reader.hasFailed()) return false;
    const std::uint32_t run = symbol >> 4U;
    const std::uint32_t bits = symbol & 0xfU;
    if (bits == 0 && run == 0) return true;
    if (bits > kLongestAc || (bits == 0 && run != kLongRun)) return false;
    at += run;
    if (at >= kCoefficients) return false;
    reader.bits(bits);
  }
  return !reader.hasFailed();
}

}  // namespace

std::optional<JpegScan> jpegScan(std::span<const std::byte> picture) { return JpegHeaders(picture).read(); }

bool JpegPlace::isBeforeEnd(const CutBytes& bytes) const {
  const bool isMark = next + 1 < bytes.size() && bytes.at(next) == kMark;
  return next >= bytes.size() ||
         (isMark && bytes.at(next + 1) != 0 && (bytes.at(next + 1) < kRestart || bytes.at(next + 1) >= kRestart + 8));
}

bool readUnit(const JpegScan& scan, const CutBytes& bytes, JpegPlace& place) {
  if (scan.restartUnits != 0 && place.unit != 0 && place.unit % scan.restartUnits == 0) {
    const std::uint64_t number = (place.unit / scan.restartUnits - 1) % kRestartNumbers;
    if (place.next + 1 >= bytes.size() || bytes.at(place.next) != kMark ||
        bytes.at(place.next + 1) != kRestart + number)
      return false;
    place.next += 2;
    place.left = 0;
    place.levels.fill(0);
  }
  CodeReader reader(bytes, place);
  for (const JpegScan::Block& block : scan.blocks) {
    if (!readBlock(scan, block, reader, place.levels[block.component])) return false;
  }
  ++place.unit;
  return true;
}

}  // namespace zelvo::salvage
