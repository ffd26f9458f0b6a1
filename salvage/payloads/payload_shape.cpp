#include "salvage/payloads/payload_shape.h"

#include <algorithm>
#include <array>

#include "avi/byte_order.h"
#include "salvage/payloads/bit_reader.h"
#include "salvage/payloads/sound_frame.h"

namespace zelvo::salvage {

namespace {

using Head = std::span<const std::byte>;

/// Some writers fill up a picture after its end.
constexpr std::size_t kMaxFill = 16;
constexpr std::array<std::uint32_t, 3> kDvSizes{120000, 144000, 288000};

Fit fitsWhen(bool claim) { return claim ? Fit::fits : Fit::contradicts; }

/// The bytes after the last end-of-image of a picture's tail; nothing without one.
std::optional<std::size_t> behindEndOfImage(Head tail) {
  for (std::size_t end = tail.size(); end >= 2; --end) {
    if (tail[end - 2] == std::byte{0xff} && tail[end - 1] == std::byte{0xd9}) return tail.size() - end;
  }
  return std::nullopt;
}

Fit jpegEnds(Head tail) {
  const auto behind = behindEndOfImage(tail);
  return fitsWhen(behind && *behind <= kMaxFill);
}

bool isStartCode(Head head, std::initializer_list<unsigned> types) {
  if (head.size() < 4 || BitReader(head).read(24) != 1) return false;
  return std::ranges::count(types, static_cast<unsigned>(head[3])) > 0;
}

Fit unitsBegin(Head head) {
  if (head.size() < 5) return Fit::unknown;
  const std::uint32_t first = BitReader(head).read(32);
  if (first == 1 || first >> 8U == 1) return Fit::fits;
  // A length of a unit cannot be told from other bytes.
  return first >> 24U != 0 ? Fit::contradicts : Fit::unknown;
}

Fit cinepakBegins(Head head, std::uint32_t size) {
  if (head.size() < 12) return Fit::unknown;
  const std::uint32_t length = BitReader(head.subspan(1)).read(24);
  if (size != 0 && (length > size || size - length > 2)) return Fit::contradicts;
  return fitsWhen(head[10] == std::byte{0x10} || head[10] == std::byte{0x11});
}

/// Where a run of frames from the front on ends: the first place up to `size` that is no frame, or that `head` does not
/// reach; 0 without any frame.
std::uint32_t framesEnd(Codec codec, Head head, std::uint32_t size) {
  std::uint32_t at = 0;
  while (at < size && at < head.size()) {
    const auto frame = soundFrame(codec, head.subspan(at));
    if (!frame || frame->size == 0 || frame->size > size - at) break;
    at += frame->size;
  }
  return at;
}

}  // namespace

PayloadShape::PayloadShape(const SurvivingStream& stream) : codec_(codecOf(stream)), picture_(pictureFormat(stream)) {
  const bool isInBlocks = codec_ == Codec::pcm || codec_ == Codec::imaAdpcm || codec_ == Codec::msAdpcm ||
                          codec_ == Codec::wma || codec_ == Codec::aLaw || codec_ == Codec::muLaw;
  if (isInBlocks) block_ = std::max<std::uint32_t>(1, soundFormat(stream).blockAlign);
}

std::optional<std::uint32_t> PayloadShape::fixedSize() const {
  if (codec_ != Codec::rawPicture || picture_.width == 0 || picture_.height == 0 || picture_.bits == 0)
    return std::nullopt;
  constexpr std::uint64_t kMaxPicture = std::uint64_t{1} << 30U;
  constexpr std::uint64_t kMaxWidth = 65536;
  if (picture_.width > kMaxWidth || picture_.height > kMaxWidth) return std::nullopt;
  const std::uint64_t bits = std::uint64_t{picture_.width} * picture_.bits;
  // Rows of RGB end on four bytes; planes of YUV, of 12 or 9 bits a pixel in the mean, do not.
  const bool isPlanar = picture_.bits == 12 || picture_.bits == 9;
  const std::uint64_t row = isPlanar ? 0 : (bits + 31) / 32 * 4;
  const std::uint64_t size = row != 0 ? row * picture_.height : bits * picture_.height / 8;
  if (size > kMaxPicture) return std::nullopt;
  return static_cast<std::uint32_t>(size);
}

Fit PayloadShape::begins(Head head) const {
  if (head.empty()) return Fit::unknown;
  switch (codec_) {
    case Codec::jpeg:
      return head.size() < 2 ? Fit::unknown : fitsWhen(BitReader(head).read(16) == 0xffd8);
    case Codec::mpeg4:
      return fitsWhen(isStartCode(head, {0x00, 0x20, 0xb0, 0xb2, 0xb3, 0xb5, 0xb6}));
    case Codec::mpegVideo:
      return fitsWhen(isStartCode(head, {0x00, 0xb3, 0xb8}));
    case Codec::h264:
    case Codec::hevc:
      return unitsBegin(head);
    case Codec::dv:
      return head.size() < 3 ? Fit::unknown : fitsWhen(BitReader(head).read(24) == 0x1f0700);
    case Codec::cinepak:
      return cinepakBegins(head, 0);
    case Codec::mp3:
    case Codec::mp2:
    case Codec::ac3:
      return fitsWhen(soundFrame(codec_, head).has_value());
    default:
      return Fit::unknown;
  }
}

Fit PayloadShape::isComplete(Head head, Head tail, std::uint32_t size) const {
  switch (codec_) {
    case Codec::rawPicture: {
      const auto fixed = fixedSize();
      return fixed ? fitsWhen(*fixed == size) : Fit::unknown;
    }
    case Codec::jpeg:
      return jpegEnds(tail);
    case Codec::dv:
      return fitsWhen(std::ranges::count(kDvSizes, size) > 0);
    case Codec::cinepak:
      return cinepakBegins(head, size);
    case Codec::mp3:
    case Codec::mp2:
    case Codec::ac3: {
      const std::uint32_t end = framesEnd(codec_, head, size);
      if (end == size) return Fit::fits;
      return end < head.size() ? Fit::contradicts : Fit::unknown;
    }
    default:
      // Blocks that do not come out even contradict; that they do proves little.
      return size % block_ == 0 ? Fit::unknown : Fit::contradicts;
  }
}

}  // namespace zelvo::salvage
