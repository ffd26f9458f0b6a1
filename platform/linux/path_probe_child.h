/// What the child process of a path probe does, and how it tells its parent. It uses nothing but the C library, so that
/// it starts within a millisecond.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace zelvo::platform::linux_ {

/// First argument of a program that is to be such a child; the paths follow.
inline constexpr std::string_view kProbeOption = "--answer-for-paths";

/// One answer, as it goes through the pipe: in one write, which the system does not mix with another.
struct ProbeRecord {
  std::uint32_t place = 0;     ///< of the path among the arguments, from 0
  std::int32_t error = 0;      ///< number of the system's error; 0 for none
  std::uint64_t free = 0;      ///< bytes
  std::uint64_t capacity = 0;  ///< bytes
};

/// Whether a program that was started with these arguments is to be a probe's child.
[[nodiscard]] bool isProbeChild(std::span<char* const> arguments);

/// Looks at each path on a thread of its own, and writes a `ProbeRecord` to standard output as soon as one has
/// answered. Ends the process when all have, or a few seconds later, whatever hangs and whatever became of its parent.
/// \param arguments all of the program's
[[noreturn]] void answerForPaths(std::span<char* const> arguments);

}  // namespace zelvo::platform::linux_
