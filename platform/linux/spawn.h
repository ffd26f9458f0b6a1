/// Starts a process that takes nothing of this one with it: no descriptor but what it is given, no blocked or ignored
/// signal, streams that lead nowhere.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <system_error>
#include <vector>

namespace zelvo::platform::linux_ {

struct SpawnRequest {
  std::string program;                       ///< its path, or its name where `searchesPath`
  std::vector<std::string> arguments = {};   ///< after the program's name
  bool searchesPath = false;                 ///< looks for the program in the PATH
  bool hasOwnSession = false;                ///< no terminal, and no signal that is meant for this process's group
  bool keepsFolder = false;                  ///< else it begins in "/"
  std::optional<int> input = std::nullopt;   ///< descriptor that becomes its standard input
  std::optional<int> output = std::nullopt;  ///< descriptor that becomes its standard output
  std::optional<int> error = std::nullopt;   ///< descriptor that becomes its standard error
  /// Descriptors that become its third and following ones; each is 16 or above here.
  std::vector<int> others = {};
  std::optional<std::vector<std::string>> environment =
      std::nullopt;  ///< "NAME=value" each; this process's own without it
};

struct Spawned {
  pid_t process = 0;
  std::error_code error;  ///< why there is no process
};

/// Does not wait for the process. The caller waits for its end, or it stays in the system's table until this one ends.
/// Thread: any.
[[nodiscard]] Spawned spawn(const SpawnRequest& request);

}  // namespace zelvo::platform::linux_
