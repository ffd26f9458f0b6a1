/// A file in memory that is read as any other.
#pragma once

#include <algorithm>
#include <span>

#include "platform/files.h"

namespace zelvo::salvage {

/// Borrows the bytes. Thread: any, several at once.
class HeldFile final : public platform::ReadableFile {
 public:
  explicit HeldFile(std::span<const std::byte> bytes) : bytes_(bytes) {}

  [[nodiscard]] platform::IoResult readAt(std::uint64_t offset, std::span<std::byte> into) override {
    if (offset >= bytes_.size()) return {};
    const auto rest = bytes_.subspan(static_cast<std::size_t>(offset));
    const std::size_t count = std::min(rest.size(), into.size());
    std::copy_n(rest.begin(), count, into.begin());
    return {count, {}};
  }
  [[nodiscard]] std::uint64_t size() override { return bytes_.size(); }

 private:
  const std::span<const std::byte> bytes_;
};

}  // namespace zelvo::salvage
