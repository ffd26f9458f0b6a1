#include "platform/json_reader.h"

#include <charconv>
#include <cmath>

#include "platform/utf8.h"

namespace zelvo::platform {

namespace {

constexpr int kMaxDepth = 16;

template <class Number>
std::optional<Number> wholeNumber(const std::string& text) {
  Number number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

void appendUtf8(std::string& out, char32_t character) {
  const auto tail = [&](int shift) { out += static_cast<char>(0x80U | (character >> shift & 0x3fU)); };
  if (character < 0x80) {
    out += static_cast<char>(character);
  } else if (character < 0x800) {
    out += static_cast<char>(0xc0U | character >> 6);
    tail(0);
  } else if (character < 0x10000) {
    out += static_cast<char>(0xe0U | character >> 12);
    tail(6);
    tail(0);
  } else {
    out += static_cast<char>(0xf0U | character >> 18);
    tail(12);
    tail(6);
    tail(0);
  }
}

std::optional<unsigned> hexDigit(char character) {
  if (character >= '0' && character <= '9') return static_cast<unsigned>(character - '0');
  if (character >= 'a' && character <= 'f') return static_cast<unsigned>(character - 'a') + 10;
  if (character >= 'A' && character <= 'F') return static_cast<unsigned>(character - 'A') + 10;
  return std::nullopt;
}

bool isDigit(char character) { return character >= '0' && character <= '9'; }

}  // namespace

class JsonParser {
 public:
  explicit JsonParser(std::string_view text) : left_(text) {}

  std::optional<JsonValue> whole() {
    JsonValue value;
    if (!read(value, 0)) return std::nullopt;
    skipSpace();
    if (!left_.empty()) return std::nullopt;
    return value;
  }

 private:
  void skipSpace() {
    const std::size_t end = left_.find_first_not_of(" \t\r\n");
    left_.remove_prefix(end == std::string_view::npos ? left_.size() : end);
  }
  bool take(std::string_view word) {
    if (!left_.starts_with(word)) return false;
    left_.remove_prefix(word.size());
    return true;
  }

  bool read(JsonValue& value, int depth) {
    if (depth > kMaxDepth) return false;
    skipSpace();
    if (left_.empty()) return false;
    switch (left_.front()) {
      case '{':
        return readObject(value, depth);
      case '[':
        return readArray(value, depth);
      case '"':
        value.kind_ = JsonValue::Kind::text;
        return readText(value.text_);
      case 't':
      case 'f':
        value.kind_ = JsonValue::Kind::boolean;
        value.boolean_ = left_.front() == 't';
        return take(value.boolean_ ? "true" : "false");
      case 'n':
        return take("null");
      default:
        value.kind_ = JsonValue::Kind::number;
        return readNumber(value.text_);
    }
  }

  bool readObject(JsonValue& value, int depth) {
    value.kind_ = JsonValue::Kind::object;
    take("{");
    skipSpace();
    if (take("}")) return true;
    for (;;) {
      skipSpace();
      auto& member = value.members_.emplace_back();
      if (!readText(member.first)) return false;
      skipSpace();
      if (!take(":") || !read(member.second, depth + 1)) return false;
      skipSpace();
      if (take("}")) return true;
      if (!take(",")) return false;
    }
  }

  bool readArray(JsonValue& value, int depth) {
    value.kind_ = JsonValue::Kind::array;
    take("[");
    skipSpace();
    if (take("]")) return true;
    for (;;) {
      if (!read(value.items_.emplace_back(), depth + 1)) return false;
      skipSpace();
      if (take("]")) return true;
      if (!take(",")) return false;
    }
  }

  bool readNumber(std::string& text) {
    std::size_t at = left_.starts_with('-') ? 1 : 0;
    const auto digits = [&] {
      const std::size_t begin = at;
      while (at < left_.size() && isDigit(left_[at])) ++at;
      return at > begin;
    };
    const bool beginsWithZero = at < left_.size() && left_[at] == '0';
    const std::size_t begin = at;
    if (!digits() || (beginsWithZero && at > begin + 1)) return false;
    if (at < left_.size() && left_[at] == '.') {
      ++at;
      if (!digits()) return false;
    }
    if (at < left_.size() && (left_[at] == 'e' || left_[at] == 'E')) {
      ++at;
      if (at < left_.size() && (left_[at] == '+' || left_[at] == '-')) ++at;
      if (!digits()) return false;
    }
    text = left_.substr(0, at);
    left_.remove_prefix(at);
    return true;
  }

