#include "app/shown_size.h"

#include <array>
#include <cstdio>

namespace zelvo::app {

std::string shownSize(std::uint64_t bytes) {
  constexpr std::uint64_t kHalfOfATenth = 50000;
  if (bytes < kHalfOfATenth) return std::to_string(bytes) + (bytes == 1 ? " byte" : " bytes");
  std::array<char, 40> text{};
  constexpr std::uint64_t kMaxMegabytes = 10'000'000'000;
  const bool isLarge = bytes >= kMaxMegabytes;
  const int length = std::snprintf(text.data(), text.size(), isLarge ? "%.1f GB" : "%.1f MB",
                                   static_cast<double>(bytes) / (isLarge ? 1e9 : 1e6));
  return {text.data(), static_cast<std::size_t>(length)};
}

}  // namespace zelvo::app
