/// Long expected texts, kept as files in tests/golden so that a change of behaviour shows as a readable difference.
#pragma once

#include <string>

#include <gtest/gtest.h>

namespace zelvo::tests {

/// Compares `text` with tests/golden/NAME.txt. With ZELVO_WRITE_GOLDENS=1 in the environment the file is written again
/// instead and the test fails all the same, so that a text is never accepted unseen.
[[nodiscard]] testing::AssertionResult matchesGolden(const std::string& name, const std::string& text);

}  // namespace zelvo::tests
