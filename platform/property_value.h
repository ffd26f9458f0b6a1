/// A tree of properties: dictionaries with text keys, arrays, texts, numbers, flags, data and dates. It is what a
/// registry of devices tells about an object and what a property list holds.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/bytes.h"

namespace zelvo::platform {

struct PropertyMember;
struct PropertyValue;

using PropertyArray = std::vector<PropertyValue>;

/// Keys with their values, in the order of the keys' bytes. Each key is there once.
class PropertyDictionary {
 public:
  PropertyDictionary();
  /// Of a key given twice, the last value stays.
  PropertyDictionary(std::initializer_list<PropertyMember> members);
  PropertyDictionary(const PropertyDictionary& other);
  PropertyDictionary(PropertyDictionary&& other) noexcept;
  PropertyDictionary& operator=(const PropertyDictionary& other);
  PropertyDictionary& operator=(PropertyDictionary&& other) noexcept;
  ~PropertyDictionary();

  /// The value of `key`; null when there is none. Stays valid until the dictionary is changed.
  [[nodiscard]] const PropertyValue* find(std::string_view key) const;
  [[nodiscard]] bool contains(std::string_view key) const { return find(key) != nullptr; }
  /// The value of `key` when it is of that kind; null or nothing when there is none, or one of another kind.
  [[nodiscard]] const std::string* text(std::string_view key) const;
  [[nodiscard]] const PropertyDictionary* dictionary(std::string_view key) const;
  [[nodiscard]] const PropertyArray* array(std::string_view key) const;
  /// Either width of number, unless it is negative.
  [[nodiscard]] std::optional<std::uint64_t> number(std::string_view key) const;
  /// True when the value is the flag true.
  [[nodiscard]] bool isTrue(std::string_view key) const;

  /// Stores `value` in the place of one that may be there.
  void set(std::string_view key, PropertyValue value);
  /// Stores `value` unless the key has one.
  void setIfAbsent(std::string_view key, PropertyValue value);

  [[nodiscard]] std::size_t size() const;
  [[nodiscard]] bool empty() const { return size() == 0; }
  [[nodiscard]] std::vector<PropertyMember>::const_iterator begin() const;
  [[nodiscard]] std::vector<PropertyMember>::const_iterator end() const;

  [[nodiscard]] bool operator==(const PropertyDictionary& other) const;

 private:
  [[nodiscard]] std::size_t placeOf(std::string_view key) const;

  std::vector<PropertyMember> members_;
};

/// A moment, in whole seconds since the start of 2001 (UTC).
struct PropertyDate {
  std::int64_t seconds = 0;
  [[nodiscard]] bool operator==(const PropertyDate&) const = default;
};

/// One value of the tree. A 32-bit number and a 64-bit number are different kinds and never equal.
struct PropertyValue {
  using Kinds = std::variant<bool, std::int32_t, std::uint64_t, double, std::string, Bytes, PropertyDate, PropertyArray,
                             PropertyDictionary>;

  PropertyValue(bool flag) : value(flag) {}                                 // NOLINT: stands for a flag
  PropertyValue(std::int32_t number) : value(number) {}                     // NOLINT: stands for a number
  PropertyValue(std::uint64_t number) : value(number) {}                    // NOLINT: stands for a number
  PropertyValue(double number) : value(number) {}                           // NOLINT: stands for a number
  PropertyValue(const char* text) : value(std::string(text)) {}             // NOLINT: stands for a text
  PropertyValue(std::string text) : value(std::move(text)) {}               // NOLINT: stands for a text
  PropertyValue(Bytes data) : value(std::move(data)) {}                     // NOLINT: stands for data
  PropertyValue(PropertyDate date) : value(date) {}                         // NOLINT: stands for a date
  PropertyValue(PropertyArray array) : value(std::move(array)) {}           // NOLINT: stands for an array
  PropertyValue(PropertyDictionary members) : value(std::move(members)) {}  // NOLINT: stands for a dictionary

  [[nodiscard]] const std::string* text() const { return std::get_if<std::string>(&value); }
  [[nodiscard]] const PropertyDictionary* dictionary() const { return std::get_if<PropertyDictionary>(&value); }
  [[nodiscard]] const PropertyArray* array() const { return std::get_if<PropertyArray>(&value); }

  [[nodiscard]] bool operator==(const PropertyValue&) const = default;

  Kinds value;
};

struct PropertyMember {
  std::string key;
  PropertyValue value;
  [[nodiscard]] bool operator==(const PropertyMember&) const = default;
};

}  // namespace zelvo::platform
