#include "platform/log.h"

#include <cmath>
#include <limits>

namespace zelvo::platform::log_format {

namespace {

std::int32_t truncatedToInt32(double value) {
  if (std::isnan(value)) return 0;
  if (value >= 2147483647.0) return std::numeric_limits<std::int32_t>::max();
  if (value <= -2147483648.0) return std::numeric_limits<std::int32_t>::min();
  return static_cast<std::int32_t>(value);
}

}  // namespace

std::string_view nextPlace(std::string& out, std::string_view& format) {
  const std::size_t at = format.find('%');
  out += format.substr(0, at);
  format.remove_prefix(at);
  const std::string_view conversion = format.substr(0, format.starts_with("%llu") ? 4 : 2);
  format.remove_prefix(conversion.size());
  return conversion;
}

void appendPlace(std::string& out, std::string_view conversion, std::int64_t value) {
  out += conversion == "%i" ? std::to_string(static_cast<std::int32_t>(value))
                            : std::to_string(static_cast<std::uint64_t>(value));
}

void appendPlace(std::string& out, std::string_view conversion, std::uint64_t value) {
  out += conversion == "%i" ? std::to_string(static_cast<std::int32_t>(static_cast<std::uint32_t>(value)))
                            : std::to_string(value);
}

void appendPlace(std::string& out, std::string_view conversion, double value) {
  appendPlace(out, conversion, std::int64_t{truncatedToInt32(value)});
}

void appendPlace(std::string& out, std::string_view, const std::optional<std::string_view>& value) {
  out += value.value_or("(null)");
}

}  // namespace zelvo::platform::log_format
