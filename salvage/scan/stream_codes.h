/// The codes that a film's chunks bear: two digits that number the stream, and two letters, the suffix, that say what
/// it holds.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "avi/fourcc.h"
#include "salvage/scan/surviving_headers.h"

namespace zelvo::salvage {

struct StreamCode {
  std::uint8_t stream = 0;  ///< 0 to 99
  std::uint8_t suffix = 0;  ///< number of the suffix in these StreamCodes

  friend bool operator==(const StreamCode&, const StreamCode&) = default;
};

/// Thread: any, once made.
class StreamCodes {
 public:
  /// More suffixes than this are not kept, and none that begins with a digit.
  static constexpr std::size_t kMaxSuffixes = 16;

  /// Every stream number with every usual suffix: "db", "dc", "pc", "wb", "tx", "sb" and "__".
  StreamCodes();
  /// Where the headers are complete, the streams that they tell of, each with the suffixes of its type and with the one
  /// that its super index names. Where headers are lost, every stream with every suffix.
  explicit StreamCodes(const SurvivingHeaders& headers);

  /// Whether chunks with this suffix are changes of a palette, "pc": no pictures, and they take no time.
  [[nodiscard]] static bool isPalette(std::uint8_t suffix) { return suffix == kPalette; }

  /// What the code says when a stream here may have such chunks.
  [[nodiscard]] std::optional<StreamCode> find(avi::FourCC code) const;
  /// The same of any stream number with any suffix known here.
  [[nodiscard]] std::optional<StreamCode> findAnyStream(avi::FourCC code) const {
    const std::uint8_t suffix = numbers_[code.value >> 16U];
    const std::uint32_t tens = (code.value & 0xffU) - '0';
    const std::uint32_t ones = (code.value >> 8U & 0xffU) - '0';
    if (suffix == kMaxSuffixes || tens > 9 || ones > 9) return std::nullopt;
    return StreamCode{static_cast<std::uint8_t>(tens * 10 + ones), suffix};
  }
  /// Whether a stream here may have chunks of such a code.
  [[nodiscard]] bool has(StreamCode code) const {
    return (std::uint32_t{allowed_[code.stream]} >> code.suffix & 1U) != 0;
  }
  /// The code of such chunks.
  [[nodiscard]] avi::FourCC codeOf(StreamCode code) const;

 private:
  static constexpr std::uint8_t kPalette = 2;

  /// The number of the suffix, noted if it is new; nothing once there are `kMaxSuffixes`.
  std::optional<std::uint8_t> noteSuffix(avi::FourCC code);

  std::vector<std::uint16_t> suffixes_;               ///< third and fourth byte of the code, the third one low
  std::vector<std::uint8_t> numbers_;                 ///< by suffix: its number, `kMaxSuffixes` without one
  std::array<std::uint16_t, kMaxStreams> allowed_{};  ///< by stream: a bit for each suffix
};

}  // namespace zelvo::salvage
