/// Settings and a clipboard that remember for a test. Thread: main.
#pragma once

#include <map>
#include <string>

#include "platform/clipboard.h"
#include "platform/settings.h"

namespace zelvo::platform::headless {

class HeadlessSettings final : public Settings {
 public:
  [[nodiscard]] std::optional<std::string> value(std::string_view key) const override {
    const auto found = values.find(key);
    return found == values.end() ? std::nullopt : std::optional(found->second);
  }
  void setValue(std::string_view key, std::string_view value) override { values[std::string(key)] = value; }
  std::map<std::string, std::string, std::less<>> values;
};

class HeadlessClipboard final : public Clipboard {
 public:
  void setText(std::string_view given) override { text = given; }
  std::string text;
};

}  // namespace zelvo::platform::headless
