/// `zelvo-avi repair`: rebuilds damaged AVI files.
#pragma once

#include <memory>

#include "cli/command.h"

namespace zelvo::cli {

[[nodiscard]] std::unique_ptr<Command> makeRepairCommand();

}  // namespace zelvo::cli
