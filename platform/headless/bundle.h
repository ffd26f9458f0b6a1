/// A bundle whose property list is the test's.
#pragma once

#include <map>
#include <string>

#include "platform/bundle.h"

namespace zelvo::platform::headless {

class HeadlessBundle final : public Bundle {
 public:
  [[nodiscard]] std::string bundlePath() const override { return path; }
  [[nodiscard]] std::optional<std::string> infoText(std::string_view key) const override {
    const auto found = info.find(key);
    if (found == info.end()) return std::nullopt;
    return found->second;
  }

  std::string path = "/Applications/Zelvo AVI Repair/Zelvo AVI Repair.app";
  std::map<std::string, std::string, std::less<>> info;
};

}  // namespace zelvo::platform::headless
