/// Reading the command line. The only place that knows the parsing library.
/// Decision: command-line, One source knows the parsing library
#pragma once

#include <memory>

#include "cli/command.h"
#include "cli/console.h"

namespace zelvo::cli {

/// The command to run; without one, help, the version or an error was printed and `exit` is what to answer.
struct CommandLine {
  std::unique_ptr<Command> command;
  Exit exit = Exit::done;
};

[[nodiscard]] CommandLine readCommandLine(int argc, const char* const* argv, Console& console);

}  // namespace zelvo::cli
