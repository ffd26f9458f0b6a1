#include "tests/support/event_text.h"

#include <algorithm>
#include <cstddef>

namespace zelvo::tests {

namespace {

constexpr std::size_t kLongestGroup = 4;
constexpr std::size_t kFewestTimes = 3;

/// How often the `length` events at `start` come in a row.
std::size_t timesInARow(const std::vector<std::string>& events, std::size_t start, std::size_t length) {
  std::size_t same = 0;
  while (start + length + same < events.size() && events[start + same] == events[start + length + same]) ++same;
  return start + length > events.size() ? 0 : same / length + 1;
}

}  // namespace

std::string foldedEvents(const std::vector<std::string>& events) {
  std::string text;
  for (std::size_t at = 0; at < events.size();) {
    std::size_t length = 1;
    while (length < kLongestGroup && timesInARow(events, at, length) < kFewestTimes) ++length;
    const std::size_t times = timesInARow(events, at, length);
    if (times < kFewestTimes) {
      text += events[at++] + "\n";
      continue;
    }
    text += std::to_string(times) + " times:\n";
    for (std::size_t i = 0; i < length; ++i) text += "  " + events[at + i] + "\n";
    at += times * length;
  }
  return text;
}

}  // namespace zelvo::tests
