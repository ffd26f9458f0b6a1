#include "salvage/scan/retried_reads.h"

#include <algorithm>
#include <iterator>

namespace zelvo::salvage {

namespace {

constexpr std::uint64_t kPiece = 32'768;
constexpr std::uint64_t kSystemPage = 4096;

/// How much there is from `offset` to the next multiple of `unit`, at most `most`.
std::size_t toNext(std::uint64_t offset, std::uint64_t unit, std::size_t most) {
  return static_cast<std::size_t>(std::min<std::uint64_t>(most, unit - offset % unit));
}

}  // namespace

void RetriedReads::remember(std::uint64_t begin, std::uint64_t end, std::error_code cause) {
  const std::lock_guard lock(mutex_);
  auto next = failed_.upper_bound(begin);
  if (next != failed_.begin() && std::prev(next)->second.end >= begin) {
    Failed& before = std::prev(next)->second;
    before.end = std::max(before.end, end);
  } else if (failed_.size() < kMaxFailed) {
    failed_[begin] = {end, cause};
  }
}

platform::IoResult RetriedReads::retry(std::uint64_t offset, std::span<std::byte> into) {
  platform::IoResult result;
  while (result.count < into.size()) {
    const std::uint64_t at = offset + result.count;
    const std::span<std::byte> rest = into.subspan(result.count);
    const std::size_t large = toNext(at, kPiece, rest.size());
    platform::IoResult one = file_.readAt(at, rest.first(large));
    result.count += one.count;
    if (!one.error && one.count == large) continue;
    if (one.error) {
      const std::uint64_t bad = at + one.count;
      const std::size_t page = toNext(bad, kSystemPage, into.size() - result.count);
      one = file_.readAt(bad, into.subspan(result.count, page));
      result.count += one.count;
      if (!one.error && one.count == page) continue;
      if (one.error) remember(bad + one.count, (bad / kSystemPage + 1) * kSystemPage, one.error);
    }
    result.error = one.error;
    return result;
  }
  return result;
}

platform::IoResult RetriedReads::readAt(std::uint64_t offset, std::span<std::byte> into) {
  std::error_code cause;
  std::span<std::byte> readable = into;
  {
    const std::lock_guard lock(mutex_);
    const auto next = failed_.upper_bound(offset);
    if (next != failed_.begin() && std::prev(next)->second.end > offset) return {0, std::prev(next)->second.cause};
    if (next != failed_.end() && next->first - offset < into.size()) {
      readable = into.first(static_cast<std::size_t>(next->first - offset));
      cause = next->second.cause;
    }
  }
  platform::IoResult result = file_.readAt(offset, readable);
  // What was stopped has not failed.
  if (result.error && result.error != std::errc::operation_canceled) {
    const platform::IoResult again = retry(offset + result.count, readable.subspan(result.count));
    result = {result.count + again.count, again.error};
  }
  if (result.count == readable.size() && readable.size() < into.size()) result.error = cause;
  return result;
}

}  // namespace zelvo::salvage
