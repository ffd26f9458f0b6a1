#include "salvage/payloads/sound_frame.h"

#include <array>

#include "salvage/payloads/bit_reader.h"

namespace zelvo::salvage {

namespace {

/// Kilobits a second by bitrate_index, 1 to 14.
using Rates = std::array<std::uint16_t, 15>;
constexpr Rates kVersion1Layer1{0, 32, 64, 96, 128, 160, 192, 224, 256, 288, 320, 352, 384, 416, 448};
constexpr Rates kVersion1Layer2{0, 32, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 384};
constexpr Rates kVersion1Layer3{0, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320};
constexpr Rates kVersion2Layer1{0, 32, 48, 56, 64, 80, 96, 112, 128, 144, 160, 176, 192, 224, 256};
constexpr Rates kVersion2Layers23{0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160};

const Rates& ratesOf(bool isVersion1, unsigned layer) {
  if (!isVersion1) return layer == 1 ? kVersion2Layer1 : kVersion2Layers23;
  return layer == 1 ? kVersion1Layer1 : layer == 2 ? kVersion1Layer2 : kVersion1Layer3;
}

}  // namespace

std::optional<SoundFrame> mpegAudioFrame(std::span<const std::byte> head) {
  if (head.size() < 4) return std::nullopt;
  BitReader bits(head);
  if (bits.read(11) != 0x7ff) return std::nullopt;
  const std::uint32_t version = bits.read(2);  // 3: MPEG-1, 2: MPEG-2, 0: MPEG-2.5
  const std::uint32_t layer = 4 - bits.read(2);
  bits.skip(1);  // protection_bit
  const std::uint32_t bitRate = bits.read(4);
  const std::uint32_t sampleRate = bits.read(2);
  const std::uint32_t padding = bits.read(1);
  bits.skip(1);  // private_bit
  const std::uint32_t mode = bits.read(2);
  if (version == 1 || layer == 4 || bitRate == 0 || bitRate == 15 || sampleRate == 3) return std::nullopt;
  constexpr std::array<std::uint32_t, 3> kRates{44100, 48000, 32000};
  const bool isVersion1 = version == 3;
  SoundFrame frame;
  frame.layer = static_cast<std::uint8_t>(layer);
  frame.rate = kRates[sampleRate] >> (isVersion1 ? 0U : version == 2 ? 1U : 2U);
  frame.channels = mode == 3 ? 1 : 2;
  frame.samples = layer == 1 ? 384 : layer == 3 && !isVersion1 ? 576 : 1152;
  const std::uint32_t bitsPerSecond = ratesOf(isVersion1, layer)[bitRate] * 1000U;
  const std::uint32_t slot = layer == 1 ? 4 : 1;
  frame.size = (frame.samples / 8 * bitsPerSecond / frame.rate / slot + padding) * slot;
  return frame;
}

bool fitMpegFrame(std::span<std::byte> head, std::size_t size) {
  // No frame is longer.
  constexpr std::size_t kLongest = 3000;
  if (head.size() < 4 || size > kLongest) return false;
  const std::byte own = head[2];
  const auto third = [&](unsigned rate, unsigned padding) {
    return static_cast<std::byte>(rate << 4U | (static_cast<unsigned>(own) & 0x0dU) | padding << 1U);
  };
  for (unsigned rate = 1; rate < 15; ++rate) {
    head[2] = third(rate, 0);
    const auto frame = mpegAudioFrame(head);
    if (!frame) break;  // whatever its bit rate
    const std::uint32_t slot = frame->layer == 1 ? 4 : 1;
    if (frame->size != size && frame->size + slot != size) continue;
    head[2] = third(rate, frame->size == size ? 0 : 1);
    return true;
  }
  head[2] = own;
  return false;
}

std::optional<SoundFrame> ac3Frame(std::span<const std::byte> head) {
  constexpr std::array<std::uint16_t, 19> kBitRates{32,  40,  48,  56,  64,  80,  96,  112, 128, 160,
                                                    192, 224, 256, 320, 384, 448, 512, 576, 640};
  constexpr std::array<std::uint32_t, 3> kRates{48000, 44100, 32000};
  constexpr std::array<std::uint8_t, 8> kChannels{2, 1, 2, 3, 3, 4, 4, 5};
  if (head.size() < 8) return std::nullopt;
  BitReader bits(head);
  if (bits.read(16) != 0x0b77) return std::nullopt;
  bits.skip(16);  // crc1
  const std::uint32_t rateCode = bits.read(2);
  const std::uint32_t sizeCode = bits.read(6);
  const std::uint32_t version = bits.read(5);
  bits.skip(3);  // bsmod
  const std::uint32_t mode = bits.read(3);
  if (rateCode == 3 || sizeCode >= 2 * kBitRates.size() || version > 8) return std::nullopt;
  SoundFrame frame;
  frame.rate = kRates[rateCode];
  frame.samples = 1536;
  frame.channels = kChannels[mode];
  // In words of two bytes; only at 44.1 kHz they do not come out even, and the low bit adds one.
  const std::uint32_t words = kBitRates[sizeCode / 2] * 1000U / 16 * frame.samples / frame.rate;
  frame.size = 2 * (words + (rateCode == 1 ? sizeCode & 1U : 0));
  return frame;
}

std::optional<SoundFrame> soundFrame(Codec codec, std::span<const std::byte> head) {
  if (codec == Codec::ac3) return ac3Frame(head);
  if (codec != Codec::mp3 && codec != Codec::mp2) return std::nullopt;
  const auto frame = mpegAudioFrame(head);
  if (!frame || (frame->layer == 3) != (codec == Codec::mp3)) return std::nullopt;
  return frame;
}

}  // namespace zelvo::salvage
