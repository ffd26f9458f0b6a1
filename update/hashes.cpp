#include "update/hashes.h"

#include <memory>

#include "platform/bytes.h"
#include "update/places.h"

namespace zelvo::update {

namespace {

/// No end of size or time for a resource that keeps coming. // Decision: update, A hashed resource has no largest size
constexpr platform::FetchLimits kWholeResource{
    .total = std::nullopt, .largest = std::nullopt, .leastBytesPerSecond = 1024, .leastOver = std::chrono::seconds(30)};

std::optional<std::string> hexadecimal(const std::optional<platform::Md5>& digest) {
  if (!digest) return std::nullopt;
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string text;
  for (const std::uint8_t byte : *digest) {
    text += kDigits[byte >> 4U];
    text += kDigits[byte & 15U];
  }
  return text;
}

/// Adds a whole file; false when a part cannot be read.
bool addFile(platform::RunningDigest& digest, platform::ReadableFile& file) {
  platform::Bytes block(std::size_t{64} * 1024);
  std::uint64_t offset = 0;
  for (;;) {
    const platform::IoResult read = file.readAt(offset, block);
    if (read.error) return false;
    digest.add(std::span(block).first(read.count));
    if (read.count < block.size()) return true;
    offset += read.count;
  }
}

}  // namespace

Hashes::Hashes(platform::Digest& digest, platform::Files& files, platform::Web& web)
    : digest_(digest), files_(files), web_(web) {}

std::optional<std::string> Hashes::md5(std::optional<std::span<const std::byte>> data) {
  if (!data) return std::nullopt;
  const auto digest = digest_.startMd5();
  if (!digest) return std::nullopt;
  digest->add(*data);
  return hexadecimal(digest->finish());
}

std::optional<std::string> Hashes::hashString(const std::string& text) {
  const auto digest = digest_.startMd5();
  if (!digest) return std::nullopt;
  // Deliberate: only these four letters are looked at, so a file whose path begins with them counts as an address too.
  if (text.starts_with("http")) {
    const bool whole = web_.fetch(withSpacesEscaped(text), kWholeResource,
                                  [&digest](std::span<const std::byte> piece) { digest->add(piece); });
    return whole ? hexadecimal(digest->finish()) : std::nullopt;
  }
  const auto opened = files_.openForReading(text);
  if (!opened.file || !addFile(*digest, *opened.file)) return std::nullopt;
  return hexadecimal(digest->finish());
}

}  // namespace zelvo::update
