/// Work that may run out of memory or threads.
/// Decision: writer, No memory or thread is a write error
#pragma once

#include <new>
#include <system_error>

namespace zelvo::platform {

/// What a refused start of a worker amounts to: the system has no thread to give.
[[nodiscard]] inline std::error_code noThread() {
  return std::make_error_code(std::errc::resource_unavailable_try_again);
}

/// Whether a cause is one of those two: no memory, no thread.
[[nodiscard]] inline bool isShortage(std::error_code cause) {
  return cause == std::errc::not_enough_memory || cause == std::errc::resource_unavailable_try_again;
}

/// Does `body`. Answers std::errc::not_enough_memory when it was cut short for want of memory, the system's own cause
/// when it was refused a thread or the like, nothing when it came to its end.
template <class Body>
[[nodiscard]] std::error_code ranOut(Body&& body) {
  try {
    body();
    return {};
  } catch (const std::bad_alloc&) {
    return std::make_error_code(std::errc::not_enough_memory);
  } catch (const std::system_error& error) {
    return error.code();
  }
}

}  // namespace zelvo::platform
