#include "salvage/scan/rescue_map.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <limits>
#include <span>
#include <string_view>
#include <utility>

#include "platform/bytes.h"

namespace zelvo::salvage {

namespace {

constexpr std::uint64_t kFarthest = std::numeric_limits<std::int64_t>::max();
/// Three numbers and a status are shorter by far; more of a line is not kept.
constexpr std::size_t kKeptOfLine = 256;

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\v' || c == '\f'; }

/// Takes a number off the front of a line, up to where its digits end.
std::optional<std::uint64_t> takeNumber(std::string_view& line) {
  while (!line.empty() && isBlank(line.front())) line.remove_prefix(1);
  std::size_t length = 0;
  while (length < line.size() && std::isalnum(static_cast<unsigned char>(line[length])) != 0) ++length;
  const auto number = rescueNumber(line.substr(0, length));
  line.remove_prefix(length);
  return number;
}

std::optional<char> takeLetter(std::string_view& line) {
  while (!line.empty() && isBlank(line.front())) line.remove_prefix(1);
  if (line.empty()) return std::nullopt;
  return line.front();
}

class MapReading {
 public:
  /// False at the first fault.
  bool take(std::string_view line);
  [[nodiscard]] std::variant<RescueMap, RescueMapFault> end();
  [[nodiscard]] RescueMapFault fault() const { return fault_; }

 private:
  bool takeStatus(std::string_view line);
  bool takeBlock(std::string_view line);
  bool fail(RescueMapProblem problem) {
    fault_ = {problem, line_, {}};
    return false;
  }

