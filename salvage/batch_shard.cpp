#include "salvage/batch_shard.h"

#include <charconv>
#include <span>

namespace zelvo::salvage {

namespace {

std::optional<std::uint64_t> shardNumber(std::string_view text) {
  std::uint64_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size() || number == 0 || number > kMaxShards) {
    return std::nullopt;
  }
  return number;
}

}  // namespace

std::optional<BatchShard> shardFrom(std::string_view text) {
  const std::size_t slash = text.find('/');
  if (slash == std::string_view::npos) return std::nullopt;
  const auto number = shardNumber(text.substr(0, slash));
  const auto count = shardNumber(text.substr(slash + 1));
  if (!number || !count || *number > *count) return std::nullopt;
  return BatchShard{*number, *count};
}

std::optional<std::uint64_t> shardOf(std::string_view below, std::uint64_t count, platform::Checksums& checksums) {
  const auto running = checksums.startSha256();
  if (!running) return std::nullopt;
  running->add(std::as_bytes(std::span(below)));
  const auto checksum = running->finish();
  if (!checksum) return std::nullopt;
  std::uint64_t number = 0;
  for (std::size_t i = 0; i < 8; ++i) number = number << 8U | (*checksum)[i];
  return number % count + 1;
}

}  // namespace zelvo::salvage
