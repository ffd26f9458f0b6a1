/// The one way in which tests of the window wait for something: bounded, and saying what they saw when it never came.
#pragma once

#include <chrono>
#include <functional>
#include <stdexcept>
#include <string>

#include "tests/platform/qt/code_place.h"

namespace zelvo::tests {

/// Far longer than anything here takes on a machine that is busy with other things.
inline constexpr std::chrono::seconds kLongestWait{60};

/// Takes turns until `reached`. Waiting in vain fails and ends the test, by an exception that names `where` and what
/// `saw` tells by then.
inline void waitUntil(const std::function<bool()>& reached, const std::function<void()>& turn,
                      const std::function<std::string()>& saw,
                      const ::zelvo::tests::CodePlace& where = ::zelvo::tests::CodePlace::current(),
                      std::chrono::milliseconds longest = kLongestWait) {
  const auto end = std::chrono::steady_clock::now() + longest;
  while (!reached()) {
    if (std::chrono::steady_clock::now() >= end) {
      throw std::runtime_error(std::string(where.file) + ":" + std::to_string(where.line) +
                               ": waited in vain; saw: " + saw());
    }
    turn();
  }
}

}  // namespace zelvo::tests
