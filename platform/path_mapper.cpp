#include "platform/path_mapper.h"

namespace zelvo::platform {

namespace {

/// Everything that may stand for itself in the path of an address does; the other bytes as %XX.
std::string percentEncoded(std::string_view path) {
  constexpr std::string_view kHexDigits = "0123456789ABCDEF";
  constexpr std::string_view kPlain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~/";
  std::string encoded;
  for (const char character : path) {
    if (kPlain.find(character) != std::string_view::npos) {
      encoded += character;
      continue;
    }
    const auto value = static_cast<unsigned char>(character);
    encoded += '%';
    encoded += kHexDigits[value >> 4U];
    encoded += kHexDigits[value & 15U];
  }
  return encoded;
}

}  // namespace

PathMapper::PathMapper(std::string_view prefix) : above_(prefix) {
  while (above_.ends_with('/')) above_.pop_back();
  above_ += "/zelvo/avi-repair";
}

std::string PathMapper::mapped(FixedPath path) const { return above_ + std::string(path.text()); }

std::string PathMapper::mapped(FixedUrl url) const {
  std::string mapped(fixed_path::kFileScheme);
  mapped += percentEncoded(above_);
  mapped += url.text().substr(fixed_path::kFileScheme.size());
  return mapped;
}

}  // namespace zelvo::platform
