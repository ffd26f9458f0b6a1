// A plane is 256 lengths of codes, the ends of its slices, then the slices, in words of 32 bits whose lowest byte comes
// first. After the last plane come four bytes of the picture's own. The codes are canonical: the longest are the
// lowest.
#include "salvage/headers/ut_video.h"

#include <algorithm>
#include <array>

#include "avi/byte_order.h"

namespace zelvo::salvage {

namespace {

using UtBytes = std::span<const std::byte>;

constexpr std::size_t kLengths = 256;
constexpr std::size_t kInfo = 4;
constexpr unsigned kMaxSlices = 256;
constexpr unsigned kUnused = 255;
constexpr unsigned kLongest = 32;

std::uint32_t wordAt(UtBytes bytes, std::size_t at) { return avi::loadLittleEndian32(bytes.subspan(at).first<4>()); }

/// The codes of a plane by their lengths.
class UtCodes {
 public:
  /// Nothing when the lengths are not those of a full set.
  static std::optional<UtCodes> at(UtBytes bytes) {
    if (bytes.size() < kLengths) return std::nullopt;
    std::array<std::uint32_t, kLongest + 1> counts{};
    for (const std::byte byte : bytes.first(kLengths)) {
      const auto length = static_cast<unsigned>(byte);
      if (length == kUnused) continue;
      if (length > kLongest) return std::nullopt;
      ++counts[length];
    }
    UtCodes codes;
    if (counts[0] != 0) {
      codes.isOfOne_ = counts[0] == 1 && std::ranges::count(counts, 0U) == kLongest;
      return codes.isOfOne_ ? std::optional(codes) : std::nullopt;
    }
    std::uint64_t taken = 0;
    for (unsigned length = kLongest; length > 0; --length) {
      if (counts[length] == 0) continue;
      taken += std::uint64_t{counts[length]} << (kLongest - length);
      codes.steps_.push_back({length, taken});
    }
    constexpr std::uint64_t kAll = std::uint64_t{1} << kLongest;
    return taken == kAll ? std::optional(codes) : std::nullopt;
  }

  /// Whether all samples have the same value.
  [[nodiscard]] bool isOfOne() const { return isOfOne_; }

  /// The length of the code that these bits begin with.
  [[nodiscard]] unsigned lengthOf(std::uint32_t bits) const {
    return std::ranges::find_if(steps_, [bits](const Step& step) { return bits < step.end; })->length;
  }

 private:
  struct Step {
    unsigned length;
    std::uint64_t end;  ///< of the codes with this length or a longer one, in 32 bits
  };
  bool isOfOne_ = false;
  std::vector<Step> steps_;  ///< the longest first
};

/// \pre `bytes` are whole words.
class UtBits {
 public:
  explicit UtBits(UtBytes bytes) : bytes_(bytes) {}

  [[nodiscard]] std::size_t left() const { return bytes_.size() * 8 - at_; }
  /// The next 32; zeros behind the end.
  [[nodiscard]] std::uint32_t next() const {
    const std::size_t word = at_ / 32 * 4;
    const std::uint64_t both = std::uint64_t{get(word)} << 32U | get(word + 4);
    return static_cast<std::uint32_t>(both >> (32 - at_ % 32));
  }
  void skip(std::size_t count) { at_ += count; }

 private:
  [[nodiscard]] std::uint32_t get(std::size_t at) const { return at < bytes_.size() ? wordAt(bytes_, at) : 0; }

  UtBytes bytes_;
  std::size_t at_ = 0;
};

/// The samples of a slice; nothing when its codes do not end where it does.
std::optional<CountRange> countOf(const UtCodes& codes, UtBytes slice) {
  std::optional<std::uint64_t> least;
  std::uint64_t count = 0;
  UtBits bits(slice);
  while (bits.left() > 0 && count <= kMaxUtVideoSamples) {
    const std::uint32_t next = bits.next();
    const bool mayBeFilling = bits.left() < 32 && next == 0;
    if (mayBeFilling && !least) least = count;
    const unsigned length = codes.lengthOf(next);
    if (length > bits.left()) {
      if (!mayBeFilling) return std::nullopt;
      break;
    }
    bits.skip(length);
    ++count;
  }
  if (count > kMaxUtVideoSamples) return std::nullopt;
  return CountRange{least.value_or(count), count};
}

/// Where the slices of a plane end, counted from the first one's begin; nothing when these are no such places.
std::optional<std::vector<std::uint32_t>> endsOf(UtBytes plane, unsigned slices) {
  const std::size_t head = kLengths + std::size_t{slices} * 4;
  if (plane.size() < head) return std::nullopt;
  std::vector<std::uint32_t> ends;
  for (unsigned i = 0; i < slices; ++i) {
    const std::uint32_t end = wordAt(plane, kLengths + std::size_t{i} * 4);
    if (end % 4 != 0 || end > plane.size() - head || (i > 0 && end < ends.back())) return std::nullopt;
    ends.push_back(end);
  }
  return ends;
}

std::optional<CountRange> samplesOf(const UtCodes& codes, UtBytes slices, const std::vector<std::uint32_t>& ends) {
  if (codes.isOfOne()) return ends.back() == 0 ? std::optional(CountRange{0, kMaxUtVideoSamples}) : std::nullopt;
  CountRange samples;
  std::uint32_t begin = 0;
  for (const std::uint32_t end : ends) {
    const auto count = countOf(codes, slices.subspan(begin, end - begin));
    if (!count) return std::nullopt;
    samples.least += count->least;
    samples.most += count->most;
    if (samples.most > kMaxUtVideoSamples) return std::nullopt;
    begin = end;
  }
  return samples;
}

struct UtPlane {
  UtCodes codes;
  std::vector<std::uint32_t> ends;
  std::size_t begin;  ///< of its slices, in the payload
};

/// The planes of a picture with so many slices, which must fill it.
std::vector<UtPlane> planesOf(UtBytes payload, unsigned slices) {
  constexpr std::size_t kFewest = 3;
  constexpr std::size_t kMost = 4;
  std::vector<UtPlane> planes;
  std::size_t at = 0;
  while (at + kInfo != payload.size()) {
    const auto codes = UtCodes::at(payload.subspan(at));
    const auto ends = endsOf(payload.subspan(at), slices);
    if (!codes || !ends || planes.size() == kMost) return {};
    at += kLengths + std::size_t{slices} * 4;
    planes.push_back({*codes, *ends, at});
    at += ends->back();
    if (at + kInfo > payload.size()) return {};
  }
  return planes.size() >= kFewest ? planes : std::vector<UtPlane>();
}

}  // namespace

bool beginsUtVideo(std::span<const std::byte> front, std::size_t size) {
  return front.size() >= kLengths + 4 && UtCodes::at(front) && wordAt(front, kLengths) < size &&
         wordAt(front, kLengths) % 4 == 0;
}

std::optional<UtVideoPicture> utVideoPicture(std::span<const std::byte> payload) {
  if (payload.size() < kLengths || !UtCodes::at(payload)) return std::nullopt;
  for (unsigned slices = 1; slices <= kMaxSlices; ++slices) {
    const std::vector<UtPlane> planes = planesOf(payload, slices);
    if (planes.empty()) continue;
    UtVideoPicture picture{slices, {}};
    for (const UtPlane& plane : planes) {
      const auto samples = samplesOf(plane.codes, payload.subspan(plane.begin), plane.ends);
      if (!samples) return std::nullopt;
      picture.samples.push_back(*samples);
    }
    return picture;
  }
  return std::nullopt;
}

}  // namespace zelvo::salvage
