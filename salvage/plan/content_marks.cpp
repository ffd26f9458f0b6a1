// Each payload gets a number: 0 when it is sound, more the odder it is. What is odd is only known when all have one.
#include "salvage/plan/content_marks.h"

#include <algorithm>
#include <cstdlib>
#include <utility>
#include <vector>

#include "avi/byte_order.h"
#include "salvage/payloads/codec.h"
#include "salvage/payloads/payload_length.h"

namespace zelvo::salvage {

namespace {

using ByteView = std::span<const std::byte>;

constexpr std::size_t kSectorSize = 512;
/// Fewer payloads are no rule.
constexpr std::size_t kFewestJudged = 8;
constexpr std::uint32_t kOdd = 1000;

bool isPresent(const Slot& slot) {
  return slot.state == SlotState::whole || slot.state == SlotState::sizeMended || slot.state == SlotState::codeMended;
}

/// Whether the file was damaged elsewhere than at its end.
bool isHurt(const FilmPlan& plan) {
  return std::ranges::any_of(
      plan.slots, [](const Slot& slot) { return slot.state != SlotState::whole && slot.state != SlotState::cut; });
}

bool hasOwnMarks(Codec codec) {
  return codec == Codec::jpeg || codec == Codec::mp3 || codec == Codec::mp2 || codec == Codec::ac3;
}

/// Whether the payload's own marks go on nearly to its end: some writers pad.
bool isMarkedToItsEnd(Codec codec, ByteView payload) {
  const auto length = payloadLength(codec, payload);
  return length && std::uint64_t{*length} * 8 >= std::uint64_t{payload.size()} * 7;
}

std::int32_t wide(ByteView bytes, std::size_t at) {
  return static_cast<std::int16_t>(avi::loadLittleEndian16(bytes.subspan(at).first<2>()));
}

/// In thousandths of what random bytes have.
std::uint32_t noiseIn(ByteView sector, const SampleLayout& layout) {
  const std::size_t step = layout.isWide ? 2 : 1;
  // Two random numbers are a third of their range apart.
  const std::uint64_t random = layout.isWide ? 65'536 / 3 : 256 / 3;
  std::uint64_t sum = 0;
  std::uint64_t count = 0;
  for (std::size_t at = 0; at + layout.stride + step <= sector.size(); at += step, ++count) {
    const std::int32_t apart =
        layout.isWide ? wide(sector, at + layout.stride) - wide(sector, at)
                      : static_cast<std::int32_t>(sector[at + layout.stride]) - static_cast<std::int32_t>(sector[at]);
    sum += static_cast<std::uint64_t>(std::abs(apart));
  }
  return count == 0 ? 0 : static_cast<std::uint32_t>(sum * 1000 / (count * random));
}

class Marking {
 public:
  Marking(const Evidence& evidence, FilmPlan& plan) : evidence_(evidence), plan_(plan) {
    for (const FilmStream& stream : evidence.header.streams)
      rules_.push_back({codecOf(stream.header), sampleLayout(stream.header)});
  }

  void run();

 private:
  /// How payloads of a stream are judged, if at all.
  struct Rule {
    Codec codec = Codec::unknown;
    std::optional<SampleLayout> layout;

    [[nodiscard]] bool judges() const { return layout || hasOwnMarks(codec); }
  };
  struct Judged {
    std::uint32_t slot = 0;
    std::uint32_t oddity = 0;
  };

  [[nodiscard]] bool isJudged(const Slot& slot) const;
  [[nodiscard]] std::optional<std::uint32_t> oddityOf(const Slot& slot);
  void mark(const Rule& rule, std::span<Judged> judged);
  void markAbove(std::span<const Judged> judged, std::uint32_t least);

