// Asks one service of the platform and prints its answer, for tests that need another user, another network or a
// process of their own:
//   reachable                                  the flag word of the zero address, or "nothing"
//   fetch ADDRESS AUTHORITIES LARGEST TOTAL    "whole" or "failed", the bytes taken, the KiB by which memory grew, and
//                                              the milliseconds; AUTHORITIES and LARGEST may be "-", TOTAL is in ms
//   deletable PATH                             isWriteDeletablePath as "yes" or "no"
//   copy FROM TO, remove PATH                  "done" or the error
#include <sys/resource.h>

#include <chrono>
#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

#include "platform/linux/file_manager.h"
#include "platform/linux/folder_trees.h"
#include "platform/linux/reachability.h"
#include "platform/linux/web.h"
#include "update/places.h"

namespace zelvo::tests {
namespace {

using Arguments = std::vector<std::string>;

int reachable() {
  const auto reference = platform::linux_::LinuxReachability().createWithAddress(
      {.length = platform::kSocketAddressLength, .family = platform::kFamilyInternet});
  const auto flags = reference ? reference->flags() : std::nullopt;
  std::cout << (flags ? std::to_string(*flags) : "nothing") << '\n';
  return 0;
}

long peakMemory() {
  rusage usage{};
  ::getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

int fetch(const Arguments& arguments) {
  const platform::linux_::WebLibrary library;
  const auto optional = [](const std::string& text) { return text == "-" ? std::nullopt : std::optional(text); };
  platform::linux_::LinuxWeb web(library, optional(arguments[1]));
  platform::FetchLimits limits;
  limits.total = std::chrono::milliseconds(std::stoi(arguments[3]));
  limits.connect = *limits.total;
  if (const auto largest = optional(arguments[2])) limits.largest = std::stoul(*largest);
  std::size_t taken = 0;
  const long before = peakMemory();
  const auto start = std::chrono::steady_clock::now();
  const bool whole =
      web.fetch(arguments[0], limits, [&taken](std::span<const std::byte> piece) { taken += piece.size(); });
  const auto time = std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start);
  std::cout << (whole ? "whole" : "failed") << ' ' << taken << ' ' << peakMemory() - before << ' ' << time.count()
            << '\n';
  return 0;
}

int run(const Arguments& arguments) {
  const std::string command = arguments.empty() ? "" : arguments[0];
  const Arguments rest(arguments.begin() + (arguments.empty() ? 0 : 1), arguments.end());
  platform::linux_::LinuxFileManager fileManager;
  platform::linux_::LinuxFolderTrees trees;
  if (command == "reachable") return reachable();
  if (command == "fetch" && rest.size() == 4) return fetch(rest);
  if (command == "deletable" && rest.size() == 1) {
    std::cout << (update::isWriteDeletablePath(fileManager, rest[0]) ? "yes" : "no") << '\n';
    return 0;
  }
  const auto tell = [](std::error_code error) { std::cout << (error ? error.message() : "done") << '\n'; };
  if (command == "copy" && rest.size() == 2) return tell(trees.copy(rest[0], rest[1])), 0;
  if (command == "remove" && rest.size() == 1) return tell(trees.remove(rest[0])), 0;
  std::cerr << "update_probe: unknown command\n";
  return 2;
}

}  // namespace
}  // namespace zelvo::tests

int main(int count, char** arguments) {
  return zelvo::tests::run(std::vector<std::string>(arguments + 1, arguments + count));
}
