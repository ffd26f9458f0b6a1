/// A place in the tests' own code. The second compiler's standard library has no std::source_location.
#pragma once

namespace zelvo::tests {

struct CodePlace {
  const char* file = "";
  int line = 0;

  /// As a default argument: where the call stands.
  [[nodiscard]] static constexpr CodePlace current(const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
    return {file, line};
  }
};

}  // namespace zelvo::tests
