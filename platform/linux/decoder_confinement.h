/// What keeps a decoder that a hostile payload took over from doing harm: few system calls, little memory, little time.
#pragma once

#include <cstdint>

namespace zelvo::platform::linux_ {

struct Confinement {
  std::uint64_t addressSpace = std::uint64_t{1} << 30U;  ///< in bytes; libraries take a quarter of it
  std::uint64_t data = std::uint64_t{192} << 20U;        ///< in bytes: what is really written to
  std::uint64_t seconds = 120;                           ///< of computing
  bool mayStartThreads = false;
};

/// Confines this process for the rest of its life. It may compute, take memory and use the descriptors that it has; any
/// other system call ends it by SIGSYS, but for a few that libraries try and do without: files cannot be opened and,
/// unless they are allowed, threads cannot be started.
/// \return false when the process may go on but is not confined: under a sanitizer, which needs more than is allowed.
/// Failure: ends the process when the system refuses.
/// \pre no other thread runs, and all libraries are loaded.
[[nodiscard]] bool confine(const Confinement& limits = {});

}  // namespace zelvo::platform::linux_
