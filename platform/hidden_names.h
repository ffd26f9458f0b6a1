/// Names of files that are not whole yet: ".zelvo-avi-", 24 hexadecimal digits, ".part".
#pragma once

#include <algorithm>
#include <string_view>

namespace zelvo::platform {

inline constexpr std::string_view kHiddenBeginning = ".zelvo-avi-";
inline constexpr std::string_view kHiddenEnd = ".part";
inline constexpr std::size_t kHiddenDigits = 24;

[[nodiscard]] inline bool isHiddenName(std::string_view name) {
  if (name.size() != kHiddenBeginning.size() + kHiddenDigits + kHiddenEnd.size()) return false;
  if (!name.starts_with(kHiddenBeginning) || !name.ends_with(kHiddenEnd)) return false;
  const std::string_view digits = name.substr(kHiddenBeginning.size(), kHiddenDigits);
  return std::ranges::all_of(digits, [](char one) { return (one >= '0' && one <= '9') || (one >= 'a' && one <= 'f'); });
}

}  // namespace zelvo::platform
