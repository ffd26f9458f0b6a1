/// "zelvo-avi salvage": the deep repair.
#pragma once

#include <memory>

#include "cli/command.h"

namespace zelvo::cli {

[[nodiscard]] std::unique_ptr<Command> makeSalvageCommand();

}  // namespace zelvo::cli
