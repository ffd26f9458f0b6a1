/// A command of the command line ("zelvo-avi repair ..."): what it takes, and what it does. A new command is one file
/// with a class, and one row in command_table.cpp.
#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "cli/exit.h"

namespace zelvo::cli {

struct Environment;

/// One option, or the list of what stands without a dash. The parser stores what the user gave in `target`.
struct Option {
  using Target = std::variant<bool*,                        // a flag
                              int*,                         // a flag that may be repeated: how often
                              std::optional<std::string>*,  // one value
                              std::string*,                 // one value that must be there
                              std::vector<std::string>*>;   // one or more values; behind a dash, one each time
  std::string names;  ///< "-o,--output", or "INPUT" for what stands without a dash; those must be there
  std::string help;
  Target target;
  std::string value = {};  ///< what the help calls the value
  bool mayLack = false;    ///< what stands without a dash need not be there
  bool isOfBatch = false;  ///< is about many films, and not about each of them
};

class Command {
 public:
  virtual ~Command() = default;
  [[nodiscard]] virtual std::vector<Option> options() = 0;
  /// Looks at what was given together; a sentence when it makes no sense.
  [[nodiscard]] virtual std::optional<std::string> misuse() const { return std::nullopt; }
  /// Thread: main.
  [[nodiscard]] virtual Exit run(Environment& environment) = 0;
};

/// One row of the command table.
struct CommandRow {
  std::string_view name;
  std::string_view summary;
  std::string_view examples;  ///< lines, each ended
  std::unique_ptr<Command> (*make)();
};

[[nodiscard]] std::span<const CommandRow> commandTable();

}  // namespace zelvo::cli
