/// The repair engine by itself, as the yardstick of what the command line writes.
#pragma once

#include <string>

namespace zelvo::tests {

/// Repairs `input` to `output` with the engine alone; false when it wrote nothing.
[[nodiscard]] bool repairWithEngine(const std::string& input, const std::string& output);

}  // namespace zelvo::tests
