/// JSON read from text of any origin: nothing is guessed, and neither depth nor size can overrun anything.
/// Decision: collections, JSON is read by a reader of our own
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zelvo::platform {

/// One value with all that it holds.
class JsonValue {
 public:
  enum class Kind { null, boolean, number, text, array, object };

  [[nodiscard]] Kind kind() const { return kind_; }
  [[nodiscard]] bool isNull() const { return kind_ == Kind::null; }
  [[nodiscard]] bool isObject() const { return kind_ == Kind::object; }
  /// Each is nothing when the value is of another kind, or does not fit.
  [[nodiscard]] std::optional<bool> boolean() const;
  [[nodiscard]] std::optional<double> number() const;         ///< finite
  [[nodiscard]] std::optional<std::uint64_t> count() const;   ///< a whole number, written without point or exponent
  [[nodiscard]] std::optional<std::int64_t> integer() const;  ///< the same, a minus allowed
  [[nodiscard]] std::optional<std::string> text() const;      ///< UTF-8; may hold zero bytes
  /// Null when the value is no object or has no such member. Of two members of one name the first counts.
  [[nodiscard]] const JsonValue* member(std::string_view name) const;
  [[nodiscard]] const std::vector<std::pair<std::string, JsonValue>>& members() const { return members_; }
  [[nodiscard]] const std::vector<JsonValue>& items() const { return items_; }
  /// The path that `JsonWriter::pathMembers` wrote into this object, with its very bytes; nothing when it is none.
  [[nodiscard]] std::optional<std::string> path() const;

 private:
  friend class JsonParser;
  Kind kind_ = Kind::null;
  bool boolean_ = false;
  std::string text_;  ///< a number as it is written
  std::vector<JsonValue> items_;
  std::vector<std::pair<std::string, JsonValue>> members_;
};

/// Reads exactly one value, with white space around it. Nothing when the text is no JSON, is not UTF-8, or nests deeper
/// than 16 values.
/// Thread: any.
[[nodiscard]] std::optional<JsonValue> readJson(std::string_view text);

}  // namespace zelvo::platform
