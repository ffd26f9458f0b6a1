#include "salvage/payloads/silence.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "salvage/payloads/sound_frame.h"

namespace zelvo::salvage {

namespace {

/// So much of a frame says what it is: header and, of AC-3, how its channels lie.
constexpr std::size_t kFrameHead = 8;
constexpr std::size_t kMpegHead = 4;

/// A raw AAC frame of one channel: single_channel_element without any band, and the end.
constexpr std::array kSilentMono{std::byte{0x00}, std::byte{0x00}, std::byte{0x00}, std::byte{0x07}};
/// Of two channels: channel_pair_element without a common window, and the end.
constexpr std::array kSilentPair{std::byte{0x20}, std::byte{0x00}, std::byte{0x00}, std::byte{0x00},
                                 std::byte{0x00}, std::byte{0x00}, std::byte{0x0e}};

bool isLearnt(Codec codec) { return codec == Codec::mp3 || codec == Codec::mp2 || codec == Codec::ac3; }

void copyFront(std::span<std::byte> to, std::span<const std::byte> from) {
  std::ranges::copy(from.first(std::min(from.size(), to.size())), to.begin());
}

}  // namespace

Silence::Silence(const SurvivingStream& stream) : codec_(codecOf(stream)), format_(soundFormat(stream)) {}

void Silence::learn(std::span<const std::byte> head) {
  if (!isLearnt(codec_) || head.size() < kFrameHead) return;
  const auto frame = soundFrame(codec_, head);
  if (!frame || frame->size < kFrameHead) return;
  frameSize_ = frame->size;
  frame_.assign(head.begin(), head.begin() + (codec_ == Codec::ac3 ? kFrameHead : kMpegHead));
  if (codec_ != Codec::ac3) frame_[1] |= std::byte{1};  // no checksum follows
}

std::uint32_t Silence::sizeFor(double seconds) const {
  double size = 0;
  switch (codec_) {
    case Codec::pcm:
    case Codec::aLaw:
    case Codec::muLaw:
    case Codec::imaAdpcm:
    case Codec::msAdpcm: {
      const double block = std::max<double>(1, format_.blockAlign);
      size = std::round(seconds * format_.avgBytesPerSec / block) * block;
      break;
    }
    case Codec::mp3:
    case Codec::mp2:
    case Codec::ac3: {
      const auto frame = soundFrame(codec_, frame_);
      if (frame) size = std::max(1.0, std::round(seconds * frame->rate / frame->samples)) * frame->size;
      break;
    }
    case Codec::aac:
      size = format_.channels == 1 ? kSilentMono.size() : kSilentPair.size();
      break;
    default:
      break;
  }
  return static_cast<std::uint32_t>(std::clamp(size, 0.0, static_cast<double>(std::numeric_limits<int>::max())));
}

void Silence::fill(std::span<std::byte> payload) const {
  std::byte still{0};
  if (codec_ == Codec::pcm && format_.bitsPerSample == 8) still = std::byte{0x80};
  if (codec_ == Codec::aLaw) still = std::byte{0xd5};
  if (codec_ == Codec::muLaw) still = std::byte{0xff};
  std::ranges::fill(payload, still);
  if (codec_ == Codec::aac) {
    if (format_.channels == 1)
      copyFront(payload, kSilentMono);
    else
      copyFront(payload, kSilentPair);
  } else if (frameSize_ != 0) {
    fillFrames(payload);
  }
}

void Silence::fillFrames(std::span<std::byte> payload) const {
  platform::Bytes head = frame_;
  std::size_t step = frameSize_;
  if (codec_ != Codec::ac3 && payload.size() % step != 0 && fitMpegFrame(head, payload.size())) step = payload.size();
  for (; payload.size() >= step; payload = payload.subspan(step)) copyFront(payload, head);
}

}  // namespace zelvo::salvage
