#include "tests/support/literal_bytes.h"

#include <algorithm>

namespace zelvo::tests::literal {

using platform::Bytes;

namespace {

/// A length field can ask for gigabytes that the file does not hold; below this many bytes that does no harm.
constexpr std::uint64_t kLargestUnasked = 1048576;

}  // namespace

std::size_t Input::getBytes(std::span<std::byte> into) {
  if (file_ == nullptr) return 0;
  const platform::IoResult result = file_->readAt(position_, into);
  if (result.error) {
    if (failures_ == 0) firstFailure_ = position_ + result.count;
    ++failures_;
  }
  position_ += result.count;
  return result.count;
}

Bytes Input::readDataOfLength(std::uint64_t length) {
  std::uint64_t most = length;
  if (length > kLargestUnasked) {
    const std::uint64_t fileSize = file_ == nullptr ? 0 : file_->size();
    most = std::min(length, position_ < fileSize ? fileSize - position_ : 0);
  }
  Bytes bytes(static_cast<std::size_t>(most));
  bytes.resize(getBytes(bytes));
  return bytes;
}

void Output::writeData(std::span<const std::byte> bytes) { position_ += file_.writeAt(position_, bytes).count; }

void Output::writeText(std::string_view text) {
  Bytes bytes;
  for (const char character : text) bytes.push_back(static_cast<std::byte>(character));
  writeData(bytes);
}

void Output::writeInt(std::uint64_t value) {
  std::array<std::byte, 4> bytes{};
  for (std::byte& byte : bytes) {
    byte = static_cast<std::byte>(value % 256);
    value /= 256;
  }
  writeData(bytes);
}

void Output::writeIntTo8byte(std::uint64_t value) {
  std::array<std::byte, 8> bytes{};
  for (std::size_t k = 0; k < 4; ++k) {
    bytes[k] = static_cast<std::byte>(value % 256);
    value /= 256;
  }
  writeData(bytes);
}

void Output::writeZeros(std::size_t count) { writeData(Bytes(count)); }

std::uint64_t numberIn(std::span<const std::byte> bytes) {
  std::uint64_t number = 0;
  std::uint64_t weight = 1;
  for (std::size_t k = 0; k < 4 && k < bytes.size(); ++k) {
    number += std::to_integer<std::uint64_t>(bytes[k]) * weight;
    weight *= 256;
  }
  return number;
}

}  // namespace zelvo::tests::literal