  const Evidence& evidence_;
  FilmPlan& plan_;
  std::vector<Rule> rules_;  ///< by stream
  platform::Bytes buffer_;
};

bool Marking::isJudged(const Slot& slot) const {
  return rules_[slot.stream].judges() && isPresent(slot) && !slot.isPalette && slot.hasSource() &&
         slot.pieces == Slot::kOnePiece && slot.size <= kMaxJudgedPayload;
}

/// Nothing when it cannot be read.
std::optional<std::uint32_t> Marking::oddityOf(const Slot& slot) {
  buffer_.resize(std::max<std::size_t>(buffer_.size(), slot.size));
  const auto into = std::span(buffer_).first(slot.size);
  if (evidence_.input.read(slot.source, into) < into.size()) return std::nullopt;
  const Rule& rule = rules_[slot.stream];
  if (rule.layout) return noiseOf(into, slot.source, *rule.layout);
  return isMarkedToItsEnd(rule.codec, into) ? 0 : kOdd;
}

/// `judged`: all of a stream, in the order of the film.
void Marking::mark(const Rule& rule, std::span<Judged> judged) {
  if (judged.size() < kFewestJudged) return;
  if (rule.layout) {
    constexpr std::uint32_t kNoise = 800;
    constexpr std::uint32_t kUsual = 550;  // of a stream in which noise stands out
    const auto upper = judged.begin() + static_cast<std::ptrdiff_t>(judged.size() * 3 / 4);
    std::ranges::nth_element(judged, upper, {}, &Judged::oddity);
    if (upper->oddity <= kUsual) markAbove(judged, kNoise);
    return;
  }
  const auto odd = static_cast<std::size_t>(std::ranges::count(judged, kOdd, &Judged::oddity));
  if (odd * 10 <= judged.size() * 3) markAbove(judged, kOdd);
}

void Marking::markAbove(std::span<const Judged> judged, std::uint32_t least) {
  for (const Judged& one : judged) {
    if (one.oddity >= least) plan_.slots[one.slot].state = SlotState::damaged;
  }
}

/// The payloads of all streams are read in one go, in the order of the film, whatever their number.
void Marking::run() {
  std::vector<std::size_t> begins(rules_.size(), 0);
  for (const Slot& slot : plan_.slots) {
    if (isJudged(slot)) ++begins[slot.stream];
  }
  std::size_t all = 0;
  for (std::size_t& begin : begins) all += std::exchange(begin, all);
  std::vector<Judged> judged(all);
  std::vector<std::size_t> ends = begins;
  for (std::size_t i = 0; i < plan_.slots.size(); ++i) {
    const Slot& slot = plan_.slots[i];
    if (!isJudged(slot)) continue;
    if (const auto oddity = oddityOf(slot)) judged[ends[slot.stream]++] = {static_cast<std::uint32_t>(i), *oddity};
  }
  for (std::size_t stream = 0; stream < rules_.size(); ++stream)
    mark(rules_[stream], std::span(judged).subspan(begins[stream], ends[stream] - begins[stream]));
}

}  // namespace

std::optional<SampleLayout> sampleLayout(const SurvivingStream& stream) {
  const Codec codec = codecOf(stream);
  if (codec == Codec::pcm) {
    const SoundFormat sound = soundFormat(stream);
    if (sound.channels == 0 || (sound.bitsPerSample != 8 && sound.bitsPerSample != 16)) return std::nullopt;
    return SampleLayout{std::size_t{sound.channels} * sound.bitsPerSample / 8, sound.bitsPerSample == 16};
  }
  if (codec != Codec::rawPicture) return std::nullopt;
  constexpr std::size_t kCompression = 16;
  constexpr std::uint32_t kRgb = 3;
  const PictureFormat picture = pictureFormat(stream);
  const bool isRgb = stream.format.size() < kCompression + 4 ||
                     avi::loadLittleEndian32(std::span(stream.format).subspan<kCompression, 4>()) <= kRgb;
  if (picture.bits == 24 || picture.bits == 32) return SampleLayout{picture.bits / std::size_t{8}, false};
  if (isRgb || (picture.bits != 16 && picture.bits != 12)) return std::nullopt;
  return SampleLayout{picture.bits == 16 ? std::size_t{4} : std::size_t{1}, false};
}

std::uint32_t noiseOf(std::span<const std::byte> payload, std::uint64_t offset, const SampleLayout& layout) {
  std::uint32_t most = 0;
  // Sectors may begin within a sample; in the payload samples do not.
  const std::size_t sample = layout.isWide ? 2 : 1;
  for (std::size_t at = static_cast<std::size_t>((kSectorSize - offset % kSectorSize) % kSectorSize);
       at + kSectorSize <= payload.size(); at += kSectorSize) {
    const std::size_t begin = at + (sample - at % sample) % sample;
    most = std::max(most, noiseIn(payload.subspan(begin, at + kSectorSize - begin), layout));
  }
  return most;
}

void markContent(const Evidence& evidence, FilmPlan& plan) {
  if (!isHurt(plan)) return;
  Marking(evidence, plan).run();
}

}  // namespace zelvo::salvage
