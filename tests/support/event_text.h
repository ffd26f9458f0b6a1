/// Lists of events as text that a person can compare.
#pragma once

#include <string>
#include <vector>

namespace zelvo::tests {

/// One event a line. A group of up to four lines that comes three or more times in a row is written once, indented,
/// below "N times:".
[[nodiscard]] std::string foldedEvents(const std::vector<std::string>& events);

}  // namespace zelvo::tests
