/// Other programs, run by tests.
#pragma once

#include <stdio.h>
#include <sys/wait.h>

#include <array>
#include <memory>
#include <string>
#include <vector>

namespace zelvo::tests {

struct Ended {
  int status = -1;  ///< exit status; -1 when it did not exit
  std::string output;
};

/// Puts a text between quotes of the shell.
[[nodiscard]] inline std::string quoted(const std::string& text) {
  std::string out = "'";
  for (const char character : text) out += character == '\'' ? std::string("'\\''") : std::string(1, character);
  return out + "'";
}

/// Runs a command line of the shell and waits for its end; what it says on both streams is the output.
[[nodiscard]] inline Ended runShell(const std::string& commandLine) {
  Ended ended;
  FILE* pipe = ::popen(("exec 2>&1; " + commandLine).c_str(), "re");
  if (pipe == nullptr) return ended;
  std::array<char, 4096> block{};
  while (const std::size_t count = ::fread(block.data(), 1, block.size(), pipe)) {
    ended.output.append(block.data(), count);
  }
  const int status = ::pclose(pipe);
  if (WIFEXITED(status)) ended.status = WEXITSTATUS(status);
  return ended;
}

/// Why no namespaces of our own can be made here, with these options of unshare; empty when they can.
[[nodiscard]] inline std::string whyNoNamespaces(const std::string& options) {
  const Ended tried = runShell("unshare " + options + " true");
  return tried.status == 0 ? "" : "unshare " + options + " is not allowed here: " + tried.output;
}

}  // namespace zelvo::tests
