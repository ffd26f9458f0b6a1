#include "salvage/scan/recent_reads.h"

#include <algorithm>

namespace zelvo::salvage {

/// With the lock held. Null when the block cannot be read whole and is not the file's last one.
const RecentReads::Block* RecentReads::block(std::uint64_t number) {
  Block& held = blocks_[number % blocks_.size()];
  if (held.number == number) return &held;
  held.number = kNone;
  held.bytes.resize(kBlock);
  const platform::IoResult result = file_.readAt(number * kBlock, held.bytes);
  if (result.error) return nullptr;
  held.bytes.resize(result.count);
  held.number = number;
  return &held;
}

platform::IoResult RecentReads::readAt(std::uint64_t offset, std::span<std::byte> into) {
  if (into.size() > kBlock || offset > kNone - into.size()) return file_.readAt(offset, into);
  const std::lock_guard lock(mutex_);
  std::size_t done = 0;
  while (done < into.size()) {
    const std::uint64_t at = offset + done;
    const Block* const held = block(at / kBlock);
    if (held == nullptr) return file_.readAt(offset, into);
    const auto from = static_cast<std::size_t>(at % kBlock);
    if (from >= held->bytes.size()) break;
    const std::size_t part = std::min(into.size() - done, held->bytes.size() - from);
    std::copy_n(held->bytes.begin() + static_cast<std::ptrdiff_t>(from), part,
                into.begin() + static_cast<std::ptrdiff_t>(done));
    done += part;
  }
  return {done, {}};
}

}  // namespace zelvo::salvage
