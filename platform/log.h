/// The system log: one call, no levels, short fixed lines with printf-style places: %i (any integer or a double, shown
/// truncated, as a 32-bit signed integer), %llu (an unsigned integer), %@ (a text; nothing shows as "(null)").
/// A wrong number or kind of arguments does not compile.
#pragma once

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

namespace zelvo::platform {

/// Where log lines go. Thread: any.
class Log {
 public:
  virtual ~Log() = default;
  /// Writes one line; `text` carries no line end of its own.
  virtual void line(std::string_view text) = 0;
  /// True when the lines that come once per byte position are wanted too. They are off by default: one run of the
  /// validity check alone would write 10,240 of them, more than a system log takes before it drops what follows.
  /// Decision: scan, Position lines are a trace
  [[nodiscard]] virtual bool tracesPositions() const { return false; }
};

namespace log_format {

void appendPlace(std::string& out, std::string_view conversion, std::int64_t value);
void appendPlace(std::string& out, std::string_view conversion, std::uint64_t value);
void appendPlace(std::string& out, std::string_view conversion, double value);
void appendPlace(std::string& out, std::string_view conversion, const std::optional<std::string_view>& value);
/// Appends the text up to the next place and answers that place's conversion ("%i"); the rest is taken off `format`.
std::string_view nextPlace(std::string& out, std::string_view& format);

template <class Value>
constexpr bool isText =
    std::is_convertible_v<const Value&, std::string_view> || std::is_same_v<Value, std::optional<std::string>>;

template <class Value>
void append(std::string& out, std::string_view& format, const Value& value) {
  const std::string_view conversion = nextPlace(out, format);
  if constexpr (std::is_same_v<Value, std::optional<std::string>>) {
    appendPlace(out, conversion, value ? std::optional<std::string_view>(*value) : std::nullopt);
  } else if constexpr (isText<Value>) {
    appendPlace(out, conversion, std::optional<std::string_view>(value));
  } else if constexpr (std::floating_point<Value>) {
    appendPlace(out, conversion, static_cast<double>(value));
  } else if constexpr (std::signed_integral<Value>) {
    appendPlace(out, conversion, static_cast<std::int64_t>(value));
  } else {
    appendPlace(out, conversion, static_cast<std::uint64_t>(value));
  }
}

void placeAndArgumentDoNotMatch();  // never defined: calling it while compiling is the error message

/// A format checked while compiling against the kinds of its arguments.
template <class... Values>
struct Format {
  consteval Format(const char* text_) : text(text_) {  // NOLINT: stands for a literal
    constexpr std::array<bool, sizeof...(Values) + 1> takesText = {isText<std::remove_cvref_t<Values>>..., false};
    std::size_t places = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
      if (text[at] != '%') continue;
      const std::string_view rest = text.substr(at + 1);
      const bool textPlace = rest.starts_with("@");
      if (!textPlace && !rest.starts_with("i") && !rest.starts_with("llu")) placeAndArgumentDoNotMatch();
      if (places >= sizeof...(Values) || takesText[places] != textPlace) placeAndArgumentDoNotMatch();
      ++places;
    }
    if (places != sizeof...(Values)) placeAndArgumentDoNotMatch();
  }
  std::string_view text;
};

}  // namespace log_format

/// Writes one line, its places filled in order.
template <class... Values>
void logLine(Log& log, log_format::Format<std::type_identity_t<Values>...> format, const Values&... values) {
  std::string text;
  std::string_view rest = format.text;
  (log_format::append(text, rest, values), ...);
  text += rest;
  log.line(text);
}

}  // namespace zelvo::platform
