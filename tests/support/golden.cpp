#include "tests/support/golden.h"

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace zelvo::tests {

namespace {

/// The first line in which two texts differ, with its number.
std::string firstDifference(const std::string& expected, const std::string& actual) {
  std::size_t lineStart = 0;
  std::size_t line = 1;
  for (std::size_t at = 0; at < expected.size() && at < actual.size() && expected[at] == actual[at]; ++at) {
    if (expected[at] != '\n') continue;
    ++line;
    lineStart = at + 1;
  }
  const auto lineOf = [&](const std::string& text) {
    return lineStart >= text.size() ? "(end)" : text.substr(lineStart, text.find('\n', lineStart) - lineStart);
  };
  return "line " + std::to_string(line) + "\n  expected: " + lineOf(expected) + "\n  actual:   " + lineOf(actual);
}

}  // namespace

testing::AssertionResult matchesGolden(const std::string& name, const std::string& text) {
  const std::string path = std::string(ZELVO_GOLDEN_FOLDER) + "/" + name + ".txt";
  const char* writing = std::getenv("ZELVO_WRITE_GOLDENS");
  if (writing != nullptr && std::string(writing) == "1") {
    std::ofstream(path, std::ios::binary) << text;
    return testing::AssertionFailure() << "written again: " << path << "; look at it and run the test again";
  }
  std::ifstream file(path, std::ios::binary);
  if (!file) return testing::AssertionFailure() << "cannot read " << path;
  std::ostringstream content;
  content << file.rdbuf();
  const std::string expected = content.str();
  if (expected == text) return testing::AssertionSuccess();
  return testing::AssertionFailure() << path << " differs in " << firstDifference(expected, text)
                                     << "\n--- whole text ---\n"
                                     << text;
}

}  // namespace zelvo::tests
