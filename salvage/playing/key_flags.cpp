#include "salvage/playing/key_flags.h"

#include <algorithm>
#include <array>
#include <optional>

#include "avi/byte_order.h"
#include "avi/chunk_codes.h"
#include "avi/file_view.h"

namespace zelvo::salvage {

namespace {

constexpr std::size_t kWindow = 65536;
constexpr std::uint64_t kListHead = 12;
constexpr std::uint64_t kOldEntry = 16;
constexpr std::uint64_t kStandardHead = 24;
constexpr std::uint64_t kStandardEntry = 8;
constexpr std::uint32_t kKeyFlag = 0x10;       // AVIIF_KEYFRAME
constexpr std::uint32_t kNoKey = 0x8000'0000;  // of a standard index's dwSize
/// Of all indexes together.
constexpr std::uint64_t kMaxEntries = std::uint64_t{16} << 20U;

class Walk {
 public:
  Walk(platform::ReadableFile& file, std::span<const std::uint64_t> payloads, const std::function<bool()>& isEnding)
      : view_(file, kWindow), entries_(file, kWindow), targets_(file, 512), payloads_(payloads), isEnding_(isEnding) {}

  std::vector<KeyEntry> walk() {
    const std::uint64_t end = view_.fileSize();
    std::uint64_t at = 0;
    for (std::uint64_t steps = 0; at + avi::kChunkHeader <= end && (steps % 64 != 0 || !isEnding_()); ++steps) {
      const auto header = view_.header(at);
      if (!header || !avi::isPrintable(header->id)) break;
      if (header->id == avi::kRiff || header->id == avi::kList) {
        const auto type = view_.code(at + avi::kChunkHeader);
        if (type == avi::kMovi && !moviType_) moviType_ = at + avi::kChunkHeader;
        const bool isEntered = header->id == avi::kRiff || type == avi::kMovi || type == avi::kRec;
        at += isEntered ? kListHead : avi::kChunkHeader + padded(header->size);
        continue;
      }
      const std::uint64_t payload = at + avi::kChunkHeader;
      const std::uint64_t size = std::min<std::uint64_t>(header->size, end - payload);
      if (header->id == avi::kIdx1) takeOld(payload, size);
      if (avi::isStandardIndex(header->id)) takeStandard(payload, size);
      at = payload + padded(header->size);
    }
    return std::move(found_);
  }

 private:
  static std::uint64_t padded(std::uint32_t size) { return std::uint64_t{size} + size % 2; }
  [[nodiscard]] bool isWanted(std::uint64_t payload) const { return std::ranges::binary_search(payloads_, payload); }
  [[nodiscard]] bool mayGoOn() { return ++looked_ <= kMaxEntries && (looked_ % 4096 != 0 || !isEnding_()); }

  void takeOld(std::uint64_t payload, std::uint64_t size) {
    if (!moviType_) return;
    std::optional<std::uint64_t> base;
    for (std::uint64_t at = 0; at + kOldEntry <= size && mayGoOn(); at += kOldEntry) {
      const auto bytes = entries_.bytes(payload + at, kOldEntry);
      if (bytes.size() < kOldEntry) return;
      const std::uint32_t flags = avi::loadLittleEndian32(bytes.subspan<4, 4>());
      const std::uint64_t offset = avi::loadLittleEndian32(bytes.subspan<8, 4>());
      if (!base) base = liesAt(*moviType_ + offset, avi::FourCC::at(bytes)) ? *moviType_ : 0;
      const std::uint64_t named = *base + offset + avi::kChunkHeader;
      if ((flags & kKeyFlag) != 0 && isWanted(named)) found_.push_back({named, payload + at + 4, flags & ~kKeyFlag});
    }
  }
  [[nodiscard]] bool liesAt(std::uint64_t offset, avi::FourCC id) {
    const auto header = targets_.header(offset);
    return header && header->id == id;
  }

  void takeStandard(std::uint64_t payload, std::uint64_t size) {
    const auto head = entries_.bytes(payload, kStandardHead);
    if (size < kStandardHead || head.size() < kStandardHead) return;
    const std::uint64_t entries = avi::loadLittleEndian32(head.subspan<4, 4>());
    const std::uint64_t base = avi::loadLittleEndian32(head.subspan<12, 4>()) |
                               std::uint64_t{avi::loadLittleEndian32(head.subspan<16, 4>())} << 32U;
    const std::uint64_t last = std::min(entries, (size - kStandardHead) / kStandardEntry);
    for (std::uint64_t i = 0; i < last && mayGoOn(); ++i) {
      const std::uint64_t at = payload + kStandardHead + i * kStandardEntry;
      const auto bytes = entries_.bytes(at, kStandardEntry);
      if (bytes.size() < kStandardEntry) return;
      const std::uint64_t named = base + avi::loadLittleEndian32(bytes.first<4>());
      const std::uint32_t length = avi::loadLittleEndian32(bytes.subspan<4, 4>());
      if ((length & kNoKey) == 0 && isWanted(named)) found_.push_back({named, at + 4, length | kNoKey});
    }
  }

  avi::FileView view_;
  avi::FileView entries_;
  avi::FileView targets_;
  const std::span<const std::uint64_t> payloads_;
  const std::function<bool()>& isEnding_;
  std::optional<std::uint64_t> moviType_;
  std::uint64_t looked_ = 0;
  std::vector<KeyEntry> found_;
};

}  // namespace

std::vector<KeyEntry> keyEntries(platform::ReadableFile& file, std::span<const std::uint64_t> payloads,
                                 const std::function<bool()>& isEnding) {
  return Walk(file, payloads, isEnding).walk();
}

std::error_code dropKeyFlags(platform::WritableFile& file, std::span<const KeyEntry> entries) {
  for (const KeyEntry& entry : entries) {
    std::array<std::byte, 4> bytes{};
    avi::storeLittleEndian32(bytes, entry.without);
    const platform::IoResult written = file.writeAt(entry.field, bytes);
    if (written.error) return written.error;
  }
  return {};
}

}  // namespace zelvo::salvage
