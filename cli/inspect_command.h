/// `zelvo-avi inspect`: prints the structure of an AVI file.
#pragma once

#include <memory>

#include "cli/command.h"

namespace zelvo::cli {

[[nodiscard]] std::unique_ptr<Command> makeInspectCommand();

}  // namespace zelvo::cli
