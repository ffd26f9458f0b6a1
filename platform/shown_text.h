/// Sizes, numbers and times as a person reads them; in English where no translator is given.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/translator.h"

namespace zelvo::platform {

/// "812 bytes", "4.6 kB", "48.4 MB", "1.25 GB", "2.00 TB"; a kB is 1000 bytes.
[[nodiscard]] std::string shownSize(std::uint64_t bytes, const Translator& translator = englishTranslator());

/// 1234567 as "1,234,567".
[[nodiscard]] std::string shownNumber(std::uint64_t number);

/// "1 chunk", "1,234 chunks".
[[nodiscard]] std::string counted(std::uint64_t number, std::string_view noun);

/// "0.42 s", "3 min 5 s".
[[nodiscard]] std::string shownSeconds(double seconds, const Translator& translator = englishTranslator());

/// A place in a film: "1:02:03.45", "2:03.45".
[[nodiscard]] std::string shownTime(double seconds, const Translator& translator = englishTranslator());

/// "0x0055": `digits` hexadecimal digits.
[[nodiscard]] std::string shownHex(std::uint64_t number, int digits);

/// A number with `digits` places after the point, and with a point, whatever the language of the environment.
[[nodiscard]] std::string fixedPoint(double number, int digits);

/// The text itself when it has at most `limit` bytes; otherwise its beginning and "...".
[[nodiscard]] std::string shortened(std::string text, std::size_t limit);

}  // namespace zelvo::platform
