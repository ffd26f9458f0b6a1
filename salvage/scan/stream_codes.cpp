#include "salvage/scan/stream_codes.h"

#include <algorithm>
#include <span>

namespace zelvo::salvage {

namespace {

using avi::FourCC;

/// Of every stream number; the digits do not count here.
constexpr std::array kUsual{FourCC{"00db"}, FourCC{"00dc"}, FourCC{"00pc"}, FourCC{"00wb"},
                            FourCC{"00tx"}, FourCC{"00sb"}, FourCC{"00__"}};  // StreamCodes::kPalette is one of them.

std::uint16_t suffixOf(FourCC code) { return static_cast<std::uint16_t>(code.value >> 16U); }

std::optional<std::uint8_t> streamOf(FourCC code) {
  const std::uint32_t tens = (code.value & 0xffU) - '0';
  const std::uint32_t ones = (code.value >> 8U & 0xffU) - '0';
  if (tens > 9 || ones > 9) return std::nullopt;
  return static_cast<std::uint8_t>(tens * 10 + ones);
}

bool mayCarry(FourCC type, FourCC usual) {
  if (type == avi::kVids) return usual == FourCC{"00db"} || usual == FourCC{"00dc"} || usual == FourCC{"00pc"};
  if (type == avi::kAuds) return usual == FourCC{"00wb"};
  if (type == FourCC{"txts"}) return usual == FourCC{"00tx"} || usual == FourCC{"00sb"};
  return true;  // Writers do not agree on the codes of the others.
}

}  // namespace

StreamCodes::StreamCodes() {
  static_assert(kUsual[kPalette] == FourCC{"00pc"});
  numbers_.assign(std::size_t{1} << 16U, kMaxSuffixes);
  for (const FourCC usual : kUsual) {
    numbers_[suffixOf(usual)] = static_cast<std::uint8_t>(suffixes_.size());
    suffixes_.push_back(suffixOf(usual));
  }
  allowed_.fill(0xffff);
}

StreamCodes::StreamCodes(const SurvivingHeaders& headers) : StreamCodes() {
  if (headers.areComplete()) {
    allowed_.fill(0);
    for (std::size_t stream = 0; stream < headers.streams.size(); ++stream) {
      for (std::size_t i = 0; i < kUsual.size(); ++i) {
        if (mayCarry(headers.streams[stream].type, kUsual[i]))
          allowed_[stream] = static_cast<std::uint16_t>(allowed_[stream] | 1U << i);
      }
    }
  }
  for (const SurvivingStream& stream : headers.streams) {
    if (!stream.superIndex) continue;
    const FourCC code = stream.superIndex->chunkId;
    const auto number = streamOf(code);
    const auto suffix = number ? noteSuffix(code) : std::nullopt;
    if (suffix) allowed_[*number] = static_cast<std::uint16_t>(allowed_[*number] | 1U << *suffix);
  }
}

std::optional<std::uint8_t> StreamCodes::noteSuffix(FourCC code) {
  const std::uint8_t known = numbers_[suffixOf(code)];
  if (known < kMaxSuffixes) return known;
  const auto isPlain = [](std::uint32_t byte) { return byte > 0x20 && byte < 0x7f; };
  const std::uint32_t first = code.value >> 16U & 0xffU;
  const bool isDigit = first >= '0' && first <= '9';
  if (suffixes_.size() == kMaxSuffixes || isDigit || !isPlain(first) || !isPlain(code.value >> 24U))
    return std::nullopt;
  const auto number = static_cast<std::uint8_t>(suffixes_.size());
  numbers_[suffixOf(code)] = number;
  suffixes_.push_back(suffixOf(code));
  return number;
}

std::optional<StreamCode> StreamCodes::find(FourCC code) const {
  const auto found = findAnyStream(code);
  return found && has(*found) ? found : std::nullopt;
}

FourCC StreamCodes::codeOf(StreamCode code) const {
  FourCC answer;
  answer.value = static_cast<std::uint32_t>('0' + code.stream / 10) |
                 static_cast<std::uint32_t>('0' + code.stream % 10) << 8U |
                 std::uint32_t{suffixes_[code.suffix]} << 16U;
  return answer;
}

}  // namespace zelvo::salvage
