/// JSON, written as it is told. The caller keeps to the grammar (a key before each member, as many ends as begins); the
/// writer sets commas and escapes, and makes valid UTF-8 of any bytes. What would steer a terminal is escaped too,
/// which changes no value.
#pragma once

#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>

namespace zelvo::platform {

class JsonWriter {
 public:
  void beginObject() { open('{'); }
  void endObject() { close('}'); }
  void beginArray() { open('['); }
  void endArray() { close(']'); }
  void key(std::string_view name);

  /// Bytes that are no UTF-8 become U+FFFD.
  void text(std::string_view value);
  void number(std::uint64_t value) { raw(std::to_string(value)); }
  void integer(std::int64_t value) { raw(std::to_string(value)); }
  /// With three places after the point; what is no finite number becomes 0.
  void seconds(double value);
  /// A number as it is written already.
  void literal(std::string_view value) { raw(value); }
  void boolean(bool value) { raw(value ? "true" : "false"); }
  void null() { raw("null"); }

  void member(std::string_view name, std::string_view value) { key(name), text(value); }
  void member(std::string_view name, const char* value) { key(name), text(value); }
  void member(std::string_view name, std::unsigned_integral auto value) {
    key(name);
    if constexpr (std::same_as<decltype(value), bool>) {
      boolean(value);
    } else {
      number(value);
    }
  }

  /// A path as the members "path" and, when it is not UTF-8, "path_hex" with its very bytes.
  void pathMembers(std::string_view path);

  [[nodiscard]] const std::string& written() const { return out_; }
  /// What was written so far; the writer goes on with an empty text.
  [[nodiscard]] std::string take();

 private:
  void open(char bracket);
  void close(char bracket);
  void raw(std::string_view value);
  void separate();

  std::string out_;
  bool needsComma_ = false;
};

}  // namespace zelvo::platform
