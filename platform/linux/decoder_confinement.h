/// What keeps a decoder that a hostile payload took over from doing harm: few system calls, little memory, little time.
#pragma once

namespace zelvo::platform::linux_ {

/// Confines this process for the rest of its life. It may compute, take memory and use the descriptors that it has; any
/// other system call ends it by SIGSYS, but for a few that libraries try and do without: files cannot be opened and
/// threads cannot be started.
/// \return false when the process may go on but is not confined: under a sanitizer, which needs more than is allowed.
/// Failure: ends the process when the system refuses.
/// \pre no other thread runs, and all libraries are loaded.
[[nodiscard]] bool confine();

}  // namespace zelvo::platform::linux_
