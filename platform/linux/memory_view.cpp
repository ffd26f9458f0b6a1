#include "platform/linux/memory_view.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <string_view>

namespace zelvo::platform::linux_ {

namespace {

using Amount = std::optional<std::uint64_t>;

Amount number(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
  std::uint64_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end == text.data()) return std::nullopt;
  return value;
}

/// The first line; a control group without a limit says "max", which is no number.
Amount numberIn(const std::string& path) {
  std::ifstream file(path);
  std::string line;
  return std::getline(file, line) ? number(line) : std::nullopt;
}

/// Pages of files that a group has read count as used, but go when room is wanted.
std::uint64_t cachedIn(const std::string& path) {
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) {
    for (const std::string_view name : {"inactive_file ", "total_inactive_file "}) {
      if (line.starts_with(name)) {
        if (const Amount amount = number(std::string_view(line).substr(name.size()))) return *amount;
      }
    }
  }
  return 0;
}

struct Names {
  std::string_view limit;
  std::string_view used;
};

void lower(Amount& least, const Amount& other) {
  if (other && (!least || *other < *least)) least = other;
}

/// The group's folder and every one above it, up to `top`.
void lowerByGroups(Amount& least, const std::string& top, std::string group, const Names& names) {
  for (;;) {
    const std::string folder = top + group;
    const Amount limit = numberIn(folder + std::string(names.limit));
    const Amount used = numberIn(folder + std::string(names.used));
    if (limit && used) {
      const std::uint64_t held = *used - std::min(*used, cachedIn(folder + "/memory.stat"));
      lower(least, *limit > held ? *limit - held : 0);
    }
    if (group.empty()) return;
    group.erase(std::min(group.rfind('/'), group.size()));
  }
}

}  // namespace

std::optional<std::uint64_t> LinuxMemoryView::available() {
  Amount least;
  std::ifstream system(root_ + "/proc/meminfo");
  for (std::string line; std::getline(system, line);) {
    constexpr std::string_view kName = "MemAvailable:";
    if (!line.starts_with(kName)) continue;
    if (const Amount kib = number(std::string_view(line).substr(kName.size()))) least = *kib * 1024;
  }
  std::ifstream groups(root_ + "/proc/self/cgroup");
  for (std::string line; std::getline(groups, line);) {
    const std::size_t first = line.find(':');
    const std::size_t second = line.find(':', first == std::string::npos ? first : first + 1);
    if (second == std::string::npos) continue;
    const std::string controllers = "," + line.substr(first + 1, second - first - 1) + ",";
    std::string group = line.substr(second + 1);
    while (group.ends_with('/')) group.pop_back();
    if (controllers == ",,") {
      lowerByGroups(least, root_ + "/sys/fs/cgroup", group, {"/memory.max", "/memory.current"});
    } else if (controllers.find(",memory,") != std::string::npos) {
      lowerByGroups(least, root_ + "/sys/fs/cgroup/memory", group,
                    {"/memory.limit_in_bytes", "/memory.usage_in_bytes"});
    }
  }
  return least;
}

}  // namespace zelvo::platform::linux_
