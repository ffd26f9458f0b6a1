/// Property lists: trees of properties kept in files, as XML or in a binary form. Sizes are in bytes.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>

#include "platform/property_value.h"

namespace zelvo::platform {

/// Thread: any.
class PropertyLists {
 public:
  /// A list from outside (a published one, say) is read up to this size.
  static constexpr std::size_t kLargestFromOutside = std::size_t{64} * 1024;
  /// Levels of arrays and dictionaries within each other; a list with more is refused.
  static constexpr std::size_t kDeepest = 256;

  /// A binary list may use one object in many places. Written out, with 64 bytes for each object in each place, it may
  /// take this many times the size up to which it is read.
  static constexpr std::size_t kLargestGrowth = 32;

  virtual ~PropertyLists() = default;

  /// Reads a list in either form, told apart by its content; a byte order mark before XML is passed over.
  /// Of a key given twice the last value counts; whole numbers are 64-bit ones.
  /// Failure: nothing when `bytes` are more than `largest`, are no list, nest deeper than `kDeepest`,
  /// or grow beyond `kLargestGrowth`.
  [[nodiscard]] virtual std::optional<PropertyValue> parse(std::span<const std::byte> bytes, std::size_t largest) = 0;

  /// The tree as an XML list. What XML cannot hold (control characters, bytes that are no UTF-8) becomes U+FFFD;
  /// negative numbers become texts. What would steer a terminal (printable_text.h) stands as a character reference.
  [[nodiscard]] virtual std::string format(const PropertyValue& tree) = 0;
};

}  // namespace zelvo::platform
