/// Makes the commands of `zelvo-avi`, one each time.
#pragma once

#include <memory>

#include "cli/command.h"

namespace zelvo::cli {

/// `check`: tells what a repair would keep, without writing anything.
[[nodiscard]] std::unique_ptr<Command> makeCheckCommand();
/// `drives`: lists the machine's writable disks and what is mounted from them.
[[nodiscard]] std::unique_ptr<Command> makeDrivesCommand();
/// `inspect`: prints the structure of an AVI file.
[[nodiscard]] std::unique_ptr<Command> makeInspectCommand();
/// `repair`: rebuilds damaged AVI files.
[[nodiscard]] std::unique_ptr<Command> makeRepairCommand();
/// `salvage`: brings back what is left of damaged AVI files.
[[nodiscard]] std::unique_ptr<Command> makeSalvageCommand();
/// `summary`: what journals of batches say together.
[[nodiscard]] std::unique_ptr<Command> makeSummaryCommand();
/// `verify`: plays films through without showing them, and tells what is wrong.
[[nodiscard]] std::unique_ptr<Command> makeVerifyCommand();
/// `triage`: tells what is left of damaged AVI files, by a quick look.
[[nodiscard]] std::unique_ptr<Command> makeTriageCommand();

}  // namespace zelvo::cli