  std::optional<char32_t> fourDigits() {
    if (left_.size() < 4) return std::nullopt;
    char32_t unit = 0;
    for (int i = 0; i < 4; ++i) {
      const auto digit = hexDigit(left_[static_cast<std::size_t>(i)]);
      if (!digit) return std::nullopt;
      unit = unit << 4U | *digit;
    }
    left_.remove_prefix(4);
    return unit;
  }

  /// After a backslash and a "u".
  bool readUnits(std::string& text) {
    auto unit = fourDigits();
    if (!unit || (*unit >= 0xdc00 && *unit < 0xe000)) return false;
    if (*unit >= 0xd800 && *unit < 0xdc00) {
      if (!take("\\u")) return false;
      const auto low = fourDigits();
      if (!low || *low < 0xdc00 || *low > 0xdfff) return false;
      unit = 0x10000 + ((*unit - 0xd800) << 10U) + (*low - 0xdc00);
    }
    appendUtf8(text, *unit);
    return true;
  }

  bool readEscape(std::string& text) {
    if (left_.empty()) return false;
    const char letter = left_.front();
    left_.remove_prefix(1);
    if (letter == 'u') return readUnits(text);
    constexpr std::string_view kLetters = "\"\\/bfnrt";
    constexpr std::string_view kMeanings = "\"\\/\b\f\n\r\t";
    const std::size_t place = kLetters.find(letter);
    if (place == std::string_view::npos) return false;
    text += kMeanings[place];
    return true;
  }

  bool readText(std::string& text) {
    if (!take("\"")) return false;
    while (!left_.empty()) {
      if (take("\"")) return true;
      if (take("\\")) {
        if (!readEscape(text)) return false;
        continue;
      }
      const Utf8Character character = utf8CharacterAt(left_);
      if (character.length == 0 || character.value < 0x20) return false;
      text += left_.substr(0, character.length);
      left_.remove_prefix(character.length);
    }
    return false;
  }

  std::string_view left_;
};

std::optional<bool> JsonValue::boolean() const {
  return kind_ == Kind::boolean ? std::optional(boolean_) : std::nullopt;
}

std::optional<double> JsonValue::number() const {
  if (kind_ != Kind::number) return std::nullopt;
  const auto number = wholeNumber<double>(text_);
  return number && std::isfinite(*number) ? number : std::nullopt;
}

std::optional<std::uint64_t> JsonValue::count() const {
  return kind_ == Kind::number ? wholeNumber<std::uint64_t>(text_) : std::nullopt;
}

std::optional<std::int64_t> JsonValue::integer() const {
  return kind_ == Kind::number ? wholeNumber<std::int64_t>(text_) : std::nullopt;
}

std::optional<std::string> JsonValue::text() const { return kind_ == Kind::text ? std::optional(text_) : std::nullopt; }

const JsonValue* JsonValue::member(std::string_view name) const {
  for (const auto& [key, value] : members_) {
    if (key == name) return &value;
  }
  return nullptr;
}

std::optional<std::string> JsonValue::path() const {
  const JsonValue* plain = member("path");
  const JsonValue* hex = member("path_hex");
  if (hex == nullptr) return plain == nullptr ? std::nullopt : plain->text();
  const auto digits = hex->text();
  if (!digits || digits->size() % 2 != 0) return std::nullopt;
  std::string bytes;
  for (std::size_t at = 0; at < digits->size(); at += 2) {
    const auto high = hexDigit((*digits)[at]);
    const auto low = hexDigit((*digits)[at + 1]);
    if (!high || !low) return std::nullopt;
    bytes += static_cast<char>(*high << 4U | *low);
  }
  return bytes;
}

std::optional<JsonValue> readJson(std::string_view text) { return JsonParser(text).whole(); }

}  // namespace zelvo::platform