  RescueMap map_;
  RescueMapFault fault_;
  std::uint64_t line_ = 0;
  bool hasStatus_ = false;
  bool hasBlock_ = false;
};

bool MapReading::take(std::string_view line) {
  ++line_;
  std::string_view rest = line;
  const auto first = takeLetter(rest);
  if (!first || *first == '#') return true;
  return hasStatus_ ? takeBlock(line) : takeStatus(line);
}

bool MapReading::takeStatus(std::string_view line) {
  constexpr std::string_view kStatuses = "?*/-FG+";
  const auto position = takeNumber(line);
  const auto status = position ? takeLetter(line) : std::nullopt;
  if (!status) return fail(RescueMapProblem::noStatus);
  if (kStatuses.find(*status) == std::string_view::npos) return fail(RescueMapProblem::unknownStatus);
  hasStatus_ = true;
  return true;
}

bool MapReading::takeBlock(std::string_view line) {
  constexpr std::string_view kStatuses = "?*/-+";
  const auto position = takeNumber(line);
  const auto size = position ? takeNumber(line) : std::nullopt;
  const auto status = size ? takeLetter(line) : std::nullopt;
  if (!status || *size == 0) return fail(RescueMapProblem::notABlock);
  if (kStatuses.find(*status) == std::string_view::npos) return fail(RescueMapProblem::unknownStatus);
  if (*size > kFarthest - *position) return fail(RescueMapProblem::tooFar);
  if (!hasBlock_) map_.begin = map_.end = *position;
  hasBlock_ = true;
  if (*position > map_.end) return fail(RescueMapProblem::gap);
  if (*position < map_.end) return fail(RescueMapProblem::overlap);
  map_.end = *position + *size;
  if (*status == '+') return true;
  if (!map_.lost.empty() && map_.lost.back().end == *position) {
    map_.lost.back().end = map_.end;
  } else if (map_.lost.size() < kMaxLostStretches) {
    map_.lost.push_back({*position, map_.end});
  } else {
    return fail(RescueMapProblem::tooLong);
  }
  return true;
}

std::variant<RescueMap, RescueMapFault> MapReading::end() {
  if (!hasStatus_) return RescueMapFault{RescueMapProblem::noStatus, line_, {}};
  return std::move(map_);
}

}  // namespace

std::optional<std::uint64_t> rescueNumber(std::string_view text) {
  int base = 10;
  if (text.starts_with("0x") || text.starts_with("0X")) {
    base = 16;
    text.remove_prefix(2);
  } else if (text.size() > 1 && text.front() == '0') {
    base = 8;
  }
  std::uint64_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
  if (error != std::errc() || end != text.data() + text.size() || number > kFarthest) return std::nullopt;
  return number;
}

std::variant<RescueMap, RescueMapFault> readRescueMap(platform::ReadableFile& file) {
  constexpr std::size_t kWindow = 65'536;
  platform::Bytes window(kWindow);
  MapReading reading;
  std::string line;
  bool isOpen = false;
  for (std::uint64_t at = 0;;) {
    const platform::IoResult result = file.readAt(at, window);
    if (result.error) return RescueMapFault{RescueMapProblem::unreadable, 0, result.error};
    for (const std::byte byte : std::span(window).first(result.count)) {
      const char c = static_cast<char>(byte);
      isOpen = c != '\n';
      if (isOpen) {
        if (line.size() < kKeptOfLine) line.push_back(c);
        continue;
      }
      if (!reading.take(line)) return reading.fault();
      line.clear();
    }
    at += result.count;
    if (result.count == window.size()) continue;
    if (isOpen && !reading.take(line)) return reading.fault();
    return reading.end();
  }
}

std::uint64_t FilmRescue::lostBytes() const {
  std::uint64_t bytes = 0;
  for (const ByteSpan& span : lost) bytes += span.end - span.begin;
  return bytes;
}

std::optional<FilmRescue> rescueOf(const RescueMap& map, std::optional<std::uint64_t> offset, std::uint64_t filmSize) {
  FilmRescue rescue;
  rescue.offset = offset.value_or(0);
  const std::uint64_t filmEnd = rescue.offset + std::min(filmSize, kFarthest);
  if (map.begin >= filmEnd || map.end <= rescue.offset) return std::nullopt;
  const std::uint64_t end = offset ? filmEnd : std::max(filmEnd, map.end);
  const auto add = [&](std::uint64_t from, std::uint64_t to) {
    from = std::max(from, rescue.offset) - rescue.offset;
    to = std::max(std::min(to, end), rescue.offset) - rescue.offset;
    if (from >= to) return;
    if (!rescue.lost.empty() && rescue.lost.back().end == from) {
      rescue.lost.back().end = to;
    } else {
      rescue.lost.push_back({from, to});
    }
  };
  add(0, map.begin);
  const auto first = std::ranges::upper_bound(map.lost, rescue.offset, {}, &ByteSpan::end);
  for (auto span = first; span != map.lost.end() && span->begin < end; ++span) add(span->begin, span->end);
  add(map.end, filmEnd);
  return rescue;
}

std::string domainMap(const std::vector<ByteSpan>& wanted, std::uint64_t end) {
  const auto hex = [](std::uint64_t number) {
    std::array<char, 16> digits{};
    const auto [last, error] = std::to_chars(digits.data(), digits.data() + digits.size(), number, 16);
    const auto length = static_cast<std::size_t>(last - digits.data());
    constexpr std::size_t kWidth = 8;
    return "0x" + std::string(kWidth - std::min(kWidth, length), '0') + std::string(digits.data(), length);
  };
  std::string text = "# Domain map for ddrescue --domain-mapfile\n# current_pos  current_status\n" + hex(0) +
                     "     +\n#      pos        size  status\n";
  std::uint64_t at = 0;
  const auto add = [&](std::uint64_t to, char status) {
    if (to <= at) return;
    text += hex(at) + "  " + hex(to - at) + "  " + status + "\n";
    at = to;
  };
  for (const ByteSpan& span : wanted) {
    add(std::min(span.begin, end), '-');
    add(std::min(span.end, end), '+');
  }
  add(end, '-');
  return text;
}

}  // namespace zelvo::salvage
