/// `zelvo-avi check`: tells what a repair would keep, without writing anything.
#pragma once

#include <memory>

#include "cli/command.h"

namespace zelvo::cli {

[[nodiscard]] std::unique_ptr<Command> makeCheckCommand();

}  // namespace zelvo::cli
