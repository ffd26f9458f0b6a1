#include "app/shown_size.h"

namespace zelvo::app {

std::string shownSize(std::uint64_t bytes, const platform::Translator& translator) {
  constexpr std::uint64_t kHalfOfATenth = 50000;
  if (bytes == 1) return translator.translated("1 byte");
  if (bytes < kHalfOfATenth) return platform::filled(translator.translated("%1 bytes"), {std::to_string(bytes)});
  constexpr std::uint64_t kMaxMegabytes = 10'000'000'000;
  const bool isLarge = bytes >= kMaxMegabytes;
  return platform::filled(isLarge ? translator.translated("%1 GB") : translator.translated("%1 MB"),
                          {translator.fixedPoint(static_cast<double>(bytes) / (isLarge ? 1e9 : 1e6), 1)});
}

}  // namespace zelvo::app
