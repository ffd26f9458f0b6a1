/// A file descriptor that is closed, and the error of the call before.
#pragma once

#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>

namespace zelvo::platform::linux_ {

/// What `errno` names.
[[nodiscard]] inline std::error_code lastError() { return {errno, std::generic_category()}; }

/// Closes its descriptor at the end; a negative one is none.
class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() { static_cast<void>(close()); }

  [[nodiscard]] int number() const { return number_; }
  [[nodiscard]] bool isOpen() const { return number_ >= 0; }
  [[nodiscard]] std::error_code close() {
    if (number_ < 0) return {};
    // An interrupted close has closed the descriptor all the same.
    return ::close(std::exchange(number_, -1)) == 0 || errno == EINTR ? std::error_code{} : lastError();
  }

 private:
  int number_;
};

}  // namespace zelvo::platform::linux_
