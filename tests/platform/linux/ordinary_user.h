/// Root may read, write and delete everything, so what permissions forbid is looked at as an ordinary user.
#pragma once

#include <functional>

namespace zelvo::tests {

/// Runs `check` in a child process that is not root and answers what it answered.
[[nodiscard]] bool holdsForAnOrdinaryUser(const std::function<bool()>& check);

}  // namespace zelvo::tests
