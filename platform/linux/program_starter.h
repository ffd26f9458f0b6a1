/// Starts programs of the desktop by posix_spawnp, and watches them through a pidfd.
#pragma once

#include "platform/program_starter.h"

namespace zelvo::platform::linux_ {

class LinuxProgramStarter final : public ProgramStarter {
 public:
  [[nodiscard]] std::unique_ptr<StartedProgram> start(const std::string& program, const std::string& argument) override;
};

}  // namespace zelvo::platform::linux_
