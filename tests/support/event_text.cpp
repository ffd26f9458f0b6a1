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

std::string indented(const std::string& event) {
  std::string text = "\n  ";
  for (const char character : event) text += character == '\n' ? std::string("\n  ") : std::string(1, character);
  return text;
}

/// Each group that was folded becomes one event of several lines.
std::vector<std::string> foldedOnce(const std::vector<std::string>& events) {
  std::vector<std::string> folded;
  for (std::size_t at = 0; at < events.size();) {
    std::size_t length = 1;
    while (length < kLongestGroup && timesInARow(events, at, length) < kFewestTimes) ++length;
    const std::size_t times = timesInARow(events, at, length);
    if (times < kFewestTimes) {
      folded.push_back(events[at++]);
      continue;
    }
    folded.push_back(std::to_string(times) + " times:");
    for (std::size_t i = 0; i < length; ++i) folded.back() += indented(events[at + i]);
    at += times * length;
  }
  return folded;
}

}  // namespace

std::string foldedEvents(const std::vector<std::string>& events) {
  std::string text;
  // Once more for groups that hold a folded one.
  for (const std::string& line : foldedOnce(foldedOnce(events))) text += line + "\n";
  return text;
}

}  // namespace zelvo::tests
