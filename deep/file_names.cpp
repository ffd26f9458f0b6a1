#include "deep/file_names.h"

#include <algorithm>
#include <utility>

#include "avi/name_endings.h"

namespace zelvo::deep {

namespace {

constexpr std::string_view kHexDigits = "0123456789ABCDEF";
constexpr std::string_view kSalvaged = "-salvaged.avi";
/// Names in a folder are at most this long on every usual file system, in bytes; room is left for a number.
constexpr std::size_t kLongestName = 240;

struct SplitName {
  std::string_view name;
  std::string_view ending;  ///< with its dot; empty without one
};

SplitName split(std::string_view name) {
  const std::size_t dot = name.rfind('.');
  if (dot == 0 || dot == std::string_view::npos) return {name, {}};
  return {name.substr(0, dot), name.substr(dot)};
}

bool isFilmEnding(std::string_view ending) {
  return std::ranges::any_of(avi::kNameEndings, [ending](std::string_view one) {
    return std::ranges::equal(ending, one, [](char letter, char small) {
      return (letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter) == small;
    });
  });
}

/// Cut between two letters of UTF-8.
std::string_view cutTo(std::string_view text, std::size_t most) {
  if (text.size() <= most) return text;
  constexpr unsigned kContinuationMask = 0xC0;
  constexpr unsigned kContinuation = 0x80;
  while (most > 0 && (static_cast<unsigned char>(text[most]) & kContinuationMask) == kContinuation) --most;
  return text.substr(0, most);
}

bool isPlain(char letter) {
  return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') || (letter >= '0' && letter <= '9') ||
         std::string_view("/-._~").find(letter) != std::string_view::npos;
}

}  // namespace

std::string salvagedName(std::string_view filmName) {
  const SplitName parts = split(filmName);
  const std::string_view name = !parts.ending.empty() && isFilmEnding(parts.ending.substr(1)) ? parts.name : filmName;
  return std::string(cutTo(name, kLongestName - kSalvaged.size())).append(kSalvaged);
}

std::string reportName(std::string_view filmName) { return std::string(split(filmName).name) + ".html"; }

std::string numberedName(std::string_view name, int number) {
  const SplitName parts = split(name);
  return std::string(parts.name) + "-" + std::to_string(number) + std::string(parts.ending);
}

std::string fileUrl(std::string_view path) {
  std::string url = "file://";
  for (const char letter : path) {
    if (isPlain(letter)) {
      url += letter;
    } else {
      const auto byte = static_cast<unsigned char>(letter);
      url.append({'%', kHexDigits[byte >> 4U], kHexDigits[byte & 0xFU]});
    }
  }
  return url;
}

}  // namespace zelvo::deep
